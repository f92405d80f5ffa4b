#!/usr/bin/env bash
# Installs what is missing, builds everything with AddressSanitizer and
# UndefinedBehaviorSanitizer in a fresh build directory and runs every test suite.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${DPC_TEST_BUILD_DIR:-$root/build/test}"

"$root/scripts/install-deps.sh"

rm -rf "$build"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DDPC_SANITIZE=ON -DDPC_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j2
cd "$build"
ctest --output-on-failure -j2
