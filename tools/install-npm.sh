#!/bin/sh
# install-npm.sh LOCKED FOLDER: installs what LOCKED/package.json names into FOLDER, in the versions of its
# package-lock.json, unless it is there.
set -eu
cd "$(dirname "$(readlink -f "$0")")/.."
locked=$1 folder=$2
mkdir -p "$folder"
cmp -s "$locked/package-lock.json" "$folder/installed" && exit
cp "$locked/package.json" "$locked/package-lock.json" "$locked/.npmrc" "$folder/"
if ! timeout 300 npm ci --ignore-scripts --prefix "$folder"; then
  echo "kestran: npm could not install in $folder what $locked/package.json names" >&2
  exit 1
fi
cp "$locked/package-lock.json" "$folder/installed"
