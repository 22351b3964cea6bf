#!/bin/bash
# same_bytes.sh OUT: the same release again, by a user with other settings, has the same bytes.
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
umask 077
TZ=Pacific/Auckland LC_ALL=C XZ_OPT=-0 GZIP=-1 tools/release/make.sh "$work/again"
diff -r "$out" "$work/again"
