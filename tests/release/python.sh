#!/bin/bash
# python.sh OUT: the package for Python in a fresh Debian: every function gives its example the bits of the build here.
set -euo pipefail
out=$1
. tests/release/root.bash
fresh_root python
install "$out"/python3-kestran_*_amd64.deb

cat >"$root/tmp/examples.py" <<PROGRAM
import kestran, numpy
for name in kestran.functions():
    function = getattr(kestran, name)
    print(name, float(function(*function.example)).hex())
print(kestran.EURO(numpy.array([90.0, 100.0, 110.0]), 95, 0.05, 0.02, 0.25, 90, 1))
PROGRAM
inside python3 /tmp/examples.py >"$roots/installed"
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=build/python timeout 60 /usr/bin/python3 "$root/tmp/examples.py" >"$roots/built"
cmp "$roots/installed" "$roots/built"
[ "$(wc -l <"$roots/built")" -gt 80 ]
removed python3-kestran
