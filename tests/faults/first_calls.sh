#!/bin/bash
# First calls of ./kestran in a fresh checkout, with a compiler and a package source that this test plays: many at once,
# killed ones, builds and packages that fail.
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
chmod 755 "$folder"
failed=0

same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  printf '%s\n  expected: %q\n  got:      %q\n' "$1" "$2" "${3:0:600}"
  failed=1
}

# A checkout, and all that ./kestran calls in a folder of its own.
checkout() {
  rm -rf "$folder/checkout"
  mkdir -p "$folder/checkout/tools"
  cp kestran "$folder/checkout/"
  cp tools/packages.sh "$folder/checkout/tools/"
  : >"$folder/log"
}
mkdir "$folder/bin"
# Copies: what is written to one of these must not reach the system's.
for name in sh bash dirname readlink find flock mkdir touch mv tail cat mktemp rm env sleep chmod timeout; do
  cp "$(command -v $name)" "$folder/bin/$name" || exit
done
stub() {  # NAME, its text on the input
  { echo '#!/bin/bash'; cat; } >"$folder/bin/$1"
  chmod 755 "$folder/bin/$1"
}
stub id <<<'echo 0'
: | stub ninja
: | stub g++
stub dpkg-query <<<"case \$4 in g++) [ ! -e $folder/half ] || echo 'iU ' ;; lib*) echo 'ii ' ;; *) exit 1 ;; esac"
stub dpkg <<<"echo dpkg \$* >>$folder/log"
stub apt-get <<END
case "\$*" in *update* | *download-only*) exit 0 ;; esac
echo apt-get \$* >>$folder/log
if [ -e $folder/service ]; then sleep 60 & echo \$! >$folder/service; fi
if [ -e $folder/down ]; then echo 'E: Failed to fetch'; exit 100; fi
rm -f $folder/half
END
# A build that is killed leaves a program that does not work.
stub cmake <<END
echo cmake \$* >>$folder/log
[ ! -e $folder/broken ] || { echo 'error: a missing semicolon'; exit 1; }
[ \$1 = --build ] || exit 0
mkdir -p build/linux/bin
echo 'exit 9' >build/linux/bin/kestran
chmod 755 build/linux/bin/kestran
sleep 1
printf '#!/bin/sh\necho answer \$1\n' >build/linux/bin/kestran
sleep 0.3
END
call() { timeout 30 env PATH="$folder/bin" "$folder/checkout/kestran" "$@" 2>"$folder/said"; }
said() { grep -q -e "$2" "$folder/said" || same "$1: what it says" "$2" "$(cat "$folder/said")"; }

checkout
for n in {1..100}; do call "$n" & done >"$folder/answers"
wait
same '100 first calls' "$(seq -f 'answer %g' 100)" "$(sort -n -k 2 "$folder/answers")"
same 'their builds' 1 "$(grep -c -e --build "$folder/log")"

for moment in 0.05 0.2 0.5 1.1 1.2; do
  checkout
  setsid env PATH="$folder/bin" "$folder/checkout/kestran" 1 >/dev/null 2>&1 &
  sleep $moment
  kill -KILL -- -$! 2>/dev/null
  wait $! 2>/dev/null
  same "after one killed at $moment s" 'answer 2, 0' "$(call 2), $?"
done

checkout
touch "$folder/broken"
same 'a build that fails' ', 3' "$(call 1), $?"
said 'a build that fails' 'a missing semicolon'
rm "$folder/broken"
same 'and the next' 'answer 2, 0' "$(call 2), $?"

# Packages.
checkout
touch "$folder/half" "$folder/down"
same 'no package source' ', 3' "$(call 1), $?"
said 'no package source' 'Failed to fetch'
said 'no package source' 'not installed: g++$'
stub id <<<'echo 1000'
same 'no rights' ', 3' "$(call 1), $?"
said 'no rights' 'as root, run'
stub id <<<'echo 0'
rm "$folder/down"
touch "$folder/service"
same 'a package installed in part' 'answer 1, 0' "$(call 1), $?"
same 'how it is installed' 'dpkg --configure -a apt-get g++' \
  "$(sed -n -e '/^dpkg/p' -e 's/^\(apt-get\) .* install .* \(g++\)$/\1 \2/p' "$folder/log" | tail -n 2 | xargs)"
same 'a service of a package does not hold the lock' free "$(flock -n "$folder/checkout/build/.lock" echo free)"
kill "$(cat "$folder/service")"
rm "$folder/service"

# A checkout that cannot be written.
as_other=()
[ "$(id -u)" != 0 ] || as_other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
chmod 555 "$folder/checkout/build/linux"
same 'a read-only checkout' 'answer 1, 0' "$("${as_other[@]}" env PATH="$folder/bin" "$folder/checkout/kestran" 1), $?"
chmod 755 "$folder/checkout/build/linux"
checkout
chmod 555 "$folder/checkout"
same 'a read-only checkout, not built' ', 3' "$("${as_other[@]}" env PATH="$folder/bin" "$folder/checkout/kestran" 1 2>"$folder/said"), $?"
said 'a read-only checkout, not built' 'cannot be written'
chmod 755 "$folder/checkout"
exit $failed
