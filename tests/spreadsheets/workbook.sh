#!/bin/bash
# The workbook that teaches, in this build's command, in Calc and in Gnumeric.
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
folder=$(mktemp -d /tmp/kestran_workbook.XXXXXX) || exit
trap 'rm -rf "$folder"' EXIT
trap 'exit 1' HUP INT TERM
failed=0

PYTHONPATH=tests/spreadsheets PYTHONDONTWRITEBYTECODE=1 \
  /usr/bin/python3 -m pytest -q -p no:cacheprovider --basetemp="$folder/pytest" tests/spreadsheets/test_workbook.py || failed=1

# From any folder, and where a file of the name stands already.
make=$PWD/tools/make-workbook
(cd "$folder" && "$make" KESTRAN.xlsx && "$make" KESTRAN.xlsx) || failed=1
tests/spreadsheets/gnumeric.sh workbook "$folder/KESTRAN.xlsx" || failed=1
exit $failed
