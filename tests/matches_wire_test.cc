// Wire conversions of matches beyond the one-sample round trips: presence,
// appending versus emptying, truncation, absent fields and short bytes.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "filter_matches.pb.h"
#include "matches_test_support.h"

namespace {

using namespace matches_test;  // NOLINT

// Names of the fields present in `pb`, in field order.
std::vector<std::string> presentFields(MatchPB const& pb) {
  std::vector<google::protobuf::FieldDescriptor const*> fields;
  pb.GetReflection()->ListFields(pb, &fields);
  std::vector<std::string> names;
  for (auto const* field : fields) {
    names.push_back(field->name());
  }
  return names;
}

// `m` after reading `pb`.
template <class M>
M readBack(MatchPB const& pb, M m) {
  m.convertFromMatchPB(&pb);
  return m;
}

std::string bytes(std::initializer_list<unsigned char> values) {
  return std::string(values.begin(), values.end());
}

// ---- Base and parameterless kinds ----

TEST(MatchAll, WritesOnlyItsKindZero) {
  MatchPB pb;
  MatchAll().convertToMatchPB(&pb);
  EXPECT_EQ(presentFields(pb), std::vector<std::string>{"type_"});
  EXPECT_EQ(pb.type_(), 0u);
}

TEST(MatchAll, StaysUnchangedWhateverTheMessageHolds) {
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_TPID);
  pb.set_tpid_(0x8100);
  pb.add_ports_(eth(1));
  MatchAll m;
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(m.getType(), FILTERS_MATCH_ALL);
  EXPECT_TRUE(static_cast<Match const&>(m) == MatchAll());
}

TEST(MatchBase, ParameterlessKindsWriteOnlyTheirKindAndReadNothing) {
  MatchPB full;
  full.set_type_(FILTERS_MATCH_DROP);
  full.set_drop_flag_(true);
  full.set_hit_flag_(true);
  for (uint32_t type : {30u, 32u, 38u}) {
    std::unique_ptr<Match> const m = newNeutralMatch(type);
    MatchPB pb;
    m->convertToMatchPB(&pb);
    EXPECT_EQ(presentFields(pb), std::vector<std::string>{"type_"});
    EXPECT_EQ(pb.type_(), type);
    m->convertFromMatchPB(&full);
    EXPECT_EQ(static_cast<uint32_t>(m->getType()), type);
  }
}

TEST(MatchBase, ReadingNeverChangesTheKind) {
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_SRC_MAC);
  pb.set_tpid_(0x88a8);
  MatchTPID m(0x8100);
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(m.getType(), FILTERS_MATCH_TPID);
  EXPECT_EQ(m.getTPID(), 0x88a8);
}

// ---- Ports: appended in both directions ----

TEST(MatchPorts, WritingAppendsToPortsAlreadyInTheMessage) {
  MatchPB pb;
  pb.add_ports_(9);
  MatchIngressPorts const m(std::list<limid_t>{eth(1)});
  m.convertToMatchPB(&pb);
  m.convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<uint32_t>(pb.ports_().begin(), pb.ports_().end()),
            (std::vector<uint32_t>{9, eth(1), eth(1)}));
}

TEST(MatchPorts, ReadingAppendsToPortsAlreadyInTheMatch) {
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_EGRESS_PORTS);
  pb.add_ports_(eth(2));
  pb.add_ports_(eth(2));
  MatchEgressPorts m(std::list<limid_t>{eth(1)});
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(m.getPorts(), (std::list<limid_t>{eth(1), eth(2), eth(2)}));
}

TEST(MatchIngressPorts, ByExcludedTypesWritesNoPortsAndReadsBackEqual) {
  std::list<port_type_t> const types{CPU_PORT, static_cast<port_type_t>(7)};
  MatchIngressPorts const m(types);
  MatchPB pb;
  m.convertToMatchPB(&pb);
  EXPECT_EQ(pb.ports__size(), 0);
  ASSERT_EQ(pb.excluded_port_types__size(), 2);
  EXPECT_EQ(pb.excluded_port_types_(0), 0u);
  EXPECT_EQ(pb.excluded_port_types_(1), 7u);
  MatchIngressPorts fresh(std::list<limid_t>{});
  fresh.convertFromMatchPB(&pb);
  EXPECT_EQ(fresh.getExcludedPortTypes(), types);
  EXPECT_TRUE(fresh.getPorts().empty());
  EXPECT_TRUE(static_cast<Match const&>(fresh) == m);
}

// The wire can carry both lists; only the ingress kind reads the excluded
// types, and the egress kind never writes them.
TEST(MatchPorts, IngressReadsBothListsWhileEgressIgnoresExcludedTypes) {
  MatchPB pb;
  pb.add_excluded_port_types_(0);
  pb.add_ports_(eth(3));
  MatchIngressPorts const ingress =
      readBack(pb, MatchIngressPorts(std::list<limid_t>{}));
  EXPECT_EQ(ingress.getExcludedPortTypes(), std::list<port_type_t>{CPU_PORT});
  EXPECT_EQ(ingress.getPorts(), std::list<limid_t>{eth(3)});
  MatchEgressPorts const egress =
      readBack(pb, MatchEgressPorts(std::list<limid_t>{}));
  EXPECT_TRUE(egress.getExcludedPortTypes().empty());
  EXPECT_EQ(egress.getPorts(), std::list<limid_t>{eth(3)});
  MatchPB out;
  egress.convertToMatchPB(&out);
  EXPECT_EQ(presentFields(out), (std::vector<std::string>{"type_", "ports_"}));
}

TEST(MatchPorts, WritesEveryPortAsItsOwnTaggedVarint) {
  MatchPB pb;
  MatchIngressPorts(std::list<limid_t>{eth(1), eth(2)}).convertToMatchPB(&pb);
  EXPECT_EQ(pb.SerializeAsString(),
            bytes({0x08, 0x01, 0x10, 0x81, 0x80, 0x80, 0x08, 0x10, 0x82, 0x80,
                   0x80, 0x08}));
}

TEST(MatchPorts, SetPortsIsRefusedWhileExcludedTypesAreHeld) {
  MatchIngressPorts m(std::list<port_type_t>{CPU_PORT});
  EXPECT_EQ(m.setPorts({eth(1)}), FILTERS_ERR_REFUSED);
  EXPECT_TRUE(m.getPorts().empty());
  EXPECT_EQ(m.getExcludedPortTypes(), std::list<port_type_t>{CPU_PORT});
}

TEST(MatchPorts, SetPortsReplacesAPortList) {
  MatchIngressPorts m(std::list<limid_t>{eth(1)});
  EXPECT_EQ(m.setPorts({eth(2), eth(3)}), FILTERS_OK);
  EXPECT_EQ(m.getPorts(), (std::list<limid_t>{eth(2), eth(3)}));
  MatchEgressPorts egress(std::list<limid_t>{});
  EXPECT_EQ(egress.setPorts({eth(4), eth(4)}), FILTERS_OK);
  EXPECT_EQ(egress.getPorts(), (std::list<limid_t>{eth(4), eth(4)}));
}

// ---- Sets: emptied first in both directions ----

// Writing empties the field, then appends the values in ascending order;
// reading empties the set, then inserts the low bits of every value.
TEST(MatchVlanId, ConversionsEmptyFirstAndReadTheLow16Bits) {
  MatchPB pb;
  pb.add_vlan_id_(7);
  MatchExternalVlanId(std::set<uint16_t>{4095, 1}).convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<uint32_t>(pb.vlan_id_().begin(), pb.vlan_id_().end()),
            (std::vector<uint32_t>{1, 4095}));
  pb.add_vlan_id_(65537);
  pb.add_vlan_id_(3);
  EXPECT_EQ(readBack(pb, MatchInternalVlanId(uint16_t{5})).getVlanIds(),
            (std::set<uint16_t>{1, 3, 4095}));
}

TEST(MatchVlanId, KeepsIdsOutsideTheVlanRange) {
  MatchExternalVlanId const m(std::set<uint16_t>{0, 4096, 65535});
  EXPECT_EQ(m.getVlanIds(), (std::set<uint16_t>{0, 4096, 65535}));
}

TEST(MatchPcp, WritingAndReadingEmptyFirstAndKeepTheLow8Bits) {
  MatchPB pb;
  pb.add_pcp_(6);
  MatchPcp(std::set<uint8_t>{9, 2}).convertToMatchPB(&pb);
  EXPECT_EQ(std::vector<uint32_t>(pb.pcp_().begin(), pb.pcp_().end()),
            (std::vector<uint32_t>{2, 9}));
  pb.add_pcp_(0x103);
  EXPECT_EQ(readBack(pb, MatchInternalPcp(uint8_t{7})).getPcps(),
            (std::set<uint8_t>{2, 3, 9}));
}

// ---- Scalars: cut to their width, absent reads as zero ----

TEST(MatchBase, ScalarKindsKeepTheLowBitsOfTheirWireField) {
  MatchPB pb;
  pb.set_vrf_id_(70000);
  pb.set_tpid_(0x18100);
  pb.set_ipprotocol_(0x1FF);
  pb.set_ttl_(300);
  pb.set_tos_(0x1B9);
  pb.set_class_id_(0xFFFFFFFF);
  EXPECT_EQ(readBack(pb, MatchVrfId(1)).getVrfId(), 4464);
  EXPECT_EQ(readBack(pb, MatchTPID(0)).getTPID(), 0x8100);
  EXPECT_EQ(readBack(pb, MatchIpProtocol(0)).getIpProtocol(), 0xFF);
  EXPECT_EQ(readBack(pb, MatchTTL(0)).getTTL(), 44);
  EXPECT_EQ(readBack(pb, MatchToS(0)).getToS(), 0xB9);
  EXPECT_EQ(readBack(pb, MatchVirtualPortClass(0)).getMatchVirtualPortClass(),
            0xFFFFFFFFu);
}

TEST(MatchL4Port, ReadsTheLow16BitsAndAnAbsentMaskAsZero) {
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_DST_L4_PORT);
  pb.set_l4port_param1_(0x10050);
  MatchDstL4Port m(1, 2);
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(m.getPort(), 0x50);
  EXPECT_EQ(m.getMask(), 0);
  EXPECT_FALSE(static_cast<Match const&>(m) == MatchDstL4Port(0x50));
}

TEST(MatchBase, AbsentScalarFieldsReadAsZero) {
  MatchPB empty;
  empty.set_type_(FILTERS_MATCH_ALL);
  MatchTTL ttl(5);
  MatchDrop drop(true);
  MatchVlanInfo info(vlan_info_t{1, 2});
  MatchSrcPort port(eth(1));
  MatchL2SrcEntryType entry(L2_SRC_ENTRY_STATIC);
  MatchDstL4PortRange range(1, 2);
  for (Match* m :
       std::vector<Match*>{&ttl, &drop, &info, &port, &entry, &range}) {
    m->convertFromMatchPB(&empty);
  }
  EXPECT_EQ(ttl.getTTL(), 0);
  EXPECT_FALSE(drop.getDropFlag());
  EXPECT_EQ(info.getVlanInfo().svcVlanType, 0u);
  EXPECT_EQ(info.getVlanInfo().protoCpuVlanType, 0u);
  EXPECT_EQ(port.getLimId(), 0u);
  EXPECT_EQ(entry.getL2SrcEntryType(), 0);
  EXPECT_EQ(range.getMinPort(), 0);
  EXPECT_EQ(range.getMaxPort(), 0);
}

TEST(MatchBase, ValuesAreStoredUncheckedAndTheSettersReplaceThem) {
  MatchSrcPort port(eth(1));
  port.setSrcPort(lag(2));
  EXPECT_EQ(port.getLimId(), lag(2));
  MatchVrfId vrf(0);
  EXPECT_EQ(vrf.getVrfId(), 0);
  vrf.setVrfId(65535);
  EXPECT_EQ(vrf.getVrfId(), 65535);
  EXPECT_EQ(MatchTTL(0).getTTL(), 0);
  EXPECT_EQ(MatchPcp(uint8_t{200}).getPcps(), std::set<uint8_t>{200});
}

TEST(MatchL2DestHit, SharesTheHitFlagFieldWithMyStationHit) {
  MatchPB pb;
  MatchL2DestHit(true).convertToMatchPB(&pb);
  EXPECT_EQ(pb.type_(), 35u);
  EXPECT_TRUE(pb.has_hit_flag_());
  EXPECT_TRUE(pb.hit_flag_());
  MatchMyStationHit station(false);
  station.convertFromMatchPB(&pb);
  EXPECT_TRUE(station.getHitFlag());
  MatchL3SrcRouteHit route(false);
  route.convertFromMatchPB(&pb);
  EXPECT_TRUE(route.getMatchL3SrcRouteHit());
}

TEST(MatchDSCP, TravelsAsAnOrdinaryTosMatch) {
  MatchPB pb;
  MatchDSCP(46).convertToMatchPB(&pb);
  EXPECT_EQ(presentFields(pb), (std::vector<std::string>{"type_", "tos_"}));
  EXPECT_EQ(pb.type_(), 20u);
  EXPECT_EQ(pb.tos_(), 184u);
}

// ---- Addresses: raw bytes, defaults, short and long fields ----

TEST(MatchMac, DefaultsToTheFullMaskAndWritesRawBytes) {
  MatchDstMac const m(mac("00:0a:95:9d:68:16"));
  EXPECT_EQ(std::string(reinterpret_cast<char const*>(&m.getMask()), 6),
            bytes({0xff, 0xff, 0xff, 0xff, 0xff, 0xff}));
  EXPECT_TRUE(m ==
              MatchDstMac(mac("00:0a:95:9d:68:16"), mac("ff:ff:ff:ff:ff:ff")));
  MatchPB pb;
  m.convertToMatchPB(&pb);
  EXPECT_EQ(pb.mac_(), bytes({0x00, 0x0a, 0x95, 0x9d, 0x68, 0x16}));
  EXPECT_EQ(pb.mac_mask_(), bytes({0xff, 0xff, 0xff, 0xff, 0xff, 0xff}));
}

TEST(MatchIPv4, DefaultsToTheFullMaskAndWritesNetworkOrderBytes) {
  MatchSrcIPv4 const m(ipv4("10.1.2.3"));
  EXPECT_EQ(m.getIPv4Mask().s_addr, ipv4("255.255.255.255").s_addr);
  MatchPB pb;
  m.convertToMatchPB(&pb);
  EXPECT_EQ(pb.ipv4_(), bytes({10, 1, 2, 3}));
  EXPECT_EQ(pb.ipv4_mask_(), bytes({0xff, 0xff, 0xff, 0xff}));
}

TEST(MatchIPv6, DefaultsToSixteenFullMaskBytes) {
  MatchDstIPv6 const m(ipv6("2001:db8::1"));
  MatchPB pb;
  m.convertToMatchPB(&pb);
  EXPECT_EQ(pb.ipv6_mask_(), std::string(16, '\xff'));
  EXPECT_EQ(pb.ipv6_(), bytes({0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0,
                               0, 0, 0, 1}));
}

TEST(MatchMac, ShortFieldsAreZeroFilledAndLongOnesCut) {
  MatchPB pb;
  pb.set_type_(FILTERS_MATCH_SRC_MAC);
  pb.set_mac_(bytes({1, 2, 3}));
  pb.set_mac_mask_(bytes({9, 8, 7, 6, 5, 4, 3, 2}));
  MatchSrcMac m(mac("ff:ff:ff:ff:ff:ff"));
  m.convertFromMatchPB(&pb);
  EXPECT_TRUE(m ==
              MatchSrcMac(mac("01:02:03:00:00:00"), mac("09:08:07:06:05:04")));
}

TEST(MatchIPv4, ShortAndAbsentFieldsAreZeroFilled) {
  MatchPB pb;
  pb.set_ipv4_(bytes({192, 168}));
  MatchDstIPv4 m(ipv4("1.2.3.4"));
  m.convertFromMatchPB(&pb);
  EXPECT_EQ(m.getIPv4().s_addr, ipv4("192.168.0.0").s_addr);
  EXPECT_EQ(m.getIPv4Mask().s_addr, 0u);
}

TEST(MatchIPv6, ShortFieldsAreZeroFilled) {
  MatchPB pb;
  pb.set_ipv6_(bytes({0xfe, 0x80, 0, 0, 0}));
  pb.set_ipv6_mask_(std::string(20, '\xff'));
  MatchSrcIPv6 m(ipv6("::1"));
  m.convertFromMatchPB(&pb);
  EXPECT_TRUE(m == MatchSrcIPv6(ipv6("fe80::")));
}

// ---- Accessors of the layer-4 leaves ----

TEST(MatchL4Port, LeavesNameTheTwoParameters) {
  MatchSrcL4Port const src(443, 0xFF00);
  EXPECT_EQ(src.getPort(), 443);
  EXPECT_EQ(src.getMask(), 0xFF00);
  EXPECT_EQ(src.getParam1(), 443);
  EXPECT_EQ(MatchSrcL4Port(443).getMask(), 0xFFFF);
  EXPECT_EQ(MatchDstL4Port(80).getMask(), 0xFFFF);
  MatchDstL4PortRange const range(2000, 1000);
  EXPECT_EQ(range.getMinPort(), 2000);
  EXPECT_EQ(range.getMaxPort(), 1000);
  EXPECT_EQ(range.getParam2(), 1000);
}

}  // namespace
