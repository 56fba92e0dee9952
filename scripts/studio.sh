#!/usr/bin/env bash
# Installs what is missing, builds the command, the engine of the page and the page, and opens the example in a browser.
# What is given is passed on: scripts/studio.sh site.json scan.pcd
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages=("${command_packages[@]}" pkg-config libbz2-dev liblz4-dev libzstd-dev libcpp-httplib-dev emscripten)
install_missing_packages
if ! command -v npm >/dev/null; then
  echo "The page needs node 20 and npm, which Debian 12 does not have. Install them and run the script again." >&2
  exit 1
fi
cmake --preset release -B build/studio -DORVANTIS_BUILD_PYTHON=OFF -DORVANTIS_BUILD_TESTS=OFF >/dev/null
cmake --build build/studio --target zone-detector zone-detector-studio crossing_recording
cmake --preset wasm >/dev/null
cmake --build --preset wasm
(cd web && npm ci --no-audit --no-fund && STUDIO_RECORDING=../build/studio/examples/crossing/crossing_recording npm run build)
exec build/studio/apps/zone-detector/zone-detector studio --page web/dist "$@"
