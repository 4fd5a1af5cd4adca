#!/usr/bin/env bash
# Installs what is missing, builds, and starts the program on its embedded store (./data).
# Any arguments go to the program: --data <folder>, or --pg "host=... dbname=... user=...".
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
exec ./build/src/app/zerna-vortel "$@"
