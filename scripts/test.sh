#!/usr/bin/env bash
# Builds the library from scratch and runs the whole test suite.
#   scripts/test.sh            configure, build and run CTest in build/
# Under CI=true it builds with -Werror, checks the ABI, builds and tests the
# Debian packages, then runs the suite a second time built by clang with
# AddressSanitizer and UndefinedBehaviorSanitizer, and runs every fuzz target
# briefly from its generated seeds.
set -euo pipefail
cd "$(dirname "$0")/.."

# CI also guards the ABI and builds, installs and removes the Debian packages.
if [[ "${CI:-}" == "true" ]]; then
  export FILTERS_WITH_ABI=1 FILTERS_WITH_PACKAGING=1
fi
bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
werror=OFF
[[ "${CI:-}" == "true" ]] && werror=ON

run_suite() {
  local dir=$1; shift
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DFILTERS_WERROR="$werror" "$@"
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs"
}

run_suite build

if [[ "${CI:-}" == "true" ]]; then
  if command -v clang-format >/dev/null; then
    bash scripts/lint.sh
  fi
  bash scripts/abi-check.sh build
  bash scripts/package.sh build
  bash scripts/package-test.sh build/packages
  # The side-by-side benchmarks, small and once: only that they run.
  bash bench/run.sh --quick --build-dir build
  # Any sanitizer report fails the run: the sanitizers abort on the first one.
  export ASAN_OPTIONS=abort_on_error=1:detect_leaks=1
  export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
  # The sanitized suite is built with clang, fuzz targets included, and the
  # fuzz targets then run 10 seconds each from their generated seeds.
  FILTERS_WITH_CLANG=1 bash scripts/deps.sh
  (export CC=clang CXX=clang++
   run_suite build-asan -DFILTERS_SANITIZE=address,undefined \
             -DFILTERS_BUILD_TOOLS=ON -DFILTERS_BUILD_FUZZERS=ON)
  FILTERS_FUZZ_BUILD=build-asan bash scripts/fuzz.sh 10
fi
