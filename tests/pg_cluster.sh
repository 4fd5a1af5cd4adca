#!/usr/bin/env bash
# Starts or stops a throwaway PostgreSQL cluster for the tests and writes its connection text
# to <dir>/conninfo. When VORTEL_TEST_PG names a server, or no PostgreSQL is installed, nothing
# is started and the PostgreSQL halves of the tests use that server or skip.
set -u
action=${1:?start|stop}
dir=${2:?folder}
# A port of its own for each build folder, so that two builds can test at the same time.
port=${VORTEL_TEST_PG_PORT:-$((55432 + $(printf '%s' "$dir" | cksum | cut -d' ' -f1) % 400))}

if [ -n "${VORTEL_TEST_PG:-}" ]; then
    mkdir -p "$dir"; printf '%s\n' "$VORTEL_TEST_PG" > "$dir/conninfo"; exit 0
fi

bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
as_owner() {
    if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

case "$action" in
start)
    rm -f "$dir/conninfo"
    if [ -z "$bindir" ] || [ ! -x "$bindir/initdb" ]; then
        echo "PostgreSQL is not installed: the PostgreSQL halves of the tests will skip"; exit 0
    fi
    if [ -f "$dir/cluster/postmaster.pid" ]; then
        as_owner "$bindir/pg_ctl" -D "$dir/cluster" -m immediate stop >/dev/null 2>&1
    fi
    rm -rf "$dir"; mkdir -p "$dir"
    if [ "$(id -u)" = 0 ]; then chown postgres "$dir"; fi
    as_owner "$bindir/initdb" -D "$dir/cluster" -U vortel --auth=trust -E UTF8 \
        --locale=C.UTF-8 >"$dir/initdb.log" 2>&1 || { cat "$dir/initdb.log"; exit 1; }
    as_owner "$bindir/pg_ctl" -D "$dir/cluster" -l "$dir/server.log" -w -t 60 \
        -o "-k $dir -p $port -c listen_addresses='' -c fsync=off -c max_connections=200" \
        start >/dev/null || { cat "$dir/server.log"; exit 1; }
    printf 'host=%s port=%s user=vortel dbname=postgres\n' "$dir" "$port" > "$dir/conninfo"
    echo "PostgreSQL test cluster on $dir:$port"
    ;;
stop)
    if [ -n "$bindir" ] && [ -f "$dir/cluster/postmaster.pid" ]; then
        as_owner "$bindir/pg_ctl" -D "$dir/cluster" -m fast stop >/dev/null
    fi
    rm -f "$dir/conninfo"
    ;;
esac
