#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite (Qt offscreen).
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/setup.sh" "$here/build"
cd "$here/build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$(nproc)" --timeout 600
