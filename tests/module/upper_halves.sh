#!/bin/sh
# No function of the module returns, or jumps to another one, while the upper halves of vector registers are in use:
# SSE code would run many times slower after it. g++ 12 leaves vzeroupper out where a 256-bit function ends in a call
# within its file. upper_halves.sh LIBRARY
set -eu
listing=$("${OBJDUMP:-objdump}" -d --no-show-raw-insn "$1")
# Straight code is looked at: what an unconditional jump is followed by may be reached from anywhere.
printf '%s\n' "$listing" | awk '
    /^[0-9a-f]+ <.*>:$/ { name = substr($2, 2, length($2) - 3); used = 0; next }
    /\tvzeroupper/ { used = 0; seen = 1; next }
    /\t(ret|jmp)/ {
        leaves = $2 == "ret" || (index($0, "<") && index($0, "<" name "+") == 0 && index($0, "<" name ">") == 0)
        if (used && leaves) { print name ": " $0; found = 1 }
        used = 0
    }
    /%[yz]mm([0-9]|1[0-5])([^0-9]|$)/ { used = 1 }
    END {
        if (!seen) print "no vzeroupper in the whole module"
        exit found || !seen
    }' >&2
