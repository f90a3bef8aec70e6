#!/usr/bin/env bash
# Installs the Debian packages the build and the test suite need, if missing.
set -euo pipefail

packages=(cmake make g++ gcc pkg-config libprotobuf-dev protobuf-compiler
          libgtest-dev libgmock-dev libbenchmark-dev valgrind
          python3-dev pybind11-dev python3-pytest python3-protobuf)
if [[ "${FILTERS_WITH_CLANG:-0}" == 1 ]]; then
  packages+=(clang libclang-rt-14-dev)
fi
# Debian packages (scripts/package.sh) and the ABI guard (scripts/abi-check.sh).
if [[ "${FILTERS_WITH_PACKAGING:-0}" == 1 ]]; then
  packages+=(dpkg-dev file binutils fakeroot lintian help2man)
fi
if [[ "${FILTERS_WITH_ABI:-0}" == 1 ]]; then
  packages+=(abigail-tools binutils)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" \
    || missing+=("$p")
done

if ((${#missing[@]})); then
  echo "Installing missing packages: ${missing[*]}"
  sudo_cmd=()
  [[ $(id -u) -ne 0 ]] && sudo_cmd=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  log=$(mktemp -t filters-apt.XXXXXX)
  if ! { "${sudo_cmd[@]}" apt-get update -qq &&
         "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends \
           "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "deps: apt-get failed; its output is above" >&2
    exit 1
  fi
  rm -f "$log"
fi
