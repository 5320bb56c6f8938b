#!/usr/bin/env bash
# Installs what Velmora needs to build, test and run, when it is missing (Debian/Ubuntu),
# then configures and builds. Usage: scripts/setup.sh [build-dir | --packages-only]
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$here/build}"

packages=(build-essential cmake ninja-build pkg-config
          qt6-base-dev qt6-qpa-plugins libqt6printsupport6 qt6-charts-dev libqt6opengl6-dev libgl-dev
          libsqlite3-dev libgtest-dev fonts-liberation2
          mdbtools-dev mdbtools xvfb xauth poppler-utils clang-format libpq-dev postgresql
          qt6-translations-l10n)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}" >&2
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
fi

[ "$build" = --packages-only ] && exit 0
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >&2
cmake --build "$build" -j "$(nproc)" >&2
