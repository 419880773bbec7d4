#!/bin/sh
# The recorded digests elsewhere than in tests:
#
#     other_digests.sh processors            on processors that lack instructions, under an emulator
#     other_digests.sh rounding COMPILER...  with and without optimisation under each of a host's environments
set -eu
cd "$(dirname "$0")/../.."
mkdir -p build/other_digests
cd build/other_digests

# Without AVX, with AVX2 but no FMA, and without AVX-512: none may run a copy of the kernels that it has no
# instructions for.
processors() {
    ../../scripts/install qemu-user
    ../../scripts/build gcc kx_digest
    for processor in Nehalem Haswell,-fma Haswell; do
        qemu-x86_64 -cpu "$processor" ../gcc/tools/kx_digest 2>qemu.log >qemu.txt || {
            cat qemu.log >&2
            exit 1
        }
        diff ../../tools/digest/digests.txt qemu.txt || {
            echo "as $processor: other bits" >&2
            exit 1
        }
    done
}

# An optimised build of each compiler gives the bits of the same without optimisation.
rounding() {
    for compiler in "$@"; do
        for preset in "$compiler" "$compiler-debug"; do
            ../../scripts/build "$preset" kx_digest
        done
        for options in '--rounding up' '--rounding down' '--rounding zero' --flush '--rounding up --flush'; do
            for preset in "$compiler" "$compiler-debug"; do
                # shellcheck disable=SC2086 # a list of options
                "../$preset/tools/kx_digest" $options >"$preset.txt"
            done
            diff "$compiler.txt" "$compiler-debug.txt" || {
                echo "$compiler with $options: other bits" >&2
                exit 1
            }
        done
    done
}

"$@"
