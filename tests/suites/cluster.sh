# shellcheck shell=bash
about='prices on a cluster: a scheduler and three workers of Dask, one of which is killed'
packages="$test_packages python3-dev=/usr/include/python3.11/Python.h python3-numpy python3-pytest python3-pandas
  python3-dask python3-distributed=dask-scheduler"

# The options of the run in which a worker dies: as many as KESTRAN_CLUSTER_OPTIONS says.
run_suite() {
  once 'python: build' build python kestran_python kestran kestran_addin || return
  step 'cluster: tests' quietly build/python/cluster.log timeout --kill-after=20 230 env PYTHONPATH=build/python \
    PYTHONDONTWRITEBYTECODE=1 DASK_CONFIG="$run" KESTRAN_CLUSTER_OPTIONS="${KESTRAN_CLUSTER_OPTIONS:-50000000}" \
    /usr/bin/python3 -m pytest -q -p no:cacheprovider --durations=4 tests/cluster
}
