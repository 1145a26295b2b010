#!/usr/bin/env bash
# Installs the libraries of a build into a new folder, builds the consumer against nothing but them, and runs it.
#   tests/consumer/try.sh BUILD
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "${1:?usage: try.sh BUILD}" && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --component development --prefix "$work/installed" >"$work/log"
! grep -rqF -e "$build" "$work/installed" --include='*.cmake' || {
  echo "The installed package names the build folder." >&2
  exit 1
}
cmake -S "$here" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/installed" >>"$work/log"
cmake --build "$work/build" >>"$work/log" || {
  cat "$work/log" >&2
  exit 1
}
cd "$work"
"$work/build/consumer"
