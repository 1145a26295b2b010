#!/usr/bin/env bash
# Builds the fuzzers and runs them all for so many seconds in total (60 when none are given).
# Fails on a finding; the input is kept under build/asan/findings and named at the end.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:-60}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: ${0##*/} [SECONDS]" >&2
  exit 2
fi

scripts/install-tools.sh g++ clang libclang-rt-dev cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev
cmake --preset asan -DKV_TESTS=ON
cmake --build --preset asan --target fuzzers

findings=build/asan/findings
mkdir -p "$findings"
work=$(mktemp -d "${TMPDIR:-/tmp}/kv_fuzz.XXXXXX")
trap 'rm -rf "$work"' EXIT
touch "$work/start"

targets=()
for folder in fuzz/corpus/*/; do targets+=("$(basename "$folder")"); done
share=$((seconds / ${#targets[@]}))
[ "$share" -ge 1 ] || share=1

# The number behind one of the fuzzer's closing statistics.
statistic() { sed -n "s/^stat::$1: *//p" "$2" | tail -n 1; }

failed=()
summary=()
for target in "${targets[@]}"; do
  printf '\n== fuzz %s, %s s\n' "$target" "$share"
  log=$work/$target.log
  grown=$work/$target
  mkdir "$grown"
  outcome=ok
  # An input longer than a few dozen lines finds nothing that a short one does not.
  if ! "build/asan/bin/fuzz_$target" -max_total_time="$share" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
    -dict=fuzz/words.dict -artifact_prefix="$findings/$target-" -print_final_stats=1 \
    "$grown" "fuzz/corpus/$target" >"$log" 2>&1; then
    outcome=FINDING
    failed+=("$target")
    tail -n 60 "$log"
  fi
  summary+=("$(printf '%-12s %-8s %10s inputs, %s MB' "$target" "$outcome" \
    "$(statistic number_of_executed_units "$log")" "$(statistic peak_rss_mb "$log")")")
done

printf '\n== summary\n'
printf '%s\n' "${summary[@]}"
[ "${#failed[@]}" -gt 0 ] || exit 0
printf '\nFindings:\n'
for target in "${failed[@]}"; do find "$findings" -name "$target-*" -newer "$work/start"; done
exit 1
