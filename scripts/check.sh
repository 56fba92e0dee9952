#!/usr/bin/env bash
# Everything that must hold before a change is merged: format, warnings with both compilers, static analysis, sanitizers,
# a minute of each fuzzer, coverage. Installs what is missing, stops at the first failure, ends with a summary.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/dependencies.sh

check_format() {
  find apps benchmarks examples fuzz include python src tests web/engine \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
}

build_with_gcc() {
  cmake --preset dev -DCMAKE_CXX_COMPILER=g++ -DORVANTIS_BUILD_PYTHON=ON
  cmake --build --preset dev
}

build_with_clang() {
  cmake --preset dev -B build/dev-clang -DCMAKE_CXX_COMPILER=clang++ -DORVANTIS_BUILD_PYTHON=ON
  cmake --build build/dev-clang
}

# Headers are checked through the sources that include them.
analyse() {
  find src apps python -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/dev-clang --quiet
}

# The page in a browser has the same sources, so the libraries and the toolkit must compile for it. The header-only
# libraries are linked into a folder of their own, so that no other headers of the host are found.
compile_for_browsers() {
  local headers=build/browser-headers source
  mkdir -p "$headers"
  ln -sfn /usr/include/boost "$headers/boost"
  ln -sfn /usr/include/eigen3/Eigen "$headers/Eigen"
  ln -sfn /usr/include/spdlog "$headers/spdlog"
  ln -sfn /usr/include/fmt "$headers/fmt"
  ln -sfn /usr/include/hwy "$headers/hwy"
  # A page has its own libraries for the compressions of recordings.
  find src -name '*.cpp' ! -name Lz4Decoder.cpp ! -name ZstdDecoder.cpp ! -name Bzip2Decoder.cpp ! -name ZstdSource.cpp -print0 |
    xargs -0 -n 1 -P "$(nproc)" em++ -std=c++20 -fsyntax-only -fwasm-exceptions -ffp-contract=off -Iinclude -Isrc \
      -I"$headers" -DFMT_HEADER_ONLY
}

# What Open3D writes and reads back. It brings many packages, so nothing else needs it.
compare_with_open3d() {
  cmake --preset release -B build/open3d -DORVANTIS_TEST_OPEN3D=ON -DORVANTIS_BUILD_PYTHON=OFF
  cmake --build build/open3d --target open3d_test
  build/open3d/tests/open3d/open3d_test
}

test_sanitized() {
  cmake --preset "$1"
  cmake --build --preset "$1"
  ctest --preset "$1" --parallel "$(nproc)"
}

fuzz() {
  cmake --preset fuzz
  cmake --build --preset fuzz
  local program name seeds dictionary
  for program in build/fuzz/fuzz/fuzz_*; do
    name=${program##*/fuzz_}
    mkdir -p "build/corpus/$name"
    seeds=("fuzz/seeds/$name")
    if [ -d "fuzz/found/$name" ]; then
      seeds+=("fuzz/found/$name")
    fi
    dictionary=fuzz/$name.dict
    if [ ! -f "$dictionary" ]; then
      dictionary=fuzz/document.dict
    fi
    echo "$name"
    "$program" "build/corpus/$name" "${seeds[@]}" -dict="$dictionary" -max_total_time=60 -verbosity=0 \
      -print_final_stats=1 -artifact_prefix="build/corpus/$name-"
  done
}

passed=()
step() {
  local name=$1 started=$SECONDS
  shift
  running=$name
  printf '\n== %s ==\n' "$name"
  "$@"
  passed+=("$name ($((SECONDS - started)) s)")
  running=
}

summarise() {
  local status=$?
  printf '\n== Summary ==\n'
  if [ ${#passed[@]} -gt 0 ]; then
    printf 'passed  %s\n' "${passed[@]}"
  fi
  if [ "$status" -ne 0 ]; then
    printf 'FAILED  %s\n' "${running:-interrupted}"
  fi
}
trap summarise EXIT
running=packages

packages+=("${development_packages[@]}" "${python_packages[@]}" "${web_packages[@]}")
install_missing_packages
step "format" check_format
step "warnings of g++" build_with_gcc
step "warnings of clang" build_with_clang
step "static analysis" analyse
step "compiled for browsers" compile_for_browsers
step "the same sines everywhere" scripts/check_trigonometry.sh
step "files of another program" compare_with_open3d
step "address and undefined behaviour" test_sanitized asan-ubsan
step "threads" test_sanitized tsan
step "a minute of each fuzzer" fuzz
step "coverage" scripts/coverage.sh
