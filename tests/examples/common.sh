# Sourced by the tests of the examples, with $program and $pixel set: a folder to work in, what bad input
# must end in, and what pictures show.
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

fail() {
    echo "$*"
    failures=$((failures + 1))
}

# One sentence and a non-zero exit, with no report and no file left behind.
mkdir out
refused() {
    what=$1
    shift
    if "$program" "$@" >stdout.txt 2>stderr.txt; then
        fail "$what: accepted"
    fi
    [ "$(wc -l <stderr.txt)" -eq 1 ] || fail "$what: not one sentence:" "$(cat stderr.txt)"
    [ ! -s stdout.txt ] || fail "$what: a report all the same"
    [ -z "$(ls -A out)" ] || fail "$what: left a file behind"
    rm -f out/*
}

# pixels FILE <<: each line a column, a row and the colour wanted there, to 2 of 255, with what it is.
pixels() {
    while read -r column row red green blue what; do
        "$pixel" "$1" "$column" "$row" | awk -v r="$red" -v g="$green" -v b="$blue" '
            function off(x, y) { return x > y + 2 || y > x + 2 }
            { if (off($1, r) || off($2, g) || off($3, b)) { print; exit 1 } }' >colour.txt ||
            fail "$1, pixel $column $row: wanted $red $green $blue ($what), got $(cat colour.txt)"
    done
}

# The same picture: same FILE WANTED WHAT
same() {
    said=$("$pixel" "$1" "$2") || fail "$3: $1 is not $2: $said"
}
