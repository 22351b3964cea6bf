# shellcheck shell=bash
about='Gnumeric: the add-in through its loader, and the plugin; the help for Excel while a formula is typed'
packages="$test_packages gnumeric libxml2-utils=xmllint"

run_suite() {
  once 'linux: command' build linux kestran || return
  step 'spreadsheets: build' build linux kestran_addin kestran_gnumeric xlcall32_gnumeric example_calls make_intellisense || return
  step 'spreadsheets: Gnumeric, loader' timeout 300 tests/spreadsheets/gnumeric.sh loader
  step 'spreadsheets: Gnumeric, plugin' timeout 300 tests/spreadsheets/gnumeric.sh plugin
  step 'spreadsheets: IntelliSense' timeout 60 tests/spreadsheets/intellisense.sh
}
