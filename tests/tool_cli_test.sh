#!/usr/bin/env bash
# Runs filters-tool against real files: every command, its help, and the
# errors a user meets. Usage: tool_cli_test.sh PATH/TO/filters-tool WORKDIR
set -u

# shellcheck source=cli_harness.sh
source "$(dirname "${BASH_SOURCE[0]}")/cli_harness.sh" "$1" "$2"

# error STATUS MESSAGE ARGS...: the tool fails with STATUS, prints nothing on
# stdout and exactly the one line MESSAGE on stderr.
error() {
  local status=$1 message=$2
  shift 2
  run "$status" "$@"
  checks=$((checks + 1))
  [[ ! -s out.txt ]] || fail "unexpected stdout: $(head -3 out.txt)"
  [[ $(wc -l <err.txt) == 1 ]] || fail "stderr is not one line: $(cat err.txt)"
  has err.txt "$message"
}

# ---- demo ----
run 0 demo --out demo.bin
quiet
has out.txt "   entry 10, permit SSH from 10.0.0.0/8 on eth1 and eth2: insertEntry returned 0 (FILTERS_OK)"
has out.txt "   entry 40, voice (UDP 5060) on VLAN 200: PCP 5, queue 5, policed to 2 Mbit/s: insertEntry returned 0 (FILTERS_OK)"
has out.txt "   $work/demo.bin"
has out.txt "4. Read the file back into a new group: it is equal to the group built (5 of 5 entries)."
has out.txt "=FiltersGroup="
has out.txt "    Stage: Ingress"
[[ -s demo.bin ]] || fail "demo.bin was not written"
run 0 demo
has out.txt "   $work/filters-demo.bin"
has out.txt "Next: $tool check ./filters-demo.bin"
same filters-demo.bin demo.bin
run 0 demo --help
has out.txt "Usage: filters-tool demo [--out PATH]"

# ---- dump ----
run 0 dump demo.bin
quiet
cp out.txt demo.dump
has demo.dump "=FiltersGroup="
has demo.dump "  ID: 100"
has demo.dump "    =MatchSrcIPv4="
has demo.dump "      IP: 10.0.0.0"
has demo.dump "    Mode: SrTcm (CIR: 2000 kbits/s, CBS: 16000 bytes, EBS: 32000 bytes)"
last="dump - < demo.bin"
"$tool" dump - <demo.bin >stdin.dump 2>err.txt
quiet
same stdin.dump demo.dump
run 0 dump --help
has out.txt "Usage: filters-tool dump [--entry] [--hex] FILE|-"

# ---- to-json and from-json ----
run 0 to-json demo.bin
quiet
cp out.txt demo.json
has demo.json ' "id_": 100,'
has demo.json '   "policer_": {'
has demo.json '     "cir": 2000,'
run 0 from-json demo.json --out back.bin
quiet
same back.bin demo.bin
run 0 to-json back.bin
same out.txt demo.json
run 0 from-json --hex demo.json
cp out.txt demo.hex
has demo.hex "08 64 10 0a 18 02 20 03 2a 57 08 0a 10 64 1a 18"
run 0 dump --hex demo.hex
same out.txt demo.dump
run 0 dump demo.json
same out.txt demo.dump
run 0 to-json --hex demo.hex
same out.txt demo.json
run 0 to-json --help
has out.txt "Usage: filters-tool to-json [--entry] [--hex] FILE|-"
run 0 from-json --help
has out.txt "Usage: filters-tool from-json [--entry] [--hex] [--out PATH] FILE|-"

# An entry on its own.
cat >entry.json <<'EOF'
{
  "id_": 42,
  "priority_": 7,
  "policer_": {"id": 3, "stage": 0, "mode": {"type": 3, "cir": 500, "cbs": 900},
               "actions": [{"color": 0, "type": 0}]},
  "matches_": [{"type_": 17, "ipprotocol_": 17}],
  "actions_": [{"type_": 1}],
  "counters_": [{"id": 1, "type": 1}]
}
EOF
run 0 from-json --entry entry.json --out entry.bin
quiet
run 0 dump --entry entry.bin
has out.txt "  =FiltersEntry="
has out.txt "    ID: 42"
has out.txt "    Mode: Flow (CIR: 500 kbits/s, CBS: 900 bytes)"
has out.txt "    =MatchIpProtocol="
run 0 to-json --entry entry.bin
cp out.txt entry2.json
run 0 from-json --entry entry2.json --out entry2.bin
same entry2.bin entry.bin

# Policer bytes the policer would write otherwise stay as they are.
echo "08 01 10 00 1a 00" >rawpolicer.hex
run 0 to-json --entry --hex rawpolicer.hex
cp out.txt rawpolicer.json
has rawpolicer.json ' "policer_bytes_": ""'
has err.txt "filters-tool: note: rawpolicer.hex: entry: the policer bytes are not what the policer writes for its own fields; kept as base64 in policer_bytes_"
run 0 from-json --entry --hex rawpolicer.json
has out.txt "08 01 10 00 1a 00"

# ---- check ----
cat >refusals.json <<'EOF'
{
  "id_": 7, "priority_": 3, "stage_": 2, "type_": 3,
  "entries_": [
    {"id_": 1, "priority_": 10, "policer_": {},
     "matches_": [{"type_": 9, "ipv4_": "CgAAAA==", "ipv4_mask_": "/wAAAA=="}],
     "actions_": [{"type_": 0}]},
    {"id_": 2, "priority_": 10, "policer_": {},
     "matches_": [{"type_": 14, "ipv6_": "IAENuAAAAAAAAAAAAAAAAQ=="}]},
    {"id_": 3, "priority_": 10, "policer_": {},
     "actions_": [{"type_": 6, "pcp_and_queue_": 3}]},
    {"id_": 4, "priority_": 10,
     "policer_": {"id": 9, "stage": 1, "mode": {"type": 3, "cir": 100, "cbs": 200}},
     "actions_": [{"type_": 1}]},
    {"id_": 1, "priority_": 20, "policer_": {}, "actions_": [{"type_": 1}]},
    {"id_": 5, "priority_": 10, "policer_": {},
     "matches_": [{"type_": 4, "mac_": "AAECAwQF"}], "actions_": [{"type_": 17}]}
  ]
}
EOF
run 1 check refusals.json
quiet
cp out.txt refusals.check
has refusals.check "Group 7: stage 2, type 3, 6 entries in refusals.json"
has refusals.check "entry 1: accepted"
has refusals.check "entry 2: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchSrcIPv6 (14) is not allowed in group type 3"
has refusals.check "entry 3: dropped, code -9 (FILTERS_ERR_ACTION_NOT_ALLOWED): action ActionSetPcpAndQueue (6) is not allowed in stage 2"
has refusals.check "entry 4: dropped, code -10 (FILTERS_ERR_POLICER_STAGE): policer stage 1 (Egress) does not fit group stage 2, which requires policer stage 0 (Ingress)"
has refusals.check "entry 1: accepted, replaces the earlier entry 1"
has refusals.check "entry 5: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchDstMac (4) is not allowed in group type 3"
has refusals.check "2 of 6 entries accepted"
has refusals.check "of which 1 replaced an earlier entry with the same id: the group keeps 1 entry"
run 0 from-json refusals.json --out refusals.bin
run 1 check refusals.bin
has out.txt "2 of 6 entries accepted"
has out.txt "entry 3: dropped, code -9 (FILTERS_ERR_ACTION_NOT_ALLOWED): action ActionSetPcpAndQueue (6) is not allowed in stage 2"
run 0 from-json --hex --out refusals.hex refusals.json
run 1 check --hex refusals.hex
has out.txt "2 of 6 entries accepted"
last="check - < refusals.bin"
"$tool" check - <refusals.bin >out.txt 2>err.txt
status=$?
[[ $status == 1 ]] || fail "exit status $status, expected 1"
has out.txt "entry 4: dropped, code -10 (FILTERS_ERR_POLICER_STAGE): policer stage 1 (Egress) does not fit group stage 2, which requires policer stage 0 (Ingress)"
run 0 check demo.bin
quiet
has out.txt "5 of 5 entries accepted"
# dump loads the group as any receiver does, and says that entries went.
run 0 dump refusals.bin
has out.txt "  ID: 7"
has err.txt "filters-tool: note: refusals.bin: the message holds 6 entries, the group keeps 1; 'filters-tool check refusals.bin' says why"
run 0 check --help
has out.txt "Usage: filters-tool check [--hex] FILE|-"

# ---- caps ----
run 0 caps
quiet
has out.txt "Stage 2 (FILTERS_STAGE_INGRESS)"
has out.txt "Type 14 (FILTERS_TYPE_UNKNOWN_DEST)"
run 0 caps --stage 1
has out.txt "  group types (3): 0 4 6"
has out.txt "  policer: only a policer without stage (2, None)"
has out.txt "    18 ActionMplsPortSet"
run 0 caps --type=8
has out.txt "  allowed in stages: 0 2"
has out.txt "  match kinds (3):"
has out.txt "    27 MatchVrfId"
run 0 caps --stage 3 --type 3
has out.txt "  policer: policer stage 1 (Egress), or a policer without stage (2, None)"
has out.txt "Type 3 in stage 3: not allowed (code -7, FILTERS_ERR_TYPE_NOT_IN_STAGE)"
run 0 caps --type 4
has out.txt "    20 MatchToS (and MatchDSCP)"
run 0 caps --help
has out.txt "Usage: filters-tool caps [--stage S] [--type T]"

# ---- help ----
run 0 --help
has out.txt "Usage: filters-tool COMMAND [OPTIONS] [FILE|-]"
has out.txt "  check      report every entry a group would drop, and why"

# ---- errors: one line on stderr, status 2 ----
printf '{"id_": 1,' >truncated.json
printf '{"id_": 1, "bogus": 2}' >bogus.json
printf '08 64 10 0z' >bad.hex
printf '\xff\xff\xff' >garbage.bin
: >empty.bin
cat >mpls.json <<'EOF'
{"id_": 1, "priority_": 0, "stage_": 1, "type_": 0,
 "entries_": [{"id_": 1, "priority_": 0, "policer_": {}, "actions_": [{"type_": 18}]}]}
EOF
run 0 from-json mpls.json --out mpls.bin

error 2 "filters-tool: missing COMMAND (see 'filters-tool --help')"
error 2 "filters-tool: unknown command 'frobnicate' (see 'filters-tool --help')" frobnicate
error 2 "filters-tool: dump: unknown option '--bogus' (see 'filters-tool dump --help')" dump --bogus demo.bin
error 2 "filters-tool: dump: missing FILE (- reads standard input) (see 'filters-tool dump --help')" dump
error 2 "filters-tool: check: unexpected argument 'more.bin' (see 'filters-tool check --help')" check demo.bin more.bin
error 2 "filters-tool: caps: option --stage needs a value" caps --stage
error 2 "filters-tool: caps: --type needs a number, not 'ten'" caps --type ten
error 2 "filters-tool: caps: stage 7 is unknown; the stages are 0 to 3" caps --stage 7
error 2 "filters-tool: cannot read missing.bin: No such file or directory" dump missing.bin
error 2 "filters-tool: cannot read missing.json: No such file or directory" from-json missing.json
error 2 "filters-tool: truncated.json: unreadable JSON: Unexpected end of string. Expected an object key or }." to-json truncated.json
error 2 "filters-tool: bogus.json: unreadable JSON: bogus: Cannot find field." from-json --hex bogus.json
error 2 "filters-tool: demo.bin: not JSON (it does not start with '{')" from-json demo.bin
error 2 "filters-tool: bad.hex: bad hex digit 'z' at offset 10" dump --hex bad.hex
error 2 "filters-tool: demo.hex: this looks like hex text; add --hex to read it" check demo.hex
error 2 "filters-tool: garbage.bin: not a FiltersGroupPB message (the bytes do not parse; use --hex for hex text)" dump garbage.bin
error 2 "filters-tool: empty.bin: empty input" to-json empty.bin
error 2 "filters-tool: cannot write no-such-dir/x.bin: No such file or directory" from-json --out no-such-dir/x.bin demo.json
error 2 "filters-tool: mpls.bin: entries_[0] (entry 1): ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port; the library cannot load this group at all" check mpls.bin
error 2 "filters-tool: mpls.bin: the library cannot load this: ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port" dump mpls.bin
error 2 "filters-tool: cannot read .: Is a directory" check .
error 2 "filters-tool: cannot read .: Is a directory" from-json .
printf '[1, 2]' >array.json
error 2 "filters-tool: array.json: unreadable JSON: Root element must be a message." to-json array.json

# An entry where a group is read, and the reverse, in bytes and in JSON.
error 2 "filters-tool: demo.bin: this holds a group (FiltersGroupPB), not one entry; leave out --entry" dump --entry demo.bin
error 2 "filters-tool: demo.json: this JSON holds a group (FiltersGroupPB), not one entry; leave out --entry" from-json --entry demo.json
error 2 "filters-tool: entry.bin: this holds one entry (FiltersEntryPB), not a group; use --entry (check takes groups only)" check entry.bin
error 2 "filters-tool: entry.json: this JSON holds one entry (FiltersEntryPB), not a group; use --entry (check takes groups only)" to-json entry.json

# Standard input is named as such.
last="check - < empty.bin"
"$tool" check - <empty.bin >out.txt 2>err.txt
status=$?
[[ $status == 2 ]] || fail "exit status $status, expected 2"
has err.txt "filters-tool: standard input: empty input"

# Output that cannot be written is an error, not a silent success.
if [[ -w /dev/full ]]; then
  for command in "caps" "dump demo.bin" "to-json demo.bin" "check demo.bin"; do
    last="$command > /dev/full"
    # shellcheck disable=SC2086  # the command's words are meant to split
    "$tool" $command >/dev/full 2>err.txt
    status=$?
    [[ $status == 2 ]] || fail "exit status $status, expected 2"
    [[ $(wc -l <err.txt) == 1 ]] || fail "stderr is not one line: $(cat err.txt)"
    has err.txt "filters-tool: cannot write to standard output"
  done
fi

# ---- hex and JSON as people write them ----
tr 'a-f' 'A-F' <demo.hex >upper.hex
run 0 dump --hex upper.hex
same out.txt demo.dump
sed 's/\([0-9a-f][0-9a-f]\)/0x\1/g' demo.hex >prefixed.hex
run 0 dump --hex prefixed.hex
same out.txt demo.dump
{ printf '0x'; tr -d ' \n' <demo.hex; } >run.hex
run 0 to-json --hex run.hex
quiet
same out.txt demo.json
{ printf '\xef\xbb\xbf'; cat demo.json; } >bom.json
run 0 dump bom.json
quiet
same out.txt demo.dump
# --hex does not stop JSON from being read as JSON.
run 0 check --hex demo.json
has out.txt "5 of 5 entries accepted"
printf '{"id_": 5}' >partial.json
run 0 check partial.json
has err.txt "filters-tool: note: partial.json: the FiltersGroupPB message lacks required fields (priority_, stage_, type_); the library reads them as 0"
has out.txt "Group 5: stage 0, type 0, 0 entries in partial.json"

# A match without its required kind prints as read, with a note; as JSON it
# cannot be read back, which the error says.
echo "08 01 10 00 18 00 20 01 2a 0a 08 01 10 00 1a 00 22 02 10 05" >notype.hex
run 0 to-json --hex notype.hex
cp out.txt notype.json
has notype.json '     "ports_": ['
has err.txt "filters-tool: note: notype.hex: the FiltersGroupPB message lacks required fields (entries_[0].matches_[0].type_); the library reads them as 0"
error 2 "filters-tool: notype.json: unreadable JSON: (entries_[0].matches_[0]): missing field type_" from-json --hex notype.json

# ---- every refusal code a group gives on insertion ----
# Group 70000 keeps its low 16 bits, 4464. Entry 1's IPv4 match goes under
# the entry's own rules (an IPv6 match came first); of MatchDstMac (4),
# MatchSrcMac (7) and MatchSrcIPv6 (14) the lowest is named. Entry 4 comes
# twice: the second is refused, so the group keeps the first.
cat >codes.json <<'END'
{"id_": 70000, "priority_": 3, "stage_": 2, "type_": 3,
 "entries_": [
  {"id_": 1, "priority_": 1, "policer_": {},
   "matches_": [{"type_": 14}, {"type_": 7}, {"type_": 4}, {"type_": 9}],
   "actions_": [{"type_": 6}]},
  {"id_": 2, "priority_": 1, "policer_": {}, "matches_": [{"type_": 9}],
   "actions_": [{"type_": 18, "vpn_id": 19, "mpls_access_port": 17},
                {"type_": 7}, {"type_": 17}]},
  {"id_": 3, "priority_": 1, "policer_": {"stage": 1}, "actions_": [{"type_": 1}]},
  {"id_": 4, "priority_": 1, "policer_": {"stage": 0},
   "policer_parent_": {"stage": 1}},
  {"id_": 4, "priority_": 2, "policer_": {}, "matches_": [{"type_": 38}]},
  {"id_": 5, "priority_": 1, "policer_": {}, "matches_": [{"type_": 9}, {"type_": 15}]},
  {"id_": 5, "priority_": 3, "policer_": {}}
 ]}
END
rules="(IPv4 beside IPv6 addresses, or a destination port beside a port range)"
run 1 check codes.json
quiet
cat >expected.txt <<END
Group 4464: stage 2, type 3, 7 entries in codes.json
entry 1: note: match MatchSrcIPv4 (9) is dropped by the entry's own rules $rules
entry 1: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchDstMac (4) is not allowed in group type 3
entry 2: dropped, code -9 (FILTERS_ERR_ACTION_NOT_ALLOWED): action ActionSetInnerPcp (7) is not allowed in stage 2
entry 3: dropped, code -10 (FILTERS_ERR_POLICER_STAGE): policer stage 1 (Egress) does not fit group stage 2, which requires policer stage 0 (Ingress)
entry 4: accepted
entry 4: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchUnknownDestIp (38) is not allowed in group type 3
entry 5: note: match MatchDstIPv6 (15) is dropped by the entry's own rules $rules
entry 5: accepted
entry 5: accepted, replaces the earlier entry 5
3 of 7 entries accepted
of which 1 replaced an earlier entry with the same id: the group keeps 2 entries
END
same out.txt expected.txt
# The same group with type 20, which no table knows: -4 for every entry.
sed 's/"type_": 3,/"type_": 20,/' codes.json >type20.json
run 1 check type20.json
has out.txt "note: stage 2 does not allow type 20 (code -7, FILTERS_ERR_TYPE_NOT_IN_STAGE); the loader keeps both as read all the same"
has out.txt "entry 3: dropped, code -4 (FILTERS_ERR_INVALID): group type 20 is unknown"
checks=$((checks + 1))
[[ $(grep -c "dropped, code -4 (FILTERS_ERR_INVALID): group type 20 is unknown" out.txt) == 7 ]] ||
  fail "not every entry is refused with -4"
has out.txt "0 of 7 entries accepted"
# Stage 9: the matches are checked first (-6), then the stage is unknown (-8).
sed 's/"stage_": 2,/"stage_": 9,/' codes.json >stage9.json
run 1 check stage9.json
has out.txt "entry 1: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchDstMac (4) is not allowed in group type 3"
has out.txt "entry 2: dropped, code -8 (FILTERS_ERR_UNKNOWN_STAGE): group stage 9 is unknown"
has out.txt "entry 5: dropped, code -8 (FILTERS_ERR_UNKNOWN_STAGE): group stage 9 is unknown"
has out.txt "0 of 7 entries accepted"
# Stage 3 wants an egress policer and allows permit and deny only.
sed 's/"stage_": 2,/"stage_": 3,/' codes.json >stage3.json
run 1 check stage3.json
has out.txt "entry 2: dropped, code -9 (FILTERS_ERR_ACTION_NOT_ALLOWED): action ActionSetInnerPcp (7) is not allowed in stage 3"
has out.txt "entry 3: accepted"
has out.txt "entry 4: dropped, code -10 (FILTERS_ERR_POLICER_STAGE): policer stage 0 (Ingress) does not fit group stage 3, which requires policer stage 1 (Egress)"
has out.txt "3 of 7 entries accepted"

# ---- JSON round trips of policers of every mode, colour actions, parents ----
cat >policers.json <<'END'
{"id_": 12, "priority_": 1, "stage_": 0, "type_": 1,
 "entries_": [
  {"id_": 1, "priority_": 5,
   "policer_": {"id": 1, "stage": 0, "mode": {"type": 0, "cir": 1, "cbs": 2, "ebs": 3},
                "actions": [{"color": 0, "type": 0}, {"color": 1, "type": 1, "pcp": 4},
                            {"color": 2, "type": 2, "dscp": 46}]},
   "matches_": [{"type_": 4, "mac_": "ABEiM0RV", "mac_mask_": "////////"}],
   "actions_": [{"type_": 12, "mac_": "AgAAAAAB"}],
   "counters_": [{"id": 1, "type": 1}, {"id": 2, "type": 2}]},
  {"id_": 2, "priority_": 5,
   "policer_": {"id": 2, "stage": 1, "mode": {"type": 1, "cir": 4, "cbs": 5, "pir": 6, "pbs": 7}},
   "policer_parent_": {"id": 9, "stage": 2, "mode": {"type": 3, "cir": 10, "cbs": 11},
                       "actions": [{"color": 0, "type": 0}]}},
  {"id_": 3, "priority_": 5,
   "policer_": {"id": 3, "stage": 2, "mode": {"type": 2, "cir": 8, "cbs": 9, "ebs": 10, "eir": 11}}},
  {"id_": 4, "priority_": 5, "policer_": {"id": 4, "stage": 2, "mode": {"type": 4}}}
 ]}
END
run 0 from-json policers.json --out policers.bin
quiet
run 0 to-json policers.bin
quiet
cp out.txt policers2.json
has policers2.json '     "pir": 6,'
has policers2.json '      "dscp": 46'
has policers2.json '   "policer_parent_": {'
has policers2.json '     "mac_mask_": "////////"'
run 0 from-json policers2.json --out policers2.bin
same policers2.bin policers.bin
run 0 to-json policers2.bin
same out.txt policers2.json

echo "$checks checks, $failures failures"
[[ $failures == 0 ]]
