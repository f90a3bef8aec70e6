#!/usr/bin/env bash
# abi_guard.sh CASE SOURCE_DIR ENV_FILE WORK_DIR
# Builds a deliberately changed scratch variant of one library (from copies of
# its sources, or from this build's own objects) and checks the verdict of
# scripts/abi-check.sh on it against the recorded ABI:
#   refuses_removed_function            libfilter_common linked without the
#                                       objects of its C explain functions
#   refuses_changed_enumerator          libpolicer_common compiled with
#                                       policer::STAGE_EGRESS = 7 instead of 1
#   reports_added_function              liblimidmgr_decode with one more function
#   allows_break_with_raised_soversion  liblimidmgr_decode without limid_compare,
#                                       its SOVERSION raised by one
# shellcheck disable=SC2154  # the variables come from ENV_FILE
set -euo pipefail
case=$1 repo=$2 env=$3 work=$4
# shellcheck source=/dev/null
source "$env"
rm -rf "$work"
mkdir -p "$work/src" "$work/include"

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# build_variant NAME SOVERSION SOURCES OBJECTS INCLUDES LIBRARIES: sets
# variant_file to the built library. List arguments are ;-separated.
build_variant() {
  cmake -S "$repo/tests/abi/variant" -B "$work/build" \
        -DCMAKE_C_COMPILER="$c_compiler" -DCMAKE_CXX_COMPILER="$cxx_compiler" \
        -DCMAKE_BUILD_TYPE="$build_type" \
        -DVARIANT_NAME="$1" -DVARIANT_SOVERSION="$2" \
        "-DVARIANT_SOURCES=$3" "-DVARIANT_OBJECTS=$4" \
        "-DVARIANT_INCLUDES=$5" "-DVARIANT_LIBRARIES=$6" \
        >"$work/configure.log" 2>&1 || { cat "$work/configure.log"; fail "configure"; }
  cmake --build "$work/build" >"$work/build.log" 2>&1 ||
    { cat "$work/build.log"; fail "build of the variant"; }
  variant_file=$work/build/lib$1.so.$2.0.0
  [[ -f "$variant_file" ]] || fail "no $variant_file"
}

# check_variant NAME: runs the guard on the variant alone; sets status and
# prints the verdict.
check_variant() {
  grep '^headers ' "$libraries_list" >"$work/list.txt"
  echo "library $1 $variant_file" >>"$work/list.txt"
  status=0
  bash "$repo/scripts/abi-check.sh" --list "$work/list.txt" >"$work/verdict.txt" 2>&1 ||
    status=$?
  cat "$work/verdict.txt"
}

# expect STATUS PATTERN...: the guard's exit status and lines of its verdict.
expect() {
  [[ $status -eq $1 ]] || fail "abi-check exited with $status, expected $1"
  local pattern
  for pattern in "${@:2}"; do
    grep -q -- "$pattern" "$work/verdict.txt" || fail "verdict lacks '$pattern'"
  done
  echo "ok: exit status $status as expected"
}

# copy_changed SRC DEST SED_SCRIPT: a scratch copy with a change that must
# take effect.
copy_changed() {
  mkdir -p "$(dirname "$2")"
  sed "$3" "$1" >"$2"
  ! cmp -s "$1" "$2" || fail "the change '$3' did not apply to $1"
}

# The variant of liblimidmgr_decode compiles $work/src/limid_decode.c beside a
# copy of the private header it includes.
limid_decode_variant() {
  cp "$repo/platform/limid/src/limid_layout.h" "$work/src/"
  build_variant limidmgr_decode "$1" "$work/src/limid_decode.c" "" \
                "$limid_includes" ""
  check_variant limidmgr_decode
}

case "$case" in
  refuses_removed_function)
    IFS=';' read -r -a all <<<"$common_objects"
    kept=()
    for object in "${all[@]}"; do
      [[ "$object" == */filter_explain_c.cc.o ]] || kept+=("$object")
    done
    ((${#kept[@]} == ${#all[@]} - 1)) || fail "filter_explain_c.cc.o not among the objects"
    objects=$(IFS=';'; echo "${kept[*]}")
    build_variant filter_common "$common_soversion" "" "$objects" "" "$common_libraries"
    check_variant filter_common
    expect 1 "filter_common: INCOMPATIBLE" "Removed function" "filtersExplainEntry"
    ;;
  refuses_changed_enumerator)
    copy_changed "$repo/platform/policer/include/policer/policer.h" \
                 "$work/include/policer/policer.h" 's/STAGE_EGRESS = 1,/STAGE_EGRESS = 7,/'
    cp "$repo/platform/policer/src/policer.cc" "$work/src/policer.cc"
    build_variant policer_common "$policer_soversion" "$work/src/policer.cc" \
                  "$policer_objects" "$work/include;$policer_includes" "$policer_libraries"
    check_variant policer_common
    expect 1 "policer_common: INCOMPATIBLE" "STAGE_EGRESS' from value '1' to '7'"
    ;;
  reports_added_function)
    cp "$repo/platform/limid/src/limid_decode.c" "$work/src/limid_decode.c"
    cat >>"$work/src/limid_decode.c" <<'EOF'

LIMID_EXPORT int limid_abi_guard_probe(void);
int limid_abi_guard_probe(void) { return 1; }
EOF
    limid_decode_variant "$limid_soversion"
    expect 0 "limidmgr_decode: compatible additions" "Added function" "limid_abi_guard_probe"
    ;;
  allows_break_with_raised_soversion)
    copy_changed "$repo/platform/limid/src/limid_decode.c" "$work/src/limid_decode.c" \
                 '/^int limid_compare(.*}$/d'
    limid_decode_variant $((limid_soversion + 1))
    expect 0 "SONAME raised from liblimidmgr_decode.so.$limid_soversion to liblimidmgr_decode.so.$((limid_soversion + 1))" \
           "Removed function" "limid_compare"
    ;;
  *)
    fail "unknown case $case"
    ;;
esac
