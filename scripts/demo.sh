#!/usr/bin/env bash
# Installs what is missing, builds the library and filters-tool, and runs the
# demo: a small ingress IPv4 filter group built, validated, written to a file,
# read back and printed.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$jobs" --target filters-tool >/dev/null
exec build/tools/filters-tool demo "$@"
