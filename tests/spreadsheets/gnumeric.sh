#!/bin/bash
# The functions in Gnumeric, without a display and with a home of its own.
#   gnumeric.sh loader   the add-in, unchanged, through Gnumeric's own loader of add-ins
#   gnumeric.sh plugin   the plugin
#   gnumeric.sh workbook FILE.xlsx OUT.xlsx   with the plugin, a workbook that calls the functions, worked out anew
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
bin=$PWD/build/linux/bin
version=$(ssconvert --version 2>&1 | sed -n "s/.*version '\([0-9.]*\)'.*/\1/p")
folder=$(mktemp -d /tmp/kestran_gnumeric.XXXXXX) || exit
trap 'rm -rf "$folder"' EXIT
trap 'exit 1' HUP INT TERM
unset DISPLAY WAYLAND_DISPLAY GNUMERIC_PLUGIN_PATH
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home/.config XDG_RUNTIME_DIR=$folder LC_ALL=C.UTF-8
plugins=$HOME/.gnumeric/$version/plugins
mkdir -p "$plugins"
failed=0
environment=()

same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  printf '%s\n  expected: %s\n  got:      %s\n' "$1" "$2" "${3:0:2000}"
  failed=1
}

# convert IN OUT [OPTION...]: any word of Gnumeric is a failure, unless quiet is no.
convert() {
  timeout 120 env "${environment[@]}" ssconvert --recalc "${@:3}" "$1" "$2" >"$folder/said" 2>&1 || same "ssconvert $1" 'exit status 0' $?
  [ "${quiet-}" = no ] || same "ssconvert $1" '' "$(cat "$folder/said")"
}

# calls NAME: the workbook of the formulas of NAME.formulas, as they stand and with references.
calls() {
  /usr/bin/python3 tests/spreadsheets/make_calls.py "$bin/kestran" "$folder/$1.xlsx" "$folder/$1.expected" <"$folder/$1.formulas"
}

# answers NAME WORKBOOK: it shows what the command answers to NAME.formulas.
answers() {
  convert "$2" "$folder/$1.%s.csv" -S
  /usr/bin/python3 tests/spreadsheets/compare_calls.py "$folder/$1.expected" "$folder/$1.Inline.csv" "$folder/$1.Cells.csv" || failed=1
}

# As the page for users says.
install_plugin() { eval "$(sed -n '/^mkdir.*\.gnumeric/,/^cp/p' docs/gnumeric.md)" || failed=1; }

shows() {  # FORMULA EXPECTED: where cells A9 to E9 hold 100, text, TRUE, #N/A and nothing
  printf '"%s"\n\n\n\n\n\n\n\n100,text,TRUE,#N/A\n' "${1//\"/\"\"}" >"$folder/shows.csv"
  convert "$folder/shows.csv" "$folder/shown.csv"
  same "$1" "$2" "$(head -n 1 "$folder/shown.csv" | sed 's/,*$//')"
}

"$bin/example_calls" | cut -f1 >"$folder/examples.formulas"
same 'functions among the examples' "$("$bin/kestran" --list | cut -f1 | sort)" \
  "$(sed 's/^=//; s/(.*//' "$folder/examples.formulas" | sort -u)"

case $1 in
  loader)
    # A second loader, beside the one that Gnumeric starts without an add-in: each takes what stands in its own folder. The
    # add-in finds the xlcall32 that is loaded first.
    mkdir "$plugins/loader"
    cp "/usr/lib/gnumeric/$version/plugins/excelplugins/plugin.so" build/linux/gnumeric/loader/xlcall32.so "$plugins/loader/"
    cp "$bin/libkestran_addin.so" "$plugins/loader/KESTRAN.xll"
    sed 's/id="KESTRAN"/id="KESTRAN_loader"/; s/value="kestran"/value="plugin"/' bindings/gnumeric/plugin.xml >"$plugins/loader/plugin.xml"
    environment+=("LD_PRELOAD=$plugins/loader/xlcall32.so")
    calls examples
    # The loader counts the functions aloud, and stumbles at its end over the one whose name Gnumeric has, too.
    quiet=no answers examples "$folder/examples.xlsx"
    same 'the loader' "$((2 * $("$bin/kestran" --list | wc -l)))" "$(sed -n 's/.*Loaded \([0-9]*\) functions.*/\1/p' "$folder/said")"
    ;;
  workbook)
    install_plugin
    # Gnumeric has words on colours that it does not know.
    quiet=no convert "$2" "$3"
    ;;
  plugin)
    install_plugin
    same 'installed' 'kestran.so plugin.xml' "$(find "$plugins/kestran" -type f -printf '%f\n' | sort | xargs)"
    calls examples
    answers examples "$folder/examples.xlsx"
    convert "$folder/examples.xlsx" "$folder/saved.xlsx"
    answers examples "$folder/saved.xlsx"

    # All formulas of the tests, but those that Gnumeric reads otherwise: text of digits in braces, a last cell left
    # out, and a result that is no number handed on, which is an error there.
    cat tests/data/*.cases | grep -v '^#' | cut -f1 | grep -vxF -e 'EURO({"100"},95,0.05,0.02,0.25,90,1,0)' \
      -e 'BASVOLT({100,102,104},{0.3,0.28,},{0.5,0.3,0.2},{0.25,0.5,2},{0.95,0.9,0.97},1,0)' \
      -e 'EURO(100,95,0.05,0.02,0.25,90,EURO(-1,1,0,0,1,1,1,0),0)' >"$folder/cases.formulas"
    calls cases
    answers cases "$folder/cases.xlsx"
    [ "$(wc -l <"$folder/cases.expected")" -ge 400 ] || same 'cases' 'at least 400' "$(wc -l <"$folder/cases.expected")"

    # The table of the README, as people type it.
    # shellcheck disable=SC2016
    sed -n 's/^| .* | `\(=.*\)` | \([-0-9.]*\) |$/\1\t\2/p' README.md >"$folder/readme"
    sed 's/\t.*//; s/.*/"&"/' "$folder/readme" >"$folder/typed.csv"
    convert "$folder/typed.csv" "$folder/shown.csv"
    same 'README' "$(cut -f2 "$folder/readme")" "$(awk '{printf "%.6f\n", $1}' "$folder/shown.csv")"

    terms='95,5%,2%,25%,90,1'
    shows "=EURO(100,$terms,0)" 8.143038210494090379
    shows "=EURO(100,$terms,0,0)" '#N/A'
    shows "=EURO(100,95)" '#65535!'
    shows "=EURO(A9,$terms,9)" '#65535!'
    shows "=EURO(EURO(A9,$terms,9),$terms,0)" '#65535!'
    shows "=EURO(E9,$terms,0)" '#65535!'
    shows "=EURO(B9,$terms,0)" '#VALUE!'
    shows "=EURO(C9,$terms,0)" '#VALUE!'
    shows "=EURO(D9,$terms,0)" '#N/A'
    shows "=EURO(D9,95,5%,2%,1/0,90,1,0)" '#DIV/0!'
    shows "=EURO(1/0,95,5%,2%,(D9),90,1,0)" '#N/A'
    shows "=EURO(A9:B9,$terms,0)" '#VALUE!'
    shows "=EURO(A:A,$terms,0)" '#VALUE!'
    shows "=EURO((A9,B9),$terms,0)" '#VALUE!'
    shows '=BASVOL(A9:A9,0.25,0,1,1,(A9))' 0.24999999999999994449
    shows '=BASVOL(A9:D9,0.3,0,1,1,1)' '#VALUE!'
    shows '=BASVOL(A9,0.3,0,1,1,D9)' '#VALUE!'
    shows '=BASVOL(A9,0.3,0,1,1,NA())' '#N/A'
    shows '=MMULT({1,2},{3;4})+0*EUROCONVERT(1,"DEM","EUR")' 11

    timeout 60 env PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 tests/spreadsheets/gnumeric_help.py "$(ldd "$(command -v ssconvert)" | awk '/libspreadsheet/ {print $3}')" \
      "$bin/kestran" || failed=1
    tests/page_test.sh docs/gnumeric.md "$bin/kestran" || failed=1
    ;;
esac
exit $failed
