#!/usr/bin/env bash
# Holds the time of "KV_Schau pruefen" against that of KV_Akum on the same generated variants (100,000 and 1,000,000
# elements when no numbers are given) and prints a Markdown table. Fails when pruefen takes more than three times as
# long (3.5 with shuffled companion files), or when ten times the elements take it more than fourteen times as long:
# beside the work grow the cache misses.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ "$#" -eq 0 ]; then set -- 100000 1000000; fi

scripts/install-tools.sh @build @tests hyperfine jq >&2
cmake --preset release -DKV_TESTS=ON >&2
cmake --build --preset release --target KV_Akum KV_Schau kv_generate >&2
bin=$PWD/build/release/bin

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

printf '| elements | companion files | KV_Akum ms | pruefen ms | ratio of medians |\n|---:|---|---:|---:|---:|\n'
for order in system shuffled; do
  bound=3
  [ "$order" = system ] || bound=3.5
  last=
  for elements in "$@"; do
    folder=$work/$order-$elements
    mkdir "$folder"
    "$bin/kv_generate" --elements "$elements" --order "$order" "$folder/variante"
    (
      cd "$folder"
      # One run of each in turn, so that whatever slows the machine down for a while slows down both.
      for _ in 1 2 3 4 5 6 7; do
        hyperfine --style none --ignore-failure --warmup 1 --runs 1 --prepare "rm -f variante.Akum code.pkl" \
          --export-json "$work/pair.json" "$bin/KV_Akum variante" "$bin/KV_Schau pruefen variante" >&2
        jq '[.results[].times[0] * 1000]' "$work/pair.json"
      done
    ) | jq --slurp '[map(.[0]), map(.[1])] | map(sort | .[length / 2 | floor])' >"$work/medians.json"
    jq --raw-output --arg elements "$elements" --arg order "$order" \
      '"| \($elements) | \($order) | \(.[0] | round) | \(.[1] | round) | \(.[1] / .[0] * 100 | round / 100) |"' \
      "$work/medians.json"
    jq --exit-status ".[1] <= $bound * .[0]" "$work/medians.json" >/dev/null || {
      echo "$elements elements: more than $bound times KV_Akum's time" >&2
      exit 1
    }
    now=$(jq '.[1]' "$work/medians.json")
    if [ -n "$last" ]; then
      jq --null-input --exit-status "($now / $last) <= pow(14; (($elements / $before) | log10))" >/dev/null || {
        echo "$before to $elements elements: growth beyond 14 for ten times as many" >&2
        exit 1
      }
    fi
    last=$now before=$elements
    rm -r "$folder"
  done
done
