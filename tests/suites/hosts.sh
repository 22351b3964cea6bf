# shellcheck shell=bash
about='the examples of all functions through the sheets, files of deals, Python, C and DuckDB in one process: the same bits, again and again'
packages="$test_packages python3-dev=/usr/include/python3.11/Python.h python3-numpy nodejs=node npm"

run_suite() {
  once 'linux: command' build linux kestran || return
  once 'python: build' build python kestran_python kestran kestran_addin || return
  step 'hosts: build' build linux kestran_addin kestran_addin12 kestran_shared kestran_sheet kestran_duckdb || return
  mkdir -p build/sql
  step 'hosts: install DuckDB' quietly build/sql/install.log tools/install-npm.sh tests/sql build/sql || return
  step 'hosts: twenty rounds' offline env PYTHONPATH=build/python PYTHONDONTWRITEBYTECODE=1 timeout 280 /usr/bin/python3 \
    tests/hosts/flat.py 'one process' 0 4 /usr/bin/python3 tests/hosts/soak.py 0 1
}
