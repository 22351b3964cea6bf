# shellcheck shell=sh
# Sourced by the scripts at the root: makes sure that Debian packages are installed, or what they bring is there from
# elsewhere.
#
# A package is written NAME or NAME=THING. THING is what tells that it is there: a command, a header (CLI/CLI.hpp) or an
# absolute path; without it, the command of the package's name.

# What the command and the add-in are built with.
# shellcheck disable=SC2034
build_packages='g++ cmake ninja-build=ninja libcli11-dev=CLI/CLI.hpp libedit-dev=editline/readline.h'

# What the WebAssembly module and its package are built with.
# shellcheck disable=SC2034
wasm_packages='cmake ninja-build=ninja clang-14=clang++-14 llvm-14=llvm-ar-14 lld-14=wasm-ld-14
  wasi-libc=/usr/lib/wasm32-wasi/libc.a libc++-14-dev-wasm32=/usr/lib/llvm-14/lib/wasm32-wasi/libc++.a
  libclang-rt-14-dev-wasm32=/usr/lib/llvm-14/lib/clang/14.0.6/lib/wasi/libclang_rt.builtins-wasm32.a nodejs=node'

# has_package PACKAGE
has_package() {
  # One that dpkg was killed over may be there in part.
  case $(dpkg-query -W -f '${db:Status-Abbrev}' "${1%%=*}" 2>/dev/null) in
    ii*) return 0 ;;
    ?[HUFWt]*) return 1 ;;
  esac
  case ${1#*=} in
    /*) [ -e "${1#*=}" ] && return 0 ;;
    *.h | *.hpp) printf '#if !__has_include(<%s>)\n#error\n#endif\n' "${1#*=}" | g++ -x c++ -E - >/dev/null 2>&1 && return 0 ;;
    *) command -v "${1#*=}" >/dev/null && return 0 ;;
  esac
  return 1
}

# has_packages PACKAGE...: whether all of them are there.
has_packages() {
  for package in "$@"; do
    has_package "$package" || return 1
  done
}

# require_packages PACKAGE...: installs what is missing, as root or through sudo. Where that cannot be, says what is
# missing and fails. Silent when everything is there.
require_packages() {
  missing=
  for package in "$@"; do
    has_package "$package" || missing="$missing ${package%%=*}"
  done
  [ -n "$missing" ] || return 0

  if ! command -v apt-get >/dev/null; then
    echo "kestran: not found, and there is no apt-get to install it; by Debian's names:$missing" >&2
    return 1
  fi
  as_root=
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "kestran: these packages are needed; as root, run" >&2
      echo "  apt-get update && apt-get install --no-install-recommends -y$missing" >&2
      return 1
    fi
    # sudo asks for a password on the terminal.
    if [ ! -t 2 ] && ! sudo -n true 2>/dev/null; then
      echo "kestran: these packages are needed; run" >&2
      echo "  sudo apt-get update && sudo apt-get install --no-install-recommends -y$missing" >&2
      return 1
    fi
    as_root=sudo
  fi

  echo "kestran: installing$missing; a minute or two" >&2
  apt_log=$(mktemp)
  apt_code=0
  # A service that a package starts must not keep the lock of whoever sources this.
  apt_install >"$apt_log" 2>&1 </dev/null 9>&- || apt_code=1
  if [ $apt_code != 0 ]; then
    tail -n 40 "$apt_log" >&2
    echo "kestran: not installed:$missing" >&2
  fi
  rm -f "$apt_log"
  return $apt_code
}

# Prints all that apt says.
apt_install() {
  set -- env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600
  # Unlike the installation, an update does not wait for another one that runs. One that fails may still leave lists
  # that know the packages.
  tries=300
  until update=$($as_root timeout 300 "$@" update 2>&1); do
    tries=$((tries - 1))
    case $tries:$update in
      0:*) break ;;
      *'Could not get lock'*) sleep 2 ;;
      *) break ;;
    esac
  done
  echo "$update"
  # What an installation that was killed has left half done.
  $as_root env LC_ALL=C DEBIAN_FRONTEND=noninteractive dpkg --configure -a || true
  # A source that is silent would be asked for hours, one package after the other.
  # shellcheck disable=SC2086
  $as_root timeout 1200 "$@" install --download-only --no-install-recommends -y $missing ||
    { [ $? != 124 ] || echo 'not downloaded within 20 minutes'; return 1; }
  # shellcheck disable=SC2086
  $as_root "$@" install --no-install-recommends -y $missing
}
