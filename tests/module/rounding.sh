#!/bin/sh
# Two builds give the same bits under each of a host's environments: rounding.sh PROGRAM PROGRAM
set -eu
mkdir -p build/rounding
for options in '--rounding up' '--rounding down' '--rounding zero' --flush '--rounding up --flush'; do
    # shellcheck disable=SC2086 # a list of options
    "$1" $options >build/rounding/first.txt
    # shellcheck disable=SC2086
    "$2" $options >build/rounding/second.txt
    diff build/rounding/first.txt build/rounding/second.txt || { echo "with $options: other bits"; exit 1; }
done
