# shellcheck shell=bash
# Sourced by the suites of Windows.

# A Wine of ours, or the one that WINE names, which must run 32-bit and 64-bit programs.
cache=${XDG_CACHE_HOME:-~/.cache}/kestran
export KESTRAN_WINE=$PWD/tools/run-windows.sh KESTRAN_WINE_NOTES=$run/notes
if [ -z "${WINE-}" ]; then
  get_wine=yes
  export WINE=$cache/wine/bin/wine
fi

set_up_wine() { [ -z "${get_wine-}" ] || tools/get-wine.sh "${WINE%/bin/wine}"; }

# Wine's server lives as long as a program is there: one that waits for its input to end keeps it up until this shell
# ends, however that comes. The lock keeps another run from setting Wine up anew meanwhile.
hold_wine() {
  local try word input=$run/wine.in output=$run/wine.out
  mkdir -p "$cache/wine"
  for try in 1 2 3; do
    rm -f "$input" "$output"
    mkfifo "$input" "$output" || return
    flock -s -o "$cache/wine/.lock" "$WINE" cmd /c 'echo up&set /p x=' <"$input" >"$output" 2>/dev/null &
    exec 7>"$input" 6<"$output"
    if read -r word <&6 && [ "${word%$'\r'}" = up ]; then return 0; fi
    echo "Wine did not start at try $try" | tee -a "$run/notes"
    exec 7>&-
    wait $!
  done
  return 1
}

windows_suite() {  # PRESET
  step "$1: build" build "$1" || return
  if ! once 'wine: set up' set_up_wine || ! hold_wine; then
    echo '** WINE COULD NOT BE SET UP: NOTHING WAS RUN ON WINDOWS **'
    return 1
  fi
  step "$1: tests" run "$1"
  once 'linux: command' build linux kestran &&
    step "$1: same output as Linux" same_output "build/$1" timeout 900 "$KESTRAN_WINE" "build/$1/bin/kestran.exe" &&
    once 'linux: KESTRAN12' build linux kestran_addin12 &&
    step "$1: KESTRAN12, same output as Linux" same_output_as build/linux/bin/libkestran12.so "build/$1" \
      timeout 900 "$KESTRAN_WINE" "build/$1/bin/kestran.exe" --threads 4 --library "build/$1/bin/KESTRAN12.xll"
}
