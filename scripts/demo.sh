#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on the bundled example: a pedestrian crossing with a robot cell.
# The command that it builds in build/demo does without the libraries that unfold compressed recordings.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

packages=("${command_packages[@]}")
install_missing_packages
cmake --preset release -B build/demo -DORVANTIS_BUILD_PYTHON=OFF -DORVANTIS_BUILD_TESTS=OFF \
  -DORVANTIS_BUILD_STUDIO=OFF -DORVANTIS_DECODERS=OFF >/dev/null
cmake --build build/demo --target zone-detector crossing_recording

command=build/demo/apps/zone-detector/zone-detector
configuration=examples/crossing/crossing.json
recording=build/demo/recording
mkdir -p "$recording"
build/demo/examples/crossing/crossing_recording "$recording"

"$command" validate "$configuration"
"$command" run "$configuration" "$recording"/*.pcd --rate 10 --tracks "$recording"/tracks.csv \
  --plot build/demo/run.svg --csv build/demo/tables
"$command" plot "$configuration" "$recording"/frame_10.pcd -o build/demo/plan.svg
echo "The session is drawn in build/demo/run.svg, the plan over a scan in build/demo/plan.svg; tables are in build/demo/tables"
