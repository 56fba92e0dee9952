#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. The last line is ctest's count.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${python_packages[@]}")
install_missing_packages
cmake --preset release
cmake --build --preset release

log=build/release/ctest.log
status=0
ctest --preset release --parallel "$(nproc)" 2>&1 | tee "$log" || status=$?
grep -E '^[0-9]+% tests passed' "$log" || true
exit "$status"
