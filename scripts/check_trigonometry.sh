#!/usr/bin/env bash
# Builds the program that digests sines, cosines and bearings with each compiler, without and with optimisation, with
# fused multiply-add if the processor has it, with and without contraction, and as WebAssembly. All must print the number
# that the program expects. Compilers that are not installed are left out and named.
set -euo pipefail
cd "$(dirname "$0")/.."

sources=(src/trigonometry/*.cpp tests/trigonometry/Arguments.cpp tests/trigonometry/digest.cpp)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
missing=()

# check <runner or nothing> <compiler> <flag>...
check() {
  local runner=$1 digest
  shift
  if ! command -v "$1" >/dev/null; then
    missing+=("$1")
    return
  fi
  "$@" -std=c++20 -Isrc -Itests "${sources[@]}" -o "$folder/digest.js"
  if ! digest=$($runner "$folder/digest.js"); then
    echo "FAILED: $*: $digest"
    exit 1
  fi
  echo "$digest  $*"
}

for compiler in g++ clang++; do
  check "" $compiler -O0
  check "" $compiler -O3 -ffp-contract=off
  check "" $compiler -O3 -ffp-contract=off -march=native
  check "" $compiler -O3 -ffp-contract=fast -march=native
done
# node does not search the folder of the distribution's modules by itself.
export NODE_PATH=${NODE_PATH:-/usr/share/nodejs}
check node em++ -O2 -sSINGLE_FILE=1

if [ ${#missing[@]} -gt 0 ]; then
  echo "not installed: $(printf '%s\n' "${missing[@]}" | sort -u | paste -sd ' ')"
fi
