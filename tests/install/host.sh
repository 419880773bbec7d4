#!/bin/sh
# Builds and runs one host of the library, the way docs/building.md shows it:
#
#     host.sh PREFIX LANGUAGE KIND BLOCK
#
# Where the library is installed; C or CXX; shared or static; and the block of the document.
set -eu
cd "$(dirname "$0")"
prefix=$1 language=$2 kind=$3 block=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp CMakeLists.txt host.c host.cpp "$work"
ln -s "$(cd ../.. && pwd)" "$work/kxmaths5"
sed -n "/^\`\`\`$block\$/,/^\`\`\`\$/p" ../../docs/building.md | grep -v '^```' >"$work/block"

cd "$work"
case $block in
cmake*)
    mv block way.cmake
    cmake -S . -B build -DLANGUAGE="$language" -DCMAKE_PREFIX_PATH="$prefix" >log
    cmake --build build --parallel 2 >log
    host=build/host
    ;;
sh*)
    PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name kxmaths5.pc)")
    LD_LIBRARY_PATH=$(dirname "$(find "$prefix" -name libkxmaths5.so.5)")
    export PREFIX="$prefix" PKG_CONFIG_LIBDIR LD_LIBRARY_PATH
    [ "$language" = C ] || sed -i 's/^cc host\.c/c++ host.cpp/' block
    sh -eu block
    host=./host
    ;;
esac

# KX_STATIC must have come with the static library and with no other, which must be linked as well.
printed=$("$host")
needed=$(readelf -d "$host" | sed -n 's/.*NEEDED.*\[\(libkxmaths5.*\)\]/\1/p')
case $kind:$printed:$needed in
shared:shared:libkxmaths5.so.5 | static:static:) ;;
*)
    echo "Wanted the $kind library; built for the $printed one, and loads ${needed:-no module}." >&2
    exit 1
    ;;
esac
