#!/usr/bin/env bash
# Checks formatting with .clang-format and, with --tidy, runs clang-tidy with
# .clang-tidy over the own sources (needs a configured build/ for
# compile_commands.json).
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files '*.c' '*.cc' '*.h')
clang-format --dry-run --Werror "${sources[@]}"
echo "formatting: ok (${#sources[@]} files)"

if [[ "${1:-}" == "--tidy" ]]; then
  build=${2:-build}
  mapfile -t units < <(git ls-files 'src/*.cc' 'platform/*.cc' 'tools/*.cc')
  clang-tidy -p "$build" --quiet "${units[@]}"
fi
