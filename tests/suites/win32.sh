# shellcheck shell=bash
about='32-bit Windows: KESTRAN.xll and kestran.exe, under a Wine of our own in ~/.cache/kestran (1 GB)'
packages="$test_packages g++-mingw-w64-i686-win32=i686-w64-mingw32-g++-win32"

run_suite() { . tests/windows.bash && windows_suite win32; }
