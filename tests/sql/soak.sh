#!/bin/bash
# All functions in one session of PostgreSQL for hours, on a server of its own.
#   soak.sh HOURS CALLS   from the root of the sources, once the extension is built; prints what tests/hosts/flat.py reads
set -u
. tests/sql/server.bash
folder=$(mktemp -d /tmp/kestran_soak.XXXXXX) && chmod 755 "$folder" || exit
trap 'stop_server; rm -rf "$folder"' EXIT
trap 'exit 1' HUP INT TERM
calls=$((64 * $(build/linux/bin/kestran --list | wc -l)))
rounds=$(awk -v wanted="$2" -v calls=$calls 'BEGIN { n = int(wanted / calls) + 1; print (n > 20 ? n : 20) }')
server_seconds=$(awk -v hours="$1" 'BEGIN { print int(hours * 7200) + 600 }')
start_server "$folder" linux || { echo 'no server' >&2; exit 1; }
sql -c 'create extension kestran' || exit

# Of each example the first number that stands alone and is not 0 is moved.
{
  # shellcheck disable=SC2016
  echo 'select (select t[14]::int + t[15]::int from string_to_array(pg_read_file($$/proc/self/stat$$), $$ $$) t),
    (select sum(used_bytes)::int / 1024 from pg_backend_memory_contexts),
    (regexp_match(pg_read_file($$/proc/self/status$$), $$RssAnon:\s*(\d+)$$))[1], md5(concat('
  build/linux/bin/example_calls | cut -f2 | awk -F '(' '!seen[$1]++' |
    sed -E 's| => ([0-9.]*[1-9][0-9.]*)([,)])| => \1 * (1 + i % 64 / 1024.0::float8)\2|
            s|.*|(select string_agg(float8send(&)::text, null) from generate_series(1, 64) i),|'
  echo 'null));'
} >"$folder/round"
for ((i = 0; i < rounds; ++i)); do
  cat "$folder/round"
  sleep "$(awk -v hours="$1" -v rounds="$rounds" 'BEGIN { print hours * 3600 / rounds }')"
done | as_server timeout "$server_seconds" psql -X -q -At -F ' ' -h "$folder" -d postgres -v ON_ERROR_STOP=1 |
  awk -v calls=$calls '{ print calls, ($1 - ticks) / 100, $2, $3, $4; fflush(); ticks = $1 }'
