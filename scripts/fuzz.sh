#!/usr/bin/env bash
# Builds the fuzz targets with clang, AddressSanitizer and
# UndefinedBehaviorSanitizer, generates their seed corpora and runs each
# target for SECONDS (default 60), printing per target its executions, its
# coverage and the verdict.
#   scripts/fuzz.sh [SECONDS]
# FILTERS_FUZZ_BUILD=dir   build tree to use (default build-fuzz); an
#                          existing tree configured with the fuzzers is reused
# FILTERS_FUZZ_TARGETS="a b"  run only these targets (names from
#                          fuzz/fuzzers.txt)
# A crash, leak, sanitizer report or broken property leaves its reproducer in
# fuzz/findings/<target>/ and makes the script exit 1 once every target ran.
# Replay one with: <build>/fuzz/<target>_fuzzer fuzz/findings/<target>/<file>
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS]" >&2
  exit 2
fi
build=${FILTERS_FUZZ_BUILD:-build-fuzz}

FILTERS_WITH_CLANG=1 bash scripts/deps.sh

mapfile -t all_targets < <(grep -E '^[a-z_]+$' fuzz/fuzzers.txt)
read -r -a targets <<<"${FILTERS_FUZZ_TARGETS:-${all_targets[*]}}"

configured=$(grep -s '^FILTERS_BUILD_FUZZERS:BOOL=ON' "$build/CMakeCache.txt" || true)
if [[ -z "$configured" ]]; then
  CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DFILTERS_SANITIZE=address,undefined -DFILTERS_BUILD_FUZZERS=ON \
    -DFILTERS_BUILD_TESTS=OFF -DFILTERS_BUILD_EXAMPLES=OFF
fi
jobs=$(nproc 2>/dev/null || echo 2)
cmake --build "$build" -j "$jobs" --target filters-fuzz-seeds \
  "${targets[@]/%/_fuzzer}"

corpus="$build/fuzz-corpus"
seeds="$build/fuzz-seeds"
rm -rf "$seeds"
"$build/fuzz/filters-fuzz-seeds" "$seeds" tests/data/edge_acl.rules >/dev/null

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
failed=()
for t in "${targets[@]}"; do
  mkdir -p "$corpus/$t" "fuzz/findings/$t"
  log="$build/fuzz-$t.log"
  status=0
  # New inputs go to the corpus in the build tree; the seeds stay as made.
  dict=()
  [[ -f "$seeds/$t.dict" ]] && dict=(-dict="$seeds/$t.dict")
  "$build/fuzz/${t}_fuzzer" -max_total_time="$seconds" -print_final_stats=1 \
    -timeout=60 -rss_limit_mb=2048 -artifact_prefix="fuzz/findings/$t/" \
    "${dict[@]}" "$corpus/$t" "$seeds/$t" >"$log" 2>&1 || status=$?
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n1)
  cov=$(grep -oE 'cov: [0-9]+' "$log" | tail -n1 | cut -d' ' -f2)
  ft=$(grep -oE 'ft: [0-9]+' "$log" | tail -n1 | cut -d' ' -f2)
  if ((status == 0)); then
    verdict=ok
    # Slow inputs are reported but are no failure (a loaded machine makes
    # them); only failures leave files behind.
    rm -f "fuzz/findings/$t"/slow-unit-*
    rmdir "fuzz/findings/$t" 2>/dev/null || true
  else
    verdict="FAILED (exit $status; reproducer in fuzz/findings/$t/, log $log)"
    failed+=("$t")
  fi
  printf '%-8s execs %-10s cov %-6s ft %-6s %s\n' "$t" "${execs:-?}" \
    "${cov:-?}" "${ft:-?}" "$verdict"
done
rmdir fuzz/findings 2>/dev/null || true

if ((${#failed[@]})); then
  echo "fuzz: failed: ${failed[*]}" >&2
  for t in "${failed[@]}"; do
    grep -E 'ERROR|SUMMARY|==[0-9]+==|deadly signal' "$build/fuzz-$t.log" |
      head -n 5 >&2 || true
  done
  exit 1
fi
