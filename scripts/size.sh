#!/usr/bin/env bash
# Runs the program on large variants (2,000,000 and 10,000,000 elements when no numbers are given), with the
# companion files in system order and shuffled, and prints time and memory as a Markdown table. Fails when a run
# does not end in order, when its files have not as many lines as they must, or when both orders do not give the
# same bytes. Ten million elements take about 2.5 GB of disk and 2 GB of memory.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ "$#" -eq 0 ]; then set -- 2000000 10000000; fi

scripts/install-tools.sh @build @tests time >&2
cmake --preset release -DKV_TESTS=ON >&2
cmake --build --preset release --target KV_Akum kv_generate >&2
program=$PWD/build/release/bin/KV_Akum
generator=$PWD/build/release/bin/kv_generate

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/run"
cd "$work/run"

fail() {
  printf '%s elements, %s: %s\n' "$elements" "$order" "$1" >&2
  exit 1
}

# The number of lines of a file.
lines() { wc -l <"$1"; }

# The listing has a line for each element behind its first one. Positions beyond 9,999 do not fit their four
# columns (37 to 40) and are filled with asterisks.
check_listing() {
  [ "$(lines code.pkl)" -eq $((elements + 1)) ] || fail "the listing has $(lines code.pkl) lines"
  local filled
  filled=$(LC_ALL=C awk 'substr($0, 37, 4) == "****" { ++count } END { print count + 0 }' code.pkl)
  [ "$filled" -eq $((elements - 9999)) ] || fail "$filled positions are filled with asterisks"
}

# Behind its head, the result has a line for each reach, which begins with the name.
check_result() {
  local wanted found
  wanted=$(LC_ALL=C awk 'substr($0, 36, 1) == "T" { ++count } END { print count + 0 }' v.sys)
  found=$(LC_ALL=C awk 'behind_head && /^T/ { ++count } /^-----/ { behind_head = 1 } END { print count + 0 }' v.Akum)
  [ "$found" -eq "$wanted" ] || fail "the result has $found reaches of $wanted"
}

echo "| elements | companion files | inputs MiB | outputs MiB | s | of the processor, s | peak MiB |"
echo "|---:|---|---:|---:|---:|---:|---:|"
for elements in "$@"; do
  for order in system shuffled; do
    rm -f ./*
    "$generator" --elements "$elements" --order "$order" v
    inputs=$(du --apparent-size --block-size=1M --total v.* | tail -n 1 | cut -f 1)
    env time --output="$work/time" --format='%e %U %S %M' "$program" v >"$work/out" 2>"$work/err"
    if ! grep -q 'Ergebnis: v.Akum' "$work/out" || [ -s "$work/err" ] || [ -e v.pkl ]; then
      fail "the run does not end in order"
    fi
    check_listing
    check_result
    sha256sum v.Akum code.pkl >"$work/$order"
    outputs=$(du --apparent-size --block-size=1M --total v.Akum code.pkl | tail -n 1 | cut -f 1)
    awk -v elements="$elements" -v order="$order" -v inputs="$inputs" -v outputs="$outputs" \
      '{ printf "| %d | %s | %d | %d | %.2f | %.2f | %d |\n", elements, order, inputs, outputs, $1, $2 + $3, $4 / 1024 }' \
      "$work/time"
  done
  cmp -s "$work/system" "$work/shuffled" || fail "other bytes than in system order"
done
