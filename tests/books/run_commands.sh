#!/usr/bin/env bash
# Runs every command of a book: each block that begins with ```bash, in order, in one folder that holds the example
# (rausel.*, also as two variants under varianten/) and, under build/release/bin and in PATH, the programs.
# A block ```bash FILE or ```csv FILE is a file of that name. Fails at the first block that ends with a status above 1,
# by which the programs say that there is something to read.
#   run_commands.sh BOOK EXAMPLES PROGRAM...
set -euo pipefail
book=$(realpath "$1")
examples=$(realpath "$2")
shift 2

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/build/release/bin" "$folder/varianten/bestand" "$folder/varianten/planung"
for program in "$@"; do ln -s "$(realpath "$program")" "$folder/build/release/bin"; done
ln -s "$examples" "$folder/examples"
for place in . varianten/bestand varianten/planung; do cp "$examples"/rausel.* "$folder/$place"; done
export PATH=$folder/build/release/bin:$PATH SLURM_ARRAY_TASK_ID=2
cd "$folder"

awk '/^```/ { inside = !inside && (/^```bash/ || /^```csv /) ? ++blocks : 0
              if (inside) { name = "block-" blocks; print FNR, $2 > name ".place"; printf "" > name }
              next }
     inside { print > name }
     END { print blocks + 0 > "count" }' "$book"

count=$(cat count)
[ "$count" -gt 0 ]
for ((block = 1; block <= count; ++block)); do
  read -r line name <"block-$block.place" || true
  if [ -n "${name:-}" ]; then
    cp "block-$block" "$name"
    continue
  fi
  status=0
  bash -e -o pipefail "block-$block" >"block-$block.shown" 2>&1 || status=$?
  if [ "$status" -gt 1 ]; then
    printf '%s:%s: the commands end with status %s\n' "$book" "$line" "$status"
    cat "block-$block" "block-$block.shown"
    exit 1
  fi
done
echo "$count blocks"
