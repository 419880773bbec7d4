#!/bin/sh
# Hosts of an installed library, by its CMake package and its pkg-config file: hosts.sh PREFIX
set -eu
prefix=$(cd "$1" && pwd)
cd "$(dirname "$0")"

for language in C CXX; do
    ./host.sh "$prefix" "$language" shared 'cmake installed'
    ./host.sh "$prefix" "$language" static 'cmake installed static'
    ./host.sh "$prefix" "$language" shared 'sh pkg-config'
    ./host.sh "$prefix" "$language" static 'sh pkg-config static'
done

# Fails unless a change to a copy of what is installed is a fault to a host: control KIND BLOCK COMMAND...
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
control() {
    kind=$1 block=$2
    shift 2
    rm -rf "$work/changed"
    cp -R "$prefix" "$work/changed"
    "$@"
    if ./host.sh "$work/changed" C "$kind" "$block" >/dev/null 2>&1; then
        echo "A host built by '$block' does not notice: $*" >&2
        exit 1
    fi
}
control shared 'cmake installed' find "$work" -name kxmaths5-config.cmake -delete
control shared 'cmake installed' find "$work" -name kxmaths5-config-version.cmake \
    -exec sed -i 's/"5\./"6./' {} +
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

# A component that is not installed is not found, and CMake says so.
rm -rf "$work/changed"
cp -R "$prefix" "$work/changed"
find "$work/changed" -name '*-static-targets.cmake' -delete
package=$(dirname "$(find "$work/changed" -name kxmaths5-config.cmake)")
# shellcheck disable=SC2016 # CMake's variable
echo 'find_package(kxmaths5 5 CONFIG REQUIRED COMPONENTS ${component})' >"$work/find.cmake"
for component in static other; do
    if cmake -Dkxmaths5_DIR="$package" -Dcomponent=$component -P "$work/find.cmake" >"$work/log" 2>&1 ||
        ! grep -q "There is no $component library of kxmaths5 here" "$work/log"; then
        echo "The component $component is not installed, and is not said to be missing:" >&2
        cat "$work/log" >&2
        exit 1
    fi
done
