#!/usr/bin/env bash
# Builds the fuzzers and runs them.
#   scripts/fuzz.sh [SECONDS]                  all targets, so many seconds in total (60 when none are given)
#   scripts/fuzz.sh --each MINUTES [TARGET...] each target for so many minutes of processor time; one that was
#                                              broken off goes on where it ended
# Fails on a finding; the input is kept under build/asan/findings and named at the end.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

each=
if [ "${1:-}" = --each ]; then
  each=${2:-}
  shift $(($# < 2 ? $# : 2))
  amount=$each
else
  amount=${1:-60}
  shift $(($# < 1 ? 0 : 1))
fi
if ! [[ $amount =~ ^[1-9][0-9]*$ ]]; then
  sed -n '2,6s/^# //p' "$0" >&2
  exit 2
fi

scripts/install-tools.sh @build @tests clang libclang-rt-dev
cmake --preset asan -DKV_TESTS=ON
cmake --build --preset asan --target fuzzers

findings=build/asan/findings
mkdir -p "$findings"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
touch "$work/start"

targets=("$@")
if [ "$#" -eq 0 ]; then
  for folder in fuzz/corpus/*/; do targets+=("$(basename "$folder")"); done
fi
share=$((amount / ${#targets[@]}))
[ "$share" -ge 1 ] || share=1
how_long="$share s"
[ -z "$each" ] || how_long="$each min of processor time"

# The number behind one of the fuzzer's closing statistics.
statistic() { sed -n "s/^stat::$1: *//p" "$2" | tail -n 1; }

# Runs a target for so many seconds. An input longer than a few dozen lines finds nothing that a short one does
# not.
fuzz_for() {
  "build/asan/bin/fuzz_$1" -max_total_time="$2" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
    -dict=fuzz/words.dict -artifact_prefix="$findings/$1-" -print_final_stats=1 \
    "$grown" "fuzz/corpus/$1" >"$log" 2>&1
}

# Runs a target until it has used so many seconds of processor time, a minute at a time. What it has used and
# executed stands beside the inputs that it has grown, until it has had its time.
fuzz_by_processor_time() {
  local account=$grown.account used=0 executions=0 outcome=0 TIMEFORMAT='%U %S'
  [ ! -e "$account" ] || read -r used executions <"$account"
  while [ "$used" -lt "$2" ] && [ "$outcome" -eq 0 ]; do
    { time fuzz_for "$1" 60 || outcome=$?; } 2>"$work/time"
    used=$(awk -v used="$used" '{ used += $1 + $2 } END { printf "%d", used }' "$work/time")
    executions=$((executions + $(statistic number_of_executed_units "$log")))
    echo "$used $executions" >"$account"
  done
  [ "$outcome" -ne 0 ] || rm "$account"
  printf '%s: %s executions in %s s of processor time, %s\n' "$1" "$executions" "$used" \
    "$(sed -n 's/^#[0-9]*\tDONE *\(cov: [0-9]* ft: [0-9]*\).*/\1/p' "$log")"
  return "$outcome"
}

failed=()
summary=()
for target in "${targets[@]}"; do
  printf '\n== fuzz %s, %s\n' "$target" "$how_long"
  log=$work/$target.log
  grown=$work/$target
  [ -z "$each" ] || grown=build/asan/corpus/$target
  mkdir -p "$grown"
  outcome=ok
  if [ -n "$each" ]; then
    fuzz_by_processor_time "$target" $((60 * each)) || outcome=FINDING
  else
    fuzz_for "$target" "$share" || outcome=FINDING
  fi
  if [ "$outcome" = FINDING ]; then
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
