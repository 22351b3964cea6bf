#!/bin/bash
# The example of every function, with each of its results, through the sheet, the command's files of deals, Python,
# PostgreSQL and DuckDB: all must show the same bits.
#   same_bits.sh   from the root of the sources, once the command, the extensions and the package for Python are built
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
. tests/sql/server.bash
bin=build/linux/bin
folder=$(mktemp -d /tmp/kestran_hosts.XXXXXX) && chmod 755 "$folder" || exit
trap 'stop_server; rm -rf "$folder"' EXIT
trap 'exit 1' HUP INT TERM

"$bin/example_calls" >"$folder/calls"
cut -f1 "$folder/calls" >"$folder/formulas"
"$bin/kestran" <"$folder/formulas" >"$folder/sheet"

PYTHONPATH=build/python:tests/python /usr/bin/python3 tests/hosts/calls.py "$folder" "$bin/kestran" || exit

start_server "$folder" linux || { echo 'no server'; exit 1; }
sql -c 'create extension kestran' || exit
awk -F '\t' '{ printf "select %s;\n", $2 }' "$folder/calls" | sql -At >"$folder/postgres"

node tests/hosts/duckdb.mjs "$folder/calls" build/linux/duckdb/kestran.duckdb_extension >"$folder/duckdb" || exit

failed=0
if [ "$(wc -l <"$folder/sheet")" -le 81 ] || grep -q '#' "$folder/sheet"; then
  echo 'the sheet refuses examples'
  failed=1
fi
for host in files python postgres duckdb; do
  # As numbers: each host has a way of its own to write them.
  /usr/bin/python3 - "$folder" $host <<'END' || failed=1
import struct, sys
folder, host = sys.argv[1:]
formulas, sheet, found = (open(f"{folder}/{name}").read().split("\n")[:-1] for name in ("formulas", "sheet", host))
bits = lambda text: struct.pack("<d", float(text))
wrong = [row for row in zip(formulas, sheet, found) if bits(row[1]) != bits(row[2])]
if len(found) != len(sheet):
    sys.exit(f"{host}: {len(found)} answers for {len(sheet)} formulas")
if wrong:
    sys.exit(f"{host}: {wrong[:5]}")
print(f"{host}: {len(found)} answers with the sheet's bits")
END
done
exit $failed
