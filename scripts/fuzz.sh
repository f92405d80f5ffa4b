#!/usr/bin/env bash
# Builds the fuzz targets with clang, libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer in build/fuzz and runs each for a bounded time
# (first argument, seconds per target, default 60). Each target starts from
# the seed corpus and the kept regression inputs in fuzz/; what it learns is
# kept in build/fuzz/corpus/<target>. An input that crashes, leaks, hangs or
# breaks a property is saved to build/fuzz/artifacts/<target>/ and fails the
# run: add it to fuzz/regressions/<target>/ once the fault is fixed.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
seconds="${1:-60}"
build="${DPC_FUZZ_BUILD_DIR:-$root/build/fuzz}"
targets=(maptext mapcontainer bitmap matchpatterns settings simdescription)

"$root/scripts/install-deps.sh"
extra=()
for p in clang libclang-rt-14-dev; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || extra+=("$p")
done
if [ ${#extra[@]} -gt 0 ]; then
  sudo_cmd=()
  [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${extra[@]}" >/dev/null || true
fi
if ! command -v clang++ >/dev/null \
   || ! echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' \
        | clang++ -x c++ -fsanitize=fuzzer,address,undefined -o /dev/null - 2>/dev/null; then
  echo "fuzz.sh: this compiler cannot build libFuzzer targets; fuzzing skipped"
  exit 0
fi

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDPC_FUZZ=ON \
  -DDPC_BUILD_TESTS=OFF -DDPC_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build "$build" -j2 --target fuzz_all

export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0"
summary=()
failed=0
for t in "${targets[@]}"; do
  corpus="$build/corpus/$t"
  artifacts="$build/artifacts/$t"
  rm -rf "$artifacts"
  mkdir -p "$corpus" "$artifacts"
  seeds=("$root/fuzz/corpus/$t")
  [ -d "$root/fuzz/regressions/$t" ] && seeds+=("$root/fuzz/regressions/$t")
  log="$build/fuzz-$t.log"
  echo "== $t: ${seconds} s"
  if ! (cd "$build" && "$build/fuzz/fuzz_$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
          -max_len=65536 -print_final_stats=1 -artifact_prefix="$artifacts/" "$corpus" "${seeds[@]}") \
        >"$log" 2>&1; then
    failed=1
    echo "   FAILED, see $log and $artifacts"
    grep -E "ERROR|property violated|runtime error" "$log" | head -5 || true
  fi
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1 || true)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1 || true)
  cov=$(grep -oE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1 || true)
  summary+=("$(printf '%-15s %10s runs %8s exec/s  %s' "$t" "${execs:-?}" "${rate:-?}" "${cov:-}")")
done
printf '%s\n' "${summary[@]}"
exit $failed
