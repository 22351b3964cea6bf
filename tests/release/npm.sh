#!/bin/bash
# npm.sh OUT: the package for npm is installed into an empty project, and prices there.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$1"/kestran-*.tgz "$work/kestran.tgz"
cd "$work"
echo '{"type": "module"}' >package.json
npm install --offline --cache "$work/cache" --loglevel=error --no-audit --no-fund ./kestran.tgz >log 2>&1 || { cat log; exit 1; }
answer=$(node --input-type=module -e "import { kestran } from 'kestran'
console.log(kestran.version, kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, 0))")
[[ $answer == *' 8.14303821049409' ]] || { echo "EURO in Node: $answer"; exit 1; }
