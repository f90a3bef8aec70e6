// Every match class, one sample each (and a few second samples): its exact
// wire message, its round trip through the class the wire kind names, and
// its exact dump with the line ends it flushes.
#include <functional>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "filter_matches.pb.h"
#include "matches_test_support.h"

namespace {

using namespace matches_test;  // NOLINT

// Builds one sample object, and prints one through the operator<< of its
// own static class.
struct Maker {
  std::function<std::unique_ptr<Match>()> make;
  std::function<Dumped()> dumpOwn;
};

template <class T, class... Args>
Maker make(Args... args) {
  return {[=] { return std::make_unique<T>(args...); },
          [=] { return dump(T(args...)); }};
}

struct Sample {
  std::string name;
  Maker object;
  // MatchPB::ShortDebugString(): only present fields, in field order.
  std::string wire;
  // The block printed through the class's own operator<<, and through the
  // base operator unless baseDump says otherwise.
  std::string dump;
  // 'F' for each line that ends with a flush, 'B' for a bare one.
  std::string lineEnds;
  std::string baseDump = "";
};

// Test names and failure messages show a sample by its name.
void PrintTo(Sample const& sample, std::ostream* os) { *os << sample.name; }

std::string head(char const* name, int type) {
  return std::string("    =") + name +
         "=\n      Match Type ID: " + std::to_string(type) + "\n";
}

// clang-format off
std::vector<Sample> const kSamples = {
  {"MatchAll", make<MatchAll>(), "type_: 0",
   head("MatchAll", 0) + "      <no parameters>\n", "FFF"},
  {"MatchIngressPorts", make<MatchIngressPorts>(std::list<limid_t>{eth(1), eth(2)}),
   "type_: 1 ports_: 16777217 ports_: 16777218",
   head("MatchIngressPorts", 1) +
       "      Number of ports: 2\n      LIMIDs: \"eth1\" \"eth2\" \n", "FFFF"},
  {"MatchIngressPortsByExcludedTypes",
   make<MatchIngressPorts>(std::list<port_type_t>{CPU_PORT, static_cast<port_type_t>(7)}),
   "type_: 1 excluded_port_types_: 0 excluded_port_types_: 7",
   head("MatchIngressPorts", 1) +
       "      Excluded Port Types: \"CPU_PORT\" \"\" \n", "FFF"},
  {"MatchExternalVlanId", make<MatchExternalVlanId>(std::set<uint16_t>{4095, 1}),
   "type_: 2 vlan_id_: 1 vlan_id_: 4095",
   head("MatchExternalVlanId", 2) + "      VLAN IDs: [ 1 4095 ]\n", "FFF"},
  {"MatchTPID", make<MatchTPID>(0x8100), "type_: 3 tpid_: 33024",
   head("MatchTPID", 3) + "      TPID: 0x8100\n", "FFF"},
  {"MatchDstMac", make<MatchDstMac>(mac("00:0a:95:9d:68:16"), mac("ff:ff:ff:00:00:00")),
   R"(type_: 4 mac_: "\000\n\225\235h\026" mac_mask_: "\377\377\377\000\000\000")",
   head("MatchDstMac", 4) +
       "      MAC: 0:a:95:9d:68:16\n      Mask: ff:ff:ff:0:0:0\n", "FFFF"},
  {"MatchDstL4Port", make<MatchDstL4Port>(80),
   "type_: 5 l4port_param1_: 80 l4port_param2_: 65535",
   head("MatchDstL4Port", 5) + "      Param1: 80\n      Param2: 65535\n", "FFFF"},
  {"MatchSrcL4Port", make<MatchSrcL4Port>(1024, 0xFC00),
   "type_: 6 l4port_param1_: 1024 l4port_param2_: 64512",
   head("MatchSrcL4Port", 6) + "      Param1: 1024\n      Param2: 64512\n", "FFFF"},
  {"MatchSrcMac", make<MatchSrcMac>(mac("02:42:ac:11:00:02")),
   R"(type_: 7 mac_: "\002B\254\021\000\002" mac_mask_: "\377\377\377\377\377\377")",
   head("MatchSrcMac", 7) +
       "      MAC: 2:42:ac:11:0:2\n      Mask: ff:ff:ff:ff:ff:ff\n", "FFFF"},
  {"MatchL2SrcEntryType", make<MatchL2SrcEntryType>(static_cast<l2SrcEntryType_t>(-2)),
   "type_: 8 l2_src_: 4294967294",
   head("MatchL2SrcEntryType", 8) + "      L2 Src Entry Type: -2\n", "FFF"},
  {"MatchSrcIPv4", make<MatchSrcIPv4>(ipv4("192.168.1.0"), ipv4("255.255.255.0")),
   R"(type_: 9 ipv4_: "\300\250\001\000" ipv4_mask_: "\377\377\377\000")",
   head("MatchSrcIPv4", 9) + "      IP: 192.168.1.0\n      Mask: 255.255.255.0\n", "FFFF"},
  {"MatchDstIPv4", make<MatchDstIPv4>(ipv4("10.0.0.1")),
   R"(type_: 10 ipv4_: "\n\000\000\001" ipv4_mask_: "\377\377\377\377")",
   head("MatchDstIPv4", 10) + "      IP: 10.0.0.1\n      Mask: 255.255.255.255\n", "FFFF"},
  {"MatchInternalVlanId", make<MatchInternalVlanId>(uint16_t{100}),
   "type_: 11 vlan_id_: 100",
   head("MatchInternalVlanId", 11) + "      VLAN IDs: [ 100 ]\n", "FFF"},
  {"MatchPcp", make<MatchPcp>(std::set<uint8_t>{5, 3}), "type_: 12 pcp_: 3 pcp_: 5",
   head("MatchPcp", 12) + "      PCPs: [ \x03 \x05 ]\n", "FFF"},
  {"MatchInternalPcp", make<MatchInternalPcp>(uint8_t{7}), "type_: 13 pcp_: 7",
   head("MatchInternalPcp", 13) + "      PCPs: [ \x07 ]\n", "FFF"},
  {"MatchSrcIPv6", make<MatchSrcIPv6>(ipv6("2001:db8::1")),
   R"(type_: 14 ipv6_: " \001\r\270\000\000\000\000\000\000\000\000\000\000\000\001" )"
   R"(ipv6_mask_: "\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377\377")",
   head("MatchSrcIPv6", 14) +
       "      IPv6: 2001:db8::1\n      Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff\n",
   "FFBB"},
  {"MatchDstIPv6", make<MatchDstIPv6>(ipv6("fe80::1"), ipv6("ffff:ffff:ffff:ffff::")),
   R"(type_: 15 ipv6_: "\376\200\000\000\000\000\000\000\000\000\000\000\000\000\000\001" )"
   R"(ipv6_mask_: "\377\377\377\377\377\377\377\377\000\000\000\000\000\000\000\000")",
   head("MatchDstIPv6", 15) + "      IPv6: fe80::1\n      Mask: ffff:ffff:ffff:ffff::\n",
   "FFBB"},
  {"MatchVlanTagging", make<MatchVlanTagging>(VLAN_TAGGING_UNTAGGED),
   "type_: 16 vlan_tagging_: 0",
   head("MatchVlanTagging", 16) + "      Tagging: untagged\n", "FFF"},
  {"MatchVlanTaggingAnyOtherValue", make<MatchVlanTagging>(static_cast<vlan_tagging_t>(5)),
   "type_: 16 vlan_tagging_: 5",
   head("MatchVlanTagging", 16) + "      Tagging: tagged\n", "FFF"},
  {"MatchIpProtocol", make<MatchIpProtocol>(uint8_t{6}), "type_: 17 ipprotocol_: 6",
   head("MatchIpProtocol", 17) + "      Ip Protocol: 6\n", "FFF"},
  {"MatchPacketRes", make<MatchPacketRes>(static_cast<en_Resolution>(-1)),
   "type_: 18 packet_resolution_: 4294967295",
   head("MatchPacketRes", 18) + "      Pkt Resolution: -1\n", "FFF"},
  {"MatchMplsTerm", make<MatchMplsTerm>(true), "type_: 19 mpls_terminated_: true",
   head("MatchMplsTerm", 19) + "      Mpls Terminated status: 1\n", "FFF"},
  {"MatchToS", make<MatchToS>(uint8_t{185}), "type_: 20 tos_: 185",
   head("MatchToS", 20) + "      ToS: 185\n", "FFF"},
  {"MatchDSCP", make<MatchDSCP>(uint8_t{46}), "type_: 20 tos_: 184",
   head("MatchDSCP", 20) + "      DSCP: 46\n", "FFF",
   head("MatchToS", 20) + "      ToS: 184\n"},
  {"MatchVirtualPort", make<MatchVirtualPort>(lag(3)), "type_: 21 limid_: 33554435",
   head("MatchVirtualPort", 21) + "      LIMID: lag3\n", "FFF"},
  {"MatchEgressPorts", make<MatchEgressPorts>(std::list<limid_t>{eth(5)}),
   "type_: 22 ports_: 16777221",
   head("MatchEgressPorts", 22) +
       "      Number of ports: 1\n      LIMIDs: \"eth5\" \n", "FFFF"},
  {"MatchIngressStpState", make<MatchIngressStpState>(static_cast<en_StpState>(-1)),
   "type_: 23 ingress_stp_state_: 4294967295",
   head("MatchIngressStpState", 23) + "      IngressStpState: 4294967295\n", "FFF"},
  {"MatchVlanInfo", make<MatchVlanInfo>(vlan_info_t{1, 2}),
   "type_: 24 vlan_info_svc_vlan_type_: 1 vlan_info_proto_cpu_vlan_type_: 2",
   head("MatchVlanInfo", 24) +
       "      SVC VLAN Type: 1\n      Protocol2CPU VLAN Type: 2\n", "FFFF"},
  {"MatchSrcPort", make<MatchSrcPort>(eth(7)), "type_: 25 limid_: 16777223",
   head("MatchSrcPort", 25) + "      LIMID: eth7\n", "FFF"},
  {"MatchTTL", make<MatchTTL>(uint8_t{64}), "type_: 26 ttl_: 64",
   head("MatchTTL", 26) + "      TTL: 64\n", "FFF"},
  {"MatchVrfId", make<MatchVrfId>(uint16_t{1000}), "type_: 27 vrf_id_: 1000",
   head("MatchVrfId", 27) + "      Match VRF ID: 1000\n", "BBB"},
  {"MatchDrop", make<MatchDrop>(true), "type_: 28 drop_flag_: true",
   head("MatchDrop", 28) + "      Match Drop: 1\n", "FBB"},
  {"MatchMyStationHit", make<MatchMyStationHit>(false), "type_: 29 hit_flag_: false",
   head("MatchMyStationHit", 29) + "      Match MyStationHit: 0\n", "FBB"},
  {"MatchCpuPort", make<MatchCpuPort>(), "type_: 30", head("MatchCpuPort", 30), "FF"},
  {"MatchForwardingType", make<MatchForwardingType>(static_cast<en_ForwardingType>(-7)),
   "type_: 31 fwd_type_: 4294967289",
   head("MatchForwardingType", 31) + "      Forwarding Type: -7\n", "FFF"},
  {"MatchDestinationCpu", make<MatchDestinationCpu>(), "type_: 32",
   head("MatchDestinationCpu", 32), "FF"},
  {"MatchCPUInjectedPackets", make<MatchCPUInjectedPackets>(true),
   "type_: 33 injected_flag_: true",
   head("MatchCPUInjectedPackets", 33) + "      Match Injected?: 1\n", "FFF"},
  {"MatchDstL4PortRange", make<MatchDstL4PortRange>(2000, 1000),
   "type_: 34 l4port_param1_: 2000 l4port_param2_: 1000",
   head("MatchDstL4PortRange", 34) + "      Min Port: 2000\n      Max Port: 1000\n", "FFFF"},
  {"MatchL2DestHit", make<MatchL2DestHit>(true), "type_: 35 hit_flag_: true",
   head("MatchL2DestHit", 35) + "      Match MatchL2DestHit: 1\n", "FFB"},
  {"MatchL3SrcRouteHit", make<MatchL3SrcRouteHit>(true), "type_: 36 hit_flag_: true",
   head("MatchL3SrcRouteHit", 36) + "      Match MatchL3SrcRouteHit: 1\n", "FFB"},
  {"MatchVirtualPortClass", make<MatchVirtualPortClass>(0xFFFFFFFFu),
   "type_: 37 class_id_: 4294967295",
   head("MatchVirtualPortClass", 37) + "      Match  MatchVirtualPortClass: 4294967295\n",
   "FFB"},
  {"MatchUnknownDestIp", make<MatchUnknownDestIp>(), "type_: 38",
   head("MatchUnknownDestIp", 38), "FF"},
};
// clang-format on

class EveryMatchClass : public ::testing::TestWithParam<Sample> {};

TEST_P(EveryMatchClass, WritesExactlyItsWireFields) {
  std::unique_ptr<Match> const m = GetParam().object.make();
  MatchPB pb;
  m->convertToMatchPB(&pb);
  EXPECT_EQ(pb.ShortDebugString(), GetParam().wire);
  EXPECT_TRUE(pb.IsInitialized());
}

TEST_P(EveryMatchClass, RoundTripsThroughTheClassItsWireKindNames) {
  std::unique_ptr<Match> const original = GetParam().object.make();
  MatchPB pb;
  original->convertToMatchPB(&pb);
  // Through bytes, as another process would receive it.
  MatchPB received;
  ASSERT_TRUE(received.ParseFromString(pb.SerializeAsString()));
  std::unique_ptr<Match> fresh = newNeutralMatch(received.type_());
  ASSERT_NE(fresh, nullptr);
  fresh->convertFromMatchPB(&received);
  EXPECT_EQ(fresh->getType(), original->getType());
  EXPECT_TRUE(*fresh == *original);
  EXPECT_TRUE(*original == *fresh);
  MatchPB again;
  fresh->convertToMatchPB(&again);
  EXPECT_EQ(again.ShortDebugString(), GetParam().wire);
}

TEST_P(EveryMatchClass, EqualsItselfAndItsCopyThroughTheBase) {
  std::unique_ptr<Match> const m = GetParam().object.make();
  std::unique_ptr<Match> const other = GetParam().object.make();
  Match const& self = *m;
  EXPECT_TRUE(self == self);
  EXPECT_TRUE(*m == *other);
}

TEST_P(EveryMatchClass, DiffersFromEveryOtherKindThroughTheBase) {
  std::unique_ptr<Match> const m = GetParam().object.make();
  for (uint32_t type = 0; type <= FILTERS_MATCH_LAST; ++type) {
    if (type == static_cast<uint32_t>(m->getType())) {
      continue;
    }
    std::unique_ptr<Match> const other = newNeutralMatch(type);
    EXPECT_FALSE(*m == *other) << "kind " << type;
    EXPECT_FALSE(*other == *m) << "kind " << type;
  }
}

TEST_P(EveryMatchClass, DumpsItsExactBlockThroughItsOwnOperator) {
  Dumped const own = GetParam().object.dumpOwn();
  EXPECT_EQ(own.text, GetParam().dump);
  EXPECT_EQ(own.lineEnds, GetParam().lineEnds);
}

TEST_P(EveryMatchClass, DumpsThroughTheBaseAsTheClassOwningItsKind) {
  std::unique_ptr<Match> const m = GetParam().object.make();
  Dumped const through_base = dump(*m);
  if (GetParam().baseDump.empty()) {
    EXPECT_EQ(through_base.text, GetParam().dump);
    EXPECT_EQ(through_base.lineEnds, GetParam().lineEnds);
  } else {
    EXPECT_EQ(through_base.text, GetParam().baseDump);
  }
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryMatchClass,
                         ::testing::ValuesIn(kSamples),
                         [](auto const& info) { return info.param.name; });

TEST(MatchCatalogue, SamplesCoverEveryClass) {
  std::set<std::string> headers;
  for (Sample const& sample : kSamples) {
    std::string const text = sample.object.dumpOwn().text;
    headers.insert(text.substr(0, text.find('\n')));
  }
  // 39 kinds plus MatchDSCP.
  EXPECT_EQ(headers.size(), 40u);
}

}  // namespace
