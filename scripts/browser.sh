#!/usr/bin/env bash
# Tests the report of KV_Schau in a headless browser, apart from scripts/test.sh: it needs Chromium and Node,
# and fetches the two node packages of tests/browser/package.json. Pictures of the pages are left in
# build/browser; docs/rausel-bericht.png is example-light.png of them. KV_REAL_NETWORKS_DIR may name a folder
# with the real networks.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

for program in node npm; do
  command -v "$program" >/dev/null || scripts/install-tools.sh nodejs npm
done
command -v chromium >/dev/null || scripts/install-tools.sh chromium
scripts/install-tools.sh @build @tests

step() { printf '\n== %s\n' "$1"; }

programs=$PWD/build/release/bin
reports=$PWD/build/browser
networks=${KV_REAL_NETWORKS_DIR:-$PWD/../shared/real}
rm -rf "$reports"
mkdir -p "$reports/variants"

step "build"
cmake --preset release -DKV_TESTS=ON >/dev/null
cmake --build --preset release --target KV_Akum KV_Schau kv_generate

step "node packages"
cp tests/browser/package.json "$reports"
(cd "$reports" && npm install --no-package-lock --no-audit --no-fund --silent)

# report FOLDER NAME PAGE: a report counts whether or not the variant has findings.
report() {
  local status=0
  (cd "$1" && "$programs/KV_Schau" bericht "$2" -o "$reports/$3.html") || status=$?
  [ "$status" -le 1 ]
}

step "reports"
variants=$reports/variants
mkdir "$variants/example" "$variants/faulty" "$variants/hostile"
cp examples/rausel.* "$variants/example"
"$programs/KV_Schau" rechnen "$variants/example/rausel" >/dev/null
cp examples/rausel.* "$variants/faulty"
sed -i 's/64\.50/64,50/' "$variants/faulty/rausel.kfl"
cp examples/rausel.* "$variants/hostile"
LC_ALL=C sed -i 's/Rausel Oberlauf  /<svg onload=s=1> /; s/Umlaufgraben     /<\/script><b>x    /' \
  "$variants/hostile/rausel.sys"
report "$variants/example" rausel example
report "$variants/faulty" rausel faulty
report "$variants/hostile" rausel hostile
if [ -d "$networks/colorado" ]; then
  cp -r "$networks/colorado" "$variants"
  report "$variants/colorado" colorado large
else
  echo "There is no folder $networks/colorado: the report of 6652 elements is not tested."
fi
"$programs/kv_generate" --elements 50000 "$variants/huge"
report "$variants" huge huge

step "browser"
NODE_MODULES=$reports/node_modules REPORTS=$reports node --test tests/browser/
