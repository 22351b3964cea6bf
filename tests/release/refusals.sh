#!/bin/bash
# refusals.sh: tools/make-release stops, and says why, before it builds anything.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/checkout"
cp -r CMakeLists.txt CHANGELOG.md .gitignore tools "$work/checkout"
cd "$work/checkout"
export GIT_AUTHOR_NAME=test GIT_AUTHOR_EMAIL=test GIT_COMMITTER_NAME=test GIT_COMMITTER_EMAIL=test
git init -q -b main .
git add .
git commit -q -m 'sources'
version=$(sed -n 's/^project(KESTRAN VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

refused() {  # WORDS VERSION OUT
  local said code=0
  said=$(timeout 60 tools/make-release "$2" "$3" 2>&1) || code=$?
  if [ $code = 0 ] || [[ $said != *"$1"* ]] || [ -e build ]; then
    echo "tools/make-release $2 $3, where '$1' was expected: exit status $code, $said"
    exit 1
  fi
}
refused "is $version, not 9.9.9" 9.9.9 "$work/out"
mkdir "$work/out"
touch "$work/out/file"
refused 'not empty' "$version" "$work/out"
rm -r "$work/out"
touch new
refused 'new' "$version" "$work/out"
rm new
sed -i "s/^## $version/## 0.9.0/" CHANGELOG.md
git commit -q -a -m 'no changes of this version'
refused 'first heading' "$version" "$work/out"
