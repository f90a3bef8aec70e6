#!/usr/bin/env bash
# Installs the Debian packages of a directory on this machine, uses them as an
# independent program would, and removes them again:
#   scripts/package-test.sh [DIR]     default build/packages (scripts/package.sh)
# With the packages installed it builds and runs the consumer in
# tests/package/consumer through find_package(FiltersCommon) and through
# pkg-config, checks that the ldconfig trigger put every library into the
# linker's cache, builds the C examples as strict C11 against the C headers
# through pkg-config, runs the installed `filters-tool demo` and imports the
# Python module when its package is there. Then it purges every package the
# installation added and checks that the list of installed packages and the
# installed files of the project are as before. Needs root (or sudo).
set -euo pipefail
repo=$(cd "$(dirname "$0")/.." && pwd)
dir=$(cd "${1:-$repo/build/packages}" && pwd)

mapfile -t debs < <(ls "$dir"/*.deb 2>/dev/null)
if ((${#debs[@]} == 0)); then
  echo "package-test: no .deb in $dir (run scripts/package.sh)" >&2
  exit 2
fi
sudo_cmd=()
[[ $(id -u) -ne 0 ]] && sudo_cmd=(sudo)
apt_get() {
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get \
    -o DPkg::Lock::Timeout=600 -y -qq "$@"
}
installed_list() {
  dpkg-query -W -f='${db:Status-Abbrev} ${Package} ${Version}\n' | sort
}
# What the packages put on the machine, looked for when they are gone.
project_files() {
  ls -d /usr/lib/libfilter_* /usr/lib/libpolicer_common* /usr/lib/liblimidmgr_* \
        /usr/include/FiltersCommon /usr/include/policer /usr/include/limid \
        /usr/lib/cmake/FiltersCommon /usr/lib/pkgconfig/filter_*.pc \
        /usr/bin/filters-tool 2>/dev/null || true
}

work=$(mktemp -d -t filters-package-test.XXXXXX)
before=$work/before.txt
installed_list >"$before"
mapfile -t names < <(for deb in "${debs[@]}"; do dpkg-deb --field "$deb" Package; done)
for name in "${names[@]}"; do
  if grep -q " $name " "$before"; then
    echo "package-test: $name is installed already; remove it first so that" \
         "the machine can be left as it was" >&2
    exit 2
  fi
done
if [[ -n "$(project_files)" ]]; then
  echo "package-test: files of the project are installed already:" >&2
  project_files >&2
  exit 2
fi

# Whatever happens, everything the installation added goes again.
purge_added() {
  local added
  added=$(comm -13 <(awk '{print $2}' "$before" | sort -u) \
                   <(dpkg-query -W -f='${Package}\n' | sort -u) | tr '\n' ' ')
  if [[ -n "${added// /}" ]]; then
    # shellcheck disable=SC2086
    apt_get purge $added >"$work/purge.log" 2>&1 ||
      { cat "$work/purge.log" >&2; echo "package-test: purge failed" >&2; }
  fi
}
trap 'purge_added; rm -rf "$work"' EXIT

echo "package-test: installing ${names[*]}"
apt_get install --no-install-recommends "${debs[@]}" >"$work/install.log" 2>&1 ||
  { cat "$work/install.log" >&2; echo "package-test: install failed" >&2; exit 1; }

# The ldconfig trigger ran: the dynamic linker's cache knows every library.
cached=0
/sbin/ldconfig -p >"$work/ldconfig.txt"
for deb in "${debs[@]}"; do
  while read -r soname; do
    grep -q "^[[:space:]]*$soname " "$work/ldconfig.txt" ||
      { echo "package-test: $soname is not in the ldconfig cache" >&2; exit 1; }
    cached=$((cached + 1))
  done < <(dpkg-deb --ctrl-tarfile "$deb" | tar -xO --wildcards '*shlibs' 2>/dev/null |
           awk '{print $1 ".so." $2}')
done
echo "package-test: $cached libraries in the ldconfig cache"

consumer=$repo/tests/package/consumer
echo "package-test: consumer through find_package(FiltersCommon)"
if ! { cmake -S "$consumer" -B "$work/cmake" -DCMAKE_BUILD_TYPE=Release &&
       cmake --build "$work/cmake"; } >"$work/cmake.log" 2>&1; then
  cat "$work/cmake.log" >&2
  exit 1
fi
grep -q '/usr/lib/cmake/FiltersCommon' "$work/cmake/CMakeCache.txt" ||
  { echo "package-test: FiltersCommon not found in /usr" >&2; exit 1; }
"$work/cmake/consumer"

echo "package-test: consumer through pkg-config"
# shellcheck disable=SC2046
g++ -std=c++17 -Wall -Wextra -Werror "$consumer/consumer.cc" -o "$work/consumer" \
    $(pkg-config --cflags --libs filter_rules)
"$work/consumer"

echo "package-test: C examples, strict C11, through pkg-config"
for example in group_example:filter_common group_diff_example:filter_rules; do
  name=${example%%:*} pc=${example#*:}
  # shellcheck disable=SC2046
  gcc -std=c11 -Wall -Wextra -Wpedantic -Werror "$repo/examples/$name.c" \
      -o "$work/$name" $(pkg-config --cflags --libs "$pc")
  "$work/$name" >"$work/$name.out"
  echo "  $name: ok ($(wc -l <"$work/$name.out") lines)"
done

echo "package-test: installed filters-tool demo"
[[ $(command -v filters-tool) == /usr/bin/filters-tool ]] ||
  { echo "package-test: filters-tool is not /usr/bin/filters-tool" >&2; exit 1; }
(cd "$work" && filters-tool demo >"$work/demo.out")
grep -q 'it is equal to the group built' "$work/demo.out" ||
  { cat "$work/demo.out" >&2; echo "package-test: demo output unexpected" >&2; exit 1; }
[[ -f "$work/filters-demo.bin" ]] ||
  { echo "package-test: the demo wrote no filters-demo.bin" >&2; exit 1; }
man -w filters-tool >/dev/null 2>&1 || [[ -f /usr/share/man/man1/filters-tool.1.gz ]] ||
  { echo "package-test: no manual page for filters-tool" >&2; exit 1; }

if [[ " ${names[*]} " == *" python3-filters-common "* ]]; then
  echo "package-test: Python module"
  (cd "$work" && /usr/bin/python3 -c 'import filters_common; print("  imported", filters_common.__name__)')
fi

purge_added
installed_list >"$work/after.txt"
if ! diff -u "$before" "$work/after.txt"; then
  echo "package-test: the installed packages differ from before (above)" >&2
  exit 1
fi
if [[ -n "$(project_files)" ]]; then
  echo "package-test: files left behind:" >&2
  project_files >&2
  exit 1
fi
echo "package-test: ${#names[@]} packages installed, used and removed; the machine is as before"
