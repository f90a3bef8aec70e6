// The C interface to matches: creation of every kind, the getters, deletion,
// and the null-handle guards with their exact assertion messages.
#include "FiltersCommon/filter_matches_c.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <list>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "FiltersCommon/filter_matches.h"
#include "c_api_test_util.h"

namespace FiltersCommon {
namespace {

using c_api_test::CInterfaceDeathTest;
using c_api_test::Eth;
using c_api_test::Guard;
using c_api_test::GuardName;
using c_api_test::GuardsOf;
using c_api_test::Ipv4;
using c_api_test::Ipv6;
using c_api_test::Mac;
using c_api_test::MatchPtr;
using c_api_test::OwnMatch;

// The functions live in namespace FiltersCommon with the types C sees.
static_assert(
    std::is_same_v<decltype(&FiltersCommon::newMatchTPID), void* (*)(tpid_t)>);
static_assert(std::is_same_v<decltype(&FiltersCommon::matchGetTPID),
                             tpid_t (*)(MatchTPID*)>);
static_assert(std::is_same_v<decltype(&FiltersCommon::matchMacGetMac),
                             const ether_addr* (*)(void*)>);

template <class T>
T* As(const MatchPtr& m) {
  return static_cast<T*>(static_cast<Match*>(m.get()));
}

bool SameBytes(const void* a, const void* b, size_t n) {
  return std::memcmp(a, b, n) == 0;
}

TEST(MatchesC, EveryConstructorMakesTheKindOfItsClass) {
  const limid_t ports[] = {Eth(1), Eth(2)};
  struct Case {
    const char* name;
    void* handle;
    filtersMatch_t kind;
  };
  const std::vector<Case> cases = {
      {"All", newMatchAll(), FILTERS_MATCH_ALL},
      {"IngressPorts", newMatchIngressPorts(ports, 2),
       FILTERS_MATCH_INGRESS_PORTS},
      {"EgressPorts", newMatchEgressPorts(ports, 2),
       FILTERS_MATCH_EGRESS_PORTS},
      {"ExternalVlanId", newMatchExternalVlanId(10),
       FILTERS_MATCH_EXTERNAL_VLAN_ID},
      {"InternalVlanId", newMatchInternalVlanId(10),
       FILTERS_MATCH_INTERNAL_VLAN_ID},
      {"TPID", newMatchTPID(0x8100), FILTERS_MATCH_TPID},
      {"DstL4Port", newMatchDstL4Port(1), FILTERS_MATCH_DST_L4_PORT},
      {"DstL4PortMask", newMatchDstL4PortMask(1, 2), FILTERS_MATCH_DST_L4_PORT},
      {"SrcL4Port", newMatchSrcL4Port(1), FILTERS_MATCH_SRC_L4_PORT},
      {"SrcL4PortMask", newMatchSrcL4PortMask(1, 2), FILTERS_MATCH_SRC_L4_PORT},
      {"DstL4PortRange", newMatchDstL4PortRange(1, 2),
       FILTERS_MATCH_DST_L4_PORT_RANGE},
      {"DstMac", newMatchDstMac(Mac(0, 1, 2, 3, 4, 5)), FILTERS_MATCH_DST_MAC},
      {"DstMacMask",
       newMatchDstMacMask(Mac(0, 1, 2, 3, 4, 5), Mac(0, 0, 0, 0, 0, 0)),
       FILTERS_MATCH_DST_MAC},
      {"SrcMac", newMatchSrcMac(Mac(0, 1, 2, 3, 4, 5)), FILTERS_MATCH_SRC_MAC},
      {"SrcMacMask",
       newMatchSrcMacMask(Mac(0, 1, 2, 3, 4, 5), Mac(0, 0, 0, 0, 0, 0)),
       FILTERS_MATCH_SRC_MAC},
      {"L2SrcEntryType", newMatchL2SrcEntryType(L2_SRC_ENTRY_STATIC),
       FILTERS_MATCH_L2_SRC_ENTRY_TYPE},
      {"SrcIPv4", newMatchSrcIPv4(Ipv4("1.2.3.4")), FILTERS_MATCH_SRC_IPV4},
      {"SrcIPv4Mask", newMatchSrcIPv4Mask(Ipv4("1.2.3.4"), Ipv4("255.0.0.0")),
       FILTERS_MATCH_SRC_IPV4},
      {"DstIPv4", newMatchDstIPv4(Ipv4("1.2.3.4")), FILTERS_MATCH_DST_IPV4},
      {"DstIPv4Mask", newMatchDstIPv4Mask(Ipv4("1.2.3.4"), Ipv4("255.0.0.0")),
       FILTERS_MATCH_DST_IPV4},
      {"SrcIPv6", newMatchSrcIPv6(Ipv6("2001:db8::1")), FILTERS_MATCH_SRC_IPV6},
      {"DstIPv6", newMatchDstIPv6(Ipv6("2001:db8::1")), FILTERS_MATCH_DST_IPV6},
      {"DstIPv6Mask", newMatchDstIPv6Mask(Ipv6("2001:db8::1"), Ipv6("ffff::")),
       FILTERS_MATCH_DST_IPV6},
      {"Pcp", newMatchPcp(3), FILTERS_MATCH_PCP},
      {"InternalPcp", newMatchInternalPcp(3), FILTERS_MATCH_INTERNAL_PCP},
      {"VlanTagging", newMatchVlanTagging(VLAN_TAGGING_SINGLE_TAGGED),
       FILTERS_MATCH_VLAN_TAGGING},
      {"IpProtocol", newMatchIpProtocol(6), FILTERS_MATCH_IP_PROTOCOL},
      {"PacketRes", newMatchPacketRes(PKT_RES_MPLS), FILTERS_MATCH_PACKET_RES},
      {"MplsTerm", newMatchMplsTerm(true), FILTERS_MATCH_MPLS_TERM},
      {"DSCP", newMatchDSCP(46), FILTERS_MATCH_TOS},
      {"TTL", newMatchTTL(64), FILTERS_MATCH_TTL},
      {"VirtualPort", newMatchVirtualPort(Eth(3)), FILTERS_MATCH_VIRTUAL_PORT},
      {"IngressStpState", newMatchIngressStpState(STP_STATE_FORWARDING),
       FILTERS_MATCH_INGRESS_STP_STATE},
      {"VlanInfo", newMatchVlanInfo(vlan_info_t{1, 2}),
       FILTERS_MATCH_VLAN_INFO},
      {"SrcPort", newMatchSrcPort(Eth(4)), FILTERS_MATCH_SRC_PORT},
      {"VrfId", newMatchVrfId(7), FILTERS_MATCH_VRF_ID},
      {"Drop", newMatchDrop(true), FILTERS_MATCH_DROP},
      {"CpuPort", newMatchCpuPort(), FILTERS_MATCH_CPU_PORT},
      {"CPUInjectedPackets", newMatchCPUInjectedPackets(true),
       FILTERS_MATCH_CPU_INJECTED_PACKETS},
      {"L2DestHit", newMatchL2DestHit(true), FILTERS_MATCH_L2_DEST_HIT},
      {"L3SrcRouteHit", newMatchL3SrcRouteHit(true),
       FILTERS_MATCH_L3_SRC_ROUTE_HIT},
      {"VirtualPortClass", newMatchVirtualPortClass(9),
       FILTERS_MATCH_VIRTUAL_PORT_CLASS},
      {"UnknownDestIp", newMatchUnknownDestIp(), FILTERS_MATCH_UNKNOWN_DEST_IP},
  };
  EXPECT_EQ(cases.size(), 43u);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_NE(c.handle, nullptr);
    EXPECT_EQ(matchGetType(c.handle), c.kind);
    deleteMatch(c.handle);
  }
}

TEST(MatchesC, DscpMatchHasToSKindAndGivesItsDscpBack) {
  MatchPtr m = OwnMatch(newMatchDSCP(46));
  EXPECT_EQ(matchGetType(m.get()), 20);
  EXPECT_EQ(matchDSCPGet(m.get()), 46);
  EXPECT_EQ(As<MatchToS>(m)->getToS(), 184);
}

TEST(MatchesC, IngressPortsFromEmptyArrayHoldNoPort) {
  MatchPtr m = OwnMatch(newMatchIngressPorts(nullptr, 0));
  EXPECT_EQ(matchGetType(m.get()), FILTERS_MATCH_INGRESS_PORTS);
  EXPECT_TRUE(As<MatchIngressPorts>(m)->getPorts().empty());
  EXPECT_TRUE(As<MatchIngressPorts>(m)->getExcludedPortTypes().empty());
}

TEST(MatchesC, PortMatchesKeepArrayOrderAndDuplicates) {
  const limid_t ports[] = {Eth(5), Eth(7), Eth(5)};
  MatchPtr ingress = OwnMatch(newMatchIngressPorts(ports, 3));
  MatchPtr egress = OwnMatch(newMatchEgressPorts(ports, 2));
  EXPECT_EQ(As<MatchIngressPorts>(ingress)->getPorts(),
            (std::list<limid_t>{Eth(5), Eth(7), Eth(5)}));
  EXPECT_EQ(As<MatchEgressPorts>(egress)->getPorts(),
            (std::list<limid_t>{Eth(5), Eth(7)}));
}

TEST(MatchesC, EgressPortsFromEmptyArrayHoldNoPort) {
  MatchPtr m = OwnMatch(newMatchEgressPorts(nullptr, 0));
  EXPECT_TRUE(As<MatchEgressPorts>(m)->getPorts().empty());
}

TEST(MatchesC, DstL4PortWithoutMaskHasFullMask) {
  MatchPtr m = OwnMatch(newMatchDstL4Port(443));
  EXPECT_EQ(matchGetL4Port(m.get()), 443);
  EXPECT_EQ(matchGetL4PortMask(m.get()), 0xFFFF);
}

TEST(MatchesC, L4PortMatchesKeepPortAndMask) {
  MatchPtr dst = OwnMatch(newMatchDstL4PortMask(80, 0xFFF0));
  MatchPtr src = OwnMatch(newMatchSrcL4Port(53));
  MatchPtr srcMasked = OwnMatch(newMatchSrcL4PortMask(1024, 0xFC00));
  EXPECT_EQ(matchGetL4Port(dst.get()), 80);
  EXPECT_EQ(matchGetL4PortMask(dst.get()), 0xFFF0);
  EXPECT_EQ(matchGetL4Port(src.get()), 53);
  EXPECT_EQ(matchGetL4PortMask(src.get()), 0xFFFF);
  EXPECT_EQ(matchGetL4Port(srcMasked.get()), 1024);
  EXPECT_EQ(matchGetL4PortMask(srcMasked.get()), 0xFC00);
}

TEST(MatchesC, PortRangeKeepsBoundsUncheckedAndReadsAsParameters) {
  MatchPtr m = OwnMatch(newMatchDstL4PortRange(2000, 1000));
  auto* range = As<MatchDstL4PortRange>(m);
  EXPECT_EQ(matchGetL4PortRangeMin(range), 2000);
  EXPECT_EQ(matchGetL4PortRangeMax(range), 1000);
  EXPECT_EQ(matchGetL4Port(m.get()), 2000);
  EXPECT_EQ(matchGetL4PortMask(m.get()), 1000);
}

TEST(MatchesC, MacMatchesDefaultToFullMask) {
  const ether_addr mac = Mac(0x00, 0x11, 0x22, 0x33, 0x44, 0x55);
  const ether_addr ones = Mac(0xff, 0xff, 0xff, 0xff, 0xff, 0xff);
  MatchPtr dst = OwnMatch(newMatchDstMac(mac));
  MatchPtr src = OwnMatch(newMatchSrcMac(mac));
  for (void* m : {dst.get(), src.get()}) {
    EXPECT_TRUE(SameBytes(matchMacGetMac(m), &mac, 6));
    EXPECT_TRUE(SameBytes(matchMacGetMask(m), &ones, 6));
  }
}

TEST(MatchesC, MaskedMacMatchesKeepTheirMask) {
  const ether_addr mac = Mac(0x00, 0x00, 0x00, 0x00, 0x00, 0x01);
  const ether_addr mask = Mac(0xff, 0xff, 0xff, 0xff, 0xff, 0x00);
  MatchPtr dst = OwnMatch(newMatchDstMacMask(mac, mask));
  MatchPtr src = OwnMatch(newMatchSrcMacMask(mac, mask));
  for (void* m : {dst.get(), src.get()}) {
    EXPECT_TRUE(SameBytes(matchMacGetMac(m), &mac, 6));
    EXPECT_TRUE(SameBytes(matchMacGetMask(m), &mask, 6));
  }
}

TEST(MatchesC, AddressGettersPointIntoTheMatch) {
  MatchPtr mac = OwnMatch(newMatchDstMac(Mac(1, 2, 3, 4, 5, 6)));
  MatchPtr v4 = OwnMatch(newMatchSrcIPv4(Ipv4("10.0.0.1")));
  MatchPtr v6 = OwnMatch(newMatchDstIPv6(Ipv6("2001:db8::1")));
  EXPECT_EQ(matchMacGetMac(mac.get()), &As<MatchMac>(mac)->getMac());
  EXPECT_EQ(matchMacGetMask(mac.get()), &As<MatchMac>(mac)->getMask());
  EXPECT_EQ(matchIPv4GetIPv4(v4.get()), &As<MatchIPv4>(v4)->getIPv4());
  EXPECT_EQ(matchIPv4GetIPv4Mask(v4.get()), &As<MatchIPv4>(v4)->getIPv4Mask());
  EXPECT_EQ(matchIPv6GetIPv6(v6.get()), &As<MatchIPv6>(v6)->getIPv6());
  EXPECT_EQ(matchIPv6GetIPv6Mask(v6.get()), &As<MatchIPv6>(v6)->getIPv6Mask());
}

TEST(MatchesC, Ipv4MatchesDefaultToFullMask) {
  const in_addr ip = Ipv4("192.168.1.1");
  const in_addr ones = Ipv4("255.255.255.255");
  MatchPtr src = OwnMatch(newMatchSrcIPv4(ip));
  MatchPtr dst = OwnMatch(newMatchDstIPv4(ip));
  for (void* m : {src.get(), dst.get()}) {
    EXPECT_EQ(matchIPv4GetIPv4(m)->s_addr, ip.s_addr);
    EXPECT_EQ(matchIPv4GetIPv4Mask(m)->s_addr, ones.s_addr);
  }
}

TEST(MatchesC, MaskedIpv4MatchesKeepTheirMask) {
  const in_addr ip = Ipv4("10.1.0.0");
  const in_addr mask = Ipv4("255.255.0.0");
  MatchPtr src = OwnMatch(newMatchSrcIPv4Mask(ip, mask));
  MatchPtr dst = OwnMatch(newMatchDstIPv4Mask(ip, mask));
  for (void* m : {src.get(), dst.get()}) {
    EXPECT_EQ(matchIPv4GetIPv4(m)->s_addr, ip.s_addr);
    EXPECT_EQ(matchIPv4GetIPv4Mask(m)->s_addr, mask.s_addr);
  }
}

TEST(MatchesC, Ipv6MatchesDefaultToFullMaskAndDstTakesAMask) {
  const in6_addr ip = Ipv6("2001:db8::42");
  const in6_addr ones = Ipv6("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
  const in6_addr mask = Ipv6("ffff:ffff::");
  MatchPtr src = OwnMatch(newMatchSrcIPv6(ip));
  MatchPtr dst = OwnMatch(newMatchDstIPv6(ip));
  MatchPtr masked = OwnMatch(newMatchDstIPv6Mask(ip, mask));
  for (void* m : {src.get(), dst.get(), masked.get()}) {
    EXPECT_TRUE(SameBytes(matchIPv6GetIPv6(m), &ip, 16));
  }
  EXPECT_TRUE(SameBytes(matchIPv6GetIPv6Mask(src.get()), &ones, 16));
  EXPECT_TRUE(SameBytes(matchIPv6GetIPv6Mask(dst.get()), &ones, 16));
  EXPECT_TRUE(SameBytes(matchIPv6GetIPv6Mask(masked.get()), &mask, 16));
}

TEST(MatchesC, VlanAndPcpMatchesHoldASetOfOne) {
  MatchPtr external = OwnMatch(newMatchExternalVlanId(4095));
  MatchPtr internal = OwnMatch(newMatchInternalVlanId(0));
  MatchPtr pcp = OwnMatch(newMatchPcp(9));
  MatchPtr internalPcp = OwnMatch(newMatchInternalPcp(7));
  EXPECT_EQ(As<MatchExternalVlanId>(external)->getVlanIds(),
            (std::set<uint16_t>{4095}));
  EXPECT_EQ(As<MatchInternalVlanId>(internal)->getVlanIds(),
            (std::set<uint16_t>{0}));
  EXPECT_EQ(As<MatchPcp>(pcp)->getPcps(), (std::set<uint8_t>{9}));
  EXPECT_EQ(As<MatchInternalPcp>(internalPcp)->getPcps(),
            (std::set<uint8_t>{7}));
}

TEST(MatchesC, TypedGettersReadTheirClass) {
  MatchPtr tpid = OwnMatch(newMatchTPID(0x88A8));
  MatchPtr entryType = OwnMatch(newMatchL2SrcEntryType(L2_SRC_ENTRY_DYNAMIC));
  EXPECT_EQ(matchGetTPID(As<MatchTPID>(tpid)), 0x88A8);
  EXPECT_EQ(matchGetL2SrcEntryType(As<MatchL2SrcEntryType>(entryType)),
            L2_SRC_ENTRY_DYNAMIC);
}

TEST(MatchesC, InterfaceMatchesGiveTheirIdentifierBack) {
  const limid_t lag = limid_make(limid_type_lag, 12);
  MatchPtr virtualPort = OwnMatch(newMatchVirtualPort(lag));
  MatchPtr srcPort = OwnMatch(newMatchSrcPort(Eth(8)));
  EXPECT_EQ(matchGetLimId(virtualPort.get()), lag);
  EXPECT_EQ(matchGetLimId(srcPort.get()), Eth(8));
}

TEST(MatchesC, UncheckedGettersReadTheStoredValues) {
  MatchPtr protocol = OwnMatch(newMatchIpProtocol(17));
  MatchPtr resolution = OwnMatch(newMatchPacketRes(PKT_RES_L3_UNICAST));
  MatchPtr mpls = OwnMatch(newMatchMplsTerm(true));
  MatchPtr ttl = OwnMatch(newMatchTTL(255));
  MatchPtr stp = OwnMatch(newMatchIngressStpState(STP_STATE_BLOCKING));
  MatchPtr vlanInfo = OwnMatch(newMatchVlanInfo(vlan_info_t{0xA, 0xB0000}));
  MatchPtr vrf = OwnMatch(newMatchVrfId(65535));
  MatchPtr drop = OwnMatch(newMatchDrop(true));
  MatchPtr injected = OwnMatch(newMatchCPUInjectedPackets(true));
  MatchPtr l2Hit = OwnMatch(newMatchL2DestHit(true));
  MatchPtr l3Hit = OwnMatch(newMatchL3SrcRouteHit(false));
  MatchPtr portClass = OwnMatch(newMatchVirtualPortClass(0xDEADBEEF));

  EXPECT_EQ(matchIpProtocolGetIpProt(protocol.get()), 17);
  EXPECT_EQ(matchPacketResGet(resolution.get()), PKT_RES_L3_UNICAST);
  EXPECT_TRUE(matchMplsTermGet(mpls.get()));
  EXPECT_EQ(matchTTLGet(ttl.get()), 255);
  EXPECT_EQ(matchIngressStpStateGet(stp.get()), STP_STATE_BLOCKING);
  const vlan_info_t info = matchVlanInfoGet(vlanInfo.get());
  EXPECT_EQ(info.svcVlanType, 0xAu);
  EXPECT_EQ(info.protoCpuVlanType, 0xB0000u);
  EXPECT_EQ(matchVrfIdGet(vrf.get()), 65535);
  EXPECT_TRUE(matchDropGet(drop.get()));
  EXPECT_TRUE(MatchCPUInjectedPacketsGet(injected.get()));
  EXPECT_TRUE(matchL2DestHitGet(l2Hit.get()));
  EXPECT_FALSE(matchL3SrcRouteHitGet(l3Hit.get()));
  EXPECT_EQ(matchVirtualPortClassGet(portClass.get()), 0xDEADBEEFu);
}

TEST(MatchesC, FalseFlagsAndZeroValuesAreStoredAsGiven) {
  MatchPtr mpls = OwnMatch(newMatchMplsTerm(false));
  MatchPtr drop = OwnMatch(newMatchDrop(false));
  MatchPtr injected = OwnMatch(newMatchCPUInjectedPackets(false));
  MatchPtr l2Hit = OwnMatch(newMatchL2DestHit(false));
  MatchPtr l3Hit = OwnMatch(newMatchL3SrcRouteHit(true));
  MatchPtr ttl = OwnMatch(newMatchTTL(0));
  MatchPtr dscp = OwnMatch(newMatchDSCP(0));
  EXPECT_FALSE(matchMplsTermGet(mpls.get()));
  EXPECT_FALSE(matchDropGet(drop.get()));
  EXPECT_FALSE(MatchCPUInjectedPacketsGet(injected.get()));
  EXPECT_FALSE(matchL2DestHitGet(l2Hit.get()));
  EXPECT_TRUE(matchL3SrcRouteHitGet(l3Hit.get()));
  EXPECT_EQ(matchTTLGet(ttl.get()), 0);
  EXPECT_EQ(matchDSCPGet(dscp.get()), 0);
}

TEST(MatchesC, VlanTaggingMatchKeepsItsValue) {
  MatchPtr m = OwnMatch(newMatchVlanTagging(VLAN_TAGGING_DOUBLE_TAGGED));
  EXPECT_EQ(As<MatchVlanTagging>(m)->getTagging(), VLAN_TAGGING_DOUBLE_TAGGED);
}

TEST(MatchesC, DscpAbove63LosesItsUpperBits) {
  MatchPtr m = OwnMatch(newMatchDSCP(65));
  EXPECT_EQ(matchDSCPGet(m.get()), 1);
}

// ---- Null-handle guards ----

INSTANTIATE_TEST_SUITE_P(
    Matches, CInterfaceDeathTest,
    ::testing::ValuesIn(GuardsOf(
        "filter_matches_c.cc",
        {Guard{"matchGetType", [] { matchGetType(nullptr); },
               "FiltersCommon::filtersMatch_t "
               "FiltersCommon::matchGetType(void*)",
               "m != nullptr"},
         Guard{"deleteMatch", [] { deleteMatch(nullptr); },
               "void FiltersCommon::deleteMatch(void*)", "m != nullptr"},
         Guard{"matchGetLimId", [] { matchGetLimId(nullptr); },
               "limid_t FiltersCommon::matchGetLimId(void*)", "m != nullptr"},
         Guard{"matchMacGetMac", [] { matchMacGetMac(nullptr); },
               "const ether_addr* FiltersCommon::matchMacGetMac(void*)",
               "m != nullptr"},
         Guard{"matchMacGetMask", [] { matchMacGetMask(nullptr); },
               "const ether_addr* FiltersCommon::matchMacGetMask(void*)",
               "m != nullptr"},
         Guard{"matchGetTPID", [] { matchGetTPID(nullptr); },
               "FiltersCommon::tpid_t "
               "FiltersCommon::matchGetTPID(FiltersCommon::MatchTPID*)",
               "m != nullptr"},
         Guard{"matchGetL4Port", [] { matchGetL4Port(nullptr); },
               "FiltersCommon::l4port_t FiltersCommon::matchGetL4Port(void*)",
               "m != nullptr"},
         Guard{"matchGetL4PortMask", [] { matchGetL4PortMask(nullptr); },
               "FiltersCommon::l4port_t "
               "FiltersCommon::matchGetL4PortMask(void*)",
               "m != nullptr"},
         Guard{"matchGetL4PortRangeMin",
               [] { matchGetL4PortRangeMin(nullptr); },
               "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortRangeMin("
               "FiltersCommon::MatchDstL4PortRange*)",
               "m != nullptr"},
         Guard{"matchGetL4PortRangeMax",
               [] { matchGetL4PortRangeMax(nullptr); },
               "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortRangeMax("
               "FiltersCommon::MatchDstL4PortRange*)",
               "m != nullptr"},
         Guard{"matchGetL2SrcEntryType",
               [] { matchGetL2SrcEntryType(nullptr); },
               "FiltersCommon::l2SrcEntryType_t "
               "FiltersCommon::matchGetL2SrcEntryType("
               "FiltersCommon::MatchL2SrcEntryType*)",
               "m != nullptr"},
         Guard{"matchIPv4GetIPv4", [] { matchIPv4GetIPv4(nullptr); },
               "const in_addr* FiltersCommon::matchIPv4GetIPv4(void*)",
               "m != nullptr"},
         Guard{"matchIPv4GetIPv4Mask", [] { matchIPv4GetIPv4Mask(nullptr); },
               "const in_addr* FiltersCommon::matchIPv4GetIPv4Mask(void*)",
               "m != nullptr"},
         Guard{"matchIPv6GetIPv6", [] { matchIPv6GetIPv6(nullptr); },
               "const in6_addr* FiltersCommon::matchIPv6GetIPv6(void*)",
               "m != nullptr"},
         Guard{"matchIPv6GetIPv6Mask", [] { matchIPv6GetIPv6Mask(nullptr); },
               "const in6_addr* FiltersCommon::matchIPv6GetIPv6Mask(void*)",
               "m != nullptr"}})),
    GuardName);

}  // namespace
}  // namespace FiltersCommon
