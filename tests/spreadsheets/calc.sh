#!/bin/bash
# The extension for LibreOffice Calc: what is in the file, and what Calc makes of it.
#   calc.sh PRESET   the build whose extension and command are tested
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
files=build/$1/libreoffice/files
folder=$(mktemp -d /tmp/kestran_calc.XXXXXX) || exit
trap 'rm -rf "$folder"' EXIT
failed=0

# The same files, copied by another user at another time in another order, make the same extension.
(umask 077 && for file in $(cd "$files" && find . -type f | sort -r); do
  mkdir -p "$folder/files/$(dirname "$file")" && cp "$files/$file" "$folder/files/$file"
done)
TZ=Asia/Tokyo LC_ALL=C.UTF-8 bindings/libreoffice/pack.sh "$folder/KESTRAN.oxt" "$folder/files"
cmp "$folder/KESTRAN.oxt" "build/$1/KESTRAN.oxt" || failed=1

# It needs what LibreOffice brings or needs itself, and knows nothing of this machine.
readelf -d "$files/kestran.so" >"$folder/needs"
if sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p' "$folder/needs" | grep -vxE 'libuno_(cppu|cppuhelpergcc3|sal)\.so\.3|lib(stdc\+\+|m|gcc_s|c)\.so\.[0-9]'; then
  echo 'is needed beyond what LibreOffice brings'
  failed=1
fi
if grep -E 'R(UN)?PATH' "$folder/needs" || grep -rlF "$PWD" "$files"; then
  echo 'holds paths of this machine'
  failed=1
fi

PYTHONPATH=tests/spreadsheets PYTHONDONTWRITEBYTECODE=1 KESTRAN_BUILD=build/$1 \
  /usr/bin/python3 -m pytest -q -p no:cacheprovider --basetemp="$folder/pytest" tests/spreadsheets/test_calc.py || failed=1
exit $failed
