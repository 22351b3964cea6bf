#!/bin/bash
# The extension on a PostgreSQL server of its own.
#   postgres.sh PRESET   the build whose extension and command are tested
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
. tests/sql/server.bash
bin=build/$1/bin
version=$(sed -n "s/^default_version = '\(.*\)'/\1/p" "build/$1/postgres/kestran.control")
folder=$(mktemp -d /tmp/kestran_sql.XXXXXX) && chmod 755 "$folder" || exit
trap 'stop_server; rm -rf "$folder"' EXIT
trap 'exit 1' HUP INT TERM
start_server "$folder" "$1" || { echo 'no server'; exit 1; }
failed=0

same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  printf '%s\n  expected: %s\n  got:      %s\n' "$1" "$2" "${3:0:2000}"
  failed=1
}
answer() { sql -At -c "$1" 2>&1; }
answers() { same "$1" "$2" "$(answer "$1")"; }  # STATEMENT EXPECTED
refuses() { same "$1" "ERROR:  $2" "$(answer "$1" | head -n 1)"; }  # STATEMENT MESSAGE

# Anyone who may create schemas installs it, and others use it.
sql -c 'create role quant; create role trader; grant create on database postgres to quant' || exit
answers 'set role quant; create extension kestran' ''
call='price => 100, strike => 95, intrt => 0.05, yield => 0.02, vol => 0.25, expdays => 90, opttype => 1'
answers "set role trader; select kestran.euro($call)" 8.14303821049409

# All functions are there twice, declared as what they are, with their help.
functions=$("$bin/kestran" --list | wc -l)
answers "select count(*), count(*) filter (where proname like 'try\_%'), bool_and(provolatile = 'i' and proparallel = 's' and
    proisstrict and prorettype = 'float8'::regtype) from pg_proc where pronamespace = 'kestran'::regnamespace" "$((2 * functions))|$functions|t"
answers "select count(*) from pg_proc where pronamespace = 'kestran'::regnamespace and proname not like 'try\_%'
    and obj_description(oid) ~ '\nArguments\n.*\nResults?\n.*\nExample\n.*\nIn SQL\n'" "$functions"

# The examples, each with all of its results.
"$bin/example_calls" >"$folder/calls"
cut -f1 "$folder/calls" | "$bin/kestran" >"$folder/values"
awk -F '\t' '{
  try = $2
  sub(/kestran\./, "kestran.try_", try)
  printf "select %d, %s, %s;\n", NR, $2, try
}' "$folder/calls" | sql -At -F ' ' >"$folder/got" || failed=1
sql -c 'create table got (n int, value float8, tried float8); create table expected (n serial, value float8)' \
  -c "\\copy got from '$folder/got' delimiter ' '" -c "\\copy expected (value) from '$folder/values'"
answers 'select count(*), count(*) filter (where float8send(got.value) = float8send(expected.value)
    and float8send(got.tried) = float8send(expected.value)) from got join expected using (n)' \
  "$(wc -l <"$folder/calls")|$(wc -l <"$folder/calls")"

# What is refused, and what is NULL.
strip="price_rng => array[20,21], vol_rng => array[0.4,0.3], next_rng => array[0.08,0.17], end_rng => array[0.16,0.24],
  settles_rng => array[21,20], setdays => 0, strike => 21, intrt => 0.05, correl => 0.9, setprice => 0, toexp => 0.42, opttype => 1"
basket() { echo "select kestran.basvol($1, array[0.3,0.4], array[0.02,-0.01], array[0.6,0.4], $2, 0.75)"; }
refuses "select kestran.euro($call, rettype => 9)" 'EURO: RetType 9 is outside 0 to 8'
refuses "select kestran.euro(${call/0.25/\'NaN\'})" 'EURO: Vol is missing'
refuses "$(basket 'array[100,null]' 'array[[1,0.5],[0.5,1]]')" 'BASVOL: Forward_Price has a cell that holds no number'
refuses "$(basket "'{}'" 'array[[1,0.5],[0.5,1]]')" 'BASVOL: Forward_Price has a cell that holds no number'
refuses "$(basket 'array[[[100],[90]]]' 'array[[1,0.5],[0.5,1]]')" 'BASVOL: Forward_Price refers to cells that cannot be read'
refuses "$(basket 'array[100,90]' 'array[[1,0.5,0],[0.5,1,0]]')" \
  'BASVOL: Correl_Matrix must have a row and a column for each cell of the ranges before it'
refuses "$(basket '(select array_agg(i) from generate_series(1, 1000) i)' 'array[[1.0]]')" 'BASVOL: Forward_Price has more cells than are taken'
refuses "select kestran.astrip($strip)" 'ASTRIP: RetMonth is missing'
answers "select kestran.astrip($strip, retmonth => 1) > 0" t
answers "select kestran.try_euro($call, rettype => 9) is null, kestran.try_euro(${call/0.25/\'NaN\'}) is null" 't|t'
answers "select kestran.euro(${call/95/null}) is null, kestran.basvol(null, null, null, null, null, 1) is null" 't|t'
answers "select kestran.euro(${call/100/\'Infinity\'})" Infinity

# A book: each row has the bits, and each refused row the words, that the command gives for it.
sql -c "select setseed(0.5); create table deals as select i id, 100 * exp(random() - 0.5) price, 100.0::float8 strike, 0.1 * random() intrt,
    0.1 * random() yield, random() vol, floor(500 * random()) expdays, (i % 2)::float8 opttype,
    case when i % 97 = 0 then 9 else i % 9 end::float8 rettype from generate_series(1, 200000) i; analyze deals" >/dev/null
sql -c "\\copy (select * from deals where id <= 20000) to '$folder/deals.csv' csv header"
"$bin/kestran" price --function EURO --input "$folder/deals.csv" --output "$folder/priced.csv"
sql -c "create table priced (like deals); alter table priced add value float8, add error text" \
  -c "\\copy priced from '$folder/priced.csv' csv header"
terms='price, strike, intrt, yield, vol, expdays, opttype, rettype'
answers "select count(*), count(error), count(*) filter (where float8send(value) is distinct from float8send(kestran.try_euro($terms)))
    from priced" '20000|206|0'
answers "select distinct error from priced where error is not null" 'RetType 9 is outside 0 to 8'

# The same for arrays that stand in a table.
sql -c "create table baskets as select i id, array[100 + i % 7, 90]::float8[] prices, array[0.3, 0.2 + i % 5 / 10.0]::float8[] vols,
    array[[1, i % 19 / 20.0], [i % 19 / 20.0, 1]]::float8[] correlations from generate_series(1, 2000) i"
sql -c "\\copy (select array_to_string(prices, ';') \"Forward_Price\", array_to_string(vols, ';') \"Annual_Vol\", '0.02;-0.01' \"Drift\",
    '0.6;0.4' \"Weight\", format('1;%s|%s;1', correlations[1][2], correlations[2][1]) \"Correl_Matrix\", 0.75 \"ExpTime\"
    from baskets order by id) to '$folder/baskets.csv' csv header"
"$bin/kestran" price --function BASVOL --input "$folder/baskets.csv" | awk -F, 'NR > 1 {print $7}' >"$folder/vols"
sql -c 'create table vols (id serial, value float8)' -c "\\copy vols (value) from '$folder/vols'"
answers "select count(*), count(distinct value), count(*) filter (where float8send(value) = float8send(kestran.basvol(prices, vols,
    array[0.02,-0.01], array[0.6,0.4], correlations, 0.75))) from baskets join vols v using (id)" '2000|665|2000'

# Parallel plans, with the same rows.
premiums="select min(value), max(value), count(value) from (select kestran.try_euro($terms) value from deals) premiums"
same 'parallel plan' 1 "$(answer "explain $premiums" | grep -c 'Parallel Seq Scan on deals')"
same 'parallel rows' "$(answer "set max_parallel_workers_per_gather = 0; $premiums")" "$(answer "$premiums")"

# Ten million rows, then a million of arrays, in the memory of a few.
memory="select (regexp_match(pg_read_file('/proc/self/status'), 'VmHWM:\s*(\d+)'))[1]::int"
series() { echo "select count(value) from (select $2 value from (select generate_series(1, $1) i) series) premiums"; }
read -r -d '' before rows arrays after < <(sql -At -c 'set jit = off' -c "$memory" \
  -c "$(series 10000000 'kestran.euro(80 + i % 41, 95, 0.05, 0.02, 0.25, i % 500, i % 2)')" \
  -c "$(series 1000000 'kestran.try_basvol(array[100,90], array[0.3,0.4], array[0,case when i % 2 = 0 then i end], array[0.6,0.4], array[[1,0.5],[0.5,1]], 0.75)')" \
  -c "$memory")
same 'rows' '10000000 500000' "$rows $arrays"
[ $((after - before)) -lt 20000 ] || same 'memory of ten million rows' 'at most 20 MB' "$((after - before)) kB"

# A database of an earlier version, which had fewer functions, is brought up to date with what depends on it.
share=$(dirname "$(find "$folder/root" -name kestran.control)")
awk '/^CREATE FUNCTION/ {++n} n <= 150' "$share/kestran--$version.sql" >"$share/kestran--0.9.sql"
"$bin/make_sql" --update >"$share/kestran--0.9--$version.sql"
sql -c 'drop extension kestran' -c "create extension kestran version '0.9'" -c "create table kept (price float8, premium float8
    generated always as (kestran.xamer(price, 95, 0.05, 0.02, 0.25, 90, 1)) stored); insert into kept values (100)" \
  -c 'alter extension kestran update' -c 'insert into kept values (100)' || failed=1
answers "select extversion, (select count(*) from pg_proc where pronamespace = 'kestran'::regnamespace), (select count(distinct premium)
    from kept where premium > 8), (select count(*) from kept) from pg_extension where extname = 'kestran'" "$version|$((2 * functions))|1|2"
refuses 'drop extension kestran' 'cannot drop extension kestran because other objects depend on it'
sql -c 'drop table kept; drop table deals; drop extension kestran' || failed=1

# A backend that is cancelled or killed within a query says so, and the next query has its answer.
sql -c 'create extension kestran' || failed=1
for signal in INT KILL; do
  answer 'select sum(kestran.amerb(i, 95, 0.05, 0.02, 0.25, 365, 0, 1000, 0)) from generate_series(1, 10000000) i' >"$folder/ended" &
  backend=
  for ((i = 0; i < 100 && ${#backend} == 0; ++i)); do
    sleep 0.1
    backend=$(answer "select pid from pg_stat_activity where query like 'select sum(%'")
  done
  kill -$signal "$backend"
  wait $!
  grep -q 'canceling statement\|server closed the connection' "$folder/ended" || same "ended by $signal" 'a reason' "$(cat "$folder/ended")"
  for ((i = 0; i < 100; ++i)); do [ "$(answer 'select 1')" != 1 ] || break; sleep 0.1; done
  answers "select kestran.euro($call)" 8.14303821049409
done
sql -c 'drop extension kestran' || failed=1

# The pages for users: each query with the output below it.
for name in postgres scale; do
  awk -v page="$folder/$name" '
    /^```/ && kind != "" {kind = ""; closed = NR; next}
    /^```/ {
      kind = $0 == "```sql" ? "sql" : was == "sql" && NR == closed + 1 ? "output" : "other"
      number += kind == "sql"
      was = kind
      next
    }
    kind != "" {print >(page "." number "." kind)}' docs/$name.md
  [ -e "$folder/$name.1.sql" ] || same "docs/$name.md" 'a query' none
  for query in "$folder/$name".*.sql; do
    same "docs/$name.md: $(cat "$query")" "$(cat "${query%sql}output")" "$(sql -c "$(cat "$query")" 2>&1 | sed 's/ *$//; ${/^$/d}')"
  done
done
exit $failed
