#!/bin/bash
# Installs the package with pip into a fresh environment and with cmake into a folder, and prices with both. Takes
# nothing from the network.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

/usr/bin/python3 -m venv --system-site-packages "$folder/venv"
"$folder/venv/bin/pip" install --no-index --no-build-isolation .
cmake --install build/python --component python --prefix "$folder/usr"

prices() {  # FOLDER-OF-THE-PACKAGE COMMAND...
  local place=$1
  shift
  (cd / && "$@" - "$place") <<'PYTHON'
import os, sys
import kestran
assert kestran.__file__.startswith(sys.argv[1]), kestran.__file__
assert os.path.exists(os.path.join(os.path.dirname(kestran.__file__), "__init__.pyi"))
assert os.path.exists(os.path.join(os.path.dirname(kestran.__file__), "py.typed"))
assert len(kestran.functions()) == 81 and kestran.__version__
for name in kestran.functions():
    function = getattr(kestran, name)
    print(name, float(function(*function.example)).hex())
PYTHON
}
prices "$folder/venv" "$folder/venv/bin/python" >"$folder/pip"
prices "$folder/usr" env PYTHONPATH="$(echo "$folder"/usr/lib/python3*/dist-packages)" /usr/bin/python3 >"$folder/cmake"
prices "$PWD/build/python" env PYTHONPATH="$PWD/build/python" /usr/bin/python3 >"$folder/built"
cmp "$folder/built" "$folder/pip"
cmp "$folder/built" "$folder/cmake"
echo 'installed package: passed'
