#!/usr/bin/env bash
# Builds the presets release (g++) and asan (clang++), checks layout and lint, growth and bytes of larger
# variants, and runs the tests in both builds. Each step tells how long it took.
# The last lines of the output are ctest's own summary and the time of that step.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-tools.sh @build @tests clang libclang-rt-dev clang-format clang-tidy cppcheck git

# Runs a step: its name, then the command.
step() {
  printf '\n== %s\n' "$1"
  local TIMEFORMAT="-- $1: %R s, processor %U s + %S s"
  shift
  time "$@"
}

build() {
  cmake --preset "$1" -DKV_TESTS=ON
  cmake --build --preset "$1"
}

layout() {
  find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
}

run_tests() {
  ctest --preset "$1" --no-tests=error --output-on-failure -j "$(nproc)"
}

step "build release" build release
step "build asan" build asan
step "clang-format" layout
step "clang-tidy" scripts/tidy.sh
step "cppcheck" scripts/cppcheck.sh
step "benchmark, short form" scripts/bench.sh --check
step "tests release" run_tests release
step "tests asan" run_tests asan
