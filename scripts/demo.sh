#!/usr/bin/env bash
# Builds the programs, runs KV_Akum on the example basin in a fresh folder and shows what it wrote, then the same
# run through KV_Schau.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

variant=rausel
# A folder of its own: build/release may be set to build the tests too, which takes longer and more packages.
build=$PWD/build/demo
program=$build/bin/KV_Akum

scripts/install-tools.sh @build
cmake --preset release -B "$build"
cmake --build "$build"

to_utf8() { iconv -f WINDOWS-1252 -t UTF-8 "$@"; }

# Framed records to lines: byte 1 starts a record, 2 separates key and value, 3 ends it.
readable_records() {
  to_utf8 | tr -d '\001\r' | sed -e 's/\x02/ = /g' -e 's/\x03/\n/g'
}

folder=$(mktemp -d)
cp "examples/$variant".* "$folder"
cd "$folder"

printf '\n== KV_Akum %s\n' "$variant"
"$program" "$variant" | readable_records

printf '\n== %s.Akum\n' "$variant"
to_utf8 "$variant.Akum"

printf '\n== %s.pkl\n' "$variant"
if [ -f "$variant.pkl" ]; then
  to_utf8 "$variant.pkl"
else
  echo "No protocol: the run had nothing to report."
fi

printf '\n==== KV_Schau rechnen %s\n' "$variant"
"$build/bin/KV_Schau" rechnen "$variant"

printf '\n== Files in %s\n' "$folder"
ls -l
