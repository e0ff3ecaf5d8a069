#!/usr/bin/env bash
# The tests' own PostgreSQL server: a throwaway cluster in a directory of the build tree,
# listening only on a Unix socket in that directory. CTest starts it before the tests that
# run on PostgreSQL and stops it after them.
#   pgcluster.sh start DIR PORT     a fresh cluster (any previous one there is removed)
#   pgcluster.sh stop DIR
# The server refuses to run as root: as root (as CI runs) it runs as the system's postgres
# user, which Debian's postgresql package creates.
set -euo pipefail
action="$1"
dir="$2"
bindir="$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)"
if [ -z "$bindir" ]; then
  echo "PostgreSQL non è installato (script/bootstrap installa il pacchetto postgresql)." >&2
  exit 1
fi
as_server() {
  if [ "$(id -u)" -eq 0 ]; then
    runuser -u postgres -- "$@"
  else
    "$@"
  fi
}
case "$action" in
start)
  port="$3"
  if [ -f "$dir/data/postmaster.pid" ]; then
    as_server "$bindir/pg_ctl" -D "$dir/data" -m immediate -w stop >/dev/null 2>&1 || true
  fi
  rm -rf "$dir"
  mkdir -p "$dir"
  if [ "$(id -u)" -eq 0 ]; then
    chown postgres "$dir"
  fi
  as_server "$bindir/initdb" -D "$dir/data" -U postgres -A trust -E UTF8 --no-locale \
    >"$dir/initdb.log" 2>&1 || { cat "$dir/initdb.log" >&2; exit 1; }
  # Every role enters without a password but "cassiere", whose password the tests get wrong
  # on purpose.
  printf 'local all cassiere scram-sha-256\nlocal all all trust\n' >"$dir/data/pg_hba.conf"
  # Durability does not matter for a throwaway server: the tests run faster without it.
  as_server "$bindir/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 start \
    -o "-k $dir -p $port -c listen_addresses='' -c fsync=off -c synchronous_commit=off -c full_page_writes=off -c max_connections=200" \
    >/dev/null || { cat "$dir/server.log" >&2; exit 1; }
  ;;
stop)
  if [ -f "$dir/data/postmaster.pid" ]; then
    as_server "$bindir/pg_ctl" -D "$dir/data" -m immediate -w stop >/dev/null 2>&1 || true
  fi
  rm -rf "$dir"
  ;;
*)
  echo "uso: pgcluster.sh start DIR PORT | stop DIR" >&2
  exit 2
  ;;
esac
