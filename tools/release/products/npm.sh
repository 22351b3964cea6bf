# shellcheck shell=bash
# The package for Node and for pages of the web: npm install ./kestran-VERSION.tgz
# shellcheck disable=SC2086
packages="$wasm_packages"

make_product() {
  built wasm kestran_npm
  mkdir "$stage/root"
  cp -r build/wasm/npm "$stage/root/package"
  tarred "$stage/root" "$out/kestran-$version.tgz"
}
