#!/bin/sh
# What a static library shows to its host: static_linkage.sh exports LIBRARY EXPORTS-FILE
set -eu
library=$2
exports_file=$3
symbols=$("$NM" --defined-only --extern-only "$library")

# A static library hides nothing, so that all else is in the namespace kx.
wanted=$(sort "$exports_file")
got=$(echo "$symbols" | awk 'NF == 3 && $3 !~ /^_ZNK?2kx/ { print $3 }' | sort)
if [ "$wanted" != "$got" ]; then
    printf '%s\n' "wanted these names, and namespace kx:" "$wanted" "got:" "$got"
    exit 1
fi
