#!/bin/sh
# Holds a build to the digests that are written down:
# digests.sh DIGESTS-FILE EXPORTS-FILE PROGRAM [ARGUMENT...]
set -eu
digests_file=$1
exports_file=$2
shift 2

# Every export has a line, and the last line is the total.
{ sort "$exports_file"; echo total; } >wanted-names.txt
{ sed '$d' "$digests_file" | cut -d' ' -f1 | sort; tail -n 1 "$digests_file" | cut -d' ' -f1; } |
    diff wanted-names.txt - || { echo "the digests' names are not the exports"; exit 1; }

"$@" | tr -d '\r' | diff "$digests_file" - || { echo "the bits are not the recorded ones"; exit 1; }
