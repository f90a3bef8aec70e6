#!/usr/bin/env bash
# Installs the build tree under a scratch prefix and runs the Python example
# against the installed package only.
#   run_installed.sh BUILD_DIR PREFIX PYTHON_DIR PYTHON EXAMPLE
set -euo pipefail
build=$1 prefix=$2 python_dir=$3 python=$4 example=$5

rm -rf "$prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
package="$prefix/$python_dir"
test -f "$package/filters_common/__init__.pyi"
test -f "$package/filters_common/wire/filter_groups_pb2.py"

cd "$prefix"
unset PYTHONPATH
PYTHONPATH="$package" "$python" - "$package" <<'PY'
import sys
import filters_common
from filters_common.wire import filter_groups_pb2  # noqa: F401
assert filters_common.__file__.startswith(sys.argv[1]), filters_common.__file__
PY
PYTHONPATH="$package" "$python" "$example" >/dev/null
echo "installed package: ok ($package)"
