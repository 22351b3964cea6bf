# shellcheck shell=bash
# The package for the system's Python.
packages='binutils=strip dpkg-dev=dpkg-shlibdeps python3-dev=/usr/include/python3.11/Python.h python3-numpy'

make_product() {
  built python kestran_python
  installed python python
  local folder=$stage/root/usr/lib/python3/dist-packages minor next
  minor=$(/usr/bin/python3 -c 'import sys; print(sys.version_info.minor)')
  next=$((minor + 1))
  mkdir "${folder%/*}"
  mv "$stage/root/usr/lib/python3.$minor/dist-packages" "$folder"
  rmdir "$stage/root/usr/lib/python3.$minor"
  mkdir "$folder/kestran-$version.dist-info" "$stage/scripts"
  printf 'Metadata-Version: 2.1\nName: kestran\nVersion: %s\nRequires-Dist: numpy\n' "$version" \
    >"$folder/kestran-$version.dist-info/METADATA"
  printf '#!/bin/sh\nset -e\nif command -v py3compile >/dev/null 2>&1; then py3compile -p python3-kestran; fi\n' \
    >"$stage/scripts/postinst"
  printf '#!/bin/sh\nset -e\nif command -v py3clean >/dev/null 2>&1; then py3clean -p python3-kestran; fi\n' \
    >"$stage/scripts/prerm"
  packaged python3-kestran python "python3 (>= 3.$minor), python3 (<< 3.$next), python3-numpy, $(numpy_abi)" \
    'Option pricing: the worksheet functions for NumPy arrays
The functions of the command kestran for numbers, NumPy arrays and
pandas columns in Python.'
}

# The version of the interface that the loops were compiled for.
numpy_abi() { dpkg-query -W -f '${Provides}' python3-numpy | tr ',' '\n' | grep -o 'python3-numpy-abi[0-9]*'; }
