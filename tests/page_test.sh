#!/bin/bash
# Runs the shell examples of a page, one after another in one empty folder, and compares what they print with the block
# that follows.
#   page_test.sh PAGE KESTRAN
set -u
page=$(readlink -f "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
PATH=$(dirname "$(readlink -f "$2")"):$PATH
cd "$folder" || exit
failed=0
ran=0
awk -v RS='```' 'NR % 2 == 0 {
  kind = substr($0, 1, index($0, "\n") - 1)
  body = substr($0, index($0, "\n") + 1)
  if (kind == "sh") printf "%s", body > ("example." ++count)
  else if (kind == "" && previous == "sh") printf "%s", body > ("expected." count)
  previous = kind
}' "$page"
for example in $(find . -name 'example.*' | sort -V); do
  expected=expected.${example##*.}
  [ -e "$expected" ] || { echo "$page: an example without its output"; failed=1; continue; }
  timeout 120 bash "$example" >printed 2>errors </dev/null || { echo "$page: exit status $?"; cat "$example" errors; failed=1; }
  diff "$expected" printed || { cat "$example"; failed=1; }
  ran=$((ran + 1))
done
[ "$ran" -gt 0 ] || { echo "$page: no example"; exit 1; }
exit $failed
