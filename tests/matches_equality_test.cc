// Comparison of matches: the base dispatch on the kind value, the typed
// comparisons of every family as truth tables, and the DSCP/ToS split.
#include <memory>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "common/kinds.h"
#include "filter_matches.pb.h"
#include "matches_test_support.h"

namespace {

using namespace matches_test;  // NOLINT

// ---- Class tree and value semantics ----

#define EXPECT_COPYABLE(kind, Class)                               \
  static_assert(std::is_copy_constructible<Class>::value, #Class); \
  static_assert(std::has_virtual_destructor<Class>::value, #Class);
FILTERS_FOR_EACH_MATCH_KIND(EXPECT_COPYABLE)
EXPECT_COPYABLE(20, MatchDSCP)
#undef EXPECT_COPYABLE

#define EXPECT_DERIVES(Derived, Base)                    \
  static_assert(std::is_base_of<Base, Derived>::value && \
                    std::is_base_of<Match, Base>::value, \
                #Derived " derives from " #Base);
EXPECT_DERIVES(MatchDSCP, MatchToS)
EXPECT_DERIVES(MatchIngressPorts, MatchPorts)
EXPECT_DERIVES(MatchEgressPorts, MatchPorts)
EXPECT_DERIVES(MatchVirtualPort, MatchLimId)
EXPECT_DERIVES(MatchSrcPort, MatchLimId)
EXPECT_DERIVES(MatchDstL4Port, MatchL4Port)
EXPECT_DERIVES(MatchSrcL4Port, MatchL4Port)
EXPECT_DERIVES(MatchDstL4PortRange, MatchL4Port)
EXPECT_DERIVES(MatchExternalVlanId, MatchVlanId)
EXPECT_DERIVES(MatchInternalVlanId, MatchVlanId)
EXPECT_DERIVES(MatchDstMac, MatchMac)
EXPECT_DERIVES(MatchSrcMac, MatchMac)
EXPECT_DERIVES(MatchSrcIPv4, MatchIPv4)
EXPECT_DERIVES(MatchDstIPv4, MatchIPv4)
EXPECT_DERIVES(MatchSrcIPv6, MatchIPv6)
EXPECT_DERIVES(MatchDstIPv6, MatchIPv6)
#undef EXPECT_DERIVES
// The PCP sets follow the VLAN pattern without sharing its class.
static_assert(!std::is_base_of<MatchVlanId, MatchPcp>::value &&
                  !std::is_base_of<MatchVlanId, MatchInternalPcp>::value,
              "");
// Egress ports have no form with excluded port types; source IPv6 has no
// masked form.
static_assert(!std::is_constructible<MatchEgressPorts,
                                     std::list<port_type_t> const&>::value,
              "");
static_assert(!std::is_constructible<MatchSrcIPv6, in6_addr, in6_addr>::value,
              "");
static_assert(std::is_constructible<MatchDstIPv6, in6_addr, in6_addr>::value,
              "");

// ---- Base comparison ----

TEST(MatchAll, EqualsAnotherMatchAllAndNothingElse) {
  MatchAll const a;
  MatchAll const b;
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(static_cast<Match const&>(a) == static_cast<Match const&>(b));
  EXPECT_FALSE(static_cast<Match const&>(a) == MatchCpuPort());
  EXPECT_FALSE(static_cast<Match const&>(a) == MatchTPID(0));
}

TEST(MatchBase, KindsAboveTheLastAreUnequalToEverythingEvenThemselves) {
  Match const beyond(static_cast<filtersMatch_t>(FILTERS_MATCH_LAST + 1));
  EXPECT_FALSE(beyond == beyond);
  Match const same_beyond(static_cast<filtersMatch_t>(FILTERS_MATCH_LAST + 1));
  EXPECT_FALSE(beyond == same_beyond);
  EXPECT_FALSE(beyond == MatchAll());
  MatchPorts const ports(static_cast<filtersMatch_t>(1000),
                         std::list<limid_t>{eth(1)});
  EXPECT_FALSE(ports == static_cast<Match const&>(ports));
}

TEST(MatchBase, KindsNoClassOwnsBelowZeroAreUnequalToThemselves) {
  Match const negative(static_cast<filtersMatch_t>(-1));
  EXPECT_FALSE(negative == negative);
}

TEST(MatchBase, DifferentKindsWithEqualValuesAreUnequal) {
  EXPECT_FALSE(static_cast<Match const&>(MatchMyStationHit(true)) ==
               MatchL2DestHit(true));
  EXPECT_FALSE(static_cast<Match const&>(MatchVirtualPort(eth(1))) ==
               MatchSrcPort(eth(1)));
  EXPECT_FALSE(static_cast<Match const&>(MatchPcp(3)) == MatchInternalPcp(3));
  EXPECT_FALSE(static_cast<Match const&>(MatchDstL4Port(80, 90)) ==
               MatchDstL4PortRange(80, 90));
}

TEST(MatchBase, ParameterlessKindsAreEqualWheneverTheirKindsAre) {
  EXPECT_TRUE(static_cast<Match const&>(MatchCpuPort()) == MatchCpuPort());
  EXPECT_TRUE(static_cast<Match const&>(MatchDestinationCpu()) ==
              MatchDestinationCpu());
  EXPECT_TRUE(static_cast<Match const&>(MatchUnknownDestIp()) ==
              MatchUnknownDestIp());
  EXPECT_FALSE(static_cast<Match const&>(MatchCpuPort()) ==
               MatchDestinationCpu());
}

TEST(MatchBase, ScalarKindsCompareTheirValue) {
  EXPECT_TRUE(static_cast<Match const&>(MatchTPID(0x8100)) ==
              MatchTPID(0x8100));
  EXPECT_FALSE(static_cast<Match const&>(MatchTPID(0x8100)) ==
               MatchTPID(0x88a8));
  EXPECT_FALSE(static_cast<Match const&>(MatchVrfId(1)) == MatchVrfId(2));
  EXPECT_FALSE(static_cast<Match const&>(MatchDrop(true)) == MatchDrop(false));
  EXPECT_FALSE(static_cast<Match const&>(MatchVlanInfo({1, 2})) ==
               MatchVlanInfo({2, 1}));
  EXPECT_TRUE(static_cast<Match const&>(MatchVlanInfo({1, 2})) ==
              MatchVlanInfo({1, 2}));
  EXPECT_FALSE(
      static_cast<Match const&>(MatchForwardingType(FORWARDING_TYPE_MPLS)) ==
      MatchForwardingType(FORWARDING_TYPE_L3_ROUTED));
}

// A subclass whose typed comparison always refuses: it shows whether the
// base comparison reaches the typed one virtually, through the class of the
// left operand.
template <class Base>
class RefusingMatch : public Base {
 public:
  using Base::Base;
  using Base::operator==;
  bool operator==(Base const& /*other*/) const override { return false; }
};

template <class Base, class... Args>
void expectBaseUsesLeftOperandsVirtualComparison(Args... args) {
  Base const plain(args...);
  RefusingMatch<Base> const refusing(args...);
  Match const& plain_ref = plain;
  Match const& refusing_ref = refusing;
  EXPECT_TRUE(plain_ref == refusing_ref);
  EXPECT_FALSE(refusing_ref == plain_ref);
}

TEST(MatchBase, ThirteenKindsCompareThroughTheLeftOperandsVirtualComparison) {
  expectBaseUsesLeftOperandsVirtualComparison<MatchIngressStpState>(
      STP_STATE_FORWARDING);
  expectBaseUsesLeftOperandsVirtualComparison<MatchVlanInfo>(vlan_info_t{1, 2});
  expectBaseUsesLeftOperandsVirtualComparison<MatchVrfId>(uint16_t{3});
  expectBaseUsesLeftOperandsVirtualComparison<MatchDrop>(true);
  expectBaseUsesLeftOperandsVirtualComparison<MatchMyStationHit>(true);
  expectBaseUsesLeftOperandsVirtualComparison<MatchCpuPort>();
  expectBaseUsesLeftOperandsVirtualComparison<MatchForwardingType>(
      FORWARDING_TYPE_MPLS);
  expectBaseUsesLeftOperandsVirtualComparison<MatchCPUInjectedPackets>(true);
  expectBaseUsesLeftOperandsVirtualComparison<MatchDstL4PortRange>(uint16_t{1},
                                                                   uint16_t{2});
  expectBaseUsesLeftOperandsVirtualComparison<MatchL2DestHit>(true);
  expectBaseUsesLeftOperandsVirtualComparison<MatchL3SrcRouteHit>(true);
  expectBaseUsesLeftOperandsVirtualComparison<MatchVirtualPortClass>(7u);
  expectBaseUsesLeftOperandsVirtualComparison<MatchUnknownDestIp>();
}

TEST(MatchIPv6, MaskedSourceMatchBuiltThroughTheFamilyComparesAsTheLeaf) {
  MatchIPv6 const masked(FILTERS_MATCH_SRC_IPV6, ipv6("2001:db8::"),
                         ipv6("ffff:ffff::"));
  FiltersCommon::MatchPB pb;
  masked.convertToMatchPB(&pb);
  MatchSrcIPv6 read_back(in6_addr{});
  read_back.convertFromMatchPB(&pb);
  EXPECT_TRUE(static_cast<Match const&>(masked) == masked);
  EXPECT_TRUE(static_cast<Match const&>(masked) == read_back);
  EXPECT_TRUE(static_cast<Match const&>(read_back) == masked);
  EXPECT_FALSE(static_cast<Match const&>(masked) ==
               MatchSrcIPv6(ipv6("2001:db8::")));
}

// ---- ToS and DSCP ----

TEST(MatchDSCP, StoresTheDscpShiftedIntoTheTosByte) {
  MatchDSCP const dscp(46);
  EXPECT_EQ(dscp.getType(), FILTERS_MATCH_TOS);
  EXPECT_EQ(dscp.getToS(), 184);
  EXPECT_EQ(dscp.getDSCP(), 46);
}

TEST(MatchDSCP, EqualsTheTosMatchOfTheShiftedByteThroughTheBase) {
  EXPECT_TRUE(static_cast<Match const&>(MatchDSCP(10)) == MatchToS(40));
  EXPECT_TRUE(static_cast<Match const&>(MatchToS(40)) == MatchDSCP(10));
  EXPECT_FALSE(static_cast<Match const&>(MatchDSCP(10)) == MatchToS(41));
}

TEST(MatchDSCP, LosesTheBitsAboveSixInTheShift) {
  EXPECT_EQ(MatchDSCP(65).getDSCP(), 1);
  EXPECT_TRUE(MatchDSCP(65) == MatchDSCP(1));
  EXPECT_TRUE(static_cast<Match const&>(MatchDSCP(65)) == MatchDSCP(1));
}

TEST(MatchDSCP, OwnComparisonIgnoresTheLowTosBitsButTheBaseDoesNot) {
  MatchDSCP read_back(0);
  FiltersCommon::MatchPB pb;
  pb.set_type_(FILTERS_MATCH_TOS);
  pb.set_tos_(185);
  read_back.convertFromMatchPB(&pb);
  EXPECT_EQ(read_back.getDSCP(), 46);
  EXPECT_EQ(read_back.getToS(), 185);
  EXPECT_TRUE(read_back == MatchDSCP(46));
  EXPECT_FALSE(static_cast<Match const&>(read_back) == MatchDSCP(46));
}

// ---- Family truth tables ----

// Checks `expected[i][j]` against `*matches[i] == *matches[j]` through the
// base comparison, for every ordered pair.
void expectTruthTable(std::vector<std::unique_ptr<Match>> const& matches,
                      std::vector<std::vector<int>> const& expected) {
  ASSERT_EQ(matches.size(), expected.size());
  for (size_t i = 0; i < matches.size(); ++i) {
    ASSERT_EQ(expected[i].size(), matches.size());
    for (size_t j = 0; j < matches.size(); ++j) {
      EXPECT_EQ(*matches[i] == *matches[j], expected[i][j] != 0)
          << "row " << i << ", column " << j;
    }
  }
}

template <class... Ms>
std::vector<std::unique_ptr<Match>> matchesOf(Ms... ms) {
  std::vector<std::unique_ptr<Match>> out;
  (out.push_back(std::make_unique<Ms>(ms)), ...);
  return out;
}

TEST(MatchPorts, ComparesBothListsInOrderWithDuplicates) {
  using P = std::list<limid_t>;
  using T = std::list<port_type_t>;
  auto const matches =
      matchesOf(MatchIngressPorts(P{eth(1), eth(2)}),          // 0
                MatchIngressPorts(P{eth(2), eth(1)}),          // 1
                MatchIngressPorts(P{eth(1), eth(2), eth(2)}),  // 2
                MatchIngressPorts(T{CPU_PORT}),                // 3
                MatchIngressPorts(T{CPU_PORT, CPU_PORT}),      // 4
                MatchIngressPorts(P{}),                        // 5
                MatchIngressPorts(T{}),                 // 6: both lists empty
                MatchEgressPorts(P{eth(1), eth(2)}),    // 7: other kind
                MatchIngressPorts(P{eth(1), eth(2)}));  // 8: same as 0
  expectTruthTable(matches, {
                                {1, 0, 0, 0, 0, 0, 0, 0, 1},
                                {0, 1, 0, 0, 0, 0, 0, 0, 0},
                                {0, 0, 1, 0, 0, 0, 0, 0, 0},
                                {0, 0, 0, 1, 0, 0, 0, 0, 0},
                                {0, 0, 0, 0, 1, 0, 0, 0, 0},
                                {0, 0, 0, 0, 0, 1, 1, 0, 0},
                                {0, 0, 0, 0, 0, 1, 1, 0, 0},
                                {0, 0, 0, 0, 0, 0, 0, 1, 0},
                                {1, 0, 0, 0, 0, 0, 0, 0, 1},
                            });
}

TEST(MatchLimId, ComparesTheIdentifier) {
  auto const matches =
      matchesOf(MatchVirtualPort(eth(1)), MatchVirtualPort(eth(2)),
                MatchSrcPort(eth(1)), MatchSrcPort(eth(1)));
  expectTruthTable(matches, {
                                {1, 0, 0, 0},
                                {0, 1, 0, 0},
                                {0, 0, 1, 1},
                                {0, 0, 1, 1},
                            });
}

TEST(MatchL4Port, ComparesBothParameters) {
  auto const matches = matchesOf(
      MatchDstL4Port(80), MatchDstL4Port(80, 0xFFFF),
      MatchDstL4Port(80, 0xFFF0), MatchDstL4Port(81), MatchSrcL4Port(80),
      MatchDstL4PortRange(80, 0xFFFF), MatchDstL4PortRange(80, 0xFFFF),
      MatchDstL4PortRange(0xFFFF, 80));
  expectTruthTable(matches, {
                                {1, 1, 0, 0, 0, 0, 0, 0},
                                {1, 1, 0, 0, 0, 0, 0, 0},
                                {0, 0, 1, 0, 0, 0, 0, 0},
                                {0, 0, 0, 1, 0, 0, 0, 0},
                                {0, 0, 0, 0, 1, 0, 0, 0},
                                {0, 0, 0, 0, 0, 1, 1, 0},
                                {0, 0, 0, 0, 0, 1, 1, 0},
                                {0, 0, 0, 0, 0, 0, 0, 1},
                            });
}

// The set kinds share one truth table: order and duplicates of the
// constructor's set do not matter, the one-value form is a set of one, an
// empty set equals only an empty set, and the other kind never equals.
template <class Kind, class OtherKind, class T>
void expectSetTruthTable(T a, T b) {
  using S = std::set<T>;
  auto const matches =
      matchesOf(Kind(S{a, b}), Kind(S{b, a, a}), Kind(S{a}), Kind(a),
                OtherKind(S{a, b}), Kind(S{}), Kind(S{}));
  expectTruthTable(matches, {
                                {1, 1, 0, 0, 0, 0, 0},
                                {1, 1, 0, 0, 0, 0, 0},
                                {0, 0, 1, 1, 0, 0, 0},
                                {0, 0, 1, 1, 0, 0, 0},
                                {0, 0, 0, 0, 1, 0, 0},
                                {0, 0, 0, 0, 0, 1, 1},
                                {0, 0, 0, 0, 0, 1, 1},
                            });
}

TEST(MatchVlanId, ComparesAsSets) {
  expectSetTruthTable<MatchExternalVlanId, MatchInternalVlanId>(uint16_t{10},
                                                                uint16_t{20});
  expectSetTruthTable<MatchInternalVlanId, MatchExternalVlanId>(uint16_t{1},
                                                                uint16_t{4095});
}

TEST(MatchPcp, ComparesAsSets) {
  expectSetTruthTable<MatchPcp, MatchInternalPcp>(uint8_t{3}, uint8_t{5});
  expectSetTruthTable<MatchInternalPcp, MatchPcp>(uint8_t{0}, uint8_t{7});
}

// The address families share one truth table: the same address under a
// partial mask differs from its masked-out twin, and the one-argument form
// equals the explicit full mask.
template <class Exact, class OtherKind, class Addr>
void expectAddressTruthTable(Addr host, Addr hostMaskedOut, Addr partialMask,
                             Addr fullMask) {
  auto const matches =
      matchesOf(Exact(host, partialMask), Exact(hostMaskedOut, partialMask),
                Exact(host), Exact(host, fullMask), OtherKind(host));
  expectTruthTable(matches, {
                                {1, 0, 0, 0, 0},
                                {0, 1, 0, 0, 0},
                                {0, 0, 1, 1, 0},
                                {0, 0, 1, 1, 0},
                                {0, 0, 0, 0, 1},
                            });
}

TEST(MatchMac, ComparesAddressAndMaskBytewiseWithoutApplyingTheMask) {
  expectAddressTruthTable<MatchDstMac, MatchSrcMac>(
      mac("00:00:00:00:00:01"), mac("00:00:00:00:00:00"),
      mac("ff:ff:ff:ff:ff:00"), mac("ff:ff:ff:ff:ff:ff"));
}

TEST(MatchIPv4, ComparesAddressAndMaskBytewiseWithoutApplyingTheMask) {
  expectAddressTruthTable<MatchSrcIPv4, MatchDstIPv4>(
      ipv4("10.0.0.1"), ipv4("10.0.0.0"), ipv4("255.255.255.0"),
      ipv4("255.255.255.255"));
}

TEST(MatchIPv6, ComparesAddressAndMaskBytewiseWithoutApplyingTheMask) {
  expectAddressTruthTable<MatchDstIPv6, MatchSrcIPv6>(
      ipv6("2001:db8::1"), ipv6("2001:db8::"), ipv6("ffff:ffff:ffff:ffff::"),
      ipv6("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"));
}

}  // namespace
