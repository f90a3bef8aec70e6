#!/usr/bin/env bash
# run_consumer.sh cmake|pkgconfig BUILD_DIR CONSUMER_SRC WORK_DIR
set -euo pipefail
mode=$1 build_dir=$2 consumer_src=$3 work=$4

rm -rf "$work"
mkdir -p "$work"
prefix="$work/prefix"
cmake --install "$build_dir" --prefix "$prefix" >"$work/install.log"

case "$mode" in
  cmake)
    cmake -S "$consumer_src" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" \
          -DCMAKE_BUILD_TYPE=Release >"$work/configure.log"
    cmake --build "$work/build" >"$work/build.log"
    "$work/build/consumer"
    ;;
  pkgconfig)
    libdir=$(ls -d "$prefix"/lib*/pkgconfig | head -n1)
    export PKG_CONFIG_PATH="$libdir"
    flags=$(pkg-config --cflags --libs filter_rules)
    g++ -std=c++17 -Wall -Wextra -Werror "$consumer_src/consumer.cc" \
        -o "$work/consumer" $flags
    "$work/consumer"
    ;;
  *)
    echo "unknown mode $mode" >&2
    exit 2
    ;;
esac
