#!/bin/bash
# signing.sh OUT: a release signs its add-ins where there is a certificate, here one made for the test; but for the signature
# they are those of the release in OUT.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
openssl req -x509 -newkey rsa:2048 -nodes -subj '/CN=KESTRAN test' -days 2 -addext extendedKeyUsage=codeSigning \
  -keyout "$work/key.pem" -out "$work/certificate.pem" 2>"$work/log" || { cat "$work/log"; exit 1; }
unzip -q "$1"/*-windows.zip -d "$work/unsigned"
mkdir -p "$work"/signed/{32,64}-bit
. tools/release/lib.bash
. tools/release/products/windows.sh
export KESTRAN_SIGNING_CERTIFICATE=$work/certificate.pem KESTRAN_SIGNING_KEY=$work/key.pem
for addin in 32-bit/KESTRAN.xll 32-bit/KESTRAN12.xll 64-bit/KESTRAN.xll 64-bit/KESTRAN12.xll; do
  signed=$work/signed/$addin unsigned=$work/unsigned/$addin
  signed "$unsigned" "$signed"
  osslsigncode verify -CAfile "$work/certificate.pem" -in "$signed" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  # A signature changes the file's sum, and where in its head it says that the signature begins.
  [ "$(cmp -l -n "$(stat -c %s "$unsigned")" "$signed" "$unsigned" | wc -l)" -le 12 ]
  if osslsigncode verify -CAfile "$work/certificate.pem" -in "$unsigned" >"$work/log" 2>&1; then
    echo "$addin is signed without a certificate"
    exit 1
  fi
done
timeout 60 tools/run-windows.sh build/win64/bin/kestran.exe --library "$work/signed/64-bit/KESTRAN12.xll" '1+EURO(100,95,5%,2%,25%,90,1,0)' \
  >"$work/answer"
[ "$(tr -d '\r' <"$work/answer")" = 9.14303821049409 ]
