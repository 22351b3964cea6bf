# shellcheck shell=bash
about='one deal of every function through the sheet, files of deals, Python, PostgreSQL and DuckDB: the same bits'
packages="$test_packages python3-dev=/usr/include/python3.11/Python.h python3-numpy
  postgresql-15=/usr/lib/postgresql/15/bin/initdb postgresql-server-dev-15=/usr/include/postgresql/15/server/fmgr.h
  nodejs=node npm"

run_suite() {
  once 'linux: command' build linux kestran || return
  once 'python: build' build python kestran_python kestran kestran_addin || return
  step 'hosts: build' build linux kestran_postgres make_sql kestran_duckdb example_calls || return
  mkdir -p build/sql
  step 'hosts: install DuckDB' quietly build/sql/install.log tools/install-npm.sh tests/sql build/sql || return
  step 'hosts: same bits' offline timeout 280 tests/hosts/same_bits.sh
}
