#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. The last line is ctest's count. SKIP_WEB=1 leaves the page out.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${python_packages[@]}")
test_web=ON
if [ "${SKIP_WEB:-}" = 1 ]; then
  test_web=OFF
else
  packages+=("${web_packages[@]}")
  if ! command -v npm >/dev/null; then
    echo "The page needs node 20 and npm, which Debian 12 does not have. Install them, or leave the page out: SKIP_WEB=1 $0" >&2
    exit 1
  fi
fi
install_missing_packages
cmake --preset release -DORVANTIS_TEST_WEB=$test_web
cmake --build --preset release

log=build/release/ctest.log
status=0
ctest --preset release --parallel "$(nproc)" 2>&1 | tee "$log" || status=$?
if [ "$test_web" = OFF ]; then
  echo "SKIP_WEB=1: THE PAGE AND ITS ENGINE WERE NEITHER BUILT NOR TESTED" >&2
fi
grep -E '^[0-9]+% tests passed' "$log" || true
exit "$status"
