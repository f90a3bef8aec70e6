#!/usr/bin/env bash
# Guards the ABI of the shared libraries against their recorded baseline,
# abi/<library>.abi (abidw and abidiff from abigail-tools).
#   scripts/abi-check.sh BUILD_DIR            compare every library of BUILD_DIR
#   scripts/abi-check.sh --update BUILD_DIR   record BUILD_DIR's ABI as the baseline
#   scripts/abi-check.sh --list FILE          compare the libraries FILE lists
# BUILD_DIR must be built with debug information (RelWithDebInfo, as
# scripts/test.sh builds build/). Its abi-libraries.txt lists the public header
# directories ("headers DIR") and the libraries ("library NAME FILE").
#
# A change that breaks callers fails: a removed or changed function or
# variable, a changed type layout, a changed enumerator value. It passes only
# when the library's SONAME differs from the recorded one (the SOVERSION was
# raised in the same change); record the new baseline with --update then.
# Additions pass and are reported. Exit status: 0 compatible, 1 refused,
# 2 usage or tool error.
set -euo pipefail
repo=$(cd "$(dirname "$0")/.." && pwd)
baseline_dir=${FILTERS_ABI_BASELINE_DIR:-$repo/abi}

usage() {
  sed -n '2,8p' "$0" | sed 's/^# \{0,1\}//' >&2
  exit 2
}

update=0
list=
case "${1:-}" in
  --update) update=1; shift; [[ $# -eq 1 ]] || usage; list=$1/abi-libraries.txt ;;
  --list) shift; [[ $# -eq 1 ]] || usage; list=$1 ;;
  -h|--help|"") usage ;;
  *) [[ $# -eq 1 ]] || usage; list=$1/abi-libraries.txt ;;
esac
if [[ ! -f "$list" ]]; then
  echo "abi-check: $list not found (configure and build the tree first)" >&2
  exit 2
fi
for tool in abidw abidiff readelf; do
  if ! command -v "$tool" >/dev/null; then
    echo "abi-check: $tool is missing (apt-get install abigail-tools binutils)" >&2
    exit 2
  fi
done

headers=()
libraries=()
declare -A seen
while read -r kind a b; do
  case "$kind" in
    headers)
      if [[ -n "${a:-}" && -z "${seen[$a]:-}" ]]; then
        seen[$a]=1
        headers+=(--headers-dir "$a")
      fi
      ;;
    library) libraries+=("$a=$b") ;;
  esac
done <"$list"

work=$(mktemp -d -t filters-abi.XXXXXX)
trap 'rm -rf "$work"' EXIT

# The recorded form: no paths of this machine, only what callers can see.
dump_abi() {
  abidw --no-corpus-path --no-comp-dir-path --no-show-locs \
        --drop-private-types "${headers[@]}" \
        --suppressions "$repo/abi/suppressions.ini" --out-file "$2" "$1"
}

soname_of() {
  sed -n "s/^<abi-corpus [^>]*soname='\([^']*\)'.*/\1/p" "$1" | head -n1
}

refused=0
for entry in "${libraries[@]}"; do
  name=${entry%%=*} file=${entry#*=}
  if [[ ! -f "$file" ]]; then
    echo "abi-check: $name: $file not built" >&2
    exit 2
  fi
  if [[ $(readelf -S "$file" | grep -c '\.debug_info') == 0 ]]; then
    echo "abi-check: $name: $file has no debug information" >&2
    exit 2
  fi
  baseline=$baseline_dir/$name.abi
  current=$work/$name.abi
  dump_abi "$file" "$current"

  if ((update)); then
    mkdir -p "$baseline_dir"
    cp "$current" "$baseline"
    echo "$name: recorded $(soname_of "$current") in ${baseline#"$repo"/}"
    continue
  fi
  if [[ ! -f "$baseline" ]]; then
    echo "$name: no recorded ABI ($baseline); record it with --update" >&2
    refused=1
    continue
  fi

  # abidiff's status is a bit set: 1 error, 2 usage, 4 a change, 8 a change
  # known to be incompatible. Changes to existing functions and types (a layout,
  # an enumerator value) set only 4, as additions do: run it again without the
  # additions to tell them apart (unless 8 settles it).
  status=0
  abidiff "$baseline" "$current" >"$work/$name.diff" 2>&1 || status=$?
  if ((status & 3)); then
    cat "$work/$name.diff" >&2
    echo "abi-check: $name: abidiff failed with status $status" >&2
    exit 2
  fi
  if ((status == 0)); then
    echo "$name: ABI unchanged"
    continue
  fi
  breaking=$((status & 8))
  if ((!breaking)); then
    abidiff --no-added-syms "$baseline" "$current" >/dev/null 2>&1 || breaking=$?
  fi
  if ((breaking == 0)); then
    echo "$name: compatible additions:"
    sed 's/^/  /' "$work/$name.diff"
    continue
  fi
  was=$(soname_of "$baseline") now=$(soname_of "$current")
  if [[ "$was" != "$now" ]]; then
    echo "$name: incompatible changes, SONAME raised from $was to $now;" \
         "record the new baseline with scripts/abi-check.sh --update BUILD_DIR:"
    sed 's/^/  /' "$work/$name.diff"
    continue
  fi
  echo "$name: INCOMPATIBLE ABI change with SONAME $now unchanged:" >&2
  sed 's/^/  /' "$work/$name.diff" >&2
  echo "$name: raise the SOVERSION (the project's major version) in the" \
       "same change, or keep the interface as it was" >&2
  refused=1
done
exit "$refused"
