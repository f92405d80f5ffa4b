#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the assistant need.
# Idempotent: prints nothing and touches nothing when all of them are present.
#   --arm64    the cross compiler, the :arm64 libraries and qemu-user for the arm64 build
#              (installs only; test-arm64.sh runs the emulated suites under unshare --pid)
#   --package  the tools that build and check the .deb packages
set -euo pipefail

packages=(
  g++ cmake make pkg-config
  qtbase5-dev qtbase5-dev-tools qttools5-dev-tools qttranslations5-l10n
  nlohmann-json3-dev
  libbenchmark-dev
  libaravis-dev libusb-1.0-0-dev aravis-tools
  xvfb xauth
)
arm64=0
for option in "$@"; do
  case "$option" in
    --arm64) arm64=1
      packages+=(crossbuild-essential-arm64 qemu-user-static binfmt-support file iproute2
                 qtbase5-dev:arm64 libaravis-dev:arm64 libusb-1.0-0-dev:arm64) ;;
    --package) packages+=(dpkg-dev lintian imagemagick appstream desktop-file-utils file) ;;
    *) echo "install-deps.sh: unknown option $option" >&2; exit 2 ;;
  esac
done

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
if [ "$arm64" -eq 1 ] && ! dpkg --print-foreign-architectures | grep -qx arm64; then
  "${sudo_cmd[@]}" dpkg --add-architecture arm64
fi
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get -o DPkg::Lock::Timeout=600 install -y -qq "${missing[@]}" >/dev/null
