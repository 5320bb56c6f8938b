#!/usr/bin/env bash
# scripts/bench.sh starts its PostgreSQL cluster only for the server benchmark: with only
# another benchmark built, that one runs without a server's address.
set -u
build="$(mktemp -d)"
trap 'rm -rf "$build"' EXIT
mkdir -p "$build/bench"
printf '#!/bin/sh\necho "server: ${VELMORA_BENCH_PG:-none}"\n' >"$build/bench/b6_sort"
chmod +x "$build/bench/b6_sort"
VELMORA_BENCH_BUILT=1 "$(dirname "$0")/../../scripts/bench.sh" "$build" 2>/dev/null | grep -q '  none$'
