#!/usr/bin/env bash
# Builds the side-by-side benchmarks and prints their figures: our group
# against the protocol-buffers runtime on the same content, each figure the
# median of per-round ratios measured alternately in one process.
#   bench/run.sh [--quick] [--build-dir DIR] [--rounds N]
# Without --build-dir it configures build-bench/ in Release. An existing
# build tree is reused as it is configured, with the benchmarks switched on.
# --quick runs small groups once, only to show that everything works.
# Ends with one "figure NAME ratio=X target=Y" line per figure.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build-bench
args=()
while (($#)); do
  case "$1" in
    --quick) args+=(--quick) ;;
    --build-dir) build=$2; shift ;;
    --rounds) args+=(--rounds "$2"); shift ;;
    *) echo "usage: bench/run.sh [--quick] [--build-dir DIR] [--rounds N]" >&2
       exit 2 ;;
  esac
  shift
done

bash scripts/deps.sh

out=$(mktemp -t filters-bench.XXXXXX)
log=$(mktemp -t filters-bench-build.XXXXXX)
trap 'rm -f "$out" "$log"' EXIT
# The build's output is shown only when it fails.
build_step() {
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    echo "bench/run.sh: build failed; its output is above" >&2
    exit 1
  fi
}
if [[ -f "$build/CMakeCache.txt" ]]; then
  build_step cmake -S . -B "$build" -DFILTERS_BUILD_BENCHMARKS=ON
else
  build_step cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release \
        -DFILTERS_BUILD_BENCHMARKS=ON -DFILTERS_BUILD_TESTS=OFF \
        -DFILTERS_BUILD_TOOLS=OFF -DFILTERS_BUILD_RULES=OFF \
        -DFILTERS_BUILD_EXAMPLES=OFF
fi
type=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$build/CMakeCache.txt")
build_step cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" \
      --target compare_bench memory_bench
echo "== time (build type ${type:-none}) =="
"$build/bench/compare_bench" "${args[@]}" | tee -a "$out" | grep -v '^figure '
echo "== heap =="
"$build/bench/memory_bench" "${args[@]}" | tee -a "$out" | grep -v '^figure '
echo "== figures =="
grep '^figure ' "$out"
