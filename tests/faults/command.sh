#!/bin/bash
# The command whose output, input or life ends early: it says so, exits as documented and leaves no half of a file.
#   command.sh KESTRAN
set -u
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
chmod 755 "$folder"
cp "$1" "${1%/*}/libkestran_addin.so" "$folder/" || exit
kestran=$folder/${1##*/}
cd "$folder" || exit
failed=0

same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  printf '%s\n  expected: %q\n  got:      %q\n' "$1" "$2" "${3:0:400}"
  failed=1
}

# What prints something tells when that cannot be written.
for arguments in 1+1 '--json 1+1' --list --catalogue --man --completion --help --version '--describe EURO' '--explain 1+1' 'price --help'; do
  # shellcheck disable=SC2086
  same "$arguments on a full disk" 'kestran: the output cannot be written, 1' "$("$kestran" $arguments 2>&1 >/dev/full), $?"
  # shellcheck disable=SC2086
  same "$arguments without output" 1 "$("$kestran" $arguments 2>/dev/null >&-; echo $?)"
done
same 'no input' 2 "$("$kestran" <&- 2>/dev/null; echo $?)"
same 'nothing but output, and no terminal' '2, 0' "$(setsid -w "$kestran" 1+1 <&- 2>&-), $?"
same 'a reader that has gone' '141 0' "$(seq 100000 | "$kestran" | head -n 1 >/dev/null; echo "${PIPESTATUS[@]:1}")"
same 'a reader that has gone, and no signal' 1 "$(trap '' PIPE; seq 100000 2>/dev/null | "$kestran" 2>/dev/null | head -n 1 >/dev/null; echo "${PIPESTATUS[1]}")"
same 'a limit of files' 1 "$(ulimit -f 1; seq 10000 | "$kestran" 2>/dev/null >limited; echo $?)"

# Books: the older file stays, and nothing beside it, until the new one is whole.
row=100,95,5%,2%,25%,90,1
{ echo Price,Strike,IntRt,Yield,Vol,ExpDays,OptType; yes $row | head -n 300000; } >large.csv
head -n 2 large.csv >small.csv
price() { "$kestran" price --function EURO --output "books/$1" --input "$2"; }
mkdir books
whole=$("$kestran" price --function EURO <large.csv | cksum)
small=$("$kestran" price --function EURO <small.csv)

echo old >books/book.csv
same 'a book beyond the limit' 1 "$(ulimit -f 100; price book.csv large.csv 2>/dev/null; echo $?)"
for signal in INT TERM HUP KILL; do
  mkfifo pipe
  set -m  # without which a job in the background ignores INT
  price book.csv pipe 5>&- &
  set +m
  exec 5>pipe
  cat small.csv >&5
  sleep 0.2
  kill -$signal -- -$!
  wait $! 2>/dev/null
  got=$?
  exec 5>&-
  rm pipe
  same "a book and the signal $signal" "$((128 + $(kill -l $signal))) old book.csv" "$got $(cat books/book.csv) $(ls -A books)"
done
price book.csv large.csv &
for _ in 1 2 3 4 5 6 7 8; do price book.csv small.csv; done
wait $!
case $(cksum <books/book.csv) in
  "$whole" | "$(cksum <<<"$small")") ;;
  *) same 'a book that nine write' 'one of theirs' "$(tail -c 200 books/book.csv)" ;;
esac
same 'their folder' book.csv "$(ls -A books)"

# A process that stops and goes on writes the same.
"$kestran" price --function EURO --threads 2 <large.csv >stopped &
for _ in 1 2 3 4; do kill -STOP $!; sleep 0.05; kill -CONT $!; sleep 0.02; done 2>/dev/null
wait $!
same 'stopped and continued' "$whole" "$(cksum <stopped)"

# Where nothing may be written.
as_other=()
[ "$(id -u)" != 0 ] || as_other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
chmod 555 books
before=$(cksum <books/book.csv)
same 'a book in a folder of others' "1 $before" \
  "$("${as_other[@]}" "$kestran" price --function EURO --output books/book.csv --input small.csv 2>/dev/null; echo $?) $(cksum <books/book.csv)"
chmod 755 books
exit $failed
