// The notation of rule text, value by value: what a line compiles to, and
// how the printer writes it.

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <string>
#include <vector>

#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filter_rules_c.h"
#include "FiltersCommon/filters_common.h"
#include "FiltersCommon/filters_common_c.h"
#include "filter_groups.pb.h"

namespace {

using namespace FiltersCommon;

FiltersEntry compiled(const std::string& line) {
  std::vector<RuleError> errors;
  const auto entry = compileEntryRule(line, "test", &errors);
  EXPECT_NE(entry, nullptr) << (errors.empty() ? "" : errors[0].toString());
  // Moved, not copied: a copy would hold a DSCP match as the ToS match of
  // its kind.
  return entry ? FiltersEntry(std::move(*entry)) : FiltersEntry();
}

in_addr ipv4(const char* text) {
  in_addr a{};
  inet_pton(AF_INET, text, &a);
  return a;
}

in6_addr ipv6(const char* text) {
  in6_addr a{};
  inet_pton(AF_INET6, text, &a);
  return a;
}

ether_addr mac(const char* text) { return *ether_aton(text); }

TEST(RulesSyntax, NonPrefixIPv4MaskIsWrittenAsAMask) {
  FiltersEntry entry(1);
  entry.setMatch(MatchDstIPv4(ipv4("10.1.2.3"), ipv4("255.0.255.0")));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 dst-ip 10.1.2.3/255.0.255.0");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, PrefixMasksAreWrittenAsLengthsAndFullMasksNotAtAll) {
  FiltersEntry entry(1);
  entry.setMatch(MatchSrcIPv4(ipv4("10.1.2.3"), ipv4("255.255.0.0")));
  entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
  entry.setMatch(MatchSrcMac(mac("0:1b:21:0:0:0"), mac("ff:ff:ff:0:0:0")));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 src-mac 00:1b:21:00:00:00/24 src-ip "
            "10.1.2.3/16 dst-ip 192.0.2.1");
}

TEST(RulesSyntax, IPv6WithPrefixAndWithMask) {
  FiltersEntry entry(1);
  entry.setMatch(MatchDstIPv6(ipv6("2001:db8::1"), ipv6("ffff:ffff::")));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 dst-ip6 2001:db8::1/32");
  FiltersEntry masked(1);
  masked.setMatch(MatchDstIPv6(ipv6("2001:db8::1"), ipv6("ffff::ffff")));
  EXPECT_EQ(formatEntryRule(masked),
            "entry 1 priority 0 dst-ip6 2001:db8::1/ffff::ffff");
  EXPECT_TRUE(compiled(formatEntryRule(masked)) == masked);
}

TEST(RulesSyntax, MacAcceptsShortOctetsAndUpperCase) {
  FiltersEntry entry(1);
  entry.setMatch(MatchDstMac(mac("0:a:b:c:d:e")));
  EXPECT_TRUE(compiled("entry 1 dst-mac 0:A:b:C:d:e") == entry);
}

TEST(RulesSyntax, InterfacesByNameAndByNumberWhereNoNameExists) {
  const limid_t named[] = {
      limid_make(limid_type_ethernet, 1),
      limid_make(limid_type_lag, 2),
      limid_make(limid_type_mpls_vpws, 3),
      limid_make_bridgedomain(limid_bridgedomain_type_vlan, 4),
      limid_make_bridgedomain(limid_bridgedomain_type_vpls, 5),
      limid_make(limid_type_cpu, 0),
      0x07000001u};
  FiltersEntry entry(1);
  entry.setMatch(
      MatchEgressPorts(std::list<limid_t>(std::begin(named), std::end(named))));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 out-ports "
            "eth1,lag2,vpws3,bd4,vpls5,cpu0,0x07000001");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, PortListsKeepOrderDuplicatesAndExcludedTypes) {
  FiltersEntry entry(1);
  const limid_t eth2 = limid_make(limid_type_ethernet, 2);
  const limid_t eth1 = limid_make(limid_type_ethernet, 1);
  MatchPB pb;
  MatchIngressPorts ports(std::list<limid_t>{eth2, eth1, eth2});
  ports.convertToMatchPB(&pb);
  pb.add_excluded_port_types_(CPU_PORT);
  pb.add_excluded_port_types_(77);
  pb.add_excluded_port_types_(CPU_PORT);
  MatchIngressPorts both(std::list<limid_t>{});
  both.convertFromMatchPB(&pb);
  entry.setMatch(both);
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 in-ports eth2,eth1,eth2,!cpu,!77,!cpu");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, EmptyListsAreWrittenNone) {
  FiltersEntry entry(1);
  entry.setMatch(MatchIngressPorts(std::list<limid_t>{}));
  entry.setMatch(MatchExternalVlanId(std::set<uint16_t>{}));
  entry.setAction(ActionBlockEgressPorts(std::list<limid_t>{}));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 in-ports none vlan none block-out-ports none");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, VlanAndPcpSetsAreListsWithRanges) {
  EXPECT_TRUE(compiled(
                  "entry 1 vlan 5,1-3,4095,4096 internal-pcp 0,7,9") == [] {
    FiltersEntry e(1);
    e.setMatch(MatchExternalVlanId(std::set<uint16_t>{1, 2, 3, 5, 4095, 4096}));
    e.setMatch(MatchInternalPcp(std::set<uint8_t>{0, 7, 9}));
    return e;
  }());
  EXPECT_EQ(formatEntryRule(compiled("entry 1 vlan 5,1-3,4095,4096")),
            "entry 1 priority 0 vlan 1-3,5,4095,4096");
}

TEST(RulesSyntax, L4PortWithOptionalMaskAndRange) {
  FiltersEntry entry(1);
  entry.setMatch(MatchSrcL4Port(1024, 0xFC00));
  entry.setMatch(MatchDstL4PortRange(2000, 1000));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 src-port 1024/0xfc00 dst-port-range 2000-1000");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
  EXPECT_TRUE(compiled("entry 1 dst-port 0x50") == [] {
    FiltersEntry e(1);
    e.setMatch(MatchDstL4Port(80));
    return e;
  }());
}

TEST(RulesSyntax, EnumerationsByLibraryNameOrNumber) {
  FiltersEntry entry(1);
  entry.setMatch(MatchIngressStpState(STP_STATE_FORWARDING));
  entry.setMatch(MatchForwardingType(static_cast<en_ForwardingType>(-1)));
  entry.setMatch(MatchVlanTagging(VLAN_TAGGING_UNTAGGED));
  entry.setAction(ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL));
  EXPECT_EQ(formatEntryRule(entry),
            "entry 1 priority 0 vlan-tagging untagged stp-state forwarding "
            "fwd-type 4294967295 cancel-cpu switch-to-cpu");
  EXPECT_TRUE(compiled("entry 1 vlan-tagging 0 stp-state 3 fwd-type 0xffffffff "
                       "cancel-cpu 1") == entry);
}

TEST(RulesSyntax, DscpKeepsItsClassInALoneEntryAndBecomesToSInAGroup) {
  const FiltersEntry entry = compiled("entry 1 dscp 46");
  MatchDSCP expected(46);
  ASSERT_EQ(entry.getMatches().count(FILTERS_MATCH_TOS), 1u);
  EXPECT_NE(dynamic_cast<const MatchDSCP*>(
                entry.getMatches().at(FILTERS_MATCH_TOS).get()),
            nullptr);
  EXPECT_EQ(formatEntryRule(entry), "entry 1 priority 0 dscp 46");
  // A group holds its copy as the ToS match of the same kind.
  const auto group = compileGroupRules(
      "group 1 stage 0 type 4\nentry 1 dscp 46\n", "test", nullptr);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(formatEntryRule(group->getEntriesRef().at(1)),
            "entry 1 priority 0 tos 184");
}

TEST(RulesSyntax, DscpWithLowToSBitsSurvives) {
  MatchDSCP odd(0);
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_TOS);
  pb.set_tos_(185);
  odd.convertFromMatchPB(&pb);
  FiltersEntry entry(1);
  entry.setMatch(odd);
  EXPECT_EQ(formatEntryRule(entry), "entry 1 priority 0 dscp 46:1");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, MultiPortRedirectFromTheWire) {
  ActionPB pb;
  pb.set_type_(FILTERS_ACTION_REDIRECT);
  pb.add_ports_(limid_make(limid_type_ethernet, 5));
  pb.add_ports_(limid_make(limid_type_lag, 1));
  ActionRedirect redirect(0);
  redirect.convertFromActionPB(&pb);
  FiltersEntry entry(1);
  entry.setAction(redirect);
  EXPECT_EQ(formatEntryRule(entry), "entry 1 priority 0 redirect eth5,lag1");
  EXPECT_TRUE(compiled(formatEntryRule(entry)) == entry);
}

TEST(RulesSyntax, PolicerParentAndCounters) {
  FiltersEntry entry(9);
  entry.setPriority(5);
  entry.setCounter(Counter(2, COUNTER_TYPE_OCTETS));
  entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  entry.setPolicer(policer::Policer(
      3, policer::STAGE_EGRESS, policer::Mode::TrTcmDs(1, 2, 3, 4),
      {policer::Action::SetPcp(policer::COLOR_YELLOW, 2),
       policer::Action::Drop(static_cast<policer::Color>(7))}));
  entry.setPolicerParent(policer::Policer());
  entry.setAction(ActionDeny());
  EXPECT_EQ(
      formatEntryRule(entry),
      "entry 9 priority 5 counter 1 packets counter 2 octets policer { id "
      "3 stage egress mode trtcm-ds cir 1 cbs 2 eir 3 ebs 4 yellow set-pcp "
      "2 color 7 drop } parent { stage none mode none } deny");
  const FiltersEntry back = compiled(formatEntryRule(entry));
  EXPECT_TRUE(back == entry) << formatEntryRule(back);
}

TEST(RulesSyntax, PolicerGivenByItsBytes) {
  const policer::Policer p(4, policer::STAGE_INGRESS,
                           policer::Mode::Flow(10, 20));
  std::string hex;
  for (unsigned char c : p.Serialize()) {
    const char digits[] = "0123456789abcdef";
    hex += digits[c >> 4];
    hex += digits[c & 15];
  }
  const FiltersEntry entry = compiled("entry 1 policer { bytes " + hex + " }");
  EXPECT_EQ(entry.getPolicer(), p);
}

TEST(RulesSyntax, GroupHeaderNamesStageAndTypeInAComment) {
  FiltersGroup group(7);
  group.setPriority(3);
  group.setStage(FILTERS_STAGE_INGRESS);
  group.setType(FILTERS_TYPE_IPV4);
  EXPECT_EQ(formatGroupRules(group),
            "group 7 priority 3 stage 2 type 10  # stage ingress, type ipv4\n");
  const auto byName = compileGroupRules(
      "group 7 priority 3 stage ingress type ipv4", "test", nullptr);
  ASSERT_NE(byName, nullptr);
  EXPECT_TRUE(*byName == group);
}

TEST(RulesSyntax, StageAndTypeNoTableKnowsAreKept) {
  FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(static_cast<uint32_t>(-1));
  pb.set_type_(99);
  std::string bytes;
  pb.SerializeToString(&bytes);
  const FiltersGroup group(bytes);
  EXPECT_EQ(formatGroupRules(group), "group 1 priority 0 stage -1 type 99\n");
  const auto back = compileGroupRules(formatGroupRules(group), "test", nullptr);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(*back == group);
}

TEST(RulesSyntax, CommentsAndBlankLinesAreIgnored) {
  const auto group = compileGroupRules(
      "# edge ACL\n\ngroup 1 stage 2 type 10   # trailing comment\n"
      "\t\n# the only entry\nentry 4 deny#no space before the comment\n",
      "test", nullptr);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(formatGroupRules(*group),
            "group 1 priority 0 stage 2 type 10  # stage ingress, type ipv4\n"
            "entry 4 priority 0 deny\n");
}

TEST(RulesSyntax, CArgumentsAndResultsGoThroughMalloc) {
  char* errors = nullptr;
  FiltersGroup* group =
      filtersGroupCompileRules("group 3\nentry 1 deny\n", "c.rules", &errors);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(errors, nullptr);
  char* text = filtersGroupFormatRules(group);
  EXPECT_STREQ(text,
               "group 3 priority 0 stage 0 type 0  # stage lookup, type none\n"
               "entry 1 priority 0 deny\n");
  filtersRulesFree(text);
  deleteFiltersGroup(group);
}

}  // namespace
