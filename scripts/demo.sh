#!/usr/bin/env bash
# Installs what is missing, builds the library and filters-tool, and runs the
# demo: a small ingress IPv4 filter group built, validated, written to a file,
# read back and printed.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
log=build/demo-build.log
mkdir -p build
echo "Building filters-tool in build/ (log: $log) ..."
if ! { cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo &&
       cmake --build build -j "$jobs" --target filters-tool; } >"$log" 2>&1; then
  cat "$log" >&2
  echo "demo: the build failed; the log is above" >&2
  exit 1
fi
exec build/tools/filters-tool demo "$@"
