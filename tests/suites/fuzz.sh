# shellcheck shell=bash
about='fuzzers of all that others hand over, with sanitizers: half a minute each'
packages="$test_packages clang-14 libclang-rt-14-dev=/usr/lib/llvm-14/lib/clang/14.0.6/lib/linux/libclang_rt.fuzzer-x86_64.a"

fuzzers=(records records12 formula deals c_api catalogue)

run_suite() {
  local fuzzer
  step 'fuzz: build' build fuzz || return
  for fuzzer in "${fuzzers[@]}"; do step "fuzz: $fuzzer" offline tests/fuzz/run fuzz "$fuzzer" 30; done
}
