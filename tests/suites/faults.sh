# shellcheck shell=bash
about='memory that runs out, full disks, closed streams, signals, set-ups that are killed or cannot be, 100 first calls at once'
packages="$test_packages python3-dev=/usr/include/python3.11/Python.h python3-numpy"

run_suite() {
  once 'python: build' build python kestran_python kestran kestran_addin || return
  step 'faults: build' build linux kestran kestran_shared failing_memory || return
  local library=$PWD/build/linux/lib/libfailing_memory.so
  step 'faults: memory' quietly build/linux/faults.log env LD_PRELOAD="$library" PYTHONPATH=build/python PYTHONDONTWRITEBYTECODE=1 \
    timeout 300 /usr/bin/python3 tests/faults/memory.py "$library" build/linux/bin/kestran build/linux/lib/libkestran.so
  step 'faults: command' timeout 120 tests/faults/command.sh "$PWD/build/linux/bin/kestran"
  step 'faults: first calls' timeout 120 tests/faults/first_calls.sh
}
