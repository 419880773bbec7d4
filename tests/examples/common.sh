# Sourced by the tests of the examples, with $program set: a folder to work in, and what bad input
# must end in.
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

# The signature and the size, as the first bytes of a PNG: is_png FILE WIDTH HEIGHT
is_png() {
    head -c 24 "$1" | od -An -tx1 | tr -d ' \n' |
        grep -q "^89504e470d0a1a0a0000000d49484452$(printf '%08x%08x' "$2" "$3")\$" ||
        fail "$1 is not a PNG of $2 by $3"
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
