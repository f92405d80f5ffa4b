#!/usr/bin/env bash
# Builds the Debian packages for amd64 and arm64 into build/packages, checks them
# with lintian and starts the installed amd64 assistant with the simulated
# cameras on a virtual display. The arm64 package reuses the cross build of
# scripts/test-arm64.sh (build/arm64); nothing here runs emulated (test-arm64.sh
# does that under unshare --pid).
#   --amd64-only   skips the arm64 package
#   --install      installs the amd64 package into the system (CI) instead of a scratch root
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
out="$root/build/packages"
arches=(amd64 arm64)
install_system=0
for option in "$@"; do
  case "$option" in
    --amd64-only) arches=(amd64) ;;
    --install) install_system=1 ;;
    *) echo "package.sh: unknown option $option" >&2; exit 2 ;;
  esac
done

deps=(--package)
[[ " ${arches[*]} " == *" arm64 "* ]] && deps+=(--arm64)
"$root/scripts/install-deps.sh" "${deps[@]}" 2>/dev/null || true
for tool in dpkg-shlibdeps lintian xvfb-run xwininfo; do
  if ! command -v "$tool" >/dev/null; then
    echo "package.sh: $tool is missing; install it with: scripts/install-deps.sh --package" >&2
    exit 1
  fi
done
if [[ " ${arches[*]} " == *" arm64 "* ]] && ! command -v aarch64-linux-gnu-g++ >/dev/null; then
  echo "package.sh: the arm64 cross compiler is missing; install it with: scripts/install-deps.sh --arm64 (or use --amd64-only)" >&2
  exit 1
fi

rm -rf "$out"
mkdir -p "$out"
for arch in "${arches[@]}"; do
  if [ "$arch" = amd64 ]; then
    build="$root/build/pkg-amd64"
    cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O3 -DNDEBUG" -DDPC_BUILD_TESTS=OFF -DDPC_BUILD_BENCHMARKS=OFF >/dev/null
  else
    build="${DPC_ARM64_BUILD_DIR:-$root/build/arm64}"
    cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/aarch64-linux-gnu.cmake" \
      -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" -DDPC_BUILD_BENCHMARKS=OFF >/dev/null
  fi
  cmake --build "$build" -j2
  (cd "$build" && cpack -G DEB -B "$build/cpack" >/dev/null)
  cp "$build"/cpack/*.deb "$out/"
done

echo "== packages:"
for deb in "$out"/*.deb; do
  echo "$(basename "$deb"): $(dpkg-deb -f "$deb" Architecture) Depends: $(dpkg-deb -f "$deb" Depends)"
done
echo "== lintian:"
lintian --fail-on error "$out"/*.deb
appstreamcli validate --no-net --pedantic "$root/packaging/"*.metainfo.xml >/dev/null
desktop-file-validate "$root/packaging/"*.desktop

# The installed assistant must start and show its window.
amd64_deb="$(ls "$out"/*_amd64.deb)"
if [ "$install_system" -eq 1 ]; then
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get install -y -qq "$amd64_deb" >/dev/null
  assistant=/usr/bin/orvel-dpc-assistant
else
  scratch="$(mktemp -d)"
  trap 'rm -rf "$scratch"' EXIT
  dpkg-deb -x "$amd64_deb" "$scratch"
  assistant="$scratch/usr/bin/orvel-dpc-assistant"
fi
"$root/scripts/check-window.sh" "$assistant" "$out/installed-assistant.png"
echo "Packages in $out"
