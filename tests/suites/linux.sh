# shellcheck shell=bash
about='Linux: formatting, scripts, what they download, the command and the add-in'
packages="$test_packages clang-format shellcheck"

formatted() { sources '*.h' '*.cpp' | xargs -r clang-format --dry-run -Werror; }

checked_scripts() { sources '*.sh' '*.bash' | xargs -r shellcheck -x run-tests kestran tools/make-pictures tools/make-workbook tools/make-release .ci/run bench/run bench/python/run bindings/web/build web/build web/print bench/sql/run bench/cluster/run tests/fuzz/run tests/fuzz/long tests/soak; }

run_suite() {
  step 'format' formatted
  step 'scripts' checked_scripts
  step 'downloads' tests/downloads.sh
  step 'linux: build' build linux && step 'linux: tests' run linux
}
