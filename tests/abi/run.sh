#!/bin/sh
# Checks the module's functions and records against kxmaths5.abi, which hosts have been compiled for. abidiff
# finds types only in debug information, and is silent where there is none; so the same build is also
# changed, and the changes must be found.
set -eu
cd "$(dirname "$0")/../.."
./scripts/install abigail-tools g++ cmake ninja-build

work=build/abi
rm -rf "$work"
mkdir -p "$work"
cp -R CMakeLists.txt cmake include src "$work"
cmake -G Ninja -S "$work" -B "$work/build" -DCMAKE_BUILD_TYPE=Debug -DKX_INSTRUCTION_SET=baseline \
    -DKX_BUILD_TESTS=OFF -DKX_BUILD_EXAMPLES=OFF >/dev/null

# Builds the copy, and fails if it isn't what the baseline says.
compare() {
    cmake --build "$work/build" --parallel 2 >"$work/log" || {
        cat "$work/log" >&2
        exit 2
    }
    abidiff tests/abi/kxmaths5.abi "$work/build/src/libkxmaths5.so"
}

# Fails unless a change to a file of the copy is found: control FILE SED-EXPRESSION
control() {
    sed -i "$2" "$work/$1"
    if compare >/dev/null; then
        echo "abidiff does not find the change of $1: $2" >&2
        exit 1
    fi
    cp "$1" "$work/$1"
}

compare
control src/exports.txt /KXM4Copy/d
control include/kxmaths5/types.h 's/uint32_t host; /float    host; /'
