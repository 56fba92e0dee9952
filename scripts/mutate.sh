#!/usr/bin/env bash
# Makes small wrong changes in src/, one at a time, and fails when the tests catch fewer than 95 % of them. Takes an hour
# or two; --help shows how to try fewer. docs/testing.md has the survivors and why they are not gaps.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages+=("${development_packages[@]}")
install_missing_packages
exec python3 scripts/mutate.py "$@"
