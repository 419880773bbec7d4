#!/bin/sh
# What the documents name exists: names.sh functions|scripts|version VERSION
set -eu
cd "$(dirname "$0")/../.."

functions() # Every function by its task, and nothing else.
{
    wanted=$(sort src/exports.txt)
    named=$(grep '^|' docs/functions.md | grep -o 'KX[A-Za-z][A-Za-z0-9]*' | sort)
    if [ "$named" != "$wanted" ]; then
        printf '%s\n' "$named" "$wanted" | sort | uniq -c | grep -v '^ *2 '
        exit 1
    fi
}

scripts()
{
    for script in $(grep -ohE '(\./scripts/|\.ci/)[a-z]+' ./*.md docs/*.md | sort -u); do
        ls "$script" >/dev/null
    done
}

version() # The newest entry of the changelog is about this version.
{
    grep -m 1 '^## ' CHANGELOG.md | grep -F "## $1, "
}

"$@"
