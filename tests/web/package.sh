#!/bin/bash
# The npm package from a folder of a user's: packed, installed, called and type checked.
set -eu
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/../..")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
cp "$root"/tests/web/{package.mjs,formulas.mjs,types.ts} .
npm pack --silent "$root/build/wasm/npm" >packed
echo '{"type": "module"}' >package.json
npm install --silent --offline --no-audit --no-fund "./$(tail -n 1 packed)"
node package.mjs "$root" bindings/web/README.md docs/web.md
node "$root/build/web/node_modules/typescript/bin/tsc" --noEmit --strict --target es2022 --module nodenext --lib es2022,dom types.ts
