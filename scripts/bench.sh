#!/usr/bin/env bash
# Builds the release preset and holds the program against the yardstick; the table goes to standard output.
# Arguments are handed on to kv_compare: --check, --sizes 1000,10000, --repetitions 3, ...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-tools.sh @build @tests >&2
cmake --preset release -DKV_TESTS=ON >&2
cmake --build --preset release --target KV_Akum kv_generate kv_yardstick kv_empty kv_compare >&2

bin=build/release/bin
exec "$bin/kv_compare" --program "$bin/KV_Akum" --yardstick "$bin/kv_yardstick" --empty "$bin/kv_empty" \
  --generator "$bin/kv_generate" --work "${KV_BENCH_WORK:-build/release/bench-work}" "$@"
