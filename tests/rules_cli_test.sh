#!/usr/bin/env bash
# Runs filters-tool's rule text commands (show, compile) and the rule text
# input of the other commands against real files, errors included.
# Usage: rules_cli_test.sh PATH/TO/filters-tool WORKDIR
set -u

# shellcheck source=cli_harness.sh
source "$(dirname "${BASH_SOURCE[0]}")/cli_harness.sh" "$1" "$2"

# ---- show: every input form ----
run 0 demo --out demo.bin
run 0 show demo.bin
quiet
cp out.txt demo.rules
has demo.rules "group 100 priority 10 stage 2 type 3  # stage ingress, type ipv4-l4"
has demo.rules "entry 10 priority 100 in-ports eth1,eth2 dst-port 22 src-ip 10.0.0.0/8 proto tcp counter 1 packets permit"
has demo.rules "entry 40 priority 70 vlan 200 src-port 5060 proto udp counter 1 packets counter 2 red-octets policer { id 1 stage ingress mode srtcm cir 2000 cbs 16000 ebs 32000 red drop } set-pcp 5 cos-queue 5"
[[ $(wc -l <demo.rules) == 6 ]] || fail "demo.rules is not 6 lines"
run 0 to-json demo.bin
cp out.txt demo.json
run 0 show demo.json
same out.txt demo.rules
run 0 from-json --hex --out demo.hex demo.json
run 0 show --hex demo.hex
same out.txt demo.rules
run 0 show demo.rules
same out.txt demo.rules
"$tool" show - <demo.rules >out.txt 2>err.txt
checks=$((checks + 1))
same out.txt demo.rules

# ---- compile: back to the same bytes ----
run 0 compile demo.rules -o back.bin
quiet
[[ ! -s out.txt ]] || fail "compile -o wrote to stdout"
same back.bin demo.bin
"$tool" compile - <demo.rules >piped.bin 2>err.txt
checks=$((checks + 1))
same piped.bin demo.bin
run 0 compile --out back2.bin demo.rules
same back2.bin demo.bin
run 0 compile --hex demo.rules
same out.txt demo.hex

# ---- one entry ----
printf '# one entry\nentry 7 priority 3 dscp 46 redirect eth5 # comment\n' >entry.rules
run 0 compile --entry entry.rules -o entry.bin
run 0 show --entry entry.bin
has out.txt "entry 7 priority 3 tos 184 redirect eth5"
run 0 show --entry entry.rules
has out.txt "entry 7 priority 3 dscp 46 redirect eth5"
run 0 dump --entry entry.rules
has out.txt "    ID: 7"

# ---- the other commands read rule text ----
run 0 dump demo.rules
has out.txt "=FiltersGroup="
run 0 check demo.rules
has out.txt "5 of 5 entries accepted"
run 0 to-json demo.rules
same out.txt demo.json

# ---- errors: every one reported, nothing written ----
cat >bad.rules <<'RULES'
group 100 stage 2 type 10
entry 1 src-ip 10.0.0.0/8 dst-prt 22 deny
entry 2 vlan 70000 permit
entry 3 dst-port 80 permit
entry 2 permit
RULES
echo "old" >keep.bin
run 2 compile bad.rules -o keep.bin
[[ ! -s out.txt ]] || fail "compile printed on stdout after errors"
has err.txt "bad.rules:2:27: error: unknown keyword 'dst-prt'; did you mean 'dst-port'?"
has err.txt "bad.rules:3:14: error: '70000' is out of range for 'vlan': expected a number from 0 to 65535"
has err.txt "bad.rules:4:1: error: entry 3 is refused by the group with -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchDstL4Port (5) is not allowed in group type 10"
has err.txt "bad.rules:5:7: error: entry 2 is given twice; it was first given at line 3"
[[ $(wc -l <err.txt) == 4 ]] || fail "expected 4 error lines: $(cat err.txt)"
has keep.bin "old"
run 2 compile bad.rules --hex
[[ ! -s out.txt ]] || fail "compile --hex printed after errors"
run 2 show bad.rules
has err.txt "bad.rules:3:14: error: '70000' is out of range for 'vlan': expected a number from 0 to 65535"
run 2 compile --entry demo.rules
has err.txt "demo.rules:1:1: error: unknown keyword 'group' at the start of a line; expected 'entry' (a single entry holds no 'group' line)"
run 2 compile missing.rules
has err.txt "filters-tool: cannot read missing.rules: No such file or directory"
run 2 show --frobnicate demo.rules
has err.txt "filters-tool: show: unknown option '--frobnicate' (see 'filters-tool show --help')"

# ---- help ----
run 0 show --help
has out.txt "Usage: filters-tool show [--entry] [--hex] FILE|-"
run 0 compile --help
has out.txt "Usage: filters-tool compile [--entry] [--hex] RULES|- [-o OUT]"
run 0 --help
has out.txt "  show       print a group or an entry as rule text"
has out.txt "  compile    compile rule text to message bytes"

echo "$checks checks, $failures failures"
[[ $failures == 0 ]]
