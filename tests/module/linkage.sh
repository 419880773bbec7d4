#!/bin/sh
# What a built library shows to those who link or load it: linkage.sh elf|static|windows CHECK LIBRARY EXPORTS-FILE
set -eu
format=$1 check=$2 library=$3 exports_file=$4
wanted=$(sort "$exports_file")

# A tool that is missing or fails must fail the check, so its output is taken before it is searched.
: "${NM:=nm}" "${OBJDUMP:=objdump}" "${READELF:=readelf}"
case $format in
elf)
    symbols=$("$NM" --defined-only "$library")
    exported=$("$NM" -D --defined-only "$library")
    dynamic=$("$READELF" -d "$library")
    relocations=$("$READELF" -rW "$library")
    ;;
static) symbols=$("$NM" --defined-only --extern-only "$library") ;;
windows) headers=$("$OBJDUMP" -p "$library") ;;
esac

# Fails, with both lists, if they are not the same.
want_same() {
    if [ "$2" != "$3" ]; then
        printf '%s\n' "wanted $1:" "$2" "got:" "$3"
        exit 1
    fi
}

case $format/$check in
elf/exports)
    want_same "these exports and no others" "$wanted" "$(echo "$exported" | awk '{ print $3 }' | sort)"
    ;;
elf/soname)
    want_same "this SONAME" "[libkxmaths5.so.5]" "$(echo "$dynamic" | sed -n 's/.*SONAME.*\(\[.*\]\)/\1/p')"
    ;;
elf/needed)
    want_same "nothing but libm and libc" "" \
        "$(echo "$dynamic" | grep 'NEEDED' | grep -vE '\[lib[cm]\.so\.6\]')"
    ;;
elf/writable-data)
    # What the linker and the C runtime's start files bring into every module, and what the compiler's runtime finds
    # out of the processor when it is loaded.
    runtime_data='_DYNAMIC|_GLOBAL_OFFSET_TABLE_|__TMC_END__|__dso_handle|completed\.[0-9]+'
    runtime_data="$runtime_data|__frame_dummy_init_array_entry|__do_global_dtors_aux_fini_array_entry"
    want_same "no writable data of its own" "" \
        "$(echo "$symbols" | awk '$2 ~ /^[bBdDgGsSuVv]$/ { print $3 }' |
            grep -vxE "$runtime_data|__cpu_model|__cpu_features2")"
    ;;
elf/internal-calls)
    want_same "none of its own functions in the PLT or the GOT" "" "$(echo "$relocations" | grep -F 'KX')"
    ;;
elf/upper-halves)
    # No function returns, or jumps to another one, while the upper halves of vector registers are in use: SSE code
    # would run many times slower after it. g++ 12 leaves vzeroupper out where a 256-bit function ends in a call
    # within its file. Straight code is looked at: what an unconditional jump is followed by may be reached from
    # anywhere.
    listing=$("$OBJDUMP" -d --no-show-raw-insn "$library")
    printf '%s\n' "$listing" | awk '
        /^[0-9a-f]+ <.*>:$/ { name = substr($2, 2, length($2) - 3); used = 0; next }
        /\tvzeroupper/ { used = 0; seen = 1; next }
        /\t(ret|jmp)/ {
            leaves = $2 == "ret" || (index($0, "<") && index($0, "<" name "+") == 0 && index($0, "<" name ">") == 0)
            if (used && leaves) { print name ": " $0; found = 1 }
            used = 0
        }
        /%[yz]mm([0-9]|1[0-5])([^0-9]|$)/ { used = 1 }
        END {
            if (!seen) print "no vzeroupper in the whole module"
            exit found || !seen
        }' >&2
    ;;
static/exports)
    # A static library hides nothing, so that all else is in the namespace kx.
    want_same "these names, and namespace kx" "$wanted" \
        "$(echo "$symbols" | awk 'NF == 3 && $3 !~ /^_ZNK?2kx/ { print $3 }' | sort)"
    ;;
windows/exports)
    # A decorated name starts with an underscore, or ends with an @ and a number.
    want_same "these exports and no others" "$wanted" \
        "$(echo "$headers" | sed -n '/Ordinal\/Name Pointer/,/^$/s/^\t\[ *[0-9]*\] //p' | sort)"
    ;;
windows/needed)
    want_same "nothing but the system" "KERNEL32.dll msvcrt.dll" \
        "$(echo "$headers" | sed -n 's/^\tDLL Name: //p' | sort -u | paste -sd ' ')"
    # With a sine from elsewhere the results would be others. What moves and compares memory may be
    # there too: a matter of the compiler's.
    want_same "these functions" \
        "DisableThreadLibraryCalls asin atan2 cos sin" \
        "$(echo "$headers" | awk '/DLL Name/ { on = 1 } /export table/ { on = 0 }
            on && NF == 3 && $2 ~ /^[0-9]+$/ && $3 !~ /^mem(cmp|cpy|move|set)$/ { print $3 }' | LC_ALL=C sort | paste -sd ' ')"
    ;;
windows/start-up)
    # Windows refuses DisableThreadLibraryCalls to a module with storage for each thread.
    want_same "no storage for each thread" "Entry 9 0 00000000" \
        "$(echo "$headers" | awk '/^Entry 9/ { print $1, $2, $3 + 0, $4 }')"
    ;;
*)
    echo "unknown check: $format/$check"
    exit 2
    ;;
esac
