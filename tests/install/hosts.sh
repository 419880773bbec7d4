#!/bin/sh
# Hosts of an installed library, built and run as docs/building.md shows it:
#
#     hosts.sh PREFIX                      by its CMake package and its pkg-config file
#     hosts.sh PREFIX LANGUAGE KIND BLOCK  one host: C or CXX, shared or static, and a block of the document
set -eu
prefix=$(cd "$1" && pwd)
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A few lines of docs/building.md.
one_host() {
    language=$1 kind=$2 block=$3
    cp host.c host.cpp "$work"
    cat >"$work/CMakeLists.txt" <<'EOF'
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES ${LANGUAGE})
set(source_C host.c)
set(source_CXX host.cpp)
add_executable(host ${source_${LANGUAGE}})
target_compile_options(host PRIVATE -Wall -Wextra -Wpedantic -Werror)

# The library is looked for in CMAKE_PREFIX_PATH alone.
set(CMAKE_FIND_USE_CMAKE_SYSTEM_PATH OFF)
set(CMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH OFF)
include(way.cmake)
EOF
    ln -s "$(cd ../.. && pwd)" "$work/kxmaths5"
    sed -n "/^\`\`\`$block\$/,/^\`\`\`\$/p" ../../docs/building.md | grep -v '^```' >"$work/block"

    cd "$work"
    case $block in
    cmake*)
        mv block way.cmake
        cmake -S . -B build -DLANGUAGE="$language" -DCMAKE_PREFIX_PATH="$prefix" >log
        if [ -d build/kxmaths5/tests ]; then
            echo "The library's tests would be built with a host." >&2
            exit 1
        fi
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
}

if [ $# -gt 1 ]; then
    shift
    one_host "$@"
    exit
fi

for language in C CXX; do
    ./hosts.sh "$prefix" "$language" shared 'cmake installed'
    ./hosts.sh "$prefix" "$language" static 'cmake installed static'
    ./hosts.sh "$prefix" "$language" shared 'sh pkg-config'
    ./hosts.sh "$prefix" "$language" static 'sh pkg-config static'
done

# Fails unless a change to a copy of what is installed is a fault to a host: control KIND BLOCK COMMAND...
control() {
    kind=$1 block=$2
    shift 2
    rm -rf "$work/changed"
    cp -R "$prefix" "$work/changed"
    "$@"
    if ./hosts.sh "$work/changed" C "$kind" "$block" >/dev/null 2>&1; then
        echo "A host built by '$block' does not notice: $*" >&2
        exit 1
    fi
}
control shared 'cmake installed' find "$work" -name kxmaths5-config.cmake -delete
control static 'cmake installed static' find "$work" -name '*-static-targets.cmake' \
    -exec sed -i 's/"KX_STATIC"/""/' {} +
control static 'cmake installed static' find "$work" -name '*-static-targets.cmake' \
    -exec sed -i '/INTERFACE_LINK_LIBRARIES/d' {} +
control shared 'sh pkg-config' find "$work" -name kxmaths5.pc -delete
control static 'sh pkg-config static' find "$work" -name kxmaths5.pc -exec sed -i '/Cflags.private/d' {} +
control static 'sh pkg-config static' find "$work" -name kxmaths5.pc -exec sed -i 's/ -lm$//' {} +

# pkg-config gives the version that the headers give.
version=$(awk '/#define KX_VERSION_/ { printf "%s%s", dot, $3; dot = "." }' \
    "$prefix/include/kxmaths5/types.h")
given=$(PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name kxmaths5.pc)") \
    pkg-config --modversion kxmaths5)
if [ "$given" != "$version" ]; then
    echo "pkg-config gives the version $given, the headers $version." >&2
    exit 1
fi

# A later version serves hosts of an earlier one with the same major number, and no others. A component that is not
# installed is not found. CMake says so.
rm -rf "$work/changed"
cp -R "$prefix" "$work/changed"
find "$work/changed" -name '*-static-targets.cmake' -delete
find "$work/changed" -name kxmaths5-config-version.cmake -exec sed -i "s/$version/${version%%.*}.1.0/" {} +
package=$(dirname "$(find "$work/changed" -name kxmaths5-config.cmake)")
# shellcheck disable=SC2016 # CMake's variables
echo 'find_package(kxmaths5 ${wanted} CONFIG REQUIRED COMPONENTS ${component})' >"$work/find.cmake"
while read -r wanted component answer; do
    if cmake -Dkxmaths5_DIR="$package" -Dwanted="$wanted" -Dcomponent="$component" -P "$work/find.cmake" \
        >"$work/log" 2>&1 || ! tr -s '\n ' ' ' <"$work/log" | grep -q "$answer"; then
        echo "Version $wanted with the component $component: CMake does not say '$answer' but" >&2
        cat "$work/log" >&2
        exit 1
    fi
done <<'EOF'
5 static There is no static library of kxmaths5 here
5.0 other There is no other library of kxmaths5 here
5.2 shared compatible with requested version "5.2"
4 shared compatible with requested version "4"
6 shared compatible with requested version "6"
EOF
