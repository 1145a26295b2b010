#!/usr/bin/env bash
# Builds the presets release and asan, checks layout and lint, growth and bytes of larger variants, and runs
# the tests in both builds.
# The last lines of the output are ctest's own summary.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-tools.sh g++ cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev \
  clang-format clang-tidy libcli11-dev libfmt-dev nlohmann-json3-dev libboost1.81-dev

jobs=$(nproc)

step() { printf '\n== %s\n' "$1"; }

# The sources of the compile database of the release build, one a line.
compiled_sources() {
  sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build/release/compile_commands.json | sort -u
}

# clang-tidy counts suppressed warnings of system headers on every run; only a finding is worth reading.
tidy() {
  local report
  if ! report=$(clang-tidy --quiet -p build/release "$1" 2>&1); then
    printf '%s\n' "$report"
    return 1
  fi
}
export -f tidy

for preset in release asan; do
  step "build $preset"
  cmake --preset "$preset" -DKV_TESTS=ON
  cmake --build --preset "$preset"
done

step "clang-format"
find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
  xargs -0 clang-format --dry-run -Werror

step "clang-tidy"
[ -n "$(compiled_sources)" ] || {
  echo "The compile database names no source." >&2
  exit 1
}
# shellcheck disable=SC2016 # $1 is for the inner shell
compiled_sources | xargs -d '\n' -n 1 -P "$jobs" bash -c 'tidy "$1"' tidy

step "benchmark, short form"
scripts/bench.sh --check

for preset in release asan; do
  step "tests $preset"
  ctest --preset "$preset" --no-tests=error --output-on-failure -j "$jobs"
done
