# shellcheck shell=bash
about='PostgreSQL and DuckDB: the extensions, on a server of their own and in Node'
packages="$test_packages postgresql-15=/usr/lib/postgresql/15/bin/initdb
  postgresql-server-dev-15=/usr/include/postgresql/15/server/fmgr.h nodejs=node npm"

run_suite() {
  once 'linux: command' build linux kestran || return
  step 'sql: build' build linux kestran_postgres make_sql kestran_duckdb example_calls || return
  step 'sql: PostgreSQL' offline timeout 280 tests/sql/postgres.sh linux
  mkdir -p build/sql
  step 'sql: install DuckDB' quietly build/sql/install.log tools/install-npm.sh tests/sql build/sql &&
    step 'sql: DuckDB' offline timeout 280 node tests/sql/duckdb.mjs linux
}
