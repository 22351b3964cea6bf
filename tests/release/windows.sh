#!/bin/bash
# windows.sh FOLDER FORMULAS: the add-ins of the unpacked zip file answer the lines of FORMULAS as the Linux build does, loaded
# by the programs of build/win32 and build/win64.
set -euo pipefail
folder=$1 formulas=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
while read -r addin linux; do
  build/linux/bin/kestran --library "build/linux/bin/$linux" <"$formulas" >"$work/linux" 2>/dev/null || [ $? = 2 ]
  for bits in 32 64; do
    timeout 300 tools/run-windows.sh "build/win$bits/bin/kestran.exe" --library "$folder/$bits-bit/$addin" <"$formulas" \
      >"$work/windows" 2>/dev/null || [ $? = 2 ]
    cmp "$work/linux" "$work/windows"
  done
done <<LIBRARIES
KESTRAN.xll libkestran_addin.so
KESTRAN12.xll libkestran12.so
LIBRARIES
[ "$(wc -l <"$work/linux")" = "$(wc -l <"$formulas")" ]
