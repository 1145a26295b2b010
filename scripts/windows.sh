#!/usr/bin/env bash
# Cross-builds both programs for Windows, runs them under Wine (all golden variants of KV_Akum; paths, code pages,
# files of other programs, KV_Schau's commands) and packs them into a zip, which is tried too.
#   scripts/windows.sh          all of it
#   scripts/windows.sh --zip    only the programs and the zip, in build/windows
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=$PWD/build/windows
scripts/install-tools.sh @build fonts-dejavu-core g++-mingw-w64-x86-64-posix pandoc python3 unzip weasyprint wine64 zip

cmake --preset windows -DKV_TESTS=ON -DKV_BOOKS=ON
# Wine takes a minute to make its own folders.
[ "${1:-}" = --zip ] || python3 tests/windows/wine.py &
wine=$!
cmake --build --preset windows
# Anything but a library of the system itself would be missing on the users' machines.
foreign=$(for program in KV_Akum KV_Schau; do
  x86_64-w64-mingw32-objdump -p "$build/bin/$program.exe" | sed -n 's/^\tDLL Name: //p'
done | sort -uf | grep -viE '^(kernel32|msvcrt|shell32|ws2_32|mswsock|advapi32|user32|ntdll|bcrypt)\.dll$' || true)
[ -z "$foreign" ] || {
  echo "The programs need $foreign" >&2
  exit 1
}

rm -f "$build"/*.zip
cpack --config "$build/CPackConfig.cmake" -B "$build"
zip=$(echo "$build"/*.zip)
unzip -l "$zip"
[ "${1:-}" != --zip ] || exit 0

wait "$wine"
python3 tests/windows/zip_test.py "$zip"
# Both wait for Wine more than they work.
python3 tests/windows/golden_test.py &
golden=$!
python3 tests/windows/host_test.py
wait "$golden"
