#!/bin/sh
# Installs the library of a build into a folder of its own, and builds and runs a C and a C++ program against it: through
# find_package, pkg-config and add_subdirectory. All must print the same bits.
#   run.sh BUILD SOURCES
set -eu
build=$1
sources=$2
here=$(dirname "$(readlink -f "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --component library --prefix "$work/prefix" >"$work/log"

compiled() {  # NAME OPTIONS...: configures, builds and runs both programs
  name=$1
  shift
  if ! cmake -S "$here" -B "$work/$name" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="$flags" "$@" >"$work/log" ||
    ! cmake --build "$work/$name" -j2 >"$work/log"; then
    cat "$work/log"
    exit 1
  fi
  "$work/$name/c_program" >"$work/$name.c"
  "$work/$name/cpp_program" >"$work/$name.cpp"
}
flags=-O2
compiled found -DCMAKE_PREFIX_PATH="$work/prefix"
head -n 3 "$work/found.c" | cmp - "$work/found.cpp"

PKG_CONFIG_PATH=$work/prefix/lib/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
cc "$here/c_program.c" $(pkg-config --cflags --libs kestran) -Wl,-rpath,"$(pkg-config --variable=libdir kestran)" \
  -o "$work/with_pkg_config"
"$work/with_pkg_config" | cmp - "$work/found.c"

# The programs of docs/library.md, compiled as the page says, print what it says.
mkdir "$work/page"
block() {  # LANGUAGE
  awk -v fence="\`\`\`" -v language="$1" '$0 == fence language { on = 1; next } $0 == fence { on = 0 } on' "$sources/docs/library.md"
}
block c >"$work/page/prices.c"
block cpp >"$work/page/models.cpp"
block cmake >"$work/page/CMakeLists.txt"
block text >"$work/page/expected"
LD_LIBRARY_PATH=$work/prefix/lib
export LD_LIBRARY_PATH
(
  cd "$work/page"
  eval "$(block sh)"
  ./prices | cmp - expected
  if ! cmake -S . -B build -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/log" || ! cmake --build build >"$work/log"; then
    cat "$work/log"
    exit 1
  fi
  build/prices | cmp - expected
  test "$(build/models)" = "$(head -n 1 expected)"
)

# As part of another project: it configures, and leaves that project's warnings alone. With a third argument it is built.
cmake -S "$here" -B "$work/within" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKESTRAN_SOURCES="$sources" >"$work/log" ||
  { cat "$work/log"; exit 1; }
if grep -q Werror "$work/within/build.ninja"; then echo 'warnings end the build of a project that contains this one'; exit 1; fi
if [ -n "${3-}" ]; then
  cmake --build "$work/within" >"$work/log" || { cat "$work/log"; exit 1; }
  "$work/within/c_program" | cmp - "$work/found.c"
  "$work/within/cpp_program" | cmp - "$work/found.cpp"
fi

expected='EURO 8.143038210494090'
grep -q "^$expected" "$work/found.c" || { cat "$work/found.c"; exit 1; }
grep -q '^code 65535 RetType 90 is outside 0 to 8; 1 functions, delta of Price$' "$work/found.c"
exported=$(nm -D --defined-only "$work/prefix/lib/libkestran.so" | awk '{print $3}' | grep -v '^kestran_' || true)
[ -z "$exported" ] || { echo "exports beside the interface: $exported"; exit 1; }
echo 'installed library: passed'
