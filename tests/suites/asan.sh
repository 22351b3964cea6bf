# shellcheck shell=bash
about='Linux with the address and undefined-behaviour sanitizers'
packages=$test_packages

run_suite() { step 'asan: build' build asan && step 'asan: tests' run asan; }
