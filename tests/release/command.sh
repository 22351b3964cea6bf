#!/bin/bash
# command.sh OUT FORMULAS: the package kestran in a fresh Debian: the command with both add-ins answers the lines of FORMULAS
# as the build here does, completion and manual page are found, and programs in C and C++ are compiled with what it brings.
set -euo pipefail
out=$1 formulas=$2
. tests/release/root.bash
fresh_root command
install "$out"/kestran_*_amd64.deb

for addin in '' libkestran_addin.so libkestran12.so; do
  build/linux/bin/kestran ${addin:+--library "build/linux/bin/$addin"} <"$formulas" >"$roots/built" 2>/dev/null || [ $? = 2 ]
  inside kestran ${addin:+--library "/usr/lib/kestran/$addin"} <"$formulas" >"$roots/installed" 2>/dev/null || [ $? = 2 ]
  cmp "$roots/built" "$roots/installed"
  [ "$(wc -l <"$roots/built")" = "$(wc -l <"$formulas")" ]
done

completed=$(
  # shellcheck source=/dev/null
  . "$root/usr/share/bash-completion/completions/kestran"
  # shellcheck disable=SC2034
  COMP_WORDS=(kestran --describe euro_f) COMP_CWORD=2
  _kestran
  echo "${COMPREPLY[*]}"
)
[ "$completed" = EURO_Forward ] || { echo "euro_f is completed to $completed"; exit 1; }

export PKG_CONFIG_LIBDIR=$root/usr/lib/pkgconfig
read -ra options < <(pkg-config --cflags --libs kestran)
cc tests/installed/c_program.c "${options[@]}" -o "$root/tmp/c_program"
g++ tests/installed/cpp_program.cpp -I"$root/usr/include" -I"$root/usr/include/kestran" "$root/usr/lib/libkestran.a" -lpthread \
  -o "$root/tmp/cpp_program"
inside /tmp/c_program >"$roots/c"
inside /tmp/cpp_program >"$roots/cpp"
head -n 3 "$roots/c" | cmp - "$roots/cpp"
grep -q '^EURO 8\.1430382104940' "$roots/c"

install man-db
inside man kestran >"$roots/page"
grep -q 'EURO_Forward' "$roots/page"
removed kestran
