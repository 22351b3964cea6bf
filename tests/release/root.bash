# shellcheck shell=bash
# Sourced by the tests that install packages: fresh roots of a minimal Debian 12, in which commands run. What was downloaded
# once stays in ~/.cache/kestran/debian-12.
cache=${XDG_CACHE_HOME:-~/.cache}/kestran/debian-12
[ "$(id -u)" = 0 ] || { echo 'packages are installed in a root of their own, which takes the user root'; exit 1; }
mkdir -p "$cache/packages"
roots=$(mktemp -d "$PWD/build/roots.XXXXXX")
at_exit=()
cleaned() {
  local command
  for command in "${at_exit[@]}"; do $command; done
  rm -rf "$roots"
}
trap cleaned EXIT
trap 'exit 1' HUP INT TERM

# debootstrap downloads from where apt does, through apt's proxy.
base_root() {
  local mirror proxy
  # shellcheck disable=SC2016
  mirror=$(apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
    sed -n 's/^bookworm main //p' | head -n 1)
  [ -n "$mirror" ] || { echo 'apt knows no place for Debian 12 (bookworm main)'; return 1; }
  proxy=$(apt-config dump --format '%v' Acquire::http::Proxy)
  env ${proxy:+"http_proxy=$proxy"} timeout 600 debootstrap --force-check-gpg --variant=minbase bookworm "$roots/base" "$mirror" \
    >"$cache/debootstrap.log" 2>&1 || { tail -n 20 "$cache/debootstrap.log"; return 1; }
  [ -z "$proxy" ] || echo "Acquire::http::Proxy \"$proxy\";" >"$roots/base/etc/apt/apt.conf.d/proxy"
  find "$roots/base/var/cache/apt/archives" -name '*.deb' -delete
  tar -C "$roots/base" -c . >"$cache/base.tar.new"
  mv "$cache/base.tar.new" "$cache/base.tar"
  rm -rf "$roots/base"
}

# fresh_root NAME: `root` is a new one.
fresh_root() {
  root=$roots/$1
  exec 8>"$cache/.lock"
  flock 8
  [ -e "$cache/base.tar" ] || base_root
  exec 8>&-
  mkdir "$root"
  tar -C "$root" -x <"$cache/base.tar"
  if [ -e /etc/resolv.conf ]; then cat /etc/resolv.conf >"$root/etc/resolv.conf"; fi
  # Services do not start by themselves.
  printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
  chmod 755 "$root/usr/sbin/policy-rc.d"
  inside true || { echo 'chroot does not work here: the packages were not installed anywhere'; return 1; }
}

# inside COMMAND...: runs in the root, for `limit` seconds at most.
limit=120
inside() {
  timeout --kill-after=10 "$limit" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive chroot "$root" "$@"
}

# install FILE.deb|PACKAGE...: with what they depend on.
install() {
  local limit=600 file names=() archives=$root/var/cache/apt/archives
  for file in "$@"; do
    case $file in
      *.deb) cp "$file" "$root/tmp/" && names+=("/tmp/${file##*/}") ;;
      *) names+=("$file") ;;
    esac
  done
  find "$cache/packages" -name '*.deb' -exec cp --link --force -t "$archives" {} + 2>/dev/null ||
    find "$cache/packages" -name '*.deb' -exec cp -t "$archives" {} +
  set -- inside apt-get -q -o DPkg::Options::=--force-unsafe-io install --no-install-recommends -y "${names[@]}"
  # Lists that have become old name files that are gone.
  "$@" >"$root/install.log" 2>&1 || { inside apt-get -q update && "$@"; } >"$root/install.log" 2>&1 || {
    tail -n 20 "$root/install.log"
    return 1
  }
  find "$archives" -maxdepth 1 -name '*.deb' -links 1 -exec cp -n -t "$cache/packages" {} +
}

# removed PACKAGE: nothing of it stays.
removed() {
  inside apt-get -q purge -y "$1" >"$root/install.log" 2>&1 || { tail -n 20 "$root/install.log"; return 1; }
  local left
  left=$(find "$root/usr" "$root/etc" -iname '*kestran*' -print)
  [ -z "$left" ] || { echo "after removal of $1 there is still: $left"; return 1; }
}
