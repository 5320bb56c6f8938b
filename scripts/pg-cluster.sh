#!/usr/bin/env bash
# A throwaway PostgreSQL cluster for the server store's tests: a temporary data folder,
# its Unix socket in a temporary folder, no TCP, run by a non-root user (the server
# refuses root). Installs postgresql when it is missing, as setup.sh does.
#   scripts/pg-cluster.sh start DIR   starts it; writes the libpq URI to DIR/uri and prints it
#   scripts/pg-cluster.sh stop DIR    stops it and removes its folders
# "start" never fails: where no server can be started it says why and leaves no DIR/uri,
# and the tests that need one skip.
set -uo pipefail
action="${1:-}"
dir="${2:-}"
[ -n "$action" ] && [ -n "$dir" ] || { echo "usage: $0 start|stop DIR" >&2; exit 2; }
mkdir -p "$dir"
dir="$(cd "$dir" && pwd)"

bindir() {
    local b
    b="$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)"
    [ -n "$b" ] && [ -x "$b/initdb" ] && echo "$b"
}

# Runs a command as the cluster's owner: the postgres system user when we are root.
as_owner() {
    if [ "$(id -u)" -eq 0 ]; then
        runuser -u postgres -- "$@"
    else
        "$@"
    fi
}

stop() {
    [ -f "$dir/cluster" ] || return 0
    local tmp b
    tmp="$(cat "$dir/cluster")"
    b="$(bindir)"
    [ -n "$b" ] && [ -d "$tmp/data" ] && as_owner "$b/pg_ctl" -D "$tmp/data" -m immediate -w stop >/dev/null 2>&1
    case "$tmp" in /tmp/velmora-pg.*) rm -rf "$tmp" ;; esac
    rm -f "$dir/cluster" "$dir/uri"
}

start() {
    stop
    local b
    b="$(bindir)"
    if [ -z "$b" ]; then
        echo "pg-cluster: installing postgresql" >&2
        local sudo_cmd=()
        [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo -n)
        "${sudo_cmd[@]}" apt-get update -qq >/dev/null 2>&1
        DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends postgresql >/dev/null 2>&1
        b="$(bindir)"
    fi
    if [ -z "$b" ]; then
        echo "pg-cluster: no PostgreSQL server available; the server store's tests skip" >&2
        exit 0
    fi
    if [ "$(id -u)" -eq 0 ] && ! id postgres >/dev/null 2>&1; then
        echo "pg-cluster: running as root without a postgres user; the server store's tests skip" >&2
        exit 0
    fi
    local tmp user
    tmp="$(mktemp -d /tmp/velmora-pg.XXXXXX)"
    echo "$tmp" > "$dir/cluster"
    mkdir -p "$tmp/data" "$tmp/sock"
    [ "$(id -u)" -eq 0 ] && chown -R postgres "$tmp"
    user="$(as_owner id -un)"
    # Everyone is trusted on the socket but velmora_pw, who must give a password (the
    # tests of a refused password).
    if ! as_owner "$b/initdb" -D "$tmp/data" -U "$user" -A trust -E UTF8 --locale=C.UTF-8 --no-sync \
            >"$tmp/initdb.log" 2>&1 ||
       ! as_owner sed -i '1i local all velmora_pw scram-sha-256' "$tmp/data/pg_hba.conf" ||
       ! as_owner "$b/pg_ctl" -D "$tmp/data" -l "$tmp/server.log" -w -t 60 \
            -o "-c listen_addresses='' -k $tmp/sock -c fsync=off -c full_page_writes=off -c max_connections=40" \
            start >/dev/null 2>&1 ||
       ! as_owner "$b/createdb" -h "$tmp/sock" -U "$user" velmora >/dev/null 2>&1 ||
       ! as_owner "$b/psql" -h "$tmp/sock" -U "$user" -d velmora -q \
            -c "CREATE ROLE velmora_pw LOGIN PASSWORD 'giusta'" >/dev/null 2>&1; then
        echo "pg-cluster: the server did not start (see $tmp); the server store's tests skip" >&2
        cat "$tmp/initdb.log" "$tmp/server.log" 2>/dev/null | tail -5 >&2
        exit 0
    fi
    local uri="postgresql://$user@/velmora?host=$tmp/sock"
    echo "$uri" > "$dir/uri"
    echo "$uri"
}

case "$action" in
start) start ;;
stop) stop ;;
*) echo "usage: $0 start|stop DIR" >&2; exit 2 ;;
esac
