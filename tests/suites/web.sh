# shellcheck shell=bash
about='the WebAssembly module in Chromium and Firefox, headless: the bits of Linux'
packages="$test_packages $wasm_packages npm chromium firefox-esr"

run_suite() {
  once 'linux: command' build linux kestran || return
  once 'wasm: build' build wasm || return
  mkdir -p build/web
  once 'web: install' quietly build/web/install.log tests/web/install.sh || return
  step 'web: module' timeout --kill-after=20 280 node tests/web/module.mjs
}
