#!/bin/bash
# gnumeric.sh OUT: the package for Gnumeric in a fresh Debian: a sheet is calculated there.
set -euo pipefail
out=$1
. tests/release/root.bash
fresh_root gnumeric
install "$out"/gnumeric-kestran_*_amd64.deb
echo '"=EURO(100,95,5%,2%,25%,90,1,0)","=1+_xll.EURO(100,95,5%,2%,25%,90,1,0)"' >"$root/tmp/deal.csv"
inside ssconvert --recalc /tmp/deal.csv /tmp/priced.csv >"$root/convert.log" 2>&1 || { cat "$root/convert.log"; exit 1; }
grep -q '^8\.14303821049409[0-9]*,9\.14303821049409[0-9]*$' "$root/tmp/priced.csv" || { cat "$root/tmp/priced.csv"; exit 1; }
