#!/bin/bash
# postgres.sh OUT: the package for PostgreSQL in a fresh Debian: a server there takes the extension and prices.
set -euo pipefail
out=$1
. tests/release/root.bash
fresh_root postgres
install "$out"/postgresql-15-kestran_*_amd64.deb

as_postgres() {
  inside setpriv --reuid postgres --regid postgres --clear-groups env PATH=/usr/lib/postgresql/15/bin:/usr/bin:/bin "$@"
}

as_postgres initdb -D /tmp/data -A trust >"$root/initdb.log"
at_exit+=('as_postgres pg_ctl -s -D /tmp/data -m immediate stop')
as_postgres pg_ctl -D /tmp/data -o "-k /tmp -c listen_addresses=''" -l /tmp/server.log -w start >"$root/start.log" ||
  { cat "$root/tmp/server.log"; exit 1; }
query='create extension kestran; select kestran.euro(100, 95, 0.05, 0.02, 0.25, 90, 1, 0)'
answer=$(as_postgres psql -h /tmp -qAt -d postgres -c "$query")
[ "$answer" = 8.14303821049409 ] || { echo "EURO in PostgreSQL is $answer"; exit 1; }
