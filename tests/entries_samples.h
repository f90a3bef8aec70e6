// Values and entries shared by the entry tests: addresses and interface
// identifiers, policers, and entries that between them hold every match kind
// and every action kind with non-default values.
#ifndef FILTERSCOMMON_TESTS_ENTRIES_SAMPLES_H_
#define FILTERSCOMMON_TESTS_ENTRIES_SAMPLES_H_

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <set>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace entries_test {

inline ether_addr Mac(uint8_t last) {
  ether_addr mac{};
  const uint8_t octets[6] = {0x02, 0x11, 0x22, 0x33, 0x44, last};
  for (int i = 0; i < 6; ++i) mac.ether_addr_octet[i] = octets[i];
  return mac;
}

inline in_addr Ip4(const char* text) {
  in_addr a{};
  EXPECT_EQ(inet_pton(AF_INET, text, &a), 1) << text;
  return a;
}

inline in6_addr Ip6(const char* text) {
  in6_addr a{};
  EXPECT_EQ(inet_pton(AF_INET6, text, &a), 1) << text;
  return a;
}

inline limid_t Eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}

// A single-rate ingress policer dropping red packets.
inline policer::Policer IngressPolicer(uint32_t id) {
  return policer::Policer(id, policer::STAGE_INGRESS,
                          policer::Mode::SrTcm(1000, 2000, 3000),
                          {policer::Action::Drop(policer::COLOR_RED)});
}

// A two-rate egress policer rewriting yellow and green packets.
inline policer::Policer EgressPolicer(uint32_t id) {
  return policer::Policer(id, policer::STAGE_EGRESS,
                          policer::Mode::TrTcm(10, 20, 30, 40),
                          {policer::Action::SetPcp(policer::COLOR_YELLOW, 5),
                           policer::Action::SetDscp(policer::COLOR_GREEN, 46)});
}

// Stores `value` through the entry's typed setter and expects it admitted.
template <class T>
void Put(FiltersCommon::FiltersEntry& entry, const T& value) {
  if constexpr (std::is_base_of_v<FiltersCommon::Match, T>) {
    EXPECT_EQ(entry.setMatch(value), FiltersCommon::FILTERS_OK)
        << "match kind " << value.getType();
  } else {
    EXPECT_EQ(entry.setAction(value), FiltersCommon::FILTERS_OK)
        << "action kind " << value.getType();
  }
}

// Counters, an own policer and a parent, so that round trips cover them.
inline void AddCountersAndPolicers(FiltersCommon::FiltersEntry& e) {
  using FiltersCommon::Counter;
  EXPECT_EQ(e.setCounter(Counter(9, FiltersCommon::COUNTER_TYPE_OCTETS)), 0);
  EXPECT_EQ(e.setCounter(Counter(2, FiltersCommon::COUNTER_TYPE_PACKETS)), 0);
  EXPECT_EQ(
      e.setCounter(Counter(700, FiltersCommon::COUNTER_TYPE_NOT_GREEN_OCTETS)),
      0);
  e.setPolicer(IngressPolicer(3));
  e.setPolicerParent(EgressPolicer(4));
}

// Every match kind that may stand beside the IPv4 address and single
// destination port kinds: all but 14, 15 and 34.
inline FiltersCommon::FiltersEntry EntryWithIpv4Matches() {
  using namespace FiltersCommon;
  FiltersEntry e(11);
  e.setPriority(500);
  Put(e, MatchAll());
  Put(e, MatchIngressPorts(std::list<limid_t>{Eth(1), Eth(7), Eth(1)}));
  Put(e, MatchExternalVlanId(std::set<uint16_t>{10, 4095}));
  Put(e, MatchTPID(0x88A8));
  Put(e, MatchDstMac(Mac(0xAA), Mac(0xF0)));
  Put(e, MatchDstL4Port(443, 0xFFF0));
  Put(e, MatchSrcL4Port(1024));
  Put(e, MatchSrcMac(Mac(0xBB)));
  Put(e, MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(2)));
  Put(e, MatchSrcIPv4(Ip4("10.1.2.3"), Ip4("255.255.0.0")));
  Put(e, MatchDstIPv4(Ip4("192.168.7.9")));
  Put(e, MatchInternalVlanId(std::set<uint16_t>{300}));
  Put(e, MatchPcp(std::set<uint8_t>{1, 5}));
  Put(e, MatchInternalPcp(static_cast<uint8_t>(6)));
  Put(e, MatchVlanTagging(static_cast<vlan_tagging_t>(1)));
  Put(e, MatchIpProtocol(17));
  Put(e, MatchPacketRes(static_cast<en_Resolution>(3)));
  Put(e, MatchMplsTerm(true));
  Put(e, MatchToS(0xB9));
  Put(e, MatchVirtualPort(limid_make(limid_type_mpls_vpws, 12)));
  Put(e, MatchEgressPorts(std::list<limid_t>{Eth(3), Eth(2)}));
  Put(e, MatchIngressStpState(static_cast<en_StpState>(2)));
  Put(e, MatchVlanInfo(vlan_info_t{7, 9}));
  Put(e, MatchSrcPort(Eth(21)));
  Put(e, MatchTTL(64));
  Put(e, MatchVrfId(4464));
  Put(e, MatchDrop(true));
  Put(e, MatchMyStationHit(true));
  Put(e, MatchCpuPort());
  Put(e, MatchForwardingType(static_cast<en_ForwardingType>(1)));
  Put(e, MatchDestinationCpu());
  Put(e, MatchCPUInjectedPackets(true));
  Put(e, MatchL2DestHit(true));
  Put(e, MatchL3SrcRouteHit(true));
  Put(e, MatchVirtualPortClass(123456789));
  Put(e, MatchUnknownDestIp());
  AddCountersAndPolicers(e);
  return e;
}

// The kinds left out above: the IPv6 addresses and the destination port
// range, with a DSCP match in the ToS slot and port types excluded.
inline FiltersCommon::FiltersEntry EntryWithIpv6Matches() {
  using namespace FiltersCommon;
  FiltersEntry e(12);
  e.setPriority(7);
  Put(e, MatchSrcIPv6(Ip6("2001:db8::1")));
  Put(e, MatchDstIPv6(Ip6("2001:db8::2"), Ip6("ffff:ffff::")));
  Put(e, MatchDstL4PortRange(1000, 2000));
  Put(e, MatchDSCP(46));
  Put(e, MatchIngressPorts(std::list<port_type_t>{CPU_PORT}));
  AddCountersAndPolicers(e);
  return e;
}

// One action of every kind.
inline FiltersCommon::FiltersEntry EntryWithAllActions() {
  using namespace FiltersCommon;
  FiltersEntry e(13);
  e.setPriority(1);
  Put(e, ActionPermit());
  Put(e, ActionDeny());
  Put(e, ActionCopyToCpu());
  Put(e, ActionBlockEgressPorts(std::list<limid_t>{Eth(5), Eth(4)}));
  Put(e, ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL));
  Put(e, ActionSetPcp(3));
  Put(e, ActionSetPcpAndQueue(0x35));
  Put(e, ActionSetInnerPcp(6));
  Put(e, ActionSetDSCP(46));
  Put(e, ActionMapToCosQueue(2));
  Put(e, ActionMapToCpuCosQueue(7));
  Put(e, ActionRedirect(limid_make(limid_type_lag, 3)));
  Put(e, ActionReplaceDstMac(Mac(0x01)));
  Put(e, ActionRedirectCancel());
  Put(e, ActionReplaceSrcMac(Mac(0x02)));
  Put(e, ActionL3Switch(100000));
  Put(e, ActionBlackHole());
  Put(e, ActionCopyInnerPcp());
  Put(e, ActionMplsPortSet(limid_make(limid_type_mpls_vpws, 8), Eth(9)));
  Put(e, ActionL2ToCpuDrop());
  Put(e, ActionDoNotLearnMac());
  AddCountersAndPolicers(e);
  return e;
}

}  // namespace entries_test

#endif  // FILTERSCOMMON_TESTS_ENTRIES_SAMPLES_H_
