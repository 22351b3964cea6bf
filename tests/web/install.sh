#!/bin/sh
# Installs what the tests of pages run on into build/web, in the versions of package-lock.json, unless it is there.
set -eu
cd "$(dirname "$(readlink -f "$0")")"
folder=../../build/web
mkdir -p $folder
cmp -s package-lock.json $folder/installed && exit
cp package.json package-lock.json .npmrc $folder/
timeout 300 npm ci --ignore-scripts --prefix $folder
cp package-lock.json $folder/installed
