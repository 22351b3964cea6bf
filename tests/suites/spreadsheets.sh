# shellcheck shell=bash
about='the workbook that teaches; Gnumeric: the add-in through its loader, and the plugin; the extension of LibreOffice Calc; help in Excel'
packages="$test_packages gnumeric libxml2-utils=xmllint zip libreoffice-dev=/usr/lib/libreoffice/sdk/bin/unoidl-write
  libreoffice-calc-nogui=/usr/lib/libreoffice/program/libsclo.so python3-uno=/usr/lib/python3/dist-packages/uno.py
  python3-xlsxwriter=/usr/lib/python3/dist-packages/xlsxwriter python3-openpyxl=/usr/lib/python3/dist-packages/openpyxl
  python3-pytest poppler-utils=pdftoppm"

# sheets NAME FILE SECONDS: the tests of a file.
sheets() {
  step "spreadsheets: $1" quietly "build/linux/$1.log" offline env PYTHONPATH=tests/spreadsheets PYTHONDONTWRITEBYTECODE=1 \
    timeout --kill-after=20 "$3" /usr/bin/python3 -m pytest -q -p no:cacheprovider "tests/spreadsheets/$2.py"
}

run_suite() {
  once 'linux: command' build linux kestran || return
  step 'spreadsheets: build' build linux kestran_addin kestran_gnumeric xlcall32_gnumeric example_calls make_intellisense \
    kestran_oxt || return
  step 'spreadsheets: Gnumeric, loader' offline timeout 300 tests/spreadsheets/gnumeric.sh loader
  step 'spreadsheets: Gnumeric, plugin' offline timeout 300 tests/spreadsheets/gnumeric.sh plugin
  sheets Calc test_calc 280
  step 'spreadsheets: IntelliSense' timeout 60 tests/spreadsheets/intellisense.sh
  sheets workbook test_workbook 400
}
