#!/bin/sh
# Includes point one way: numerics <- models <- functions <- addin <- host, and functions <- bindings. Prints each
# include of the folder given as first argument that points another way, and fails when there is one.
set -eu
cd "$1"
failed=0
check() {  # FOLDER ALLOWED-FOLDERS...
  folder=$1
  shift
  [ -d "$folder" ] || return 0
  allowed=$(printf '%s|' "$folder" "$@")
  wrong=$(grep -rnE '^ *# *include "' --include='*.h' --include='*.cpp' --include='*.c' "$folder" |
    grep -E '"(numerics|models|functions|addin|bindings|host|tests|tools|bench)/' | grep -vE "\"(${allowed%|})/") || return 0
  printf '%s\n' "$wrong"
  failed=1
}
check numerics
check models numerics
check functions models numerics
check addin functions models numerics
check bindings functions models numerics
check host addin functions models numerics
exit $failed
