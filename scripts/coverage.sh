#!/usr/bin/env bash
# Runs the tests with counters and prints the lines and branches of every room that they reach, then what they
# do not reach. Fails when a room is below 98 % of its lines or 95 % of its branches. Branches that
# only an exception takes do not count.
#   scripts/coverage.sh            builds and runs in build/coverage
#   scripts/coverage.sh --report   only the report of the last run
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case "${1:-}" in
  "" | --report) ;;
  *)
    echo "usage: ${0##*/} [--report]" >&2
    exit 2
    ;;
esac

build=build/coverage
scripts/install-tools.sh @build @tests clang libclang-rt-dev llvm python3 >&2

if [ "${1:-}" != --report ]; then
  mkdir -p "$build"
  clang++ -c tests/coverage_exit.cpp -o "$build/coverage_exit.o"
  cmake --preset debug -B "$build" -DKV_TESTS=ON -DKV_CHECKED=OFF -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS_DEBUG="-O0 -fprofile-instr-generate=$PWD/$build/counters/%4m.profraw -fcoverage-mapping" \
    -DCMAKE_EXE_LINKER_FLAGS_DEBUG="-Wl,--wrap=exit,--wrap=_Exit $PWD/$build/coverage_exit.o" >&2
  cmake --build "$build" >&2
  rm -rf "$build/counters"
  # Counters take time and write files of their own: tests of rights fail here and count what they reach all the
  # same. Those of seconds reach nothing else; limits and kills would cut the counters.
  ctest --test-dir "$build" --no-tests=error -j "$(nproc)" >&2 \
    --exclude-regex 'Takes?(Time|Seconds)|AMillionElements|AllowedSize|FileSizes|ProcessorTimeIsOver|Kill' || true
fi
llvm-profdata merge --failure-mode=all -o "$build/counters.profdata" "$build"/counters/*.profraw
programs=()
for program in "$build"/bin/*; do [ -d "$program" ] || programs+=(--object "$program"); done
llvm-cov export --format=text --skip-functions --instr-profile="$build/counters.profdata" "${programs[@]}" \
  >"$build/coverage.json" 2>"$build/export.log" || { cat "$build/export.log" >&2; exit 1; }
exec python3 scripts/coverage_report.py "$build/coverage.json"
