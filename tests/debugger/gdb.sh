#!/bin/sh
# Repeats a transcript of gdb and compares all that it shows: gdb.sh GDB OBJECT TRANSCRIPT, at the root of
# the sources. The records are in the object file, so nothing needs to run.
set -eu

# Each command is echoed, as if it had been typed.
sed -n 's/^(gdb) \(.*\)/echo (gdb) \1\\n\n\1/p' "$3" >"$3.gdb"
"$1" -nx -batch -x "$3.gdb" "$2" 2>&1 | diff "$3" -
