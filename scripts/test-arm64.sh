#!/usr/bin/env bash
# Cross-builds the whole tree for 64-bit ARM (Debian multiarch) and runs every
# suite under qemu-user, in a PID and network namespace of its own: under
# emulation a child process cannot be followed, so a stray signal must not leave
# the run, and the fake GigE Vision camera gets a loopback nobody else uses.
# The suites run without CAP_NET_RAW: qemu-user cannot emulate the packet-socket
# ring libaravis receives GigE Vision frames with, so it uses its plain UDP socket.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${DPC_ARM64_BUILD_DIR:-$root/build/arm64}"

"$root/scripts/install-deps.sh" --arm64 2>/dev/null || true

# One clear line for the first thing still missing, and how to get it.
need() { # <what> <package> <test command...>
  local what="$1" package="$2"; shift 2
  if ! "$@" >/dev/null 2>&1; then
    echo "test-arm64.sh: $what is missing; install it with: sudo dpkg --add-architecture arm64 && sudo apt-get update && sudo apt-get install $package" >&2
    exit 1
  fi
}
installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"; }
need "the arm64 cross compiler aarch64-linux-gnu-g++" crossbuild-essential-arm64 command -v aarch64-linux-gnu-g++
need "qemu-aarch64-static" qemu-user-static command -v qemu-aarch64-static
for p in qtbase5-dev:arm64 libaravis-dev:arm64 libusb-1.0-0-dev:arm64; do
  need "the arm64 library package $p" "$p" installed "$p"
done
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "test-arm64.sh: the emulated suites run in their own PID and network namespace, which needs root (run it as root)" >&2
    exit 1
  fi
  as_root=(sudo)
fi

cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/aarch64-linux-gnu.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" -DDPC_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j2

cd "$build"
echo "== test programs:"
find . -type f -name 'tst_*' -perm -u+x -exec file {} + | sed 's/, BuildID.*//' | sort
if find . -type f -name 'tst_*' -perm -u+x -exec file {} + | grep -v "ARM aarch64" | grep -q .; then
  echo "test-arm64.sh: some test programs are not AArch64 ELF" >&2
  exit 1
fi
echo "== run through: $(ctest -N -V | grep -m1 'Test command:' | sed 's/.*Test command: //')"
"${as_root[@]}" unshare --pid --fork --mount-proc --net sh -c \
  'ip link set lo up && exec setpriv --inh-caps -net_raw --bounding-set -net_raw ctest --output-on-failure -j2'
