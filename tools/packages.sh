# shellcheck shell=sh
# Sourced by the scripts at the root: makes sure that Debian packages are installed.

# require_packages NAME...: installs what is missing; as root, or through sudo. Where neither is possible, prints the
# one line to run and fails. Silent when everything is there.
require_packages() {
  missing=
  for package in "$@"; do
    case $(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null) in
      ii*) ;;
      *) missing="$missing $package" ;;
    esac
  done
  [ -n "$missing" ] || return 0

  as_root=
  if [ "$(id -u)" -ne 0 ]; then
    as_root=sudo
    if ! command -v sudo >/dev/null || { [ ! -t 0 ] && ! sudo -n true 2>/dev/null; }; then
      echo "kestran: these packages are needed; install them with:" >&2
      echo "  sudo apt-get update && sudo apt-get install --no-install-recommends -y$missing" >&2
      return 1
    fi
  fi
  echo "kestran: installing$missing" >&2
  # A failed update may still leave lists that know the packages.
  $as_root apt-get -q update >/dev/null 2>&1 || true
  # shellcheck disable=SC2086
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install --no-install-recommends -y $missing >&2
}
