#!/usr/bin/env bash
# Builds Velmora in release form and makes its Debian package (program, desktop entry,
# icon, declared dependencies) in the build folder. Usage: scripts/package.sh [build-dir]
# Install it with: sudo apt install ./velmora_*.deb
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$here/build-package}"
"$here/scripts/setup.sh" --packages-only
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >&2
cmake --build "$build" -j "$(nproc)" --target velmora >&2
(cd "$build" && cpack -G DEB >&2)
ls "$build"/velmora_*.deb
