#!/bin/sh
# What the built module shows to Windows: windows_linkage.sh CHECK LIBRARY EXPORTS-FILE
set -eu
check=$1
library=$2
exports_file=$3
headers=$("$OBJDUMP" -p "$library")

# Fails, with both lists, if they are not the same.
want_same() {
    if [ "$2" != "$3" ]; then
        printf '%s\n' "wanted $1:" "$2" "got:" "$3"
        exit 1
    fi
}

case $check in
exports)
    # A decorated name starts with an underscore, or ends with an @ and a number.
    want_same "these exports and no others" "$(sort "$exports_file")" \
        "$(echo "$headers" | sed -n '/Ordinal\/Name Pointer/,/^$/s/^\t\[ *[0-9]*\] //p' | sort)"
    ;;
needed)
    want_same "nothing but the system" "KERNEL32.dll msvcrt.dll" \
        "$(echo "$headers" | sed -n 's/^\tDLL Name: //p' | sort -u | paste -sd ' ')"
    # With a sine from elsewhere the results would be others. What moves and compares memory may be
    # there too: a matter of the compiler's.
    want_same "these functions" \
        "DisableThreadLibraryCalls asin atan2 cos sin" \
        "$(echo "$headers" | awk '/DLL Name/ { on = 1 } /export table/ { on = 0 }
            on && NF == 3 && $2 ~ /^[0-9]+$/ && $3 !~ /^mem(cmp|cpy|move|set)$/ { print $3 }' | LC_ALL=C sort | paste -sd ' ')"
    ;;
start-up)
    # Windows refuses DisableThreadLibraryCalls to a module with storage for each thread.
    want_same "no storage for each thread" "Entry 9 0 00000000" \
        "$(echo "$headers" | awk '/^Entry 9/ { print $1, $2, $3 + 0, $4 }')"
    ;;
*)
    echo "unknown check: $check"
    exit 2
    ;;
esac
