#!/bin/sh
# The programs of scripts/ and tools/ say what they are for, and refuse arguments that make no sense:
# scripts.sh REPLAY DIGEST
set -eu
cd "$(dirname "$0")/../.."
fail() {
    echo "$*"
    exit 1
}

# refused COMMAND...: one sentence, nothing else, and the status of a wrong call.
refused() {
    said=$("$@" 2>&1 >/dev/null) && fail "$*: accepted" || status=$?
    [ "$status" = 2 ] && [ -n "$said" ] && [ "$(echo "$said" | wc -l)" = 1 ] || fail "$*: status $status, $said"
}
for script in scripts/*; do
    [ "$script" != scripts/common.sh ] || continue
    "$script" --help | grep -q "$(basename "$script")\|[.]" || fail "$script --help says nothing"
done
for script in angles build coverage demo docs javascript lint meshes package platforms playground python test valgrind; do
    refused "scripts/$script" --nonsense
done
refused scripts/build
refused scripts/build 'g.c'
refused scripts/package src # is not emptied
refused scripts/package 'build/a b'
refused scripts/install
refused scripts/playground --port eight
refused "$1" 1500
refused "$1" 1000 1000
refused "$2" --rounding sideways
refused "$2" --flush --rounding
