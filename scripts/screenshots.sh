#!/usr/bin/env bash
# Builds Velmora and writes a picture of every screen on a new demo plant into DIR
# (default docs/screenshots), on an off-screen desktop of 1280x1024 so that the working
# screens show whole, as on the plant's own monitors.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
out="${1:-$here/docs/screenshots}"
"$here/scripts/setup.sh" "$here/build"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cat > "$work/screen.json" <<'JSON'
{ "screens": [ { "name": "Velmora", "x": 0, "y": 0, "width": 1280, "height": 1024,
                 "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1 } ] }
JSON
mkdir -p "$work/home"
QT_QPA_PLATFORM="offscreen:configfile=$work/screen.json" XDG_RUNTIME_DIR="$work" \
    "$here/build/velmora" --demo --screenshot "$out" --home "$work/home"
