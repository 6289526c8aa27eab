#!/usr/bin/env bash
# Installs the packages of tools/packages.txt with apt; does nothing when all of them are there.
set -euo pipefail
cd "$(dirname "$0")"

mapfile -t wanted < <(grep -vE '^(#|$)' packages.txt)
missing=()
for package in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup: run as root to install: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "setup: installing ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
