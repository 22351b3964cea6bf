# shellcheck shell=bash
# The command, the add-ins for Linux and the library with its headers, as a package of Debian.
packages='binutils=strip dpkg-dev=dpkg-shlibdeps'

make_product() {
  built linux kestran kestran_shared kestran_static
  installed linux command library
  local share=$stage/root/usr/share
  mv "$share/doc/KESTRAN" "$share/doc/kestran"
  cp README.md "$share/doc/kestran/"
  cp -r docs "$share/doc/kestran/"
  gzip -9 -n "$share/man/man1/kestran.1"
  mkdir "$stage/scripts"
  echo 'activate-noawait ldconfig' >"$stage/scripts/triggers"
  echo "libkestran ${version%%.*} kestran (>= $version)" >"$stage/scripts/shlibs"
  packaged kestran science '' 'Option pricing: the worksheet functions as a command and a library
The command kestran prices commodity, energy, foreign-exchange and
interest-rate options from worksheet formulas or from files of deals;
libkestran does so in programs of your own.'
}
