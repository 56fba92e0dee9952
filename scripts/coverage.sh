#!/usr/bin/env bash
# Runs every test on an instrumented build, and fails when they reach less than 98 % of the lines of src/ or less than 90 %
# of its branches. docs/testing.md lists what is not reached and why.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${development_packages[@]}")
install_missing_packages
cmake --preset coverage
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
# Counters that are safe between threads make the longest comparisons several times slower.
ctest --preset coverage --parallel "$(nproc)" --timeout 3600

# The compiler makes a branch for every call that may throw. These branches are not counted: the tests that let allocations
# fail cover them.
mkdir -p build/coverage/report
gcovr --root . --filter src/ --object-directory build/coverage build/coverage -j "$(nproc)" \
  --exclude-throw-branches --exclude-unreachable-branches \
  --txt build/coverage/report/lines.txt --html-details build/coverage/report/index.html \
  --print-summary --fail-under-line 98 --fail-under-branch 90
