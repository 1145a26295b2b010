#!/usr/bin/env bash
# Builds the Debian package, looks it over with lintian, installs it, runs both programs on the installed example
# and removes it again.
#   scripts/package.sh           all of it; installing needs root, or sudo without a password
#   scripts/package.sh --build   only the package, in build/release
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

project=$PWD
build=$project/build/release
documents=/usr/share/doc/kv-akum

scripts/install-tools.sh @build dpkg-dev file fonts-dejavu-core gzip lintian man-db pandoc weasyprint

fail() {
  echo "$1" >&2
  exit 1
}

cmake --preset release -DKV_BOOKS=ON
cmake --build --preset release
rm -f "$build"/*.deb
cpack --config "$build/CPackConfig.cmake" -B "$build"
package=$(echo "$build"/*.deb)
lintian --fail-on error,warning "$package"
dpkg-deb --info "$package"
dpkg-deb --contents "$package"
[ "${1:-}" != --build ] || exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo -n)
version=$(dpkg-deb --field "$package" Version)
work=$(mktemp -d)
clean() {
  "${as_root[@]}" dpkg --remove kv-akum >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap clean EXIT

echo "== installed"
# Slim systems leave out what people read; here it is asked for.
reading=()
for folder in doc/kv-akum man lintian; do reading+=(-o "DPkg::Options::=--path-include=/usr/share/$folder/*"); done
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet --quiet "${reading[@]}" install --yes \
  --no-install-recommends "$package"

echo "== run on the example"
cp "$documents"/examples/rausel.* "$work"
cd "$work"
[ "$(KV_Schau --version)" = "KV_Schau $version" ] || fail "KV_Schau --version is not that of the package"
KV_Schau pruefen rausel
KV_Akum rausel >"$work/records"
[ ! -s rausel.pkl ] || fail "KV_Akum reported something"
cmp rausel.Akum "$project/examples/expected/rausel.Akum"
rm rausel.Akum
KV_Schau rechnen rausel
cmp rausel.Akum "$project/examples/expected/rausel.Akum"

echo "== manual pages and completion"
mapfile -t commands < <(KV_Schau --help | sed -n '/^Befehle:/,/^$/s/^  \([a-z][a-z-]*\).*/\1/p')
[ "${#commands[@]}" -gt 0 ] || fail "KV_Schau --help names no command"
for language in de en; do
  for program in KV_Akum KV_Schau; do
    page=$work/$program.$language
    if [ "$language" = en ]; then file=/usr/share/man/man1; else file=/usr/share/man/$language/man1; fi
    LC_ALL=C.UTF-8 MANWIDTH=200 man --warnings --local-file "$file/$program.1.gz" >"$page" 2>"$page.faults"
    [ ! -s "$page.faults" ] || fail "$(cat "$page.faults")"
    grep -q "$program $version" "$page" || fail "$page does not tell the version $version"
  done
  for command in "${commands[@]}"; do
    grep -qE "^ +$command( |\$)" "$work/KV_Schau.$language" || fail "KV_Schau.1 ($language) lacks $command"
  done
done

# What the completion offers for the last of the words.
completions() {
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  _kv_schau KV_Schau
  echo "${COMPREPLY[*]}"
}
# shellcheck source=packaging/completion.bash
source /usr/share/bash-completion/completions/KV_Schau
[[ " $(completions KV_Schau "") " == *" ${commands[0]} "* ]] || fail "the completion offers no commands"
[ "$(completions KV_Schau rechnen ra)" = rausel.sys ] || fail "the completion does not offer the example"
[ "$(completions KV_Schau tabelle --deu)" = --deutsch ] || fail "the completion does not offer an option"

echo "== removed"
cd /
"${as_root[@]}" dpkg --remove kv-akum
for left in /usr/bin/KV_Akum /usr/bin/KV_Schau "$documents" /usr/share/man/de/man1/KV_Akum.1.gz; do
  [ ! -e "$left" ] || fail "$left is left behind"
done
