#!/bin/sh
# What the built module shows to the loader: elf_linkage.sh CHECK LIBRARY EXPORTS-FILE
set -eu
check=$1
library=$2
exports_file=$3
# What the linker and the C runtime's start files bring into every module.
runtime_data='^(_DYNAMIC|_GLOBAL_OFFSET_TABLE_|__TMC_END__|__dso_handle|completed\.[0-9]+'
runtime_data="$runtime_data|__frame_dummy_init_array_entry|__do_global_dtors_aux_fini_array_entry)\$"

# A tool that is missing or fails must fail the check, so its output is taken before it is searched.
symbols=$("${NM:-nm}" --defined-only "$library")
exported=$("${NM:-nm}" -D --defined-only "$library")
dynamic=$("${READELF:-readelf}" -d "$library")
relocations=$("${READELF:-readelf}" -rW "$library")

# Fails, with a sentence, if there is anything in the second argument.
want_none() {
    if [ -n "$2" ]; then
        printf '%s\n' "$1:" "$2"
        exit 1
    fi
}

case $check in
exports)
    wanted=$(sort "$exports_file")
    got=$(echo "$exported" | awk '{ print $3 }' | sort)
    if [ "$wanted" != "$got" ]; then
        printf '%s\n' "wanted these exports and no others:" "$wanted" "got:" "$got"
        exit 1
    fi
    ;;
soname)
    echo "$dynamic" | grep -q 'SONAME.*\[libkxmaths5\.so\.5\]' || want_none "wrong SONAME" "$dynamic"
    ;;
needed)
    want_none "needs more than libm and libc" \
        "$(echo "$dynamic" | grep 'NEEDED' | grep -vE '\[lib[cm]\.so\.6\]')"
    ;;
writable-data)
    # Besides that only what the compiler's runtime finds out of the processor when it is loaded.
    want_none "has writable data of its own" \
        "$(echo "$symbols" | awk '$2 ~ /^[bBdDgGsSuVv]$/ { print $3 }' |
            grep -vE "$runtime_data" | grep -vxE '__cpu_model|__cpu_features2')"
    ;;
internal-calls)
    want_none "reaches its own functions through the PLT or the GOT" \
        "$(echo "$relocations" | grep -F 'KX')"
    ;;
*)
    echo "unknown check: $check"
    exit 2
    ;;
esac
