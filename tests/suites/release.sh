# shellcheck shell=bash
about='the release: packages in a fresh Debian of their own (chroot, as root), the zip file under Wine, sums, signatures, versions'
packages="$test_packages $(. tools/release/lib.bash && release_packages | xargs) git unzip openssl osslsigncode debootstrap"

run_suite() {
  . tests/windows.bash
  local out=$PWD/build/release-test/out unpacked=$PWD/build/release-test/unpacked
  rm -rf build/release-test
  mkdir -p build/release-test "$unpacked"
  step 'release: refusals' tests/release/refusals.sh
  once 'linux: command' build linux kestran &&
    once 'linux: KESTRAN12' build linux kestran_addin12 &&
    once 'python: build' build python kestran_python kestran kestran_addin &&
    once 'wasm: build' build wasm &&
    step 'release: programs for Wine' release_programs || return
  export SOURCE_DATE_EPOCH=1700000000
  step 'release: made' timeout 900 tools/release/make.sh "$out" || return
  step 'release: contents' timeout 120 tests/release/contents.py "$out" "$unpacked"
  step 'release: same bytes' timeout 900 tests/release/same_bytes.sh "$out"
  formulas >build/release-test/formulas
  step 'release: command' timeout 900 tests/release/command.sh "$out" build/release-test/formulas
  step 'release: Python' timeout 400 tests/release/python.sh "$out"
  step 'release: PostgreSQL' timeout 400 tests/release/postgres.sh "$out"
  step 'release: Gnumeric' timeout 400 tests/release/gnumeric.sh "$out"
  step 'release: npm' timeout 120 tests/release/npm.sh "$out"
  if ! once 'wine: set up' set_up_wine || ! hold_wine; then
    echo '** WINE COULD NOT BE SET UP: THE ZIP FILE WAS NOT TRIED **'
    return 1
  fi
  step 'release: zip file' tests/release/windows.sh "$unpacked"/KESTRAN-*-windows.zip build/release-test/formulas
  step 'release: signing' timeout 300 tests/release/signing.sh "$out"
}

release_programs() { build win32 kestran && build win64 kestran; }
