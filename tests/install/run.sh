#!/bin/sh
# Installs the library as docs/building.md shows, from directories of two names: the same bytes must come
# of both. Then moves what was installed, and builds hosts of it in every way that the document shows.
set -eu
cd "$(dirname "$0")/../.."
./scripts/install g++ cmake ninja-build pkg-config

work=build/install
rm -rf "$work"
for directory in "$work/one" "$work/another/with-a-longer-name"; do
    mkdir -p "$directory"
    cp -R CMakeLists.txt cmake debugger include src "$directory"
    for block in shared static; do
        sed -n "/^\`\`\`sh $block\$/,/^\`\`\`\$/p" docs/building.md | grep -v '^```' >"$directory/block"
        (cd "$directory" && PREFIX=$PWD/installed sh -eu block >log) || {
            cat "$directory/log"
            exit 1
        }
    done
done
diff -r "$work/one/installed" "$work/another/with-a-longer-name/installed"
if grep -rF "$work/one" "$work/one/installed"; then
    echo "An installed file contains the directory where it was built or installed." >&2
    exit 1
fi

mv "$work/one/installed" "$work/moved"
./tests/install/hosts.sh "$work/moved"
for language in C CXX; do
    ./tests/install/hosts.sh "$work/moved" "$language" shared 'sh compiler'
    ./tests/install/hosts.sh "$work/moved" "$language" static 'sh compiler static'
done
./tests/install/hosts.sh "$work/moved" C static 'cmake subdirectory static'
