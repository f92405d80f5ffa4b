#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the assistant need.
# Idempotent: prints nothing and touches nothing when all of them are present.
set -euo pipefail

packages=(
  g++ cmake make pkg-config
  qtbase5-dev qtbase5-dev-tools
  nlohmann-json3-dev
  libbenchmark-dev
  libaravis-dev libusb-1.0-0-dev aravis-tools
  xvfb xauth
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
