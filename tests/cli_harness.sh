# The harness the filters-tool command-line tests share. Sourced with the
# tool and a scratch directory as arguments: it empties the directory, moves
# into it and defines the checks below, each counted in `checks`, each
# failure reported and counted in `failures`.
tool=$1
work=$2
rm -rf "$work"
mkdir -p "$work"
cd "$work" || exit 2

failures=0
checks=0
last=""

fail() {
  echo "FAIL: $* [filters-tool $last]"
  failures=$((failures + 1))
}

# run EXPECTED_STATUS ARGS...: runs the tool, stdout to out.txt, stderr to
# err.txt, and checks the exit status.
run() {
  local expected=$1
  shift
  last="$*"
  "$tool" "$@" >out.txt 2>err.txt
  local status=$?
  checks=$((checks + 1))
  [[ $status == "$expected" ]] || fail "exit status $status, expected $expected"
}

# has FILE LINE: FILE holds LINE as a whole line.
has() {
  checks=$((checks + 1))
  grep -qxF -- "$2" "$1" || fail "$1 lacks the line '$2'"
}

# quiet: nothing on standard error.
quiet() {
  checks=$((checks + 1))
  [[ ! -s err.txt ]] || fail "unexpected stderr: $(cat err.txt)"
}

# same FILE1 FILE2: byte-identical files.
same() {
  checks=$((checks + 1))
  cmp -s "$1" "$2" || fail "$1 and $2 differ"
}
