#!/bin/bash
# same_bytes.sh OUT: the same release again, by a user with other settings, has the same bytes.
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
umask 077
TZ=Pacific/Auckland LC_ALL=C XZ_OPT=-0 GZIP=-1 tools/release/make.sh "$work/again"
diff -r "$out" "$work/again"

# The 64-bit add-ins compiled anew, in another folder of a machine with another name.
mkdir "$work/elsewhere"
tar -c --exclude=./build --exclude=./.git . | tar -x -C "$work/elsewhere"
unset CMAKE_CXX_COMPILER_LAUNCHER CMAKE_CXX_FLAGS
# shellcheck disable=SC2016
TZ=Pacific/Auckland LC_ALL=C unshare --uts sh -c 'hostname elsewhere && cd "$0" && cmake --preset win64 &&
  cmake --build --preset win64 --target kestran_addin kestran_addin12' "$work/elsewhere" >"$work/log" 2>&1 || { tail -n 40 "$work/log"; exit 1; }
for addin in KESTRAN KESTRAN12; do cmp "build/win64/bin/$addin.xll" "$work/elsewhere/build/win64/bin/$addin.xll"; done
