# shellcheck shell=bash
about='the WebAssembly module and its npm package in Node; the output of all formulas is that of Linux to the byte'
packages="$test_packages $wasm_packages npm python3"

# Numbers that are hard to read and to write.
exact_numbers() {
  timeout 60 node tests/web/numbers.mjs 200000 >build/wasm/numbers &&
    build/linux/bin/kestran <build/wasm/numbers >build/wasm/numbers.linux &&
    offline timeout 100 node web/price.mjs <build/wasm/numbers >build/wasm/numbers.out &&
    cmp build/wasm/numbers.linux build/wasm/numbers.out
}

run_suite() {
  once 'linux: command' build linux kestran || return
  once 'wasm: build' build wasm || return
  step 'wasm: same output' same_output build/wasm timeout 100 node web/price.mjs
  step 'wasm: exact numbers' exact_numbers
  step 'wasm: pictures' tests/web/pictures.sh
  mkdir -p build/web
  once 'web: install' quietly build/web/install.log tools/install-npm.sh tests/web build/web &&
    step 'wasm: package' offline timeout 240 tests/web/package.sh
  step 'wasm: twenty rounds' offline timeout 100 /usr/bin/python3 tests/hosts/flat.py Node 0 1024 node --expose-gc tests/web/soak.mjs 0 1
}
