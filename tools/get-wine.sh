#!/bin/bash
# get-wine.sh TARGET: leaves TARGET/bin/wine, a command that runs 32-bit and 64-bit Windows programs without a display.
#   TARGET/bin/wine PROGRAM.EXE ARGUMENT...
# It needs no root and changes nothing of the system: 64-bit Wine and only the 32-bit Windows libraries of the same
# version are unpacked under TARGET from Debian's packages; 64-bit Wine runs 32-bit programs with them, so that no
# 32-bit Linux library is needed. Does nothing when TARGET already works.
set -euo pipefail
unset WINEPREFIX WINEDEBUG WINEDLLOVERRIDES WINEARCH WINEDLLPATH WINELOADER WINESERVER
[ $# = 1 ] || { echo "usage: $0 TARGET" >&2; exit 2; }
mkdir -p "$1"
target=$(cd "$1" && pwd)
# A shared lock on this file, which who uses Wine may hold as well, keeps Wine from being set up anew.
exec 8>"$target/.lock"

# Each kind of program must give its own exit code back: a Wine without 32-bit support exits with 0 and runs nothing.
# The time limit is for one that hangs.
runs() {  # SYSTEM-FOLDER
  local code=0
  timeout 300 "$target/bin/wine" "C:\\windows\\$1\\cmd.exe" /c 'exit 42' >/dev/null 2>&1 8>&- || code=$?
  [ $code = 42 ]
}

# A program that meets a server about to leave dies; the next try starts a new server.
works() {
  [ -x "$target/bin/wine" ] && [ -d "$target/prefix" ] || return 1
  local kind
  for kind in syswow64 system32; do runs $kind || runs $kind || return 1; done
}

flock -s 8
if works; then exit 0; fi
flock 8
if works; then exit 0; fi

(cd "$target" && rm -rf usr lib bin prefix work)
work=$target/work
mkdir -p "$work"/{state/lists/partial,cache/archives/partial,packages} "$target/bin"

# A package index of its own, which knows both architectures.
: >"$work/status"
cat >"$work/apt.conf" <<CONF
APT::Architecture "amd64";
APT::Architectures { "amd64"; "i386"; };
Dir::State "$work/state";
Dir::State::status "$work/status";
Dir::Cache "$work/cache";
Acquire::Languages "none";
Acquire::Retries "3";
APT::Sandbox::User "root";
CONF
export APT_CONFIG=$work/apt.conf
# An index that does not load may not be needed.
apt-get -q update >/dev/null 2>&1 || true

versions() { apt-cache show "$1" 2>/dev/null | sed -n 's/^Version: //p' | sort -u; }
version=$(comm -12 <(comm -12 <(versions libwine:i386) <(versions libwine:amd64)) <(versions wine64:amd64) |
  sort -V | tail -n 1)
[ -n "$version" ] || { echo "no version of wine is there for both amd64 and i386" >&2; exit 1; }
echo "unpacking wine $version into $target"
needed=("libwine:i386=$version" "libwine:amd64=$version" "wine64:amd64=$version" libz-mingw-w64)
ls /usr/lib/*/libunwind.so.8 >/dev/null 2>&1 || needed+=(libunwind8:amd64)
(cd "$work/packages" && apt-get -q download "${needed[@]}" >/dev/null)

# shellcheck disable=SC2086  # the name is a pattern
unpack() { dpkg-deb --fsys-tarfile "$work"/packages/$1 | tar -x -C "$2" --no-same-owner --wildcards "${@:3}"; }
unpack 'wine64_*_amd64.deb' "$target" './usr/lib/wine/*'
unpack 'libwine_*_amd64.deb' "$target" './usr/lib/x86_64-linux-gnu/wine/*' './usr/share/wine/*'
unpack 'libwine_*_i386.deb' "$work" './usr/lib/i386-linux-gnu/wine/i386-windows/*'
libraries=$target/usr/lib/x86_64-linux-gnu/wine
mv "$work/usr/lib/i386-linux-gnu/wine/i386-windows" "$libraries/"

# user32.dll needs zlib1.dll, which the packages expect from elsewhere. Wine knows a library of its own by a mark at
# byte 64.
mkdir "$work/zlib"
unpack 'libz-mingw-w64_*.deb' "$work/zlib" './*'
for kind in i686:i386 x86_64:x86_64; do
  library=$(find "$work/zlib" -path "*/${kind%:*}-w64-mingw32/*" -name zlib1.dll | head -n 1)
  place=$libraries/${kind#*:}-windows/zlib1.dll
  cp "$library" "$place"
  printf 'Wine builtin DLL\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' |
    dd of="$place" bs=1 seek=64 conv=notrunc status=none
done
mkdir "$target/lib"
# Where the FreeType library is there but no font, Wine hangs at its first start; without the library it needs no
# font. This file is found first and is none.
: >"$target/lib/libfreetype.so.6"
if ls "$work"/packages/libunwind8_* >/dev/null 2>&1; then
  unpack 'libunwind8_*_amd64.deb' "$work" './usr/lib/x86_64-linux-gnu/libunwind.so.8*'
  mv "$work"/usr/lib/x86_64-linux-gnu/libunwind.so.8* "$target/lib/"
fi
# The libraries' debug parts are half of the gigabyte; Wine wants its own file alignment kept.
for kind in i686:i386 x86_64:x86_64; do
  strip=${kind%:*}-w64-mingw32-objcopy
  command -v "$strip" >/dev/null || continue
  find "$libraries/${kind#*:}-windows" -type f -name '*.dll' ! -name zlib1.dll -print0 |
    xargs -0 -r -n 1 -P 2 "$strip" --strip-debug --file-alignment=4096 2>/dev/null || true
done
rm -rf "$work"
unset APT_CONFIG

# winhlp32 would stay behind and hold the caller's output open; .NET and the HTML engine would ask to be installed.
cat >"$target/bin/wine" <<WRAPPER
#!/bin/sh
unset DISPLAY WAYLAND_DISPLAY
export WINEPREFIX="$target/prefix" WINEDEBUG="\${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="\${WINEDLLOVERRIDES:-mscoree,mshtml,winhlp32.exe=}"
export WINELOADER="$target/usr/lib/wine/wine64" WINESERVER="$target/usr/lib/wine/wineserver64"
export LD_LIBRARY_PATH="$target/lib\${LD_LIBRARY_PATH:+:\$LD_LIBRARY_PATH}"
exec "\$WINELOADER" "\$@"
WRAPPER
chmod +x "$target/bin/wine"
timeout 600 "$target/bin/wine" wineboot -i >/dev/null 2>&1 8>&- || true
works || { echo "the unpacked wine does not run 32-bit and 64-bit programs here" >&2; exit 1; }
