# shellcheck shell=bash
about='the WebAssembly module and the site in Chromium and Firefox, headless: the bits of Linux'
packages="$test_packages $wasm_packages npm chromium firefox-esr"

run_suite() {
  once 'linux: command' build linux kestran || return
  once 'wasm: build' build wasm || return
  mkdir -p build/web
  once 'web: install' quietly build/web/install.log tools/install-npm.sh tests/web build/web || return
  step 'web: module' timeout --kill-after=20 280 node tests/web/module.mjs
  step 'web: site' site || return
  step 'web: formulas' node tests/web/reference.mjs
  step 'web: the same site on paper' same_on_paper
  step 'web: every page' timeout --kill-after=20 580 node tests/web/site_all.mjs
  step 'web: pages in both browsers' timeout --kill-after=20 280 node tests/web/site.mjs
}

site() { quietly build/web/site.log web/build --pdf build/site; }

# Printed a second time the reference has the same bytes.
same_on_paper() {
  mv build/site/KESTRAN-reference.pdf build/web/first.pdf &&
    quietly build/web/print.log web/print build/site && cmp build/web/first.pdf build/site/KESTRAN-reference.pdf
}
