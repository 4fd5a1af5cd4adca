#!/usr/bin/env bash
# Starts or stops a throwaway PostgreSQL cluster for the tests and writes its connection text
# to <dir>/conninfo. When VORTEL_TEST_PG names a server, or no PostgreSQL is installed, nothing
# is started and the PostgreSQL halves of the tests use that server or skip.
#
# The cluster itself lives in a fresh folder of the system's temporary folder, which its owner
# can always reach: run as root, the server runs as "postgres", which may not enter the clone's
# folder (root's home, a private mktemp -d). <dir>/cluster-path tells stop where it is.
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
    if [ -f "$dir/cluster-path" ]; then
        old=$(cat "$dir/cluster-path")
        if [ -f "$old/cluster/postmaster.pid" ]; then
            as_owner "$bindir/pg_ctl" -D "$old/cluster" -m immediate stop >/dev/null 2>&1
        fi
        rm -rf "$old"
    fi
    rm -rf "$dir"; mkdir -p "$dir"
    home=$(mktemp -d "${TMPDIR:-/tmp}/vortel-test-pg.XXXXXX") || exit 1
    printf '%s\n' "$home" > "$dir/cluster-path"
    if [ "$(id -u)" = 0 ]; then chown postgres "$home"; fi
    as_owner "$bindir/initdb" -D "$home/cluster" -U vortel --auth=trust -E UTF8 \
        --locale=C.UTF-8 >"$dir/initdb.log" 2>&1 || { cat "$dir/initdb.log"; exit 1; }
    as_owner "$bindir/pg_ctl" -D "$home/cluster" -l "$home/server.log" -w -t 60 \
        -o "-k $home -p $port -c listen_addresses='' -c fsync=off -c max_connections=200" \
        start >/dev/null || { cat "$home/server.log"; exit 1; }
    printf 'host=%s port=%s user=vortel dbname=postgres\n' "$home" "$port" > "$dir/conninfo"
    echo "PostgreSQL test cluster on $home:$port"
    ;;
stop)
    if [ -f "$dir/cluster-path" ]; then
        home=$(cat "$dir/cluster-path")
        if [ -n "$bindir" ] && [ -f "$home/cluster/postmaster.pid" ]; then
            as_owner "$bindir/pg_ctl" -D "$home/cluster" -m fast stop >/dev/null
        fi
        rm -rf "$home" "$dir/cluster-path"
    fi
    rm -f "$dir/conninfo"
    ;;
esac
