#!/bin/bash
# run-windows.sh PROGRAM.EXE ARGUMENT...: runs a Windows program under the Wine that WINE names. One that dies before its
# first line, as happens when Wine's server goes away, is started once more; that is said on standard error and in the
# file KESTRAN_WINE_NOTES. A second death is a failure, whatever the exit code was. Only a standard input that is a file is
# read from its beginning again.
set -uo pipefail
output=$(mktemp)
trap 'rm -f "$output"' EXIT

start() { if [ -f /dev/stdin ] && [ -r /dev/stdin ]; then "$WINE" "$@" </dev/stdin; else "$WINE" "$@"; fi; }

for try in 1 2; do
  start "$@" | tee "$output"
  code=${PIPESTATUS[0]}
  [ ! -s "$output" ] || exit "$code"
  [ $try = 1 ] || break
  echo "$1 died with exit code $code before its first line and was started once more" |
    tee -a "${KESTRAN_WINE_NOTES:-/dev/null}" >&2
done
echo "$1 died with exit code $code before its first line, twice" >&2
[ "$code" != 0 ] || code=1
exit "$code"
