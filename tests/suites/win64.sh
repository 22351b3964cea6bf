# shellcheck shell=bash
about='64-bit Windows: KESTRAN.xll and kestran.exe, under a Wine of our own in ~/.cache/kestran (1 GB)'
packages="$test_packages g++-mingw-w64-x86-64-win32=x86_64-w64-mingw32-g++-win32"

run_suite() { . tests/windows.bash && windows_suite win64; }
