#!/usr/bin/env bash
# Configures and builds into ./build (Ninja, ccache when present).
set -euo pipefail
cd "$(dirname "$0")/.."
# Let ccache share compiled objects between clones at different paths.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=true
cmake -G Ninja -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc)"
