# shellcheck shell=bash
# Sourced by tools/make-release and tools/release/make.sh, at the root of the sources.
#
# A product is a file tools/release/products/NAME.sh, which says
#   packages      what it needs, as tools/packages.sh writes it
#   make_product  makes its files in $out, with $stage as its own empty folder and $version
. tools/packages.sh

project_version() { sed -n 's/^project(KESTRAN VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

all_products() {
  local file
  for file in tools/release/products/*.sh; do basename "$file" .sh; done
}

# Packages that all products need together.
release_packages() {
  local name
  # shellcheck disable=SC1090
  { echo "$build_packages"; for name in $(all_products); do (. "tools/release/products/$name.sh" && echo "$packages"); done; } |
    xargs -n 1 | awk '!seen[$0]++'
}

# built PRESET TARGET...: targets of a preset, up to date in build/PRESET.
built() {
  local log=$work/$1.log
  { cmake --preset "$1" && cmake --build --preset "$1" --target "${@:2}"; } >"$log" 2>&1 || { tail -n 40 "$log"; return 1; }
}

# installed PRESET COMPONENT...: an installation below $stage/root, as it is on the user's system. Of programs, only what
# links and runs them is left; which symbol stood where goes to $maps.
installed() {
  local component file
  for component in "${@:2}"; do
    DESTDIR=$stage/root cmake --install "build/$1" --component "$component" --prefix /usr >>"$work/$1.log"
  done
  while read -r file; do
    nm --demangle --numeric-sort --defined-only "$file" >"$maps/${file##*/}.map"
    case $file in
      *.a) strip --strip-debug --enable-deterministic-archives "$file" ;;
      *) strip --strip-unneeded --remove-section=.comment "$file" ;;
    esac
  done < <(find "$stage/root" -type f \( -name '*.a' -o -name '*.so*' -o -perm -100 \) -print | sort)
}

# dated FOLDER: all files readable for everybody, with the release's time.
dated() {
  chmod -R u=rwX,go=rX "$1"
  find "$1" -exec touch --no-dereference --date="@$SOURCE_DATE_EPOCH" {} +
}

sha256sums() { find . -type f ! -name SHA256SUMS -printf '%P\n' | sort | xargs -d '\n' sha256sum; }

# zipped FOLDER FILE.zip
zipped() {
  dated "$1"
  (cd "$1" && find . -type f -printf '%P\n' | sort | zip -q -9 -X -@ "$2")
}

# tarred FOLDER FILE.tar.gz
tarred() {
  dated "$1"
  (cd "$1" && tar --sort=name --owner=0 --group=0 --numeric-owner -c -- *) | gzip -9 -n >"$2"
}

# packaged PACKAGE SECTION DEPENDS DESCRIPTION: Debian's package of what stands in $stage/root, with the scripts in
# $stage/scripts. The libraries it depends on are found out; DEPENDS are others. The description's first line is its
# headline.
packaged() {
  local package=$1 root=$stage/root control=$stage/root/DEBIAN libraries size
  mkdir -p "$control" "$stage/debian" "$root/usr/share/doc/$package"
  cp THIRD-PARTY-NOTICES CHANGELOG.md "$root/usr/share/doc/$package/"
  printf 'Source: kestran\n\nPackage: %s\nArchitecture: amd64\n' "$package" >"$stage/debian/control"
  libraries=$(cd "$stage" && find root -type f \( -name '*.so*' -o -perm -100 \) ! -path '*/DEBIAN/*' -print0 |
    xargs -0 dpkg-shlibdeps --ignore-missing-info -O -xkestran 2>"$work/$package.log") || { cat "$work/$package.log"; return 1; }
  libraries=${libraries#shlibs:Depends=}
  size=$(find "$root/usr" -type f -printf '%s\n' | awk '{ total += int(($1 + 1023) / 1024) } END { print total }')
  cat >"$control/control" <<CONTROL
Package: $package
Version: $version
Architecture: amd64
Section: $2
Priority: optional
Maintainer: KESTRAN developers
Installed-Size: $size
Depends: $libraries${3:+, $3}
Description: $(sed '2,$s/^/ /' <<<"$4")
CONTROL
  (cd "$root" && find usr -type f -print | sort | xargs -d '\n' md5sum >DEBIAN/md5sums)
  [ ! -d "$stage/scripts" ] || cp "$stage/scripts/"* "$control/"
  dated "$root"
  find "$control" -name 'p*' -exec chmod 755 {} +
  dpkg-deb --root-owner-group -Zxz --threads-max=1 --build "$root" "$out/${package}_${version}_amd64.deb" >"$work/$package.log"
}
