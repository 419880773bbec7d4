#!/bin/sh
# The Debian packages: the same bytes from directories of two names; the digests of what is in them; and
# hosts of it, without installing it. The digests are printed by the program that ./scripts/test builds.
set -eu
cd "$(dirname "$0")/../.."
./scripts/install binutils pkg-config

work=build/package-test
rm -rf "$work"
./scripts/package "$work/one"
./scripts/package "$work/another/with-a-longer-name" >/dev/null
for package in "$work"/one/*.deb; do
    cmp "$package" "$work/another/with-a-longer-name/${package##*/}"
done

for package in "$work"/one/libkxmaths5-5_*.deb "$work"/one/libkxmaths5-dev_*.deb; do
    dpkg-deb --extract "$package" "$work/extracted"
done
library=$(find "$PWD/$work/extracted" -name 'libkxmaths5.so.5')
(cd "$work" && LD_LIBRARY_PATH=$(dirname "$library") ../../tests/module/digests.sh \
    ../../tools/digest/digests.txt ../../src/exports.txt ../gcc/tools/kx_digest)
./tests/install/hosts.sh "$work/extracted/usr"

# Headers are not installed with another version's module.
dev=$(echo "$work"/one/libkxmaths5-dev_*.deb)
dpkg-deb --field "$dev" Depends | grep -qF "libkxmaths5-5 (= $(dpkg-deb --field "$dev" Version))"

# gdb trusts a file of its own for each module in this directory, and nowhere else.
module=$(readlink -f "$library")
root=${module%/usr/lib/*}
[ "$(find "$root" -name '*-gdb.py')" = "$root/usr/share/gdb/auto-load${module#"$root"}-gdb.py" ]

# The guide, the description and the examples are those of the sources.
for directory in docs api examples; do
    diff -r "$directory" "$work/extracted/usr/share/doc/libkxmaths5-dev/$directory"
done
