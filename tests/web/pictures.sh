#!/bin/sh
# The pictures of docs/pictures are those that tools/make-pictures writes, and pages show pictures that are there.
set -eu
root=$(dirname "$(readlink -f "$0")")/../..
cd "$root"
made=$(mktemp -d)
trap 'rm -rf "$made"' EXIT
tools/make-pictures "$made"
failed=0
complain() {
  echo "$*" >&2
  failed=1
}

for picture in docs/pictures/*.svg "$made"/*.svg; do
  name=${picture##*/}
  cmp -s "$made/$name" "docs/pictures/$name" || complain "docs/pictures/$name is not what tools/make-pictures writes"
  grep -qF "pictures/$name)" README.md docs/*.md || complain "no page shows docs/pictures/$name"
done

missing=$(grep -oHE '!\[[^]]*\]\([^)]*\)' README.md docs/*.md | sed -E 's/^([^:]*):.*\((.*)\)$/\1:\2/' | while IFS=: read -r page path; do
  [ -e "$(dirname "$page")/$path" ] || echo "$page shows $path, which is not there"
done)
[ -z "$missing" ] || complain "$missing"
exit $failed
