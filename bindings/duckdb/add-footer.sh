#!/bin/sh
# Makes a library a DuckDB extension: the library, then the 534 bytes by which DuckDB knows it.
#   add-footer.sh LIBRARY EXTENSION VERSION
# They are the head of a WebAssembly section, eight fields of 32 bytes, the last one first, and room for a
# signature. The fields say the layout of the footer, the platform, the version of the C interface that is asked for,
# the extension's own version and that it uses the C interface.
set -eu
nothing() { head -c "$1" /dev/zero; }
field() { printf '%s' "$1" && nothing $((32 - ${#1})); }
{
  cat "$1"
  printf '\000\223\004\020duckdb_signature\200\004'
  for text in '' '' '' C_STRUCT "v$3" v1.2.0 linux_amd64 4; do field "$text"; done
  nothing 256
} >"$2.part"
mv "$2.part" "$2"
