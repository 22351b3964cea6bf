# shellcheck shell=bash
# KESTRAN-VERSION-windows.zip: both add-ins for both kinds of Excel, the workbook, the reference, and what goes with them.
packages="$wasm_packages npm chromium zip
  g++-mingw-w64-i686-win32=i686-w64-mingw32-g++-win32 g++-mingw-w64-x86-64-win32=x86_64-w64-mingw32-g++-win32
  python3-xlsxwriter=/usr/lib/python3/dist-packages/xlsxwriter
  python3-markdown=/usr/lib/python3/dist-packages/markdown/__init__.py"
[ -z "${KESTRAN_SIGNING_CERTIFICATE-}" ] || packages+=' osslsigncode'

make_product() {
  local root=$stage/root bits addin page
  built linux kestran make_intellisense
  for bits in 32 64; do
    built win$bits kestran_addin kestran_addin12
    mkdir -p "$root/$bits-bit"
    for addin in KESTRAN KESTRAN12; do
      signed "build/win$bits/bin/$addin.xll" "$root/$bits-bit/$addin.xll"
      cp "build/win$bits/bin/$addin.xll.map" "$maps/$addin-$bits-bit.map"
      build/linux/bin/make_intellisense "$root/$bits-bit/$addin.intellisense.xml"
    done
  done
  tools/make-workbook "$root/KESTRAN.xlsx"
  tools/release/page docs/install-in-excel.md >"$root/install.html"
  for page in excel-help try-in-excel; do tools/release/page "docs/$page.md" >"$root/$page.html"; done
  web/build --pdf "$root/reference" >"$work/web.log" 2>&1 || { tail -n 40 "$work/web.log"; return 1; }
  mv "$root/reference/KESTRAN-reference.pdf" "$root/"
  cp CHANGELOG.md "$root/CHANGELOG.txt"
  cp THIRD-PARTY-NOTICES "$root/THIRD-PARTY-NOTICES.txt"
  (cd "$root" && sha256sums >SHA256SUMS)
  zipped "$root" "$out/KESTRAN-$version-windows.zip"
}

# signed FILE TARGET: a copy, with Authenticode's signature where KESTRAN_SIGNING_CERTIFICATE and KESTRAN_SIGNING_KEY name
# files in PEM. KESTRAN_SIGNING_PASSWORD_FILE has the key's password, KESTRAN_SIGNING_TIMESTAMP is the address of a
# timestamp server.
signed() {
  if [ -z "${KESTRAN_SIGNING_CERTIFICATE-}" ]; then
    cp "$1" "$2"
    return
  fi
  local options=(-certs "$KESTRAN_SIGNING_CERTIFICATE" -key "${KESTRAN_SIGNING_KEY:?the key of the certificate}")
  [ -z "${KESTRAN_SIGNING_PASSWORD_FILE-}" ] || options+=(-readpass "$KESTRAN_SIGNING_PASSWORD_FILE")
  [ -z "${KESTRAN_SIGNING_TIMESTAMP-}" ] || options+=(-ts "$KESTRAN_SIGNING_TIMESTAMP")
  osslsigncode sign "${options[@]}" -h sha256 -time "$SOURCE_DATE_EPOCH" -n KESTRAN -in "$1" -out "$2" >"$work/signing.log" ||
    { cat "$work/signing.log"; return 1; }
}
