#!/bin/sh
# Packs files into an extension, with the same bytes on every machine.
#   pack.sh EXTENSION.oxt FOLDER   all files of FOLDER
set -eu
umask 022
extension=$1
mkdir -p "$(dirname "$extension")"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp -R "$2" "$folder/files"
cd "$folder/files"
find . -type f -exec chmod 644 {} + -exec touch -d '2000-01-01 00:00:00 UTC' {} +
find . -type f | LC_ALL=C sort | TZ=UTC zip -X -q "$folder/extension.zip" -@
mv "$folder/extension.zip" "$extension"
