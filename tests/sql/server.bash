# shellcheck shell=bash
# Sourced: a PostgreSQL server of our own, of which nothing is left behind.
#
#   start_server FOLDER PRESET   installs the extension of build/PRESET beside a server in FOLDER and starts it
#   stop_server
#   sql [ARGUMENT...]            psql on that server
#
# The server finds the extension where its own files are. It runs from copies of the system's programs, among links to
# the other files of the system, so that nothing is installed in the system itself. Clients come through a socket in
# FOLDER, which must be one of our own below /tmp. PostgreSQL refuses to run as root.

server_programs=/usr/lib/postgresql/15/bin
server_seconds=600  # after which the server ends whatever happens

as_server() {
  if [ "$(id -u)" = 0 ]; then
    (cd / && runuser -u postgres -- "$@")
  else
    "$@"
  fi
}

sql() { as_server timeout 250 psql -X -q -h "$server_folder" -d postgres -v ON_ERROR_STOP=1 "$@"; }

# link_files FOLDER: all that the system has in a folder, beside what is there.
link_files() {
  mkdir -p "$server_folder/root$1"
  local file
  for file in "$1"/*; do [ -e "$server_folder/root$file" ] || ln -s "$file" "$server_folder/root$file"; done
}

start_server() {
  server_folder=$1
  local programs=$server_folder/root$server_programs library share
  library=$("$server_programs/pg_config" --pkglibdir)
  share=$("$server_programs/pg_config" --sharedir)
  DESTDIR=$server_folder/root cmake --install "build/$2" --component postgres >/dev/null || return
  mkdir -p "$programs"
  cp "$server_programs"/{postgres,initdb} "$programs/" || return
  link_files "$library"
  link_files "$share/extension"
  link_files "$share"
  [ "$(id -u)" != 0 ] || chown postgres "$server_folder" || return
  as_server timeout 120 "$programs/initdb" -D "$server_folder/data" -A trust -E UTF8 --locale=C --no-sync \
    >"$server_folder/initdb.log" 2>&1 || { tail -n 20 "$server_folder/initdb.log"; return 1; }
  as_server timeout $server_seconds "$programs/postgres" -D "$server_folder/data" -k "$server_folder" -h '' \
    -c fsync=off -c shared_buffers=64MB -c log_min_messages=fatal >"$server_folder/server.log" 2>&1 &
  server_id=$!
  local i
  for ((i = 0; i < 300; ++i)); do
    sql -c '' >/dev/null 2>&1 && return
    kill -0 $server_id 2>/dev/null || break
    sleep 0.1
  done
  tail -n 20 "$server_folder/server.log"
  return 1
}

stop_server() {
  [ -n "${server_id-}" ] || return 0
  [ ! -e "$server_folder/data/postmaster.pid" ] ||
    kill -INT "$(head -n 1 "$server_folder/data/postmaster.pid")" 2>/dev/null
  wait "$server_id" 2>/dev/null
  server_id=
}
