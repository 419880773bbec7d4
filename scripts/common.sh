# shellcheck shell=sh
# What every script begins with: --help prints the comment at its top; work goes on in the root directory.

case ${1-} in
-h | --help)
    sed -n '2,/^[^#]/{ s/^#$//p; s/^# //p; }' "$0"
    exit
    ;;
esac
cd "$(dirname "$0")/.."

# For arguments that make no sense.
refuse() {
    echo "${0##*/}: $1. Try --help." >&2
    exit 2
}

# refuse_any "$@": for a script that takes no arguments.
refuse_any() {
    [ $# -eq 0 ] || refuse "takes no arguments, but got $1"
}

require_preset() {
    grep -qF "\"name\": \"$1\"" CMakePresets.json || refuse "there is no preset $1"
}

# Builds the Python package without its tests; for what measures the library with NumPy.
build_python_package() {
    ./scripts/install g++ cmake make python3-dev python3-numpy python3-setuptools >&2
    # --force, since what is compiled includes a table that is made anew.
    (cd python && /usr/bin/python3 -W ignore setup.py --quiet build --force \
        --build-base ../build/numpy --build-lib ../build/numpy) >&2
    export PYTHONPATH="$PWD/build/numpy"
}
