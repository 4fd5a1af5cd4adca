#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: SQLite always, PostgreSQL on a
# throwaway cluster (or on the server named by VORTEL_TEST_PG).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
ctest --test-dir build -j2 --output-on-failure
