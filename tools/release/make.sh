#!/bin/bash
# make.sh OUT [PRODUCT...]: makes the products of a release, all or some, from the sources as they stand here and what
# build/ holds of them already. tools/make-release calls it in a copy of the last commit, which has no build/.
# SOURCE_DATE_EPOCH is the time that all files get.
set -euo pipefail
mkdir -p "$1"
out=$(cd "$1" && pwd)
shift
cd "$(dirname "$(readlink -f "$0")")/../.."
. tools/release/lib.bash
[ $# != 0 ] || mapfile -t products < <(all_products)
[ $# = 0 ] || products=("$@")

# What of the caller's settings would change the files.
umask 022
unset CC CXX CFLAGS CXXFLAGS CPPFLAGS LDFLAGS CPATH LIBRARY_PATH CMAKE_BUILD_TYPE CMAKE_GENERATOR
unset CCACHE_BASEDIR GZIP XZ_DEFAULTS XZ_OPT ZIPOPT TAR_OPTIONS
export LC_ALL=C.UTF-8 TZ=UTC SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:?the time that files get}"

version=$(project_version)
work=$PWD/build/make-release
maps=$work/maps
rm -rf "$work"
mkdir -p "$maps"
for product in "${products[@]}"; do
  stage=$work/$product
  mkdir "$stage"
  (
    # shellcheck disable=SC1090
    . "tools/release/products/$product.sh"
    make_product
  )
done
cp CHANGELOG.md "$out/"
mapfile -t needed < <(release_packages | sed 's/=.*//')
tools/release/bill-of-materials "$out" "$version" "${needed[@]}" >"$work/bill.json"
mv "$work/bill.json" "$out/KESTRAN-$version.spdx.json"
(cd "$out" && sha256sums >"$work/SHA256SUMS" && mv "$work/SHA256SUMS" .)
