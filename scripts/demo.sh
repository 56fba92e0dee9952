#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on the bundled example: a pedestrian crossing with a robot cell.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

install_missing_packages
cmake --preset release -DORVANTIS_BUILD_PYTHON=OFF >/dev/null
cmake --build --preset release --target zone-detector crossing_recording

command=build/release/apps/zone-detector/zone-detector
configuration=examples/crossing/crossing.json
recording=build/demo/recording
mkdir -p "$recording"
build/release/examples/crossing/crossing_recording "$recording"

"$command" validate "$configuration"
"$command" run "$configuration" "$recording"/*.pcd --rate 10 --tracks "$recording"/tracks.csv \
  --plot build/demo/run.svg --csv build/demo/tables
"$command" plot "$configuration" "$recording"/frame_10.pcd -o build/demo/plan.svg
echo "The session is drawn in build/demo/run.svg, the plan over a scan in build/demo/plan.svg; tables are in build/demo/tables"
