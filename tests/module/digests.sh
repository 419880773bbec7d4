#!/bin/sh
# Holds a build to the digests that are written down: digests.sh PROGRAM DIGESTS-FILE EXPORTS-FILE
set -eu
program=$1
digests_file=$2
exports_file=$3

# Every export has a line, and the last line is the total.
{ sort "$exports_file"; echo total; } >wanted-names.txt
{ sed '$d' "$digests_file" | cut -d' ' -f1 | sort; tail -n 1 "$digests_file" | cut -d' ' -f1; } |
    diff wanted-names.txt - || { echo "the digests are not those of the exports"; exit 1; }

"$program" | diff "$digests_file" - || { echo "other bits than those written down"; exit 1; }
