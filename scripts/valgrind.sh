#!/usr/bin/env bash
# Runs the release program on the inputs of every golden variant under valgrind. Fails on a read or write that
# is out of place, a decision that hangs on a value never set, and a block that is lost; a run's report is shown.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-tools.sh @build valgrind >&2
build=$PWD/build/valgrind
cmake --preset release -B "$build" >&2
cmake --build "$build" --target KV_Akum >&2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Runs one variant; its report stays when there is something in it.
check() {
  local variant=$1 run arguments=()
  run=$2/$(basename "$variant")
  mkdir "$run"
  [ ! -d "$variant/in" ] || cp -r "$variant/in/." "$run"
  [ ! -f "$variant/command.txt" ] || mapfile -t arguments <"$variant/command.txt"
  if (cd "$run" && valgrind --quiet --error-exitcode=99 --leak-check=full --log-file="$run.report" \
    "$3" "${arguments[@]}" </dev/null >/dev/null 2>&1); then
    rm -rf "$run" "$run.report"
  else
    printf '== %s\n' "$variant"
    cat "$run.report"
    return 1
  fi
}
export -f check

count=$(find tests/variants -mindepth 1 -maxdepth 1 -type d | wc -l)
# shellcheck disable=SC2016 # the arguments are for the inner shell
find "$PWD/tests/variants" -mindepth 1 -maxdepth 1 -type d -print0 |
  xargs -0 -P "$(nproc)" -I{} bash -c 'check "$@"' check {} "$work" "$build/bin/KV_Akum"
echo "$count variants, nothing found"
