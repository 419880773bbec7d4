#!/bin/sh
# Pastes the commands of pages, in their order, on a machine that has nothing but Debian's minimum and
# sudo, which is a directory to this one: commands.sh PAGE...
#
# Needs root, for which it asks sudo, and takes a few minutes: nearly all of it is for packages. A bare root
# directory that an earlier run has left in build/bare is used again as it is.
set -eu
[ "$(id -u)" -eq 0 ] || exec sudo -- "$0" "$@"
cd "$(dirname "$0")/../.."
./scripts/install debootstrap

root=$PWD/build/bare
suite=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
mirror=$(apt-get indextargets --format '$(REPO_URI)' "Codename: $suite" 'Created-By: Packages' | head -n 1)
if ! [ -d "$root" ]; then
    echo "Making a bare $suite in build/bare"
    mkdir -p build
    debootstrap --variant=minbase --include=sudo "$suite" "$root" "$mirror" >build/bare.log || {
        cat build/bare.log >&2
        exit 1
    }
fi
rm -f "$root/etc/apt/sources.list"
cp -R /etc/apt/. "$root/etc/apt/"
echo 'APT::Get::Assume-Yes "true";' >"$root/etc/apt/apt.conf.d/99-yes"
chroot "$root" apt-get update -q >/dev/null

# Files as they are here, also those that are not committed yet.
rm -rf "$root/root/kxmaths5"
mkdir "$root/root/kxmaths5"
git ls-files -z --cached --others --exclude-standard | tar -c --null --files-from - |
    tar -x -C "$root/root/kxmaths5"

# A shell script of a page: its boxes of commands, "sh", as they are, and its programs as files that are named after
# their box: the box "c host" becomes host.c.
script_of() {
    awk '
        /^```$/ && program { print "KX_END_OF_PROGRAM" }
        /^```/ {
            kind = kind ? "" : substr($0, 4) " other"
            program = kind ~ /^(c|cpp|lua|fortran) [^ ]+ other$/
            if (program) {
                print "cat >" $2 "." (/fortran/ ? "f90" : substr($1, 4)) " <<\"KX_END_OF_PROGRAM\""
            }
            next
        }
        program || kind ~ /^sh /
    ' "$1"
}

for page in "$@"; do
    echo "== $page"
    script_of "$page" >"$root/root/page.sh"
    grep -q . "$root/root/page.sh" || {
        echo "$page has no commands." >&2
        exit 1
    }
    # The mount is gone with the commands.
    env -i PATH="$PATH" HOME=/root DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 unshare --mount \
        sh -c 'mount -t proc proc "$1/proc" && exec chroot "$1" sh -c "cd /root/kxmaths5 && exec sh -eux /root/page.sh"' \
        sh "$root" >build/page.log 2>&1 </dev/null || {
        tail -n 40 build/page.log >&2
        echo "$page: the last of these commands failed." >&2
        exit 1
    }
done
rm -rf "$root"
