#!/usr/bin/env bash
# Installs what building and testing Zerna Vortel needs on a Debian machine, skipping what is
# already there.
set -euo pipefail
packages=(
    cmake ninja-build g++ ccache pkg-config clang-format
    qt6-base-dev libqt6sql6-sqlite libqt6sql6-psql libgl-dev
    libsqlite3-dev libsodium-dev libxlsxwriter-dev python3-openpyxl
    postgresql
    fonts-dejavu-core
)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo=""
    [ "$(id -u)" = 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
