#!/usr/bin/env bash
# Installs what is missing, builds, and starts Velmora (arguments go to the program).
# A data folder that holds no store yet starts on the demo plant, and the program says
# so on standard error; a driven run (--drive) never does.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/setup.sh" "$here/build"
args=(--demo-if-new "$@")
for a in "$@"; do
    case "$a" in --drive* | --demo* | --screenshot* | --import* | --help | --version) args=("$@") ;; esac
done
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    exec xvfb-run -a "$here/build/velmora" "${args[@]}"
fi
exec "$here/build/velmora" "${args[@]}"
