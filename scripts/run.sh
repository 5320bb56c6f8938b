#!/usr/bin/env bash
# Installs what is missing, builds, and starts Velmora (arguments go to the program).
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/setup.sh" "$here/build"
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    exec xvfb-run -a "$here/build/velmora" "$@"
fi
exec "$here/build/velmora" "$@"
