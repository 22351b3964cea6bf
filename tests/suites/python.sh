# shellcheck shell=bash
about='the package for Python: prices, calls, pandas, Dask, xarray, types, pages, examples, installation with pip'
packages="$test_packages python3-dev=/usr/include/python3.11/Python.h python3-numpy python3-pytest python3-pandas
  python3-dask python3-xarray python3-matplotlib mypy python3-setuptools python3-wheel python3-pip python3-venv"

run_suite() {
  once 'python: build' build python kestran_python kestran kestran_addin || return
  step 'python: tests' quietly build/python/pytest.log offline env PYTHONPATH=build/python PYTHONDONTWRITEBYTECODE=1 \
    /usr/bin/python3 -m pytest -q -p no:cacheprovider tests/python
  step 'python: pip' quietly build/python/pip.log offline tests/python/installed.sh
}
