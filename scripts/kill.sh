#!/usr/bin/env bash
# Kills runs on a variant of a million elements at random moments (100 when no number is given). After each
# one, result and listing must be the old ones or the whole new ones and the inputs as they were; a run after
# it must leave everything right. Takes some minutes and about 700 MB. Fails at the first thing that is not so.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

rounds=${1:-100}
elements=1000000
RANDOM=${2:-1}
if ! [[ $rounds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: ${0##*/} [ROUNDS [SEED]]" >&2
  exit 2
fi

scripts/install-tools.sh @build @tests >&2
cmake --preset release -DKV_TESTS=ON >&2
cmake --build --preset release --target KV_Akum kv_generate >&2
program=$PWD/build/release/bin/KV_Akum

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/run" "$work/right"
build/release/bin/kv_generate --elements "$elements" "$work/run/v"
cd "$work/run"
sha256sum v.* >"$work/inputs"

fail() {
  printf 'Round %s, killed after %s s: %s\n' "$round" "$moment" "$1" >&2
  exit 1
}

# Runs the program, which must have nothing to tell but where the result is.
run_whole() {
  "$program" v >"$work/out" 2>"$work/err"
  if ! grep -q 'Ergebnis: v.Akum' "$work/out" || [ -s "$work/err" ]; then
    fail "a run without a kill does not end in order"
  fi
}

round=0
moment=none
run_whole
start=$EPOCHREALTIME
run_whole
span=$(awk -v a="$start" -v b="$EPOCHREALTIME" 'BEGIN { print b - a }')
cp v.Akum code.pkl "$work/right"

declare -A kept=([old]=0 [new]=0)
killed=0
left_over=0
for ((round = 1; round <= rounds; ++round)); do
  for name in v.Akum code.pkl; do echo "$name of an earlier run" >"$name"; done
  # Some moments lie behind the end of the run.
  moment=$(awk -v span="$span" -v dice="$RANDOM" 'BEGIN { print span * 1.05 * dice / 32768 }')
  "$program" v >"$work/out" 2>"$work/err" &
  id=$!
  sleep "$moment"
  kill -KILL "$id" 2>/dev/null || true
  status=0
  wait "$id" 2>/dev/null || status=$?
  if [ "$status" -ne 0 ]; then killed=$((killed + 1)); fi

  for name in v.Akum code.pkl; do
    if cmp -s "$name" "$work/right/$name"; then
      kept[new]=$((kept[new] + 1))
    elif [ "$(cat "$name")" = "$name of an earlier run" ]; then
      kept[old]=$((kept[old] + 1))
    else
      fail "$name is neither the old nor the right one"
    fi
  done
  # A file that is whole but was killed before it took its place keeps its own name.
  for name in *.neu; do
    [ -e "$name" ] || continue
    left_over=$((left_over + 1))
    rm "$name"
  done
  [ "$(find . -type f | wc -l)" -eq 7 ] || fail "a file is missing or left over: $(ls)"

  run_whole
  for name in v.Akum code.pkl; do
    cmp -s "$name" "$work/right/$name" || fail "$name is not right after a run without a kill"
  done
done
sha256sum --quiet --check "$work/inputs"

printf '%s rounds on %s elements (a run takes %.2f s): %s runs killed, the others had ended.\n' \
  "$rounds" "$elements" "$span" "$killed"
printf 'Result and listing afterwards: %s old, %s whole new, none in part; files under a name of their own: %s.\n' \
  "${kept[old]}" "${kept[new]}" "$left_over"
echo "Inputs unchanged; every run after a kill left everything right."
