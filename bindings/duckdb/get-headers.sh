#!/bin/sh
# Puts the headers of DuckDB's C interface for extensions into a folder, from its package at npm.
#   get-headers.sh FOLDER
# The package is 11 MB; what is taken of it is checked.
set -eu
version=1.4.4
mkdir -p "$1"
cd "$1"
sums='cbe6a827284375c5a646b8f27dbd3a00808ce8738b5bbb49c190cb1e08540281  duckdb.h
514a5b639cd800e90f1556e8e039cff7f0b4a256e461754dd55caf79dc16db00  duckdb_extension.h'
check() { printf '%s\n' "$sums" | sha256sum --check --status 2>/dev/null; }
check && exit
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
timeout 300 npm pack --silent --pack-destination "$folder" "duckdb@$version" >"$folder/log" 2>&1 ||
  { cat "$folder/log" >&2; echo "duckdb: npm does not give the package duckdb $version" >&2; exit 1; }
tar -xzf "$folder/duckdb-$version.tgz" -C "$folder" --strip-components=5 \
  package/src/duckdb/src/include/duckdb.h package/src/duckdb/src/include/duckdb_extension.h
mv "$folder"/*.h .
check || { echo "duckdb: the headers of $version are not those known" >&2; exit 1; }
