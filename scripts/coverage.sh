#!/usr/bin/env bash
# Runs all tests with counters and prints the lines and branches of every room that they reach, then what they
# do not reach. Fails when a room of KV_Akum is below 98 % of its lines or 95 % of its branches. Branches that
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
scripts/install-tools.sh @build @tests gcovr python3 >&2

if [ "${1:-}" != --report ]; then
  mkdir -p "$build"
  g++ -c tests/coverage_exit.cpp -o "$build/coverage_exit.o"
  cmake --preset debug -B "$build" -DKV_TESTS=ON -DCMAKE_CXX_FLAGS_DEBUG="-O0 --coverage -fprofile-update=atomic" \
    -DCMAKE_EXE_LINKER_FLAGS_DEBUG="-Wl,--wrap=_Exit $PWD/$build/coverage_exit.o" >&2
  cmake --build "$build" >&2
  find "$build" -name '*.gcda' -delete
  # Counters take time and write files of their own: tests of limits and rights fail here and count what they
  # reach all the same; those of large files and of seconds reach nothing else.
  ctest --test-dir "$build" --no-tests=error -j "$(nproc)" --exclude-regex 'Takes?(Time|Seconds)|Million|Large' \
    >&2 || true
  gcovr --root . --object-directory "$build" --exclude-throw-branches --exclude-unreachable-branches \
    --exclude '(tests|fuzz|bench|tools|build)/' --exclude-directories "$PWD/$build/(fuzz|bench)" \
    --gcov-ignore-parse-errors -j "$(nproc)" --json "$build/coverage.json" >&2
fi
exec python3 scripts/coverage_report.py "$build/coverage.json"
