// Every match kind checked against its documented behaviour, one table row per
// class: the exact dump (flushes included), the exact MatchPB it writes, the
// round trip through the class its wire kind names, and the edge cases of
// comparison, conversion and the C interface.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <functional>
#include <ios>
#include <list>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FiltersCommon/filter_matches.h"
#include "FiltersCommon/filter_matches_c.h"
#include "audit_test_util.h"
#include "filter_matches.pb.h"

namespace {

using namespace FiltersCommon;  // NOLINT
using audit::bytesOf;
using audit::dumpOf;
using audit::fieldsOf;
using audit::kEth1;
using audit::kLag3;
using audit::kVpws7;
using audit::mac;
using audit::Recorder;

limid_t const kEth2 = limid_make(limid_type_ethernet, 2);

std::string const kMacA("\x00\x0a\x0b\x00\x00\x01", 6);  // 0:a:b:0:0:1
std::string const kMacB("\x12\x34\x56\x78\x9a\xbc", 6);
std::string const kMaskA("\xff\xff\xff\x00\x00\x00", 6);
std::string const kOnes6(6, '\xff');

in_addr ip4(char const* text) {
  in_addr a;
  EXPECT_EQ(1, inet_pton(AF_INET, text, &a));
  return a;
}
in6_addr ip6(char const* text) {
  in6_addr a;
  EXPECT_EQ(1, inet_pton(AF_INET6, text, &a));
  return a;
}

// The head of a block whose header and type line both end with std::endl.
std::string head(std::string const& cls, int type) {
  return "    =" + cls +
         "=\n" FL "      Match Type ID: " + std::to_string(type) + "\n" FL;
}

using KindCase = audit::KindCase<Match, MatchPB>;
#define KIND(...) AUDIT_KIND(Match, MatchPB, __VA_ARGS__)

std::vector<KindCase> const& kinds() {
  static std::vector<KindCase> const table = {
    KIND(MatchAll, (), MatchAll, (),
         head("MatchAll", 0) + "      <no parameters>\n" FL, pb->set_type_(0)),
    KIND(MatchIngressPorts, (std::list<limid_t>{kEth1, kEth2}),
         MatchIngressPorts, (std::list<limid_t>{}),
         head("MatchIngressPorts", 1) + "      Number of ports: 2\n" FL
                                        "      LIMIDs: \"eth1\" \"eth2\" \n" FL,
         pb->set_type_(1);
         pb->add_ports_(kEth1); pb->add_ports_(kEth2)),
    KIND(MatchExternalVlanId, (std::set<uint16_t>{4095, 1}),
         MatchExternalVlanId, (std::set<uint16_t>{}),
         head("MatchExternalVlanId", 2) + "      VLAN IDs: [ 1 4095 ]\n" FL,
         pb->set_type_(2);
         pb->add_vlan_id_(1); pb->add_vlan_id_(4095)),
    KIND(MatchTPID, (0x8100), MatchTPID, (0),
         head("MatchTPID", 3) + "      TPID: 0x8100\n" FL, pb->set_type_(3);
         pb->set_tpid_(0x8100)),
    KIND(MatchDstMac, (mac(kMacA), mac(kMaskA)), MatchDstMac,
         (mac(std::string(6, '\0'))),
         head("MatchDstMac", 4) + "      MAC: 0:a:b:0:0:1\n" FL
                                  "      Mask: ff:ff:ff:0:0:0\n" FL,
         pb->set_type_(4);
         pb->set_mac_(kMacA); pb->set_mac_mask_(kMaskA)),
    KIND(MatchDstL4Port, (80), MatchDstL4Port, (0, 0),
         head("MatchDstL4Port", 5) + "      Param1: 80\n" FL
                                     "      Param2: 65535\n" FL,
         pb->set_type_(5);
         pb->set_l4port_param1_(80); pb->set_l4port_param2_(65535)),
    KIND(MatchSrcL4Port, (1024, 0xFF00), MatchSrcL4Port, (0, 0),
         head("MatchSrcL4Port", 6) + "      Param1: 1024\n" FL
                                     "      Param2: 65280\n" FL,
         pb->set_type_(6);
         pb->set_l4port_param1_(1024); pb->set_l4port_param2_(0xFF00)),
    KIND(MatchSrcMac, (mac(kMacB)), MatchSrcMac, (mac(std::string(6, '\0'))),
         head("MatchSrcMac", 7) + "      MAC: 12:34:56:78:9a:bc\n" FL
                                  "      Mask: ff:ff:ff:ff:ff:ff\n" FL,
         pb->set_type_(7);
         pb->set_mac_(kMacB); pb->set_mac_mask_(kOnes6)),
    KIND(MatchL2SrcEntryType, (static_cast<l2SrcEntryType_t>(-2)),
         MatchL2SrcEntryType, (static_cast<l2SrcEntryType_t>(0)),
         head("MatchL2SrcEntryType", 8) + "      L2 Src Entry Type: -2\n" FL,
         pb->set_type_(8);
         pb->set_l2_src_(4294967294u)),
    KIND(MatchSrcIPv4, (ip4("10.1.2.3")), MatchSrcIPv4, (ip4("0.0.0.0")),
         head("MatchSrcIPv4", 9) + "      IP: 10.1.2.3\n" FL
                                   "      Mask: 255.255.255.255\n" FL,
         pb->set_type_(9);
         pb->set_ipv4_(std::string("\x0a\x01\x02\x03", 4));
         pb->set_ipv4_mask_(std::string(4, '\xff'))),
    KIND(MatchDstIPv4, (ip4("192.168.0.0"), ip4("255.255.0.0")), MatchDstIPv4,
         (ip4("0.0.0.0")),
         head("MatchDstIPv4", 10) + "      IP: 192.168.0.0\n" FL
                                    "      Mask: 255.255.0.0\n" FL,
         pb->set_type_(10);
         pb->set_ipv4_(std::string("\xc0\xa8\x00\x00", 4));
         pb->set_ipv4_mask_(std::string("\xff\xff\x00\x00", 4))),
    KIND(MatchInternalVlanId, (0), MatchInternalVlanId, (std::set<uint16_t>{}),
         head("MatchInternalVlanId", 11) + "      VLAN IDs: [ 0 ]\n" FL,
         pb->set_type_(11);
         pb->add_vlan_id_(0)),
    KIND(MatchPcp, (std::set<uint8_t>{5, 3}), MatchPcp, (std::set<uint8_t>{}),
         head("MatchPcp", 12) + "      PCPs: [ \x03 \x05 ]\n" FL,
         pb->set_type_(12);
         pb->add_pcp_(3); pb->add_pcp_(5)),
    KIND(MatchInternalPcp, (uint8_t{7}), MatchInternalPcp,
         (std::set<uint8_t>{}),
         head("MatchInternalPcp", 13) + "      PCPs: [ \x07 ]\n" FL,
         pb->set_type_(13);
         pb->add_pcp_(7)),
    KIND(MatchSrcIPv6, (ip6("2001:db8::1")), MatchSrcIPv6, (ip6("::")),
         head("MatchSrcIPv6", 14) +
             "      IPv6: 2001:db8::1\n"
             "      Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff\n",
         pb->set_type_(14);
         pb->set_ipv6_(bytesOf(ip6("2001:db8::1")));
         pb->set_ipv6_mask_(std::string(16, '\xff'))),
    KIND(MatchDstIPv6, (ip6("fe80::"), ip6("ffff:ffff:ffff:ffff::")),
         MatchDstIPv6, (ip6("::")),
         head("MatchDstIPv6", 15) + "      IPv6: fe80::\n"
                                    "      Mask: ffff:ffff:ffff:ffff::\n",
         pb->set_type_(15);
         pb->set_ipv6_(bytesOf(ip6("fe80::")));
         pb->set_ipv6_mask_(bytesOf(ip6("ffff:ffff:ffff:ffff::")))),
    KIND(MatchVlanTagging, (static_cast<vlan_tagging_t>(2)), MatchVlanTagging,
         (static_cast<vlan_tagging_t>(0)),
         head("MatchVlanTagging", 16) + "      Tagging: tagged\n" FL,
         pb->set_type_(16);
         pb->set_vlan_tagging_(2)),
    KIND(MatchIpProtocol, (6), MatchIpProtocol, (0),
         head("MatchIpProtocol", 17) + "      Ip Protocol: 6\n" FL,
         pb->set_type_(17);
         pb->set_ipprotocol_(6)),
    KIND(MatchPacketRes, (static_cast<en_Resolution>(-1)), MatchPacketRes,
         (static_cast<en_Resolution>(0)),
         head("MatchPacketRes", 18) + "      Pkt Resolution: -1\n" FL,
         pb->set_type_(18);
         pb->set_packet_resolution_(0xFFFFFFFFu)),
    KIND(MatchMplsTerm, (true), MatchMplsTerm, (false),
         head("MatchMplsTerm", 19) + "      Mpls Terminated status: 1\n" FL,
         pb->set_type_(19);
         pb->set_mpls_terminated_(true)),
    KIND(MatchToS, (0xB9), MatchToS, (0),
         head("MatchToS", 20) + "      ToS: 185\n" FL, pb->set_type_(20);
         pb->set_tos_(185)),
    KIND(MatchDSCP, (46), MatchToS, (0),
         head("MatchDSCP", 20) + "      DSCP: 46\n" FL, pb->set_type_(20);
         pb->set_tos_(184)),
    KIND(MatchVirtualPort, (kVpws7), MatchVirtualPort, (0),
         head("MatchVirtualPort", 21) + "      LIMID: vpws7\n" FL,
         pb->set_type_(21);
         pb->set_limid_(kVpws7)),
    KIND(MatchEgressPorts, (std::list<limid_t>{kLag3, kEth1, kLag3}),
         MatchEgressPorts, (std::list<limid_t>{}),
         head("MatchEgressPorts", 22) +
             "      Number of ports: 3\n" FL
             "      LIMIDs: \"lag3\" \"eth1\" \"lag3\" \n" FL,
         pb->set_type_(22);
         pb->add_ports_(kLag3); pb->add_ports_(kEth1); pb->add_ports_(kLag3)),
    KIND(MatchIngressStpState, (static_cast<en_StpState>(-1)),
         MatchIngressStpState, (static_cast<en_StpState>(0)),
         head("MatchIngressStpState", 23) +
             "      IngressStpState: 4294967295\n" FL,
         pb->set_type_(23);
         pb->set_ingress_stp_state_(0xFFFFFFFFu)),
    KIND(MatchVlanInfo, ((vlan_info_t{1, 4000000000u})), MatchVlanInfo,
         ((vlan_info_t{0, 0})),
         head("MatchVlanInfo", 24) +
             "      SVC VLAN Type: 1\n" FL
             "      Protocol2CPU VLAN Type: 4000000000\n" FL,
         pb->set_type_(24);
         pb->set_vlan_info_svc_vlan_type_(1);
         pb->set_vlan_info_proto_cpu_vlan_type_(4000000000u)),
    KIND(MatchSrcPort, (kLag3), MatchSrcPort, (0),
         head("MatchSrcPort", 25) + "      LIMID: lag3\n" FL, pb->set_type_(25);
         pb->set_limid_(kLag3)),
    KIND(MatchTTL, (64), MatchTTL, (0),
         head("MatchTTL", 26) + "      TTL: 64\n" FL, pb->set_type_(26);
         pb->set_ttl_(64)),
    KIND(MatchVrfId, (65535), MatchVrfId, (0),
         "    =MatchVrfId=\n"
         "      Match Type ID: 27\n"
         "      Match VRF ID: 65535\n",
         pb->set_type_(27);
         pb->set_vrf_id_(65535)),
    KIND(MatchDrop, (true), MatchDrop, (false),
         "    =MatchDrop=\n" FL "      Match Type ID: 28\n"
         "      Match Drop: 1\n",
         pb->set_type_(28);
         pb->set_drop_flag_(true)),
    KIND(MatchMyStationHit, (true), MatchMyStationHit, (false),
         "    =MatchMyStationHit=\n" FL "      Match Type ID: 29\n"
         "      Match MyStationHit: 1\n",
         pb->set_type_(29);
         pb->set_hit_flag_(true)),
    KIND(MatchCpuPort, (), MatchCpuPort, (), head("MatchCpuPort", 30),
         pb->set_type_(30)),
    KIND(MatchForwardingType, (static_cast<en_ForwardingType>(-3)),
         MatchForwardingType, (static_cast<en_ForwardingType>(0)),
         head("MatchForwardingType", 31) + "      Forwarding Type: -3\n" FL,
         pb->set_type_(31);
         pb->set_fwd_type_(0xFFFFFFFDu)),
    KIND(MatchDestinationCpu, (), MatchDestinationCpu, (),
         head("MatchDestinationCpu", 32), pb->set_type_(32)),
    KIND(MatchCPUInjectedPackets, (true), MatchCPUInjectedPackets, (false),
         head("MatchCPUInjectedPackets", 33) + "      Match Injected?: 1\n" FL,
         pb->set_type_(33);
         pb->set_injected_flag_(true)),
    KIND(MatchDstL4PortRange, (2000, 1000), MatchDstL4PortRange, (0, 0),
         head("MatchDstL4PortRange", 34) + "      Min Port: 2000\n" FL
                                           "      Max Port: 1000\n" FL,
         pb->set_type_(34);
         pb->set_l4port_param1_(2000); pb->set_l4port_param2_(1000)),
    KIND(MatchL2DestHit, (true), MatchL2DestHit, (false),
         head("MatchL2DestHit", 35) + "      Match MatchL2DestHit: 1\n",
         pb->set_type_(35);
         pb->set_hit_flag_(true)),
    KIND(MatchL3SrcRouteHit, (true), MatchL3SrcRouteHit, (false),
         head("MatchL3SrcRouteHit", 36) + "      Match MatchL3SrcRouteHit: 1\n",
         pb->set_type_(36);
         pb->set_hit_flag_(true)),
    KIND(MatchVirtualPortClass, (4000000000u), MatchVirtualPortClass, (0),
         head("MatchVirtualPortClass", 37) +
             "      Match  MatchVirtualPortClass: 4000000000\n",
         pb->set_type_(37);
         pb->set_class_id_(4000000000u)),
    KIND(MatchUnknownDestIp, (), MatchUnknownDestIp, (),
         head("MatchUnknownDestIp", 38), pb->set_type_(38)),
  };
  return table;
}

#undef KIND

TEST(AuditMatchKinds, TableCoversEveryClassOnce) {
  std::set<std::string> names;
  std::set<int> types;
  for (auto const& k : kinds()) {
    names.insert(k.name);
    types.insert(k.make()->getType());
  }
  EXPECT_EQ(40u, kinds().size());
  EXPECT_EQ(40u, names.size());
  EXPECT_EQ(39u, types.size());
}

TEST(AuditMatchKinds, OwnOperatorPrintsTheExactBlock) {
  audit::expectOwnDumps(kinds());
}

TEST(AuditMatchKinds, BaseOperatorPrintsTheBlockOfTheKindValue) {
  for (auto const& k : kinds()) {
    auto m = k.make();
    if (k.name == "MatchDSCP") {
      EXPECT_EQ(head("MatchToS", 20) + "      ToS: 184\n" FL, dumpOf(*m));
    } else {
      EXPECT_EQ(k.dump, dumpOf(*m)) << k.name;
    }
  }
}

TEST(AuditMatchKinds, WritesExactlyItsWireFields) {
  audit::expectExactWire(kinds());
}

TEST(AuditMatchKinds, RoundTripThroughTheWireKindsClassIsEqual) {
  audit::expectRoundTrips(kinds(),
                          {"MatchAll", "MatchCpuPort", "MatchDestinationCpu",
                           "MatchUnknownDestIp"});
}

TEST(AuditMatchKinds, EveryKindEqualsItselfAndACopyThroughTheBase) {
  for (auto const& k : kinds()) {
    auto a = k.make();
    auto b = k.make();
    EXPECT_TRUE(*a == *a) << k.name;
    EXPECT_TRUE(*a == *b) << k.name;
  }
}

TEST(AuditMatchKinds, KindsOfDifferentValuesNeverCompareEqual) {
  for (auto const& k1 : kinds()) {
    for (auto const& k2 : kinds()) {
      auto a = k1.make();
      auto b = k2.make();
      if (a->getType() != b->getType()) {
        EXPECT_FALSE(*a == *b) << k1.name << " vs " << k2.name;
      }
    }
  }
}

TEST(AuditMatchKinds, AbsentWireFieldsReadAsZero) {
  for (auto const& k : kinds()) {
    // The port kinds append what they read, so they start empty here.
    bool const appends = k.name.find("Ports") != std::string::npos;
    auto m = appends ? k.fresh() : k.make();
    audit::expectZeroRead(k, *m);
  }
}

// ---- Base ----

TEST(AuditMatchBase, KindAbove38IsUnequalEvenToItselfAndPrintsNothing) {
  Match odd(static_cast<filtersMatch_t>(39));
  EXPECT_FALSE(odd == odd);
  Match odd2(static_cast<filtersMatch_t>(39));
  EXPECT_FALSE(odd == odd2);
  Recorder r;
  r.os() << static_cast<Match const&>(odd);
  EXPECT_EQ("", r.text());
  MatchPB pb;
  odd.convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(pb));
  EXPECT_EQ(39u, pb.type_());
}

TEST(AuditMatchBase, MatchAllWritesOnlyTypeAndIgnoresEveryField) {
  MatchAll all;
  MatchPB pb;
  all.convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(pb));
  EXPECT_EQ(0u, pb.type_());
  MatchPB full;
  full.set_type_(5);
  full.add_ports_(1);
  full.set_tos_(3);
  all.convertFromMatchPB(&full);
  EXPECT_EQ(FILTERS_MATCH_ALL, all.getType());
  EXPECT_TRUE(all == MatchAll());
  EXPECT_FALSE(static_cast<Match const&>(all) == MatchCpuPort());
}

TEST(AuditMatchBase, ParameterlessKindsKeepTheirTypeWhateverTheMessage) {
  MatchPB pb;
  pb.set_type_(7);
  pb.set_mac_("abcdef");
  MatchCpuPort cpu;
  MatchDestinationCpu dest;
  MatchUnknownDestIp unknown;
  cpu.convertFromMatchPB(&pb);
  dest.convertFromMatchPB(&pb);
  unknown.convertFromMatchPB(&pb);
  EXPECT_EQ(FILTERS_MATCH_CPU_PORT, cpu.getType());
  EXPECT_EQ(FILTERS_MATCH_DESTINATION_CPU, dest.getType());
  EXPECT_EQ(FILTERS_MATCH_UNKNOWN_DEST_IP, unknown.getType());
}

TEST(AuditMatchBase, ReadingNeverChangesTheKind) {
  MatchPB pb;
  pb.set_type_(22);
  pb.add_ports_(kEth1);
  MatchIngressPorts in(std::list<limid_t>{});
  in.convertFromMatchPB(&pb);
  EXPECT_EQ(FILTERS_MATCH_INGRESS_PORTS, in.getType());
  EXPECT_EQ(std::list<limid_t>{kEth1}, in.getPorts());
}

template <class Leaf, class... Args>
void expectVirtualComparison(Args... args) {
  audit::expectBaseUsesTheLeftOperandsVirtualComparison<Match, Leaf>(args...);
}

TEST(AuditMatchBase, ThirteenKindsCompareThroughAVirtualTypedComparison) {
  expectVirtualComparison<MatchIngressStpState>(static_cast<en_StpState>(1));
  expectVirtualComparison<MatchVlanInfo>(vlan_info_t{1, 2});
  expectVirtualComparison<MatchVrfId>(uint16_t{3});
  expectVirtualComparison<MatchDrop>(true);
  expectVirtualComparison<MatchMyStationHit>(true);
  expectVirtualComparison<MatchCpuPort>();
  expectVirtualComparison<MatchForwardingType>(
      static_cast<en_ForwardingType>(2));
  expectVirtualComparison<MatchCPUInjectedPackets>(false);
  expectVirtualComparison<MatchDstL4PortRange>(uint16_t{1}, uint16_t{2});
  expectVirtualComparison<MatchL2DestHit>(true);
  expectVirtualComparison<MatchL3SrcRouteHit>(false);
  expectVirtualComparison<MatchVirtualPortClass>(9u);
  expectVirtualComparison<MatchUnknownDestIp>();
}

TEST(AuditMatchBase, PortAndLayer4IntermediatesKeepTheBaseConversions) {
  MatchPorts ports(FILTERS_MATCH_INGRESS_PORTS, std::list<limid_t>{kEth1});
  MatchPB pb;
  ports.convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(pb));
  MatchPB full;
  full.add_ports_(kEth2);
  full.set_l4port_param1_(9);
  ports.convertFromMatchPB(&full);
  EXPECT_EQ(std::list<limid_t>{kEth1}, ports.getPorts());

  MatchL4Port l4(FILTERS_MATCH_DST_L4_PORT, 1, 2);
  MatchPB l4pb;
  l4.convertToMatchPB(&l4pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(l4pb));
  EXPECT_EQ(5u, l4pb.type_());
  l4.convertFromMatchPB(&full);
  EXPECT_EQ(1, l4.getParam1());
  // Compared through the base as the kind's family, it equals the leaf.
  EXPECT_TRUE(static_cast<Match const&>(l4) == MatchDstL4Port(1, 2));
}

// ---- DSCP over ToS ----

TEST(AuditMatchDscp, StoresTheShiftedByteAndReportsTheUpperSixBits) {
  MatchDSCP d(46);
  EXPECT_EQ(FILTERS_MATCH_TOS, d.getType());
  EXPECT_EQ(184, d.getToS());
  EXPECT_EQ(46, d.getDSCP());
  EXPECT_TRUE(MatchDSCP(65) == MatchDSCP(1));
  EXPECT_EQ(4, MatchDSCP(65).getToS());
}

TEST(AuditMatchDscp, OwnComparisonIgnoresLowBitsButTheBaseDoesNot) {
  MatchPB pb;
  pb.set_type_(20);
  pb.set_tos_(185);
  MatchDSCP read(0);
  read.convertFromMatchPB(&pb);
  EXPECT_EQ(46, read.getDSCP());
  EXPECT_EQ(185, read.getToS());
  EXPECT_TRUE(read == MatchDSCP(46));
  EXPECT_FALSE(static_cast<Match const&>(read) == MatchDSCP(46));
  EXPECT_FALSE(static_cast<MatchToS const&>(read) ==
               static_cast<MatchToS const&>(MatchDSCP(46)));
}

TEST(AuditMatchDscp, EqualsTheToSOfTheSameByteThroughTheBase) {
  EXPECT_TRUE(static_cast<Match const&>(MatchDSCP(10)) == MatchToS(40));
  EXPECT_TRUE(static_cast<Match const&>(MatchToS(40)) == MatchDSCP(10));
  EXPECT_FALSE(static_cast<Match const&>(MatchToS(41)) == MatchDSCP(10));
}

TEST(AuditMatchDscp, ToSAndDscpPrintTheirOwnTypeLineAs20) {
  Recorder r;
  r.os() << static_cast<Match const&>(MatchDSCP(46)) << MatchDSCP(46);
  EXPECT_EQ(head("MatchToS", 20) + "      ToS: 184\n" FL +
                head("MatchDSCP", 20) + "      DSCP: 46\n" FL,
            r.text());
}

// ---- Families ----

TEST(AuditMatchFamilies, DefaultMasksAreAllOnes) {
  ether_addr m = mac(kMacB);
  EXPECT_TRUE(MatchDstMac(m) == MatchDstMac(m, mac(kOnes6)));
  EXPECT_EQ(kOnes6, bytesOf(MatchSrcMac(m).getMask()));
  EXPECT_EQ(std::string(4, '\xff'),
            bytesOf(MatchSrcIPv4(ip4("1.2.3.4")).getIPv4Mask()));
  EXPECT_EQ(std::string(4, '\xff'),
            bytesOf(MatchDstIPv4(ip4("1.2.3.4")).getIPv4Mask()));
  EXPECT_EQ(std::string(16, '\xff'),
            bytesOf(MatchDstIPv6(ip6("::1")).getIPv6Mask()));
  EXPECT_EQ(std::string(16, '\xff'),
            bytesOf(MatchSrcIPv6(ip6("::1")).getIPv6Mask()));
  EXPECT_EQ(0xFFFF, MatchDstL4Port(80).getMask());
  EXPECT_EQ(0xFFFF, MatchSrcL4Port(80).getMask());
  EXPECT_FALSE(MatchDstL4Port(80) == MatchDstL4Port(80, 0xFFF0));
  EXPECT_TRUE(MatchDstL4Port(80) == MatchDstL4Port(80, 0xFFFF));
}

TEST(AuditMatchFamilies, AddressesCompareBytewiseWithoutApplyingMasks) {
  EXPECT_FALSE(MatchDstMac(mac(std::string("\0\0\0\0\0\x01", 6)),
                           mac(std::string("\xff\xff\xff\xff\xff\0", 6))) ==
               MatchDstMac(mac(std::string(6, '\0')),
                           mac(std::string("\xff\xff\xff\xff\xff\0", 6))));
  EXPECT_FALSE(MatchSrcIPv4(ip4("10.0.0.1"), ip4("255.255.255.0")) ==
               MatchSrcIPv4(ip4("10.0.0.0"), ip4("255.255.255.0")));
  EXPECT_FALSE(MatchDstIPv6(ip6("::1"), ip6("ffff::")) ==
               MatchDstIPv6(ip6("::"), ip6("ffff::")));
  EXPECT_FALSE(MatchSrcIPv4(ip4("10.0.0.1"), ip4("255.255.255.0")) ==
               MatchSrcIPv4(ip4("10.0.0.1"), ip4("255.255.0.0")));
  // Same family, different kind value.
  EXPECT_FALSE(static_cast<Match const&>(MatchSrcIPv4(ip4("1.1.1.1"))) ==
               MatchDstIPv4(ip4("1.1.1.1")));
}

TEST(AuditMatchFamilies, PortListsCompareInOrderWithDuplicates) {
  using L = std::list<limid_t>;
  EXPECT_FALSE(MatchIngressPorts(L{kEth1, kEth2}) ==
               MatchIngressPorts(L{kEth2, kEth1}));
  EXPECT_FALSE(MatchIngressPorts(L{kEth1, kEth1}) ==
               MatchIngressPorts(L{kEth1}));
  EXPECT_TRUE(MatchEgressPorts(L{kEth1, kEth2}) ==
              MatchEgressPorts(L{kEth1, kEth2}));
  EXPECT_FALSE(static_cast<Match const&>(MatchIngressPorts(L{kEth1})) ==
               MatchEgressPorts(L{kEth1}));
  EXPECT_FALSE(
      MatchIngressPorts(std::list<port_type_t>{CPU_PORT}) ==
      MatchIngressPorts(std::list<port_type_t>{static_cast<port_type_t>(1)}));
  EXPECT_FALSE(MatchIngressPorts(std::list<port_type_t>{}) ==
               MatchIngressPorts(L{kEth1}));
  EXPECT_TRUE(MatchIngressPorts(std::list<port_type_t>{}) ==
              MatchIngressPorts(L{}));
}

TEST(AuditMatchFamilies, VlanAndPcpSetsCompareAsSets) {
  EXPECT_TRUE(MatchExternalVlanId(std::set<uint16_t>{10, 20}) ==
              MatchExternalVlanId(std::set<uint16_t>{20, 10, 10}));
  EXPECT_FALSE(MatchExternalVlanId(std::set<uint16_t>{10, 20}) ==
               MatchExternalVlanId(std::set<uint16_t>{10}));
  EXPECT_TRUE(MatchInternalVlanId(uint16_t{7}) ==
              MatchInternalVlanId(std::set<uint16_t>{7}));
  EXPECT_TRUE(MatchPcp(std::set<uint8_t>{1, 2}) ==
              MatchPcp(std::set<uint8_t>{2, 1, 1}));
  EXPECT_FALSE(MatchInternalPcp(uint8_t{1}) ==
               MatchInternalPcp(std::set<uint8_t>{1, 2}));
  EXPECT_FALSE(static_cast<Match const&>(MatchPcp(uint8_t{1})) ==
               MatchInternalPcp(uint8_t{1}));
  EXPECT_EQ((std::set<uint16_t>{0, 5000}),
            MatchExternalVlanId(std::set<uint16_t>{5000, 0}).getVlanIds());
  EXPECT_EQ((std::set<uint8_t>{9}), MatchPcp(uint8_t{9}).getPcps());
}

TEST(AuditMatchFamilies, SetPortsRefusedWhileExcludedTypesAreHeld) {
  MatchIngressPorts byType(std::list<port_type_t>{CPU_PORT});
  EXPECT_EQ(FILTERS_ERR_REFUSED, byType.setPorts(std::list<limid_t>{kEth1}));
  EXPECT_EQ(-5, byType.setPorts(std::list<limid_t>{}));
  EXPECT_TRUE(byType.getPorts().empty());
  EXPECT_EQ(std::list<port_type_t>{CPU_PORT}, byType.getExcludedPortTypes());

  MatchIngressPorts byPort(std::list<limid_t>{kEth1});
  EXPECT_EQ(FILTERS_OK, byPort.setPorts(std::list<limid_t>{kEth2, kLag3}));
  EXPECT_EQ((std::list<limid_t>{kEth2, kLag3}), byPort.getPorts());
  MatchEgressPorts egress(std::list<limid_t>{});
  EXPECT_EQ(FILTERS_OK, egress.setPorts(std::list<limid_t>{kLag3}));
  EXPECT_EQ(std::list<limid_t>{kLag3}, egress.getPorts());
}

TEST(AuditMatchFamilies, SettersReplaceTheirValue) {
  MatchSrcPort p(kEth1);
  p.setSrcPort(kLag3);
  EXPECT_EQ(kLag3, p.getLimId());
  MatchVrfId v(1);
  v.setVrfId(0);
  EXPECT_EQ(0, v.getVrfId());
}

TEST(AuditMatchFamilies, AccessorsReturnWhatWasGiven) {
  MatchDstL4PortRange r(9, 3);
  EXPECT_EQ(9, r.getMinPort());
  EXPECT_EQ(3, r.getMaxPort());
  EXPECT_EQ(9, r.getParam1());
  MatchSrcL4Port s(5, 6);
  EXPECT_EQ(5, s.getPort());
  EXPECT_EQ(6, s.getMask());
  EXPECT_EQ(kVpws7, MatchVirtualPort(kVpws7).getLimId());
  EXPECT_EQ(0x88a8, MatchTPID(0x88a8).getTPID());
  EXPECT_EQ(kMacA, bytesOf(MatchDstMac(mac(kMacA)).getMac()));
  vlan_info_t info = MatchVlanInfo(vlan_info_t{3, 4}).getVlanInfo();
  EXPECT_EQ(3u, info.svcVlanType);
  EXPECT_EQ(4u, info.protoCpuVlanType);
  EXPECT_TRUE(MatchL2DestHit(true).getMatchL2DestHit());
  EXPECT_TRUE(MatchL3SrcRouteHit(true).getMatchL3SrcRouteHit());
  EXPECT_EQ(12u, MatchVirtualPortClass(12).getMatchVirtualPortClass());
  EXPECT_TRUE(MatchCPUInjectedPackets(true).getInjected());
  EXPECT_TRUE(MatchDrop(true).getDropFlag());
  EXPECT_TRUE(MatchMyStationHit(true).getHitFlag());
  EXPECT_TRUE(MatchMplsTerm(true).getMplsTerm());
  EXPECT_EQ(2, MatchVlanTagging(static_cast<vlan_tagging_t>(2)).getTagging());
}

// ---- Wire edge cases ----

TEST(AuditMatchWire, PortConversionsAppendInBothDirections) {
  MatchPB pb;
  pb.add_ports_(kLag3);
  MatchIngressPorts(std::list<limid_t>{kEth1}).convertToMatchPB(&pb);
  EXPECT_EQ(2, pb.ports__size());
  EXPECT_EQ(kLag3, pb.ports_(0));
  EXPECT_EQ(kEth1, pb.ports_(1));

  MatchPB in;
  in.set_type_(1);
  in.add_ports_(kEth2);
  MatchIngressPorts held(std::list<limid_t>{kEth1});
  held.convertFromMatchPB(&in);
  EXPECT_EQ((std::list<limid_t>{kEth1, kEth2}), held.getPorts());
  held.convertFromMatchPB(&in);
  EXPECT_EQ((std::list<limid_t>{kEth1, kEth2, kEth2}), held.getPorts());

  MatchEgressPorts egress(std::list<limid_t>{kEth1});
  egress.convertFromMatchPB(&in);
  EXPECT_EQ((std::list<limid_t>{kEth1, kEth2}), egress.getPorts());
}

TEST(AuditMatchWire, ExcludedTypesTravelForIngressOnly) {
  MatchIngressPorts byType(
      std::list<port_type_t>{CPU_PORT, static_cast<port_type_t>(7)});
  MatchPB pb;
  byType.convertToMatchPB(&pb);
  EXPECT_EQ((std::vector<std::string>{"type_", "excluded_port_types_"}),
            fieldsOf(pb));
  ASSERT_EQ(2, pb.excluded_port_types__size());
  EXPECT_EQ(0u, pb.excluded_port_types_(0));
  EXPECT_EQ(7u, pb.excluded_port_types_(1));
  MatchIngressPorts back(std::list<limid_t>{});
  back.convertFromMatchPB(&pb);
  EXPECT_TRUE(back == byType);
  EXPECT_TRUE(static_cast<Match const&>(back) == byType);

  // A message holding both lists fills both, types first.
  MatchPB both;
  both.set_type_(1);
  both.add_ports_(kEth1);
  both.add_excluded_port_types_(0);
  MatchIngressPorts mixed(std::list<limid_t>{});
  mixed.convertFromMatchPB(&both);
  EXPECT_EQ(std::list<limid_t>{kEth1}, mixed.getPorts());
  EXPECT_EQ(std::list<port_type_t>{CPU_PORT}, mixed.getExcludedPortTypes());
  MatchPB rewritten;
  mixed.convertToMatchPB(&rewritten);
  EXPECT_EQ(1, rewritten.ports__size());
  EXPECT_EQ(1, rewritten.excluded_port_types__size());

  MatchEgressPorts egress(std::list<limid_t>{});
  egress.convertFromMatchPB(&both);
  EXPECT_EQ(std::list<limid_t>{kEth1}, egress.getPorts());
  EXPECT_TRUE(egress.getExcludedPortTypes().empty());
}

TEST(AuditMatchWire, VlanAndPcpConversionsEmptyFirst) {
  MatchPB pb;
  pb.add_vlan_id_(99);
  pb.add_pcp_(1);
  MatchExternalVlanId(uint16_t{5}).convertToMatchPB(&pb);
  ASSERT_EQ(1, pb.vlan_id__size());
  EXPECT_EQ(5u, pb.vlan_id_(0));
  MatchPcp(uint8_t{3}).convertToMatchPB(&pb);
  ASSERT_EQ(1, pb.pcp__size());
  EXPECT_EQ(3u, pb.pcp_(0));

  MatchPB in;
  in.add_vlan_id_(65537);
  in.add_vlan_id_(10);
  in.add_vlan_id_(1);
  in.add_pcp_(260);
  in.add_pcp_(7);
  MatchExternalVlanId v(std::set<uint16_t>{500, 600});
  v.convertFromMatchPB(&in);
  EXPECT_EQ((std::set<uint16_t>{1, 10}), v.getVlanIds());
  MatchInternalPcp p(std::set<uint8_t>{0});
  p.convertFromMatchPB(&in);
  EXPECT_EQ((std::set<uint8_t>{4, 7}), p.getPcps());

  MatchPB empty;
  v.convertFromMatchPB(&empty);
  EXPECT_TRUE(v.getVlanIds().empty());
}

TEST(AuditMatchWire, ScalarsKeepTheLowBitsOfTheWireValue) {
  MatchPB pb;
  pb.set_vrf_id_(70000);
  pb.set_tos_(300);
  pb.set_ipprotocol_(262);
  pb.set_ttl_(511);
  pb.set_tpid_(0x18100);
  pb.set_l4port_param1_(65536 + 80);
  pb.set_l4port_param2_(0x1FFFF);
  MatchVrfId vrf(0);
  vrf.convertFromMatchPB(&pb);
  EXPECT_EQ(4464, vrf.getVrfId());
  MatchToS tos(0);
  tos.convertFromMatchPB(&pb);
  EXPECT_EQ(44, tos.getToS());
  MatchIpProtocol proto(0);
  proto.convertFromMatchPB(&pb);
  EXPECT_EQ(6, proto.getIpProtocol());
  MatchTTL ttl(0);
  ttl.convertFromMatchPB(&pb);
  EXPECT_EQ(255, ttl.getTTL());
  MatchTPID tpid(0);
  tpid.convertFromMatchPB(&pb);
  EXPECT_EQ(0x8100, tpid.getTPID());
  MatchDstL4Port port(1);
  port.convertFromMatchPB(&pb);
  EXPECT_EQ(80, port.getPort());
  EXPECT_EQ(0xFFFF, port.getMask());
}

TEST(AuditMatchWire, WideValuesTravelWhole) {
  MatchPB pb;
  pb.set_class_id_(0xFFFFFFFFu);
  pb.set_limid_(0xFFFFFFFFu);
  pb.set_l2_src_(0x80000000u);
  MatchVirtualPortClass c(0);
  c.convertFromMatchPB(&pb);
  EXPECT_EQ(0xFFFFFFFFu, c.getMatchVirtualPortClass());
  MatchSrcPort s(0);
  s.convertFromMatchPB(&pb);
  EXPECT_EQ(0xFFFFFFFFu, s.getLimId());
  MatchL2SrcEntryType t(static_cast<l2SrcEntryType_t>(0));
  t.convertFromMatchPB(&pb);
  EXPECT_EQ(static_cast<int32_t>(0x80000000u),
            static_cast<int32_t>(t.getL2SrcEntryType()));
}

TEST(AuditMatchWire, PortReadWithoutMaskGetsMaskZero) {
  MatchPB pb;
  pb.set_type_(5);
  pb.set_l4port_param1_(443);
  MatchDstL4Port p(1, 2);
  p.convertFromMatchPB(&pb);
  EXPECT_EQ(443, p.getPort());
  EXPECT_EQ(0, p.getMask());
}

TEST(AuditMatchWire, ShortAddressFieldsAreZeroFilled) {
  MatchPB pb;
  pb.set_mac_(std::string("\x01\x02", 2));
  pb.set_ipv4_(std::string("\x0a", 1));
  pb.set_ipv6_(std::string("\x20\x01\x0d", 3));
  pb.set_ipv6_mask_(std::string("\xff", 1));
  MatchDstMac m(mac(kOnes6));
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(std::string("\x01\x02\0\0\0\0", 6), bytesOf(m.getMac()));
  EXPECT_EQ(std::string(6, '\0'), bytesOf(m.getMask()));
  MatchSrcIPv4 v4(ip4("1.2.3.4"));
  v4.convertFromMatchPB(&pb);
  EXPECT_EQ(std::string("\x0a\0\0\0", 4), bytesOf(v4.getIPv4()));
  EXPECT_EQ(std::string(4, '\0'), bytesOf(v4.getIPv4Mask()));
  MatchDstIPv6 v6(ip6("::1"));
  v6.convertFromMatchPB(&pb);
  EXPECT_EQ(std::string("\x20\x01\x0d") + std::string(13, '\0'),
            bytesOf(v6.getIPv6()));
  EXPECT_EQ(std::string("\xff") + std::string(15, '\0'),
            bytesOf(v6.getIPv6Mask()));
}

TEST(AuditMatchWire, LongAddressFieldsGiveTheirFirstBytes) {
  MatchPB pb;
  pb.set_mac_(kMacB + "\x77\x88");
  pb.set_mac_mask_(kMaskA + "\x01");
  pb.set_ipv4_(std::string("\x0a\x01\x02\x03\x04", 5));
  MatchSrcMac m(mac(kMacA));
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(kMacB, bytesOf(m.getMac()));
  EXPECT_EQ(kMaskA, bytesOf(m.getMask()));
  MatchDstIPv4 v4(ip4("0.0.0.0"));
  v4.convertFromMatchPB(&pb);
  EXPECT_EQ(std::string("\x0a\x01\x02\x03", 4), bytesOf(v4.getIPv4()));
}

TEST(AuditMatchWire, HitFlagIsSharedByThreeKinds) {
  MatchPB pb;
  MatchL2DestHit(true).convertToMatchPB(&pb);
  EXPECT_EQ(35u, pb.type_());
  EXPECT_TRUE(pb.hit_flag_());
  MatchMyStationHit station(false);
  station.convertFromMatchPB(&pb);
  EXPECT_TRUE(station.getHitFlag());
  MatchL3SrcRouteHit route(false);
  route.convertFromMatchPB(&pb);
  EXPECT_TRUE(route.getMatchL3SrcRouteHit());
}

TEST(AuditMatchWire, PcpKindsShareTheirField) {
  MatchPB pb;
  MatchPcp(std::set<uint8_t>{2, 9}).convertToMatchPB(&pb);
  MatchInternalPcp internal(uint8_t{0});
  internal.convertFromMatchPB(&pb);
  EXPECT_EQ((std::set<uint8_t>{2, 9}), internal.getPcps());
}

// ---- Dump edge cases ----

TEST(AuditMatchDump, TpidLeavesTheStreamInHex) {
  Recorder r;
  r.os() << MatchTPID(0x8100) << MatchTTL(26)
         << static_cast<Match const&>(MatchVrfId(255))
         << MatchExternalVlanId(uint16_t{4095})
         << MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(10))
         << MatchDstL4PortRange(16, 17);
  EXPECT_EQ(head("MatchTPID", 3) +
                "      TPID: 0x8100\n" FL "    =MatchTTL=\n" FL
                "      Match Type ID: 1a\n" FL "      TTL: 1a\n" FL
                "    =MatchVrfId=\n"
                "      Match Type ID: 1b\n"
                "      Match VRF ID: ff\n"
                "    =MatchExternalVlanId=\n" FL "      Match Type ID: 2\n" FL
                "      VLAN IDs: [ fff ]\n" FL "    =MatchL2SrcEntryType=\n" FL
                "      Match Type ID: 8\n" FL "      L2 Src Entry Type: a\n" FL
                "    =MatchDstL4PortRange=\n" FL "      Match Type ID: 22\n" FL
                "      Min Port: 10\n" FL "      Max Port: 11\n" FL,
            r.text());
  EXPECT_TRUE(r.os().flags() & std::ios::hex);
}

TEST(AuditMatchDump, TpidInAHexStreamStillPrintsItsDigitsOnce) {
  std::ostringstream os;
  os << std::hex << MatchTPID(0x88a8);
  EXPECT_EQ("    =MatchTPID=\n      Match Type ID: 3\n      TPID: 0x88a8\n",
            os.str());
}

TEST(AuditMatchDump, OtherKindsLeaveTheFormatStateAlone) {
  for (auto const& k : kinds()) {
    if (k.name == "MatchTPID") continue;
    std::ostringstream os;
    auto m = k.make();
    os << *m;
    EXPECT_TRUE(os.flags() & std::ios::dec) << k.name;
    EXPECT_FALSE(os.flags() & std::ios::hex) << k.name;
    os << 10;
    EXPECT_EQ('0', os.str().back()) << k.name;
  }
}

TEST(AuditMatchDump, PcpsAreRawBytes) {
  EXPECT_EQ(head("MatchPcp", 12) + std::string("      PCPs: [ \x03 ]\n") + FL,
            dumpOf(MatchPcp(uint8_t{3})));
  EXPECT_EQ(head("MatchPcp", 12) + "      PCPs: [ 0 ]\n" FL,
            dumpOf(MatchPcp(uint8_t{'0'})));
  EXPECT_EQ(head("MatchInternalPcp", 13) + "      PCPs: [ ]\n" FL,
            dumpOf(MatchInternalPcp(std::set<uint8_t>{})));
  std::ostringstream os;
  os << std::hex << MatchPcp(uint8_t{0});
  EXPECT_EQ(
      std::string("    =MatchPcp=\n      Match Type ID: c\n      PCPs: [ ") +
          std::string(1, '\0') + " ]\n",
      os.str());
}

TEST(AuditMatchDump, ExcludedPortTypesNameOnlyTheCpuPort) {
  EXPECT_EQ(head("MatchIngressPorts", 1) +
                "      Excluded Port Types: \"CPU_PORT\" \"\" \n" FL,
            dumpOf(MatchIngressPorts(std::list<port_type_t>{
                CPU_PORT, static_cast<port_type_t>(7)})));
  EXPECT_EQ(
      head("MatchIngressPorts", 1) +
          "      Excluded Port Types: \"\" \"CPU_PORT\" \"CPU_PORT\" \n" FL,
      dumpOf(MatchIngressPorts(std::list<port_type_t>{
          static_cast<port_type_t>(1), CPU_PORT, CPU_PORT})));
}

TEST(AuditMatchDump, EmptyPortListPrintsZeroAndABareLabel) {
  EXPECT_EQ(head("MatchIngressPorts", 1) + "      Number of ports: 0\n" FL
                                           "      LIMIDs: \n" FL,
            dumpOf(MatchIngressPorts(std::list<limid_t>{})));
}

TEST(AuditMatchDump, UnnamedInterfacesPrintEmpty) {
  EXPECT_EQ(head("MatchEgressPorts", 22) + "      Number of ports: 2\n" FL
                                           "      LIMIDs: \"\" \"eth2\" \n" FL,
            dumpOf(MatchEgressPorts(std::list<limid_t>{0, kEth2})));
  EXPECT_EQ(head("MatchSrcPort", 25) + "      LIMID: \n" FL,
            dumpOf(MatchSrcPort(0xFF000001u)));
  EXPECT_EQ(head("MatchVirtualPort", 21) + "      LIMID: vpls5\n" FL,
            dumpOf(MatchVirtualPort(
                limid_make_bridgedomain(limid_bridgedomain_type_vpls, 5))));
}

TEST(AuditMatchDump, TaggingPrintsUntaggedOnlyForZero) {
  EXPECT_EQ(head("MatchVlanTagging", 16) + "      Tagging: untagged\n" FL,
            dumpOf(MatchVlanTagging(static_cast<vlan_tagging_t>(0))));
  EXPECT_EQ(head("MatchVlanTagging", 16) + "      Tagging: tagged\n" FL,
            dumpOf(MatchVlanTagging(static_cast<vlan_tagging_t>(5))));
  EXPECT_EQ(head("MatchVlanTagging", 16) + "      Tagging: tagged\n" FL,
            dumpOf(MatchVlanTagging(static_cast<vlan_tagging_t>(-1))));
}

TEST(AuditMatchDump, FlagsPrintAsDigits) {
  EXPECT_EQ(head("MatchMplsTerm", 19) + "      Mpls Terminated status: 0\n" FL,
            dumpOf(MatchMplsTerm(false)));
  EXPECT_EQ(
      head("MatchCPUInjectedPackets", 33) + "      Match Injected?: 0\n" FL,
      dumpOf(MatchCPUInjectedPackets(false)));
  EXPECT_EQ("    =MatchMyStationHit=\n" FL
            "      Match Type ID: 29\n"
            "      Match MyStationHit: 0\n",
            dumpOf(MatchMyStationHit(false)));
  EXPECT_EQ("    =MatchDrop=\n" FL
            "      Match Type ID: 28\n"
            "      Match Drop: 0\n",
            dumpOf(MatchDrop(false)));
  EXPECT_EQ(
      head("MatchL3SrcRouteHit", 36) + "      Match MatchL3SrcRouteHit: 0\n",
      dumpOf(MatchL3SrcRouteHit(false)));
}

TEST(AuditMatchDump, MacsPrintWithoutLeadingZeros) {
  EXPECT_EQ(head("MatchSrcMac", 7) + "      MAC: 0:0:0:0:0:0\n" FL
                                     "      Mask: 0:0:0:0:0:0\n" FL,
            dumpOf(MatchSrcMac(mac(std::string(6, '\0')),
                               mac(std::string(6, '\0')))));
}

TEST(AuditMatchDump, Ipv6PrintsAsInetNtopWritesIt) {
  EXPECT_EQ(
      head("MatchDstIPv6", 15) + "      IPv6: ::\n      Mask: ::ffff:0.0.0.0\n",
      dumpOf(MatchDstIPv6(ip6("::"), ip6("::ffff:0:0"))));
}

TEST(AuditMatchDump, DstMacThroughTheBaseInASequence) {
  Recorder r;
  MatchDstMac m(mac(kMacA));
  MatchAll all;
  r.os() << static_cast<Match const&>(m) << static_cast<Match const&>(all);
  EXPECT_EQ(head("MatchDstMac", 4) +
                "      MAC: 0:a:b:0:0:1\n" FL
                "      Mask: ff:ff:ff:ff:ff:ff\n" FL +
                head("MatchAll", 0) + "      <no parameters>\n" FL,
            r.text());
}

TEST(AuditMatchDump, FamilyOperatorsPrintOnlyTheParameterLines) {
  EXPECT_EQ("      Param1: 1\n" FL "      Param2: 2\n" FL,
            dumpOf(static_cast<MatchL4Port const&>(MatchSrcL4Port(1, 2))));
  EXPECT_EQ(
      "      Param1: 2000\n" FL "      Param2: 1000\n" FL,
      dumpOf(static_cast<MatchL4Port const&>(MatchDstL4PortRange(2000, 1000))));
  EXPECT_EQ("      LIMID: eth1\n" FL,
            dumpOf(static_cast<MatchLimId const&>(MatchSrcPort(kEth1))));
  EXPECT_EQ("      VLAN IDs: [ 3 ]\n" FL,
            dumpOf(static_cast<MatchVlanId const&>(
                MatchInternalVlanId(uint16_t{3}))));
  EXPECT_EQ("      MAC: 0:a:b:0:0:1\n" FL "      Mask: ff:ff:ff:0:0:0\n" FL,
            dumpOf(static_cast<MatchMac const&>(
                MatchDstMac(mac(kMacA), mac(kMaskA)))));
  EXPECT_EQ(
      "      IP: 1.2.3.4\n" FL "      Mask: 255.255.255.255\n" FL,
      dumpOf(static_cast<MatchIPv4 const&>(MatchDstIPv4(ip4("1.2.3.4")))));
  EXPECT_EQ(
      "      IPv6: ::1\n      Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff\n",
      dumpOf(static_cast<MatchIPv6 const&>(MatchSrcIPv6(ip6("::1")))));
  EXPECT_EQ("      Number of ports: 1\n" FL "      LIMIDs: \"lag3\" \n" FL,
            dumpOf(static_cast<MatchPorts const&>(
                MatchEgressPorts(std::list<limid_t>{kLag3}))));
}

TEST(AuditMatchDump, AMaskedSourceIPv6FamilyObjectPrintsAsTheSourceKind) {
  MatchIPv6 masked(FILTERS_MATCH_SRC_IPV6, ip6("2001:db8::"),
                   ip6("ffff:ffff::"));
  EXPECT_EQ(head("MatchSrcIPv6", 14) +
                "      IPv6: 2001:db8::\n      Mask: ffff:ffff::\n",
            dumpOf(static_cast<Match const&>(masked)));
  MatchPB pb;
  masked.convertToMatchPB(&pb);
  MatchSrcIPv6 back(ip6("::"));
  back.convertFromMatchPB(&pb);
  EXPECT_TRUE(static_cast<Match const&>(back) == masked);
}

// ---- C interface ----

using CMatchCase = audit::CConstructorCase<filtersMatch_t>;

TEST(AuditMatchC, EveryConstructorMakesItsKind) {
  limid_t const ports[] = {kEth1, kEth2};
  std::vector<CMatchCase> const cases = {
      {"newMatchAll", [] { return newMatchAll(); }, FILTERS_MATCH_ALL,
       head("MatchAll", 0) + "      <no parameters>\n" FL},
      {"newMatchIngressPorts", [&] { return newMatchIngressPorts(ports, 2); },
       FILTERS_MATCH_INGRESS_PORTS,
       head("MatchIngressPorts", 1) + "      Number of ports: 2\n" FL
                                      "      LIMIDs: \"eth1\" \"eth2\" \n" FL},
      {"newMatchEgressPorts", [&] { return newMatchEgressPorts(ports + 1, 1); },
       FILTERS_MATCH_EGRESS_PORTS,
       head("MatchEgressPorts", 22) + "      Number of ports: 1\n" FL
                                      "      LIMIDs: \"eth2\" \n" FL},
      {"newMatchExternalVlanId", [] { return newMatchExternalVlanId(10); },
       FILTERS_MATCH_EXTERNAL_VLAN_ID,
       head("MatchExternalVlanId", 2) + "      VLAN IDs: [ 10 ]\n" FL},
      {"newMatchInternalVlanId", [] { return newMatchInternalVlanId(11); },
       FILTERS_MATCH_INTERNAL_VLAN_ID,
       head("MatchInternalVlanId", 11) + "      VLAN IDs: [ 11 ]\n" FL},
      {"newMatchDstL4PortMask", [] { return newMatchDstL4PortMask(80, 0xF0); },
       FILTERS_MATCH_DST_L4_PORT,
       head("MatchDstL4Port", 5) + "      Param1: 80\n" FL
                                   "      Param2: 240\n" FL},
      {"newMatchSrcL4Port", [] { return newMatchSrcL4Port(22); },
       FILTERS_MATCH_SRC_L4_PORT,
       head("MatchSrcL4Port", 6) + "      Param1: 22\n" FL
                                   "      Param2: 65535\n" FL},
      {"newMatchSrcL4PortMask", [] { return newMatchSrcL4PortMask(22, 1); },
       FILTERS_MATCH_SRC_L4_PORT,
       head("MatchSrcL4Port", 6) + "      Param1: 22\n" FL
                                   "      Param2: 1\n" FL},
      {"newMatchDstMac", [] { return newMatchDstMac(mac(kMacA)); },
       FILTERS_MATCH_DST_MAC,
       head("MatchDstMac", 4) + "      MAC: 0:a:b:0:0:1\n" FL
                                "      Mask: ff:ff:ff:ff:ff:ff\n" FL},
      {"newMatchSrcMacMask",
       [] { return newMatchSrcMacMask(mac(kMacB), mac(kMaskA)); },
       FILTERS_MATCH_SRC_MAC,
       head("MatchSrcMac", 7) + "      MAC: 12:34:56:78:9a:bc\n" FL
                                "      Mask: ff:ff:ff:0:0:0\n" FL},
      {"newMatchSrcMac", [] { return newMatchSrcMac(mac(kMacB)); },
       FILTERS_MATCH_SRC_MAC,
       head("MatchSrcMac", 7) + "      MAC: 12:34:56:78:9a:bc\n" FL
                                "      Mask: ff:ff:ff:ff:ff:ff\n" FL},
      {"newMatchDstMacMask",
       [] { return newMatchDstMacMask(mac(kMacB), mac(kMaskA)); },
       FILTERS_MATCH_DST_MAC,
       head("MatchDstMac", 4) + "      MAC: 12:34:56:78:9a:bc\n" FL
                                "      Mask: ff:ff:ff:0:0:0\n" FL},
      {"newMatchSrcIPv4Mask",
       [] { return newMatchSrcIPv4Mask(ip4("1.2.3.0"), ip4("255.255.255.0")); },
       FILTERS_MATCH_SRC_IPV4,
       head("MatchSrcIPv4", 9) + "      IP: 1.2.3.0\n" FL
                                 "      Mask: 255.255.255.0\n" FL},
      {"newMatchDstIPv4", [] { return newMatchDstIPv4(ip4("4.3.2.1")); },
       FILTERS_MATCH_DST_IPV4,
       head("MatchDstIPv4", 10) + "      IP: 4.3.2.1\n" FL
                                  "      Mask: 255.255.255.255\n" FL},
      {"newMatchDstIPv4Mask",
       [] { return newMatchDstIPv4Mask(ip4("4.3.2.1"), ip4("255.0.0.0")); },
       FILTERS_MATCH_DST_IPV4,
       head("MatchDstIPv4", 10) + "      IP: 4.3.2.1\n" FL
                                  "      Mask: 255.0.0.0\n" FL},
      {"newMatchDstIPv6Mask",
       [] { return newMatchDstIPv6Mask(ip6("1::"), ip6("ffff::")); },
       FILTERS_MATCH_DST_IPV6,
       head("MatchDstIPv6", 15) + "      IPv6: 1::\n      Mask: ffff::\n"},
      {"newMatchPcp", [] { return newMatchPcp(2); }, FILTERS_MATCH_PCP,
       head("MatchPcp", 12) + "      PCPs: [ \x02 ]\n" FL},
      {"newMatchInternalPcp", [] { return newMatchInternalPcp(6); },
       FILTERS_MATCH_INTERNAL_PCP,
       head("MatchInternalPcp", 13) + "      PCPs: [ \x06 ]\n" FL},
      {"newMatchVlanTagging",
       [] { return newMatchVlanTagging(static_cast<vlan_tagging_t>(0)); },
       FILTERS_MATCH_VLAN_TAGGING,
       head("MatchVlanTagging", 16) + "      Tagging: untagged\n" FL},
      {"newMatchCpuPort", [] { return newMatchCpuPort(); },
       FILTERS_MATCH_CPU_PORT, head("MatchCpuPort", 30)},
      {"newMatchUnknownDestIp", [] { return newMatchUnknownDestIp(); },
       FILTERS_MATCH_UNKNOWN_DEST_IP, head("MatchUnknownDestIp", 38)},
      {"newMatchDSCP", [] { return newMatchDSCP(46); }, FILTERS_MATCH_TOS,
       head("MatchToS", 20) + "      ToS: 184\n" FL},
  };
  audit::expectCConstructors<Match>(cases, matchGetType, deleteMatch);
}

TEST(AuditMatchC, GettersReturnTheStoredValues) {
  void* dscp = newMatchDSCP(46);
  EXPECT_EQ(FILTERS_MATCH_TOS, matchGetType(dscp));
  EXPECT_EQ(46, matchDSCPGet(dscp));
  deleteMatch(dscp);

  void* empty = newMatchIngressPorts(nullptr, 0);
  EXPECT_TRUE(static_cast<MatchIngressPorts*>(static_cast<Match*>(empty))
                  ->getPorts()
                  .empty());
  deleteMatch(empty);

  void* port = newMatchDstL4Port(443);
  EXPECT_EQ(443, matchGetL4Port(port));
  EXPECT_EQ(0xFFFF, matchGetL4PortMask(port));
  deleteMatch(port);

  void* range = newMatchDstL4PortRange(10, 5);
  EXPECT_EQ(10, matchGetL4PortRangeMin(static_cast<MatchDstL4PortRange*>(
                    static_cast<Match*>(range))));
  EXPECT_EQ(5, matchGetL4PortRangeMax(static_cast<MatchDstL4PortRange*>(
                   static_cast<Match*>(range))));
  EXPECT_EQ(10, matchGetL4Port(range));
  EXPECT_EQ(5, matchGetL4PortMask(range));
  deleteMatch(range);

  void* tpid = newMatchTPID(0x9100);
  EXPECT_EQ(FILTERS_MATCH_TPID, matchGetType(tpid));
  EXPECT_EQ(0x9100,
            matchGetTPID(static_cast<MatchTPID*>(static_cast<Match*>(tpid))));
  deleteMatch(tpid);

  void* l2 = newMatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(2));
  EXPECT_EQ(FILTERS_MATCH_L2_SRC_ENTRY_TYPE, matchGetType(l2));
  EXPECT_EQ(2, matchGetL2SrcEntryType(
                   static_cast<MatchL2SrcEntryType*>(static_cast<Match*>(l2))));
  deleteMatch(l2);

  void* dmac = newMatchDstMacMask(mac(kMacA), mac(kMaskA));
  EXPECT_EQ(kMacA, bytesOf(*matchMacGetMac(dmac)));
  EXPECT_EQ(kMaskA, bytesOf(*matchMacGetMask(dmac)));
  deleteMatch(dmac);

  void* v4 = newMatchSrcIPv4(ip4("9.8.7.6"));
  EXPECT_EQ(FILTERS_MATCH_SRC_IPV4, matchGetType(v4));
  EXPECT_EQ(bytesOf(ip4("9.8.7.6")), bytesOf(*matchIPv4GetIPv4(v4)));
  EXPECT_EQ(std::string(4, '\xff'), bytesOf(*matchIPv4GetIPv4Mask(v4)));
  deleteMatch(v4);

  void* v6 = newMatchSrcIPv6(ip6("::2"));
  EXPECT_EQ(FILTERS_MATCH_SRC_IPV6, matchGetType(v6));
  EXPECT_EQ(bytesOf(ip6("::2")), bytesOf(*matchIPv6GetIPv6(v6)));
  EXPECT_EQ(std::string(16, '\xff'), bytesOf(*matchIPv6GetIPv6Mask(v6)));
  deleteMatch(v6);

  void* d6 = newMatchDstIPv6(ip6("::3"));
  EXPECT_EQ(FILTERS_MATCH_DST_IPV6, matchGetType(d6));
  EXPECT_EQ(std::string(16, '\xff'), bytesOf(*matchIPv6GetIPv6Mask(d6)));
  deleteMatch(d6);

  void* vp = newMatchVirtualPort(kVpws7);
  EXPECT_EQ(FILTERS_MATCH_VIRTUAL_PORT, matchGetType(vp));
  EXPECT_EQ(kVpws7, matchGetLimId(vp));
  deleteMatch(vp);
  void* sp = newMatchSrcPort(kLag3);
  EXPECT_EQ(FILTERS_MATCH_SRC_PORT, matchGetType(sp));
  EXPECT_EQ(kLag3, matchGetLimId(sp));
  deleteMatch(sp);

  void* proto = newMatchIpProtocol(17);
  EXPECT_EQ(FILTERS_MATCH_IP_PROTOCOL, matchGetType(proto));
  EXPECT_EQ(17, matchIpProtocolGetIpProt(proto));
  deleteMatch(proto);
  void* res = newMatchPacketRes(static_cast<en_Resolution>(5));
  EXPECT_EQ(FILTERS_MATCH_PACKET_RES, matchGetType(res));
  EXPECT_EQ(5, matchPacketResGet(res));
  deleteMatch(res);
  void* mpls = newMatchMplsTerm(true);
  EXPECT_EQ(FILTERS_MATCH_MPLS_TERM, matchGetType(mpls));
  EXPECT_TRUE(matchMplsTermGet(mpls));
  deleteMatch(mpls);
  void* ttl = newMatchTTL(200);
  EXPECT_EQ(FILTERS_MATCH_TTL, matchGetType(ttl));
  EXPECT_EQ(200, matchTTLGet(ttl));
  deleteMatch(ttl);
  void* stp = newMatchIngressStpState(static_cast<en_StpState>(3));
  EXPECT_EQ(FILTERS_MATCH_INGRESS_STP_STATE, matchGetType(stp));
  EXPECT_EQ(3, matchIngressStpStateGet(stp));
  deleteMatch(stp);
  void* info = newMatchVlanInfo(vlan_info_t{7, 8});
  EXPECT_EQ(FILTERS_MATCH_VLAN_INFO, matchGetType(info));
  EXPECT_EQ(7u, matchVlanInfoGet(info).svcVlanType);
  EXPECT_EQ(8u, matchVlanInfoGet(info).protoCpuVlanType);
  deleteMatch(info);
  void* vrf = newMatchVrfId(65535);
  EXPECT_EQ(FILTERS_MATCH_VRF_ID, matchGetType(vrf));
  EXPECT_EQ(65535, matchVrfIdGet(vrf));
  deleteMatch(vrf);
  void* drop = newMatchDrop(true);
  EXPECT_EQ(FILTERS_MATCH_DROP, matchGetType(drop));
  EXPECT_TRUE(matchDropGet(drop));
  deleteMatch(drop);
  void* inj = newMatchCPUInjectedPackets(true);
  EXPECT_EQ(FILTERS_MATCH_CPU_INJECTED_PACKETS, matchGetType(inj));
  EXPECT_TRUE(MatchCPUInjectedPacketsGet(inj));
  deleteMatch(inj);
  void* l2hit = newMatchL2DestHit(true);
  EXPECT_EQ(FILTERS_MATCH_L2_DEST_HIT, matchGetType(l2hit));
  EXPECT_TRUE(matchL2DestHitGet(l2hit));
  deleteMatch(l2hit);
  void* l3hit = newMatchL3SrcRouteHit(true);
  EXPECT_EQ(FILTERS_MATCH_L3_SRC_ROUTE_HIT, matchGetType(l3hit));
  EXPECT_TRUE(matchL3SrcRouteHitGet(l3hit));
  deleteMatch(l3hit);
  void* cls = newMatchVirtualPortClass(4000000000u);
  EXPECT_EQ(FILTERS_MATCH_VIRTUAL_PORT_CLASS, matchGetType(cls));
  EXPECT_EQ(4000000000u, matchVirtualPortClassGet(cls));
  deleteMatch(cls);
}

using AuditMatchCDeathTest = ::testing::Test;

TEST_F(AuditMatchCDeathTest, NullHandlesStopWithTheGuardAndSignature) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  struct Guard {
    std::function<void()> call;
    char const* signature;
  };
  std::vector<Guard> const guards = {
      {[] { matchGetType(nullptr); },
       "FiltersCommon::filtersMatch_t FiltersCommon::matchGetType(void*)"},
      {[] { deleteMatch(nullptr); }, "void FiltersCommon::deleteMatch(void*)"},
      {[] { matchGetLimId(nullptr); },
       "limid_t FiltersCommon::matchGetLimId(void*)"},
      {[] { matchMacGetMac(nullptr); },
       "const ether_addr* FiltersCommon::matchMacGetMac(void*)"},
      {[] { matchMacGetMask(nullptr); },
       "const ether_addr* FiltersCommon::matchMacGetMask(void*)"},
      {[] { matchGetTPID(nullptr); },
       "FiltersCommon::tpid_t "
       "FiltersCommon::matchGetTPID(FiltersCommon::MatchTPID*)"},
      {[] { matchGetL4Port(nullptr); },
       "FiltersCommon::l4port_t FiltersCommon::matchGetL4Port(void*)"},
      {[] { matchGetL4PortMask(nullptr); },
       "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortMask(void*)"},
      {[] { matchGetL4PortRangeMin(nullptr); },
       "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortRangeMin("
       "FiltersCommon::MatchDstL4PortRange*)"},
      {[] { matchGetL4PortRangeMax(nullptr); },
       "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortRangeMax("
       "FiltersCommon::MatchDstL4PortRange*)"},
      {[] { matchGetL2SrcEntryType(nullptr); },
       "FiltersCommon::l2SrcEntryType_t FiltersCommon::matchGetL2SrcEntryType("
       "FiltersCommon::MatchL2SrcEntryType*)"},
      {[] { matchIPv4GetIPv4(nullptr); },
       "const in_addr* FiltersCommon::matchIPv4GetIPv4(void*)"},
      {[] { matchIPv4GetIPv4Mask(nullptr); },
       "const in_addr* FiltersCommon::matchIPv4GetIPv4Mask(void*)"},
      {[] { matchIPv6GetIPv6(nullptr); },
       "const in6_addr* FiltersCommon::matchIPv6GetIPv6(void*)"},
      {[] { matchIPv6GetIPv6Mask(nullptr); },
       "const in6_addr* FiltersCommon::matchIPv6GetIPv6Mask(void*)"},
  };
  for (auto const& g : guards) {
    EXPECT_DEATH(g.call(), audit::assertionPattern("filter_matches_c",
                                                   g.signature, "m != nullptr"))
        << g.signature;
  }
}

}  // namespace
