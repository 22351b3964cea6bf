#!/bin/bash
# The command as its users meet it: options, lines, exit statuses, little memory, the prompt.
#   command_test.sh KESTRAN CARELESS_ADDIN [--sanitized]   (a sanitized program needs more memory than is allowed here)
set -u
kestran=$1
careless=$2
sanitized=${3-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failed=0

same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  printf '%s\n  expected: %q\n  got:      %q\n' "$1" "$2" "${3:0:400}"
  failed=1
}

# expect STATUS OUTPUT INPUT [ARGUMENT...], backslashes in OUTPUT and INPUT as printf %b reads them.
expect() {
  local status=$1 output=$2 input=$3
  shift 3
  same "kestran $* with input ${input:0:60}" "$(printf '%bstatus %s' "$output" "$status")" \
    "$(printf '%b' "$input" | timeout 60 "$kestran" "$@" 2>"$folder/errors"; echo "status $?")"
}

# refuse WORD ARGUMENT...: prints nothing but a message with this word, exits with 2.
refuse() {
  local word=$1
  shift
  same "kestran $*" 'status 2' "$("$kestran" "$@" </dev/null 2>"$folder/errors"; echo "status $?")"
  grep -q -e "$word" "$folder/errors" || same "message of kestran $*" "$word" "$(cat "$folder/errors")"
}

call='EURO(100,95,5%,2%,25%,90,1,0)'
value=8.14303821049409

# Options and formulas.
expect 0 '-2\n' '' -5+3
expect 0 '-5\n-7\n-0.5\n2\n' '' '=-5' '-(7)' -.5 '--(2)'
expect 0 "-$value\n$value\n3\n" '' "-$call" "--$call" '--"3"'
expect 0 '-1\n1\n-2\n' '' 1-2 -- '--TRUE' '-2'
expect 0 '' '' --
expect 2 "1\n#SYNTAX! column 2: expected a number, a text, a range, a function or '('\n" '' 1 -
refuse --jsn --jsn 1
refuse -- -x
refuse json --json=5 1
refuse -TRUE -TRUE
refuse --describe --describe
refuse 'did you mean EURO' --describe EURRO
refuse 'cannot be used\|no header' price --function EURO
refuse 'did you mean EURO' price --function EURRO
refuse --colour price --colour
"$kestran" --describe EURO | grep -q '^ *RetType .*, 0 by default$' || same '--describe EURO' 'the usual RetType' none
for flag in -h --help; do
  "$kestran" $flag | grep -q 'Usage: kestran' || same "kestran $flag" usage nothing
done
for option in --list --catalogue --man --completion --describe=EURO --explain=1/4; do
  same "kestran $option" 'status 0' "$("$kestran" $option </dev/null >"$folder/told"; echo "status $?")"
  same "kestran $option leaves the input alone" "$(cat "$folder/told")" "$(echo 5+5 | "$kestran" $option)"
done

# Lines, and what of them are formulas.
expect 0 "\n\n$value\n\n\n#N/A\n3\n" "# a remark\n\n=$call\r\n \t\r\n#N/A\n=#N/A\n1+2"
expect 0 '1\n\n' '\xEF\xBB\xBF1\n#\xEF\xBB\xBF2\n'
expect 2 "#SYNTAX! column 3: expected a number, a text, a range, a function or '('\n2\n" '1+\n2\n'
same 'lines over the edge of a buffer' "$(seq 2 50001 | cksum)" "$(seq 50000 | sed 's/$/+1/' | "$kestran" | cksum)"
same 'a line of many buffers' 100001 "$( (printf 1; for _ in {1..100000}; do printf +1; done) | "$kestran")"
same 'a line in two pieces' 3 "$( (printf '1+'; sleep 0.1; printf '2\n') | "$kestran")"
coproc "$kestran"
echo "$call" >&"${COPROC[1]}"
read -r -t 20 answer <&"${COPROC[0]}"
same 'an answer before the input ends' $value "${answer-}"
eval "exec ${COPROC[1]}>&-"
wait

# Exit statuses.
expect 0 '#DIV/0!\n' '' 1/0
expect 1 '#DIV/0!\n1\n' '' --strict 1/0 1
expect 1 'nan\n' "HEAT(52,6.5,-7.5,5%,45%,55%,0.6,120,1,0)" --strict
expect 0 "$value\n\nx\nTRUE\n0\n" "$call\n\n\"x\"\nTRUE\n{}" --strict
expect 2 "#SYNTAX! column 2: expected an operator or the end of the formula\n#DIV/0!\n" '1)\n1/0\n' --strict
same 'unreadable input' 'kestran: the input cannot be read, 2' "$("$kestran" 2>&1 </), $?"
same 'output that cannot be written' 'status 1' "$("$kestran" 1 2>&1 >/dev/full | grep -v written; echo "status ${PIPESTATUS[0]}")"
same 'an add-in at fault' $'2\nstatus 3' "$("$kestran" --library "$careless" 1+1 2>"$folder/errors"; echo "status $?")"
grep -q 'xlAutoClose: leak' "$folder/errors" || same 'its fault' 'a leak' "$(cat "$folder/errors")"
same 'no add-in' 'status 3' "$("$kestran" --library /none 1 2>/dev/null; echo "status $?")"

# Books: a file is written whole or not at all, a device or a pipe as it comes, a link stays a link.
book=$'"Price",Strike,IntRt,Yield,Vol,ExpDays,OptType\n100,95,5%,2%,25%,90,1\n'
same 'a book to a device' 'status 1' "$(printf %s "$book" | "$kestran" price --function EURO --output /dev/full 2>/dev/null; echo "status $?")"
[ -c /dev/full ] || same /dev/full 'a device' 'none any more'
mkdir "$folder/books"
printf 'old\n' >"$folder/books/real.csv"
ln -s real.csv "$folder/books/link.csv"
same 'a book that cannot be used' 'status 2' "$(printf 'Price\n1\n' | "$kestran" price --function EURO --output "$folder/books/link.csv" 2>/dev/null; echo "status $?")"
same 'the old book' 'old link.csv real.csv' "$(cat "$folder/books/real.csv") $(cd "$folder/books" && echo *)"
printf %s "$book" | "$kestran" price --function EURO --output "$folder/books/link.csv"
same 'a book over a link' "100,95,5%,2%,25%,90,1,$value, link.csv real.csv" \
  "$(tail -n 1 "$folder/books/real.csv") $(cd "$folder/books" && echo *)"

# What a function takes, what a call is understood to be, and names that were meant.
"$kestran" --describe xamerb >"$folder/described"
for words in '^xAMERB(Price, Strike' '^  ExpDays  .*(calendar days)$' 'Nsteps .*200 is a good choice' \
  '^  7 delta_vol ' '^  =xAMERB(100,100' '^  9.5696' '^How far to trust it'; do
  grep -q -e "$words" "$folder/described" || same '--describe' "$words" "$(cat "$folder/described")"
done
same '--catalogue' "$("$kestran" --list | cut -f1 | sort)" \
  "$("$kestran" --catalogue | grep -oP '"name":"\K\w+(?=","twin":)' | sort)"
explain() {  # FORMULA PATTERN...
  "$kestran" --explain "$1" >"$folder/explained" 2>&1
  local words
  for words in "${@:2}"; do
    grep -q -x -e "$words" "$folder/explained" || same "--explain $1" "$words" "$(cat "$folder/explained")"
  done
}
explain "=$call" '  ExpDays  90 days = 0.2464 years' '  OptType  1: call' '  Vol      0.25 = 25 % per year' "= $value  premium, .*"
same 'no warning' '' "$(grep warning "$folder/explained")"
explain '=xCrudeAPO(72,71.5,33%,32%,33%,32%,10,41,14,8,0,72,4%,0.98,0,46,1,0,1)' \
  'warning: AvgStart 10 is 10 years; days were meant?' 'warning: AvgEnd 41 .*' 'warning: ToExp 46 .*'
explain 'EURO(-100,"x",500%,0.02,25,46000,,12)+EURO(1)' '  Strike   x' 'refused: Strike is text .*' 'refused: OptType is missing' \
  'refused: RetType 12 is outside 0 to 8' 'warning: Price -100 is a negative price' 'warning: IntRt 5 is a rate of 500 %.*' \
  'warning: Vol 25 is a volatility of 2500 %.*' 'warning: ExpDays 46000 looks like a date.*' '#VALUE!'
explain 'CMPDV(100,6,100,320,300,5%,5%,25%,28%,1,0)' 'warning: .* 320 is more than .* 300'
explain 'ASTRIP({20,21},{0.4,0.3},{0.1,0.2},{0.15,0.25},{21,40},22,20,0.05,1.2,0,0.3,1,0,1)' \
  '  Price_rng    1 x 2 cells, 20 to 21' 'warning: Correl 1.2 .*' 'warning: Settles_rng 21 is more fixings than the .*'
explain 'ASTRIP({20;21},{0.4;0.3},{0.1;0.2},{0.1547570;0.25},{21;19},0,20,0.05,1,0,0.3,1,0,1)' '= [0-9.]*  premium, .*'
same 'explained and strict' '0 1' "$("$kestran" --strict --explain "$call" >/dev/null; echo -n "$? "
  "$kestran" --strict --explain 'EURO(1)' >/dev/null 2>&1; echo $?)"
same 'a fixing on each day' '' "$(grep warning "$folder/explained")"
explain 'EURO(100,95,5%,2%,25%,0.5,1,0)' 'warning: ExpDays 0.5 is less than a day.*'
explain 'XCOL({20,20.5,21},{.05,.051,.052},{.3,.29},{120,150,181},0.25,0.03,90,22,19,0.05,25)' \
  'refused: Vol_rng has another length than the other ranges'
explain 'EURO(100,95,5%,2%,25%,90,1,3)' '= [0-9.]*  vega, .*'
explain 'BASVOL({100},{30%},{0},{1},{1},1)' '  Annual_Vol     0.3 = 30 % per year'
explain 'FOREXCH(-1.1,1.15,4%,2%,11%,180,1,0)' 'warning: SpotAB -1.1 is a negative price'
explain '1+EURRO(2)' '#NAME?' '.*no function EURRO; did you mean EURO?'
expect 1 '#NAME?\n' 'EURRO(1)' --strict
grep -q 'did you mean EURO' "$folder/errors" || same 'a name that was meant' EURO "$(cat "$folder/errors")"
"$kestran" --completion >"$folder/completion"
bash -n "$folder/completion" || same --completion 'a script' ''
"$kestran" --man | sed 's/\\\(.\)/\1/g' >"$folder/page"
grep -q '^.SH OPTIONS' "$folder/page" || same --man 'a page' ''
grep -q -x 'fB--listfR' "$folder/page" || same --man '--list, which takes nothing' "$(grep list "$folder/page")"
for option in --explain --delimiter; do
  grep -q -e "$option" "$folder/completion" || same --completion "$option" none
  grep -q -e "$option" "$folder/page" || same --man "$option" none
done

# JSON.
expect 2 '{"formula":"1/4","value":0.25,"error":null}
{"formula":"1e300*10^9","value":null,"error":"#NUM!"}
{"formula":"\\"\\\\é\\u0009\\ufffd\\ufffd\\ufffd𝄞\\"","value":"\\\\é\\u0009\\ufffd\\ufffd\\ufffd𝄞","error":null}
\n{"formula":"FALSE","value":false,"error":null}
{"formula":"EURO()","value":null,"error":"#ERR(65535)"}
{"formula":"1+","value":null,"error":"#SYNTAX! column 3: expected a number, a text, a range, a function or '"'('"'"}
' '1/4\n1e300*10^9\n"\\é\t\xC3\xE0\x80𝄞"\n#\nFALSE\nEURO()\n1+' --json
other=$("$kestran" "${call/100/101}")
same 'JSON of an array' '{"formula":"'"EURO({100,101;#N/A,100},${call#*,}"'","value":[['"$value,$other],[null,$value"']],"error":"#N/A"}' \
  "$("$kestran" --library "${kestran%/*}/libkestran12.so" --json "EURO({100,101;#N/A,100},${call#*,}")"

# Formulas that memory does not suffice for have one answer each, and so have those after them.
if [ -z "$sanitized" ]; then
  repeat() { head -c "$1" /dev/zero | sed "s/\\x0/$2/g"; }  # TIMES TEXT
  (
    ulimit -v 40000
    same 'a sum of 4 MB' $'2000001\n2\nstatus 0' "$( (printf '=1'; repeat 2000000 +1; echo; echo 1+1) | "$kestran"; echo "status $?")"
    same 'a call of 4 MB' $'#NAME?\n2\nstatus 0' "$( (printf 'nobody('; repeat 4000000 ,; echo ')'; echo 1+1) | "$kestran"; echo "status $?")"
    same 'a range of 4 MB' $'#MEMORY!\n2\nstatus 2' "$( (printf '{'; repeat 2000 "$(repeat 999 1,)1;"; echo '}'; echo 1+1) | "$kestran"; echo "status $?")"
    same 'a line of 64 MB' $'#MEMORY!\n2\nstatus 2' "$( (head -c 64000000 /dev/zero; echo; echo 1+1) | "$kestran"; echo "status $?")"
    ulimit -s 512
    same 'a line of 64 MB, threads' $'#MEMORY!\n2\nstatus 2' "$( (head -c 64000000 /dev/zero; echo; echo 1+1) | "$kestran" --library "${kestran%/*}/libkestran12.so" --threads 2; echo "status $?")"
    exit $failed
  ) || failed=1
fi

# The prompt, with the answers it must show.
converse() {  # INPUT
  printf '%b' "$1" | TERM=xterm timeout 60 script -qec "'$kestran' --strict" /dev/null
  echo "status $?"
}
shows() {  # WHAT PATTERN TEXT
  grep -q -e "$2" <<<"$3" || same "prompt: $1" "$2" "$3"
}
export HOME=$folder XDG_STATE_HOME=
shown=$(converse '\n1+1\nCODPR\t100,105,5%,2%,30%,182.625,1)\nhelp\nHelp  codprem\n1/0\nquit\n5+5\n')
past=$folder/.local/state/kestran/history
shows answers '^2' "$shown"
shows completion '^17.926674856' "$shown"
shows help '^help NAME' "$shown"
shows 'help of a function' '^CODPREM(Price' "$shown"
shows 'status of an error' '^status 1$' "$shown"
same 'prompt: nothing after quit' '' "$(grep '^10' <<<"$shown")"
same 'prompt: history' $'1+1\nCODPREM(100,105,5%,2%,30%,182.625,1)\nhelp\nHelp  codprem\n1/0\nquit' "$(cat "$past")"
seq -f '%g+0' 1500 >"$past"
shows 'history of an earlier session' '^1500' "$(converse '\x10\nquit\n')"
same 'prompt: history is cut' '501+0 1002' "$(head -n 1 "$past") $(wc -l <"$past")"
# How far a book is, where somebody looks on; of a file also what is left.
{ echo Price,Strike,IntRt,Yield,Vol,ExpDays,OptType,Nsteps; yes 100.123456,95.123456,0.05,0.02,0.25,90.123456,1,1000 | head -n 45000; } >"$folder/book.csv"
looked_at() {  # COMMAND
  TERM=xterm timeout 100 script -qec "$1" /dev/null | tr '\r' '\n'
}
price="'$kestran' price --function AMERB --output '$folder/priced.csv'"
shows 'progress of a file' '[0-9]* rows, [0-9]* a second \[#\{12,18\}[.]\{12,18\}\] [0-9]* s left' \
  "$(looked_at "$price --input '$folder/book.csv'")"
shown=$(looked_at "head -n 8000 '$folder/book.csv' | $price")
shows 'progress of a pipe' '[0-9]* rows, [0-9]* a second$' "$shown"
same 'progress is cleared away' $'\e[K' "${shown##*$'\n'}"
for place in "HOME=/proc" "HOME=" "HOME=$kestran" "XDG_STATE_HOME=/proc/none"; do
  shows "without a history ($place)" '^3' "$(export "${place?}"; converse '1+2\nquit\n')"
done
exit $failed
