#!/bin/bash
# downloads.sh: the scripts that take something from the network are those of docs/release.md, and the sum of every package of npm is
# known.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
taking='curl|wget|git clone|npx|npm (ci|i|install|pack|exec)|pip3? install|apt-get -q|debootstrap --|urlopen|urlretrieve|requests\.get'
taking="^[^#]*\\b($taking)\\b|FetchContent|ExternalProject|DOWNLOAD"
# shellcheck disable=SC2016
local='--offline|--no-index|--no-build-isolation \.|npm pack --silent "\$root'
found=$(grep -rnE "$taking" --exclude-dir=build --exclude-dir=.git --exclude-dir=docs --exclude='*.md' --exclude='*.cpp' --exclude='*.h' \
  --exclude="${0##*/}" . | grep -vE -- "$local" | cut -d : -f 1 | sort -u)
# shellcheck disable=SC2016
listed=$(sed -n '/^## What is downloaded/,/^## /s/^|[^`]*`\([^`]*\)`.*/.\/\1/p' docs/release.md | sort -u)
diff <(echo "$listed") <(echo "$found")
find . -path ./build -prune -o -name package-lock.json -print | while read -r lock; do
  [ "$(grep -c '"version":' "$lock")" = "$(grep -c '"integrity": "sha512-' "$lock")" ] || { echo "$lock: not every package has its sum"; exit 1; }
done
