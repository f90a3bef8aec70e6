#!/usr/bin/env bash
# Runs "filters-tool diff" on real files: equal groups in every input form,
# known removed, added and changed entries, header changes, and the errors,
# with their exit statuses. Usage: tool_diff_test.sh PATH/TO/filters-tool WORKDIR
set -u

# shellcheck source=cli_harness.sh
source "$(dirname "${BASH_SOURCE[0]}")/cli_harness.sh" "$1" "$2"

# output TEXT: standard output is exactly TEXT.
output() {
  checks=$((checks + 1))
  [[ "$(cat out.txt)" == "$1" ]] || fail "stdout is
$(cat out.txt)
expected
$1"
}

# error MESSAGE ARGS...: the tool exits with 2, prints nothing on stdout and
# exactly the one line MESSAGE on stderr.
error() {
  local message=$1
  shift
  run 2 "$@"
  output ""
  checks=$((checks + 1))
  [[ "$(cat err.txt)" == "$message" ]] || fail "stderr is '$(cat err.txt)', expected '$message'"
}

cat >old.rules <<'EOF'
# The old version of an ingress access list.
group 100 priority 10 stage 2 type 3
entry 10 priority 100 src-ip 10.0.0.0/8 dst-port 22 proto tcp permit
entry 20 priority 90 dst-port 23 proto tcp deny
entry 30 priority 80 dst-ip 192.0.2.10 dst-port 80 proto tcp redirect eth5
entry 50 priority 1 all permit
EOF

# Entry 20 gets another priority, 30 goes, 40 and 60 come.
cat >new.rules <<'EOF'
group 100 priority 10 stage 2 type 3

entry 10 priority 100 src-ip 10.0.0.0/8 dst-port 22 proto tcp permit
entry 20 priority 95 dst-port 23 proto tcp deny
entry 40 priority 70 dst-port 5060 proto udp counter 1 packets cos-queue 5
entry 50 priority 1 all permit
entry 60 priority 5 proto udp deny
EOF

run 0 compile old.rules -o old.bin
run 0 compile --hex old.rules -o old.hex
run 0 to-json old.bin
cp out.txt old.json
run 0 compile new.rules -o new.bin

# ---- equal groups: nothing printed, status 0, in every form ----
run 0 diff old.rules old.rules
quiet
output ""
run 0 diff old.bin old.rules
quiet
output ""
run 0 diff old.json old.bin
quiet
output ""
run 0 diff --hex old.hex old.hex
quiet
output ""
last="diff - old.rules < old.bin"
"$tool" diff - old.rules <old.bin >out.txt 2>err.txt
status=$?
checks=$((checks + 1))
[[ $status == 0 ]] || fail "exit status $status, expected 0"
output ""

# ---- known removed, added and changed entries, in ascending identifier ----
expected='- entry 20 priority 90 dst-port 23 proto tcp deny
+ entry 20 priority 95 dst-port 23 proto tcp deny
- entry 30 priority 80 dst-port 80 dst-ip 192.0.2.10 proto tcp redirect eth5
+ entry 40 priority 70 dst-port 5060 proto udp counter 1 packets cos-queue 5
+ entry 60 priority 5 proto udp deny'
run 1 diff old.rules new.rules
quiet
output "$expected"
# The same from message bytes and JSON.
run 1 diff old.bin new.bin
output "$expected"
run 1 diff old.json new.rules
output "$expected"

# The other way round, removed and added swap.
run 1 diff new.rules old.rules
output '- entry 20 priority 95 dst-port 23 proto tcp deny
+ entry 20 priority 90 dst-port 23 proto tcp deny
+ entry 30 priority 80 dst-port 80 dst-ip 192.0.2.10 proto tcp redirect eth5
- entry 40 priority 70 dst-port 5060 proto udp counter 1 packets cos-queue 5
- entry 60 priority 5 proto udp deny'

# ---- header changes come first ----
sed -e 's/^group 100 priority 10 stage 2 type 3$/group 100 priority 12 stage 2 type 3/' \
  old.rules >priority.rules
run 1 diff old.rules priority.rules
quiet
output '- group 100 priority 10 stage 2 type 3  # stage ingress, type ipv4-l4
+ group 100 priority 12 stage 2 type 3  # stage ingress, type ipv4-l4'

cat >small.rules <<'EOF'
group 7 stage 2 type 10
entry 1 dst-ip 192.0.2.1 deny
EOF
cat >moved.rules <<'EOF'
group 7 stage 0 type 3
entry 1 dst-ip 192.0.2.1 deny
entry 2 proto udp permit
EOF
run 1 diff small.rules moved.rules
quiet
output '- group 7 priority 0 stage 2 type 10  # stage ingress, type ipv4
+ group 7 priority 0 stage 0 type 3  # stage lookup, type ipv4-l4
+ entry 2 priority 0 proto udp permit'

# ---- errors: status 2, one line naming the file, nothing on stdout ----
error "filters-tool: cannot read missing.bin: No such file or directory" \
  diff old.rules missing.bin
error "filters-tool: diff: needs two files, OLD and NEW (- reads standard input) (see 'filters-tool diff --help')" \
  diff old.rules
error "filters-tool: diff: unexpected argument 'third' (see 'filters-tool diff --help')" \
  diff old.rules new.rules third
error "filters-tool: diff: OLD and NEW cannot both be standard input" \
  diff - -
error "filters-tool: diff: unknown option '--entry' (see 'filters-tool diff --help')" \
  diff --entry old.rules new.rules
printf 'group 100 stage 2 type 3\nentry 1 vlan 70000 deny\n' >bad.rules
run 2 diff old.rules bad.rules
output ""
checks=$((checks + 1))
grep -q '^bad.rules:2:' err.txt || fail "no error at bad.rules line 2: $(cat err.txt)"
printf 'not a message' >junk.bin
run 2 diff junk.bin old.rules
output ""
checks=$((checks + 1))
[[ $(wc -l <err.txt) == 1 ]] && grep -q 'junk.bin' err.txt ||
  fail "not one line naming junk.bin: $(cat err.txt)"

# ---- help ----
run 0 diff --help
quiet
checks=$((checks + 1))
grep -qxF 'Usage: filters-tool diff [--hex] OLD NEW' out.txt || fail "no usage line"
run 0 --help
checks=$((checks + 1))
grep -q '^  diff ' out.txt || fail "diff missing from the overview"

echo "$checks checks, $failures failures"
[[ $failures == 0 ]]
