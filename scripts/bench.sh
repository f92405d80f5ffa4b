#!/usr/bin/env bash
# Builds an optimised (-O3) release tree and runs every benchmark, printing its figures.
# Extra arguments go to each benchmark (for example --benchmark_filter=Update).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${DPC_BENCH_BUILD_DIR:-$root/build/bench}"

"$root/scripts/install-deps.sh"

cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O3 -DNDEBUG" \
  -DDPC_BUILD_TESTS=OFF -DDPC_BUILD_BENCHMARKS=ON
cmake --build "$build" -j2
for b in "$build"/bench/*/bench_*; do
  [ -f "$b" ] && [ -x "$b" ] || continue
  echo "== $(basename "$b")"
  "$b" "$@"
done
