#!/usr/bin/env bash
# Builds the Debian packages from a build tree with CPack and checks them with
# lintian; any lintian error fails.
#   scripts/package.sh [BUILD_DIR]    default build/; packages in BUILD_DIR/packages/
# The tree is configured (RelWithDebInfo) if it is not yet, and built; an
# existing tree is reused as it is, so the packages hold what its tests ran.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}

FILTERS_WITH_PACKAGING=1 bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
if [[ -f "$build/CMakeCache.txt" ]] &&
   grep -q '^FILTERS_SANITIZE:STRING=.\+' "$build/CMakeCache.txt"; then
  echo "package: $build is a sanitizer build; package a plain one" >&2
  exit 2
fi
# Configuring again keeps the tree's settings and finds help2man if it was
# installed just now (the manual page of filters-tool).
mkdir -p "$build"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >"$build/package-configure.log" 2>&1 ||
  { cat "$build/package-configure.log" >&2; exit 1; }
cmake --build "$build" -j "$jobs"

rm -rf "$build/packages"
(cd "$build" && cpack -G DEB) >"$build/cpack.log" 2>&1 ||
  { cat "$build/cpack.log" >&2; echo "package: cpack failed" >&2; exit 1; }
mapfile -t debs < <(ls "$build"/packages/*.deb)
for deb in "${debs[@]}"; do
  echo "== $(basename "$deb")"
  dpkg-deb --field "$deb" Package Depends | sed 's/^/   /'
done

# Errors fail the build; warnings and notes are shown.
lintian --fail-on error --display-level '>=info' "${debs[@]}"
echo "package: ${#debs[@]} packages in $build/packages, lintian reports no error"
