#!/usr/bin/env bash
# Starts or stops a throw-away PostgreSQL server for the ODBC tests: its own
# data folder, listening only on 127.0.0.1 at the given port, trusting local
# connections of the user "kel". The server never runs as root: when run as
# root the folder is handed to the system's "postgres" account.
#   pg_test_server.sh start <data folder> <port>   (exit 0 when it accepts connections)
#   pg_test_server.sh stop  <data folder>
set -euo pipefail
action=${1:?start o stop}
data=${2:?carpeta de datos}
bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -x "$bin/pg_ctl" ] || { echo "PostgreSQL no está instalado (paquete postgresql)" >&2; exit 3; }
as_server() {
  if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}
case "$action" in
  start)
    port=${3:?puerto}
    mkdir -p "$data"
    [ "$(id -u)" -eq 0 ] && chown postgres "$data"
    if [ ! -f "$data/PG_VERSION" ]; then
      as_server "$bin/initdb" -D "$data" -U kel -A trust -E UTF8 --locale=C.UTF-8 >"$data.initdb.log" 2>&1
    fi
    as_server "$bin/pg_ctl" -D "$data" -l "$data/server.log" -w -t 60 \
      -o "-p $port -k $data -c listen_addresses=127.0.0.1 -c fsync=off" start >/dev/null
    ;;
  stop)
    as_server "$bin/pg_ctl" -D "$data" -m fast -w stop >/dev/null || true
    ;;
  *)
    echo "uso: $0 start|stop <carpeta> [puerto]" >&2
    exit 2
    ;;
esac
