#!/usr/bin/env bash
# Runs every test on an instrumented build, and fails when they reach less than 98 % of the lines of src/ or less than 90 %
# of its branches. docs/testing.md has what is left and why.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${development_packages[@]}")
install_missing_packages
cmake --preset coverage
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
# Counting each branch in step with other threads makes the longest comparisons several times as slow.
ctest --preset coverage --parallel "$(nproc)" --timeout 3600

# The compiler makes a branch of every call that may throw; whether one does is asked by the tests that let allocations
# fail, and not by counting branches.
mkdir -p build/coverage/report
gcovr --root . --filter src/ --object-directory build/coverage build/coverage -j "$(nproc)" \
  --exclude-throw-branches --exclude-unreachable-branches \
  --txt build/coverage/report/lines.txt --html-details build/coverage/report/index.html \
  --print-summary --fail-under-line 98 --fail-under-branch 90
