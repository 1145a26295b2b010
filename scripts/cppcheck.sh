#!/usr/bin/env bash
# cppcheck over all rooms, not over what stands around them; a finding is a fault. The preset release must have been configured.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cppcheck --project=build/release/compile_commands.json --std=c++20 --library=googletest,posix \
  --enable=warning,performance,portability,style --inline-suppr --suppressions-list=scripts/cppcheck-suppressions.txt \
  --error-exitcode=1 --quiet -j "$(nproc)" --template='{file}:{line}: {id}: {message}' -i tests -i fuzz -i bench -i tools
