#!/usr/bin/env bash
# Makes sure that the Debian packages named as arguments are installed. "@build" stands for what building the
# programs takes, "@tests" for what their tests take besides.
# Installs the missing ones when it may (root, or sudo without a password);
# otherwise prints the one command that does it and fails.
set -euo pipefail

if [ "$#" -eq 0 ]; then
  echo "usage: ${0##*/} PACKAGE|@build|@tests..." >&2
  exit 2
fi

wanted=()
for package in "$@"; do
  case "$package" in
    @build)
      wanted+=(g++ cmake ninja-build libcli11-dev libfmt-dev nlohmann-json3-dev libboost1.81-dev
        libkainjow-mustache-dev)
      ;;
    @tests) wanted+=(libgtest-dev libgmock-dev libbenchmark-dev librsvg2-bin parallel) ;;
    *) wanted+=("$package") ;;
  esac
done

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  echo "This is no Debian system; needed are the equivalents of: ${wanted[*]}" >&2
  exit 0
fi

missing=()
for package in "${wanted[@]}"; do
  status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ "${#missing[@]}" -gt 0 ] || exit 0

refuse() {
  {
    echo "$1 Please install what is missing and start again:"
    echo "  sudo apt-get update && sudo apt-get install --no-install-recommends ${missing[*]}"
  } >&2
  exit 1
}

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! sudo -n true 2>/dev/null; then
    refuse "Packages are missing, and they cannot be installed from here without a password."
  fi
  as_root=(sudo -n)
fi

echo "Installing ${missing[*]}"
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet --quiet
  -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)
"${apt[@]}" update || refuse "The package lists could not be fetched."
"${apt[@]}" install --yes --no-install-recommends "${missing[@]}" >/dev/null ||
  refuse "The installation failed."
