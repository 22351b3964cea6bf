# shellcheck shell=bash
about='KESTRAN12 on eight threads, with the thread sanitizer'
packages=$test_packages

# What the sanitizer reports fails the program.
eight_threads() {
  KESTRAN_ROUNDS=$1 quietly build/tsan/tests.log offline build/tsan/bin/kestran_tests --gtest_filter='Addin12Threads.*'
}

run_suite() { step 'tsan: build' build tsan kestran_tests && step 'tsan: tests' eight_threads 600; }
