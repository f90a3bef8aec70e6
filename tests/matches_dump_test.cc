// Text dumps of matches beyond the per-class golden blocks: stream state,
// raw PCP bytes, port names, the DSCP/ToS split, family operators on their
// own, and kinds no class owns.
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "matches_test_support.h"

namespace {

using namespace matches_test;  // NOLINT

template <class T>
std::string text(T const& m) {
  return dump(m).text;
}

TEST(MatchTPID, DumpLeavesStreamInHex) {
  std::ostringstream os;
  os << MatchTPID(0x8100) << MatchTTL(26);
  EXPECT_EQ(os.str(),
            "    =MatchTPID=\n"
            "      Match Type ID: 3\n"
            "      TPID: 0x8100\n"
            "    =MatchTTL=\n"
            "      Match Type ID: 1a\n"
            "      TTL: 1a\n");
  EXPECT_EQ(os.flags() & std::ios::basefield, std::ios::hex);
}

TEST(MatchTPID, PrintsLowerCaseHexWithoutPadding) {
  EXPECT_EQ(text(MatchTPID(0x88A8)),
            "    =MatchTPID=\n      Match Type ID: 3\n      TPID: 0x88a8\n");
  EXPECT_EQ(text(MatchTPID(0x0A)),
            "    =MatchTPID=\n      Match Type ID: 3\n      TPID: 0xa\n");
}

TEST(MatchBase, DumpsOtherThanTpidLeaveTheStreamInDecimal) {
  std::ostringstream os;
  os << static_cast<Match const&>(MatchVlanInfo({1, 2}))
     << MatchExternalVlanId(uint16_t{10}) << MatchDrop(true);
  EXPECT_EQ(os.flags() & std::ios::basefield, std::ios::dec);
}

TEST(MatchPcp, PrintsEachValueAsARawByte) {
  EXPECT_EQ(text(MatchPcp(uint8_t{3})),
            "    =MatchPcp=\n      Match Type ID: 12\n      PCPs: [ \x03 ]\n");
  EXPECT_EQ(text(MatchInternalPcp(std::set<uint8_t>{'A', '0'})),
            "    =MatchInternalPcp=\n      Match Type ID: 13\n"
            "      PCPs: [ 0 A ]\n");
}

TEST(MatchIngressPorts, NamesOnlyTheCpuPortAmongExcludedTypes) {
  MatchIngressPorts const m(
      std::list<port_type_t>{CPU_PORT, static_cast<port_type_t>(7)});
  EXPECT_EQ(text(m),
            "    =MatchIngressPorts=\n      Match Type ID: 1\n"
            "      Excluded Port Types: \"CPU_PORT\" \"\" \n");
}

TEST(MatchIngressPorts, EmptyListPrintsZeroPortsAndABareLabel) {
  EXPECT_EQ(text(MatchIngressPorts(std::list<limid_t>{})),
            "    =MatchIngressPorts=\n      Match Type ID: 1\n"
            "      Number of ports: 0\n      LIMIDs: \n");
}

TEST(MatchPorts, InterfacesWithoutANamePrintEmptyQuotes) {
  limid_t const invalid = limid_make(limid_type_invalid, 4);
  EXPECT_EQ(text(MatchEgressPorts(std::list<limid_t>{invalid, eth(3)})),
            "    =MatchEgressPorts=\n      Match Type ID: 22\n"
            "      Number of ports: 2\n      LIMIDs: \"\" \"eth3\" \n");
  EXPECT_EQ(text(MatchSrcPort(invalid)),
            "    =MatchSrcPort=\n      Match Type ID: 25\n      LIMID: \n");
}

TEST(MatchDSCP, PrintsAsTosThroughTheBaseAndAsDscpThroughItsOwnOperator) {
  MatchDSCP const dscp(46);
  EXPECT_EQ(text(static_cast<Match const&>(dscp)),
            "    =MatchToS=\n      Match Type ID: 20\n      ToS: 184\n");
  EXPECT_EQ(text(dscp),
            "    =MatchDSCP=\n      Match Type ID: 20\n      DSCP: 46\n");
}

TEST(MatchVlanTagging, EveryNonZeroValuePrintsTagged) {
  for (int value : {1, 2, 5, -1}) {
    EXPECT_EQ(text(MatchVlanTagging(static_cast<vlan_tagging_t>(value))),
              "    =MatchVlanTagging=\n      Match Type ID: 16\n"
              "      Tagging: tagged\n")
        << value;
  }
}

TEST(MatchMac, PrintsBytesWithoutLeadingZeros) {
  EXPECT_EQ(text(static_cast<MatchMac const&>(MatchSrcMac(
                mac("00:0a:00:ff:10:01"), mac("0f:00:00:00:00:00")))),
            "      MAC: 0:a:0:ff:10:1\n      Mask: f:0:0:0:0:0\n");
}

TEST(MatchFamilies, FamilyOperatorsPrintOnlyTheParameterLines) {
  EXPECT_EQ(text(static_cast<MatchPorts const&>(
                MatchIngressPorts(std::list<limid_t>{eth(1)}))),
            "      Number of ports: 1\n      LIMIDs: \"eth1\" \n");
  EXPECT_EQ(text(static_cast<MatchLimId const&>(MatchVirtualPort(lag(9)))),
            "      LIMID: lag9\n");
  EXPECT_EQ(text(static_cast<MatchL4Port const&>(MatchDstL4PortRange(1, 2))),
            "      Param1: 1\n      Param2: 2\n");
  EXPECT_EQ(text(static_cast<MatchVlanId const&>(
                MatchInternalVlanId(std::set<uint16_t>{20, 10}))),
            "      VLAN IDs: [ 10 20 ]\n");
  EXPECT_EQ(text(static_cast<MatchIPv4 const&>(
                MatchDstIPv4(ipv4("10.0.0.0"), ipv4("255.0.0.0")))),
            "      IP: 10.0.0.0\n      Mask: 255.0.0.0\n");
  Dumped const v6 =
      dump(static_cast<MatchIPv6 const&>(MatchSrcIPv6(ipv6("::"))));
  EXPECT_EQ(
      v6.text,
      "      IPv6: ::\n      Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff\n");
  EXPECT_EQ(v6.lineEnds, "BB");
}

TEST(MatchIPv6, MaskedSourceMatchBuiltThroughTheFamilyPrintsAsTheLeaf) {
  MatchIPv6 const masked(FILTERS_MATCH_SRC_IPV6, ipv6("2001:db8::"),
                         ipv6("ffff:ffff::"));
  Dumped const through_base = dump(static_cast<Match const&>(masked));
  EXPECT_EQ(through_base.text,
            "    =MatchSrcIPv6=\n      Match Type ID: 14\n"
            "      IPv6: 2001:db8::\n      Mask: ffff:ffff::\n");
  EXPECT_EQ(through_base.lineEnds, "FFBB");
}

TEST(MatchBase, KindsNoClassOwnsPrintNothing) {
  EXPECT_EQ(text(Match(static_cast<filtersMatch_t>(FILTERS_MATCH_LAST + 1))),
            "");
  EXPECT_EQ(text(static_cast<Match const&>(MatchPorts(
                static_cast<filtersMatch_t>(39), std::list<limid_t>{eth(1)}))),
            "");
  EXPECT_EQ(text(Match(static_cast<filtersMatch_t>(-1))), "");
}

TEST(MatchBase, BaseOperatorReturnsTheStreamForChaining) {
  std::ostringstream os;
  os << static_cast<Match const&>(MatchCpuPort()) << "|"
     << static_cast<Match const&>(MatchAll());
  EXPECT_EQ(os.str(),
            "    =MatchCpuPort=\n      Match Type ID: 30\n|"
            "    =MatchAll=\n      Match Type ID: 0\n      <no parameters>\n");
}

}  // namespace
