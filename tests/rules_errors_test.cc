// Errors in rule text: one test per kind of mistake, each with its exact
// message and position, and nothing compiled when there is any error.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FiltersCommon/filter_rules.h"

namespace {

using FiltersCommon::compileEntryRule;
using FiltersCommon::compileGroupRules;
using FiltersCommon::RuleError;

// The error lines of a group file with header `header` and the given body.
std::vector<std::string> groupErrors(
    const std::string& body,
    const std::string& header = "group 1 stage 2 type 3\n") {
  std::vector<RuleError> errors;
  const auto group = compileGroupRules(header + body, "acl.rules", &errors);
  EXPECT_EQ(group, nullptr);
  std::vector<std::string> lines;
  for (const RuleError& e : errors) lines.push_back(e.toString());
  return lines;
}

std::vector<std::string> entryErrors(const std::string& text) {
  std::vector<RuleError> errors;
  const auto entry = compileEntryRule(text, "entry.rules", &errors);
  EXPECT_EQ(entry, nullptr);
  std::vector<std::string> lines;
  for (const RuleError& e : errors) lines.push_back(e.toString());
  return lines;
}

using Lines = std::vector<std::string>;

TEST(RulesErrors, UnknownKeywordSuggestsTheClosestKeyword) {
  EXPECT_EQ(groupErrors("entry 1 dst-prt 22 permit\n"),
            Lines{"acl.rules:2:9: error: unknown keyword 'dst-prt'; did you "
                  "mean 'dst-port'?"});
}

TEST(RulesErrors, UnknownKeywordFarFromAnyListsWhatIsExpected) {
  EXPECT_EQ(groupErrors("entry 1 frobnicate permit\n"),
            Lines{"acl.rules:2:9: error: unknown keyword 'frobnicate'; "
                  "expected a match, an action, 'counter', 'policer', "
                  "'parent' or 'priority'"});
}

TEST(RulesErrors, UnknownLineKeywordSuggestsGroupOrEntry) {
  EXPECT_EQ(groupErrors("entyr 1 permit\n"),
            Lines{"acl.rules:2:1: error: unknown keyword 'entyr' at the start "
                  "of a line; did you mean 'entry'?"});
}

TEST(RulesErrors, VlanAbove65535IsOutOfRange) {
  EXPECT_EQ(groupErrors("entry 1 vlan 10,70000 permit\n"),
            Lines{"acl.rules:2:17: error: '70000' is out of range for 'vlan': "
                  "expected a number from 0 to 65535"});
}

TEST(RulesErrors, PortAbove65535IsOutOfRange) {
  EXPECT_EQ(groupErrors("entry 1 dst-port 65536 permit\n"),
            Lines{"acl.rules:2:18: error: '65536' is out of range for "
                  "'dst-port': expected a number from 0 to 65535"});
}

TEST(RulesErrors, ByteFieldAbove255IsOutOfRange) {
  EXPECT_EQ(groupErrors("entry 1 ttl 256 permit\n"),
            Lines{"acl.rules:2:13: error: '256' is out of range for 'ttl': "
                  "expected a number from 0 to 255"});
}

TEST(RulesErrors, MalformedAddressIsNamed) {
  EXPECT_EQ(groupErrors("entry 1 src-ip 10.0.0.300 permit\n"),
            Lines{"acl.rules:2:16: error: '10.0.0.300' is not valid for "
                  "'src-ip': expected an IPv4 address"});
}

TEST(RulesErrors, PrefixLongerThanTheAddressIsRefused) {
  EXPECT_EQ(groupErrors("entry 1 src-ip 10.0.0.0/33 permit\n"),
            Lines{"acl.rules:2:25: error: '33' is not valid for 'src-ip': "
                  "expected a prefix length from 0 to 32 or a mask"});
}

TEST(RulesErrors, MalformedNumberSaysWhatWasExpected) {
  EXPECT_EQ(groupErrors("entry 1 proto tcpp permit\n"),
            Lines{"acl.rules:2:15: error: 'tcpp' is not valid for 'proto': "
                  "expected a number from 0 to 255 or icmp, igmp, tcp, udp, "
                  "gre, esp, ah, icmpv6 or sctp"});
}

TEST(RulesErrors, KeywordWithoutValueSaysWhatItNeeds) {
  EXPECT_EQ(groupErrors("entry 1 ttl\n"),
            Lines{"acl.rules:2:9: error: 'ttl' needs a value: a number from 0 "
                  "to 255"});
}

TEST(RulesErrors, EntryIdentifierGivenTwiceNamesTheFirstLine) {
  EXPECT_EQ(groupErrors("entry 5 permit\nentry 6 permit\nentry 5 deny\n"),
            Lines{"acl.rules:4:7: error: entry 5 is given twice; it was first "
                  "given at line 2"});
}

TEST(RulesErrors, MatchGivenTwiceInOneEntry) {
  EXPECT_EQ(groupErrors("entry 1 ttl 1 ttl 2 permit\n"),
            Lines{"acl.rules:2:15: error: match 'ttl' is given twice"});
}

TEST(RulesErrors, ToSAndDscpShareOneKind) {
  EXPECT_EQ(entryErrors("entry 1 tos 4 dscp 1\n"),
            Lines{"entry.rules:1:15: error: a ToS or DSCP match is given twice "
                  "(tos and dscp share one kind)"});
}

TEST(RulesErrors, IPv4BesideIPv6IsRefusedByTheEntry) {
  EXPECT_EQ(entryErrors("entry 1 src-ip 10.0.0.1 dst-ip6 ::1\n"),
            Lines{"entry.rules:1:25: error: match 'dst-ip6' cannot stand "
                  "beside 'src-ip': an entry never holds IPv4 and IPv6 "
                  "address matches together"});
}

TEST(RulesErrors, DestinationPortBesidePortRangeIsRefusedByTheEntry) {
  EXPECT_EQ(entryErrors("entry 1 dst-port-range 1-9 dst-port 5\n"),
            Lines{"entry.rules:1:28: error: match 'dst-port' cannot stand "
                  "beside 'dst-port-range': an entry holds a destination port "
                  "or a destination port range, not both"});
}

TEST(RulesErrors, EntryTheGroupRefusesNamesTheCodeAndTheCause) {
  EXPECT_EQ(groupErrors("entry 7 src-ip 10.0.0.0/8 permit\n",
                        "group 1 stage 0 type 8\n"),
            Lines{"acl.rules:2:1: error: entry 7 is refused by the group with "
                  "-6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match MatchSrcIPv4 (9) "
                  "is not allowed in group type 8"});
}

TEST(RulesErrors, EntryBeforeTheGroupLine) {
  std::vector<RuleError> errors;
  EXPECT_EQ(
      compileGroupRules("entry 1 permit\ngroup 1\n", "acl.rules", &errors),
      nullptr);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].toString(),
            "acl.rules:1:1: error: an entry before the 'group' line: a rule "
            "file starts with 'group ID ...'");
}

TEST(RulesErrors, SecondGroupLine) {
  EXPECT_EQ(groupErrors("group 2\n"),
            Lines{"acl.rules:2:1: error: a second 'group' line; the group was "
                  "given at line 1"});
}

TEST(RulesErrors, TextWithoutGroupLine) {
  std::vector<RuleError> errors;
  EXPECT_EQ(compileGroupRules("# nothing here\n\n", "acl.rules", &errors),
            nullptr);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].toString(),
            "acl.rules:1:1: error: no 'group' line: a rule file starts with "
            "'group ID priority P stage S type T'");
}

TEST(RulesErrors, UnknownGroupLineKeyword) {
  std::vector<RuleError> errors;
  EXPECT_EQ(compileGroupRules("group 1 stgae 2\n", "acl.rules", &errors),
            nullptr);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].toString(),
            "acl.rules:1:9: error: unknown keyword 'stgae' in the group line; "
            "did you mean 'stage'?");
}

TEST(RulesErrors, GroupIdentifierAbove16BitsIsOutOfRange) {
  std::vector<RuleError> errors;
  EXPECT_EQ(compileGroupRules("group 70000\n", "acl.rules", &errors), nullptr);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].toString(),
            "acl.rules:1:7: error: '70000' is out of range for 'group': "
            "expected a number from 0 to 65535");
}

TEST(RulesErrors, ExcludedPortTypesBelongToInPortsOnly) {
  EXPECT_EQ(entryErrors("entry 1 out-ports eth1,!cpu\n"),
            Lines{"entry.rules:1:24: error: '!cpu': 'out-ports' takes no "
                  "excluded port types; only in-ports does"});
}

TEST(RulesErrors, UnknownInterfaceName) {
  EXPECT_EQ(entryErrors("entry 1 redirect eth1,xe2\n"),
            Lines{"entry.rules:1:23: error: 'xe2' is not valid for 'redirect': "
                  "expected interfaces such as eth1,lag2, or none"});
}

TEST(RulesErrors, BackwardsRangeInASet) {
  EXPECT_EQ(entryErrors("entry 1 pcp 1,5-3\n"),
            Lines{"entry.rules:1:15: error: range '5-3' runs backwards: "
                  "expected the lower bound first"});
}

TEST(RulesErrors, DscpAbove63IsOutOfRange) {
  EXPECT_EQ(entryErrors("entry 1 dscp 64\n"),
            Lines{"entry.rules:1:14: error: '64' is out of range for 'dscp': "
                  "expected a DSCP from 0 to 63, and ':n' (0 to 3) for the two "
                  "low ToS bits"});
}

TEST(RulesErrors, MplsPortSetRefusesWrongInterfaceTypes) {
  EXPECT_EQ(entryErrors("entry 1 mpls-port-set eth1 lag2\n"),
            Lines{"entry.rules:1:23: error: 'eth1 lag2' is refused by "
                  "mpls-port-set: ActionMplsPortSet: invalid vpn_id limid "
                  "type"});
}

TEST(RulesErrors, PolicerParameterItsModeDoesNotUse) {
  EXPECT_EQ(entryErrors("entry 1 policer { mode flow cir 1 pir 2 }\n"),
            Lines{"entry.rules:1:35: error: policer mode flow does not use "
                  "'pir'"});
}

TEST(RulesErrors, UnknownPolicerField) {
  EXPECT_EQ(entryErrors("entry 1 policer { mode flow cri 1 }\n"),
            Lines{"entry.rules:1:29: error: unknown policer field 'cri'; did "
                  "you mean 'cir'?"});
}

TEST(RulesErrors, PolicerModeWithoutConstructor) {
  EXPECT_EQ(entryErrors("entry 1 policer { mode 9 }\n"),
            Lines{"entry.rules:1:17: error: policer mode 9 has no constructor; "
                  "write such a policer as { bytes ... }"});
}

TEST(RulesErrors, UnclosedPolicerBlock) {
  EXPECT_EQ(entryErrors("entry 1 policer { stage ingress\n"),
            Lines{"entry.rules:1:17: error: the policer block has no closing "
                  "'}' on this line"});
}

TEST(RulesErrors, SecondEntryInSingleEntryText) {
  EXPECT_EQ(entryErrors("entry 1 permit\nentry 2 deny\n"),
            Lines{"entry.rules:2:1: error: a second entry; a single entry is "
                  "expected, and one was given at line 1"});
}

TEST(RulesErrors, GroupLineInSingleEntryText) {
  EXPECT_EQ(entryErrors("group 1\n"),
            Lines{"entry.rules:1:1: error: unknown keyword 'group' at the "
                  "start of a line; expected 'entry' (a single entry holds no "
                  "'group' line)"});
}

TEST(RulesErrors, EveryWrongLineIsReportedUpToTwentyThenTooMany) {
  std::string body;
  for (int i = 1; i <= 30; ++i) {
    body += "entry " + std::to_string(i) + " ttl 300\n";
  }
  const Lines lines = groupErrors(body);
  ASSERT_EQ(lines.size(), 21u);
  EXPECT_EQ(lines[0],
            "acl.rules:2:13: error: '300' is out of range for 'ttl': expected "
            "a number from 0 to 255");
  EXPECT_EQ(lines[19],
            "acl.rules:21:14: error: '300' is out of range for 'ttl': "
            "expected a number from 0 to 255");
  EXPECT_EQ(lines[20], "acl.rules:22:14: error: too many errors; stopping");
}

TEST(RulesErrors, ErrorsOnSeveralLinesAreAllReported) {
  EXPECT_EQ(groupErrors("entry 1 vlan 70000\nentry 2 permit\nentry 3 ttl x\n"),
            (Lines{"acl.rules:2:14: error: '70000' is out of range for 'vlan': "
                   "expected a number from 0 to 65535",
                   "acl.rules:4:13: error: 'x' is not valid for 'ttl': "
                   "expected a number from 0 to 255"}));
}

}  // namespace
