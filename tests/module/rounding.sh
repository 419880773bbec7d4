#!/bin/sh
# An optimised build of each compiler gives the bits of the same without optimisation under each of a host's
# environments: rounding.sh COMPILER...
set -eu
cd "$(dirname "$0")/../.."
mkdir -p build/rounding
for compiler in "$@"; do
    for preset in "$compiler" "$compiler-debug"; do
        ./scripts/build "$preset" kx_digest
    done
    for options in '--rounding up' '--rounding down' '--rounding zero' --flush '--rounding up --flush'; do
        for preset in "$compiler" "$compiler-debug"; do
            # shellcheck disable=SC2086 # a list of options
            "build/$preset/tools/kx_digest" $options >"build/rounding/$preset.txt"
        done
        diff "build/rounding/$compiler.txt" "build/rounding/$compiler-debug.txt" || {
            echo "$compiler with $options: other bits" >&2
            exit 1
        }
    done
done
