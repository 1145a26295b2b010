#!/usr/bin/env bash
# clang-tidy over the sources that changed since the commit that scripts/tidy-clean-at names, and over two that
# include each header that changed: a header that all include would take all of them. When no such commit is in the
# history, or a .clang-tidy changed since: over what the last commit on the first-parent history changed, and it
# says so.
#   scripts/tidy.sh          what changed
#   scripts/tidy.sh --all    all; clean, with everything committed, the commit is written to scripts/tidy-clean-at
# The preset asan must have been built: its compiler is of the same family, and ninja has recorded the headers of
# each source there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case "${1:-}" in
  "" | --all) ;;
  *)
    echo "usage: ${0##*/} [--all]" >&2
    exit 2
    ;;
esac

build=build/asan
record=scripts/tidy-clean-at

# The sources of the compile database, one a line, as paths in the project; what the build itself wrote is left out.
compiled_sources() {
  sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" | sort -u |
    sed -e "s|^$PWD/||" -e "\|^$build/|d"
}

# Each source and file of the project that it includes, itself too, one pair a line with a tab between them.
# Headers are included through the links that show a room to those that may use it; a precompiled header, which the
# build itself writes, may stand before the source.
recorded_includes() {
  ninja -C "$build" -t deps |
    sed -e 's|^\( *\)\(.*/\)\{0,1\}rooms/[^/]*/|\1|' -e "s|^\( *\)$PWD/|\1|" -e 's|^\( *\)\.\./\.\./|\1|' |
    awk -v build="$build" 'function tell() { for (i = 1; i <= n; ++i) if (source != "") print source "\t" files[i] }
         /^[^ ].*: #deps/ { tell(); source = ""; n = 0; next }
         /^ / { sub(/^ +/, ""); if (/^\// || index($0, build "/") == 1) next
                if (source == "" && /\.cpp$/) source = $0
                files[++n] = $0 }
         END { tell() }'
}

known_clean() {
  local commit
  commit=$(cat "$record" 2>/dev/null) || return 1
  git merge-base --is-ancestor "$commit" HEAD 2>/dev/null || return 1
  git diff --quiet "$commit" -- ':(glob)**/.clang-tidy' || return 1
  echo "$commit"
}

# The sources to look at when only what changed since the commit counts.
changed_sources() {
  {
    git diff --name-only "$1" --
    git ls-files --others --exclude-standard
  } | sort -u >"$work/changed"
  recorded_includes >"$work/includes"
  awk -F '\t' 'NR == FNR { changed[$0]; next }
    $1 in changed || ($2 in changed && seen[$2]++ < 2) { print $1 }' "$work/changed" "$work/includes"
  # A source that ninja knows nothing about yet may be anything.
  compiled_sources | awk -F '\t' 'NR == FNR { known[$1]; next } !($0 in known)' "$work/includes" -
}

# clang-tidy counts suppressed warnings of system headers on every run; only a finding is worth reading.
tidy() {
  local report
  if ! report=$(clang-tidy --quiet -p "$1" "$2" 2>&1); then
    printf '%s\n' "$report"
    return 1
  fi
}
export -f tidy

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

compiled_sources >"$work/all"
[ -s "$work/all" ] || {
  echo "The compile database names no source." >&2
  exit 1
}

if [ "${1:-}" = --all ]; then
  cp "$work/all" "$work/sources"
  since=""
else
  commit=$(known_clean) || {
    commit=$(git rev-parse HEAD^)
    echo "No commit is recorded as clean: scripts/tidy.sh --all has to be run."
  }
  changed_sources "$commit" | sort -u | comm -12 - "$work/all" >"$work/sources"
  since=" since $(git rev-parse --short "$commit")"
fi
echo "$(wc -l <"$work/sources") of $(wc -l <"$work/all") sources$since"

# shellcheck disable=SC2016 # the arguments are for the inner shell
xargs -r -d '\n' -n 1 -P "$(nproc)" bash -c 'tidy "$@"' tidy "$build" <"$work/sources"

if [ "${1:-}" = --all ]; then
  if [ -z "$(git status --porcelain)" ]; then
    git rev-parse HEAD >"$record"
    echo "clean at $(cat "$record"), recorded in $record"
  else
    echo "clean, but not recorded: there are changes that are not committed"
  fi
fi
