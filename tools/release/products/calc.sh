# shellcheck shell=bash
# The extension for LibreOffice Calc.
packages='libreoffice-dev=/usr/lib/libreoffice/sdk/bin/unoidl-write zip'

make_product() {
  built linux kestran_oxt
  cp build/linux/KESTRAN.oxt "$out/"
}
