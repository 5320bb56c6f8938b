#!/usr/bin/env bash
# Builds Velmora and runs every benchmark in bench/, then prints one table: benchmark,
# our figure, the baseline's, their ratio and the machine's cores. A benchmark prints our
# time first and the baseline's second ("... 12.3 ms ... 4.5 ms"), or one line per figure
# ("row: title | 12.3 ms | 4.5 ms", memory in MB); one that fails or prints no figures
# shows as such and the others go on. The whole-program baselines (bare_window) are not
# benchmarks of their own.
# Usage: scripts/bench.sh [build-dir]   (VELMORA_BENCH_BUILT=1: the build dir is up to date)
set -uo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$here/build}"
if [ -z "${VELMORA_BENCH_BUILT:-}" ]; then
    "$here/scripts/setup.sh" "$build" || { echo "build failed" >&2; exit 1; }
fi

cores="$(nproc)"
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
logs="$(mktemp -d)"
# B1 on the server store runs on a throwaway PostgreSQL cluster, started only when that
# benchmark is built to run; where none can be started its row says it was skipped.
if [ -x "$build/bench/b1_server" ]; then
    "$here/scripts/pg-cluster.sh" start "$logs/pg" >/dev/null 2>&1
    [ -f "$logs/pg/uri" ] && export VELMORA_BENCH_PG="$(cat "$logs/pg/uri")"
fi
trap '"$here/scripts/pg-cluster.sh" stop "$logs/pg" >/dev/null 2>&1; rm -rf "$logs"' EXIT

rows=()
for src in "$here"/bench/*.cpp; do
    name="$(basename "$src" .cpp)"
    exe="$build/bench/$name"
    [ -x "$exe" ] || { rows+=("$name|-|-|not built"); continue; }
    echo "running $name ..." >&2
    if ! (cd "$here" && "$exe") >"$logs/$name.txt" 2>"$logs/$name.err"; then
        rows+=("$name|-|-|failed (see stderr of $exe)")
        continue
    fi
    # A benchmark with several figures prints each as "row: title | ours unit | baseline unit".
    if grep -q '^row: ' "$logs/$name.txt"; then
        while IFS='|' read -r t o b; do
            t="$(echo "${t#row: }" | sed 's/ *$//' | cut -c1-50)"
            o="$(echo "$o" | xargs)"
            b="$(echo "$b" | xargs)"
            ratio="$(awk -v a="${o%% *}" -v b="${b%% *}" 'BEGIN { if (b + 0 > 0) printf "%.2fx", a / b; else print "-" }')"
            rows+=("$t|$o|${b:--}|$ratio")
        done < <(grep '^row: ' "$logs/$name.txt")
        continue
    fi
    title="$(head -n 1 "$logs/$name.txt" | cut -d: -f1 | cut -c1-50)"
    figures="$(grep -oE '[0-9]+([.][0-9]+)? ms' "$logs/$name.txt" | head -n 2 | cut -d' ' -f1 | tr '\n' ' ')"
    read -r ours base <<<"$figures"
    if [ -z "${ours:-}" ] || [ -z "${base:-}" ]; then
        rows+=("${title:-$name}|-|-|$(head -n 1 "$logs/$name.txt" | cut -d: -f2- | sed 's/^ *//')")
        continue
    fi
    ratio="$(awk -v a="$ours" -v b="$base" 'BEGIN { if (b > 0) printf "%.2fx", a / b; else print "-" }')"
    rows+=("${title:-$name}|$ours ms|$base ms|$ratio")
done

printf '\n%-50s  %12s  %12s  %s\n' "benchmark" "ours" "baseline" "ratio"
printf '%-50s  %12s  %12s  %s\n' "---------" "----" "--------" "-----"
for r in "${rows[@]}"; do
    IFS='|' read -r b o l q <<<"$r"
    printf '%-50s  %12s  %12s  %s\n' "$b" "$o" "$l" "$q"
done
printf '\ncores: %s\n' "$cores"
