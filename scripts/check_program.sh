#!/usr/bin/env bash
# One small file that needs nothing but Windows: check_program.sh MIRELO.EXE
set -euo pipefail

largest=1500000
# What 64-bit Windows 10 and 11 bring along.
system_libraries=(advapi32.dll comdlg32.dll d2d1.dll dbghelp.dll dwrite.dll kernel32.dll msvcrt.dll
    shell32.dll user32.dll version.dll winhttp.dll winspool.drv)

failed=0
size=$(stat -c %s "$1")
if [ "$size" -gt "$largest" ]; then
    echo "$1 has $size bytes, more than $largest"
    failed=1
fi
imports=$(x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^\s*DLL Name: //p' | tr '[:upper:]' '[:lower:]' | sort)
[ -n "$imports" ] || { echo "$1 imports nothing: not a program"; failed=1; }
foreign=$(comm -23 <(echo "$imports") <(printf '%s\n' "${system_libraries[@]}" | sort))
if [ -n "$foreign" ]; then
    echo "$1 needs what Windows does not have:" $foreign
    failed=1
fi
exit "$failed"
