#!/usr/bin/env bash
# Changes the program in one place at a time and asks whether a test notices; see docs/reliability.md.
#   scripts/mutate.sh [--seed S] [--count N] [--only FILES] [--jobs J] [--within SECONDS]
#                     [--survivors] [--report]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/install-tools.sh @build @tests ccache python3 git >&2
exec nice -n 19 python3 scripts/mutate.py "$@"
