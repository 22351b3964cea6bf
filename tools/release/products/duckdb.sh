# shellcheck shell=bash
# The extension of DuckDB, whose file must have this name. Its headers come through npm.
packages='zip npm'

make_product() {
  built linux kestran_duckdb
  mkdir "$stage/root"
  cp build/linux/duckdb/kestran.duckdb_extension THIRD-PARTY-NOTICES "$stage/root/"
  zipped "$stage/root" "$out/kestran-$version-duckdb.zip"
}
