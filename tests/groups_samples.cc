#include "groups_samples.h"

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cstdint>
#include <cstdlib>
#include <list>
#include <set>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_matches.h"
#include "limid/limid.h"

namespace groups_test {
namespace {

using namespace FiltersCommon;

ether_addr Mac(uint8_t last) {
  ether_addr mac = {{0x00, 0x11, 0x22, 0x33, 0x44, last}};
  return mac;
}

in_addr Ipv4(const char* text) {
  in_addr address{};
  inet_pton(AF_INET, text, &address);
  return address;
}

in6_addr Ipv6(const char* text) {
  in6_addr address{};
  inet_pton(AF_INET6, text, &address);
  return address;
}

limid_t Eth(uint32_t index) { return limid_make(limid_type_ethernet, index); }

template <class T>
KindSample OfMatch(const char* name, int kind, const T& sample) {
  return {name, kind,
          [sample](FiltersEntry* entry) { return entry->setMatch(sample); }};
}

template <class T>
KindSample OfAction(const char* name, int kind, const T& sample) {
  return {name, kind,
          [sample](FiltersEntry* entry) { return entry->setAction(sample); }};
}

const KindSample& Find(const std::vector<KindSample>& samples,
                       const std::string& name) {
  for (const KindSample& sample : samples) {
    if (sample.name == name) return sample;
  }
  std::abort();
}

}  // namespace

const std::vector<KindSample>& MatchSamples() {
  static const std::vector<KindSample> samples = {
      OfMatch("MatchAll", 0, MatchAll()),
      OfMatch("MatchIngressPorts", 1,
              MatchIngressPorts(std::list<limid_t>{Eth(1), Eth(2)})),
      OfMatch("MatchExternalVlanId", 2, MatchExternalVlanId(uint16_t{10})),
      OfMatch("MatchTPID", 3, MatchTPID(0x8100)),
      OfMatch("MatchDstMac", 4, MatchDstMac(Mac(1))),
      OfMatch("MatchDstL4Port", 5, MatchDstL4Port(80)),
      OfMatch("MatchSrcL4Port", 6, MatchSrcL4Port(1024, 0xFF00)),
      OfMatch("MatchSrcMac", 7, MatchSrcMac(Mac(2), Mac(0xF0))),
      OfMatch("MatchL2SrcEntryType", 8,
              MatchL2SrcEntryType(L2_SRC_ENTRY_STATIC)),
      OfMatch("MatchSrcIPv4", 9, MatchSrcIPv4(Ipv4("10.0.0.1"))),
      OfMatch("MatchDstIPv4", 10,
              MatchDstIPv4(Ipv4("10.1.0.0"), Ipv4("255.255.0.0"))),
      OfMatch("MatchInternalVlanId", 11,
              MatchInternalVlanId(std::set<uint16_t>{20, 30})),
      OfMatch("MatchPcp", 12, MatchPcp(uint8_t{3})),
      OfMatch("MatchInternalPcp", 13,
              MatchInternalPcp(std::set<uint8_t>{1, 5})),
      OfMatch("MatchSrcIPv6", 14, MatchSrcIPv6(Ipv6("2001:db8::1"))),
      OfMatch("MatchDstIPv6", 15, MatchDstIPv6(Ipv6("2001:db8::2"))),
      OfMatch("MatchVlanTagging", 16,
              MatchVlanTagging(VLAN_TAGGING_SINGLE_TAGGED)),
      OfMatch("MatchIpProtocol", 17, MatchIpProtocol(6)),
      OfMatch("MatchPacketRes", 18, MatchPacketRes(PKT_RES_L3_UNICAST)),
      OfMatch("MatchMplsTerm", 19, MatchMplsTerm(true)),
      OfMatch("MatchToS", 20, MatchToS(0xB8)),
      OfMatch("MatchDSCP", 20, MatchDSCP(46)),
      OfMatch("MatchVirtualPort", 21,
              MatchVirtualPort(limid_make(limid_type_lag, 3))),
      OfMatch("MatchEgressPorts", 22,
              MatchEgressPorts(std::list<limid_t>{Eth(4)})),
      OfMatch("MatchIngressStpState", 23,
              MatchIngressStpState(STP_STATE_FORWARDING)),
      OfMatch("MatchVlanInfo", 24, MatchVlanInfo(vlan_info_t{1, 2})),
      OfMatch("MatchSrcPort", 25, MatchSrcPort(Eth(5))),
      OfMatch("MatchTTL", 26, MatchTTL(64)),
      OfMatch("MatchVrfId", 27, MatchVrfId(7)),
      OfMatch("MatchDrop", 28, MatchDrop(true)),
      OfMatch("MatchMyStationHit", 29, MatchMyStationHit(true)),
      OfMatch("MatchCpuPort", 30, MatchCpuPort()),
      OfMatch("MatchForwardingType", 31,
              MatchForwardingType(FORWARDING_TYPE_L3_ROUTED)),
      OfMatch("MatchDestinationCpu", 32, MatchDestinationCpu()),
      OfMatch("MatchCPUInjectedPackets", 33, MatchCPUInjectedPackets(true)),
      OfMatch("MatchDstL4PortRange", 34, MatchDstL4PortRange(1000, 2000)),
      OfMatch("MatchL2DestHit", 35, MatchL2DestHit(true)),
      OfMatch("MatchL3SrcRouteHit", 36, MatchL3SrcRouteHit(false)),
      OfMatch("MatchVirtualPortClass", 37, MatchVirtualPortClass(9)),
      OfMatch("MatchUnknownDestIp", 38, MatchUnknownDestIp()),
  };
  return samples;
}

const std::vector<KindSample>& ActionSamples() {
  static const std::vector<KindSample> samples = {
      OfAction("ActionPermit", 0, ActionPermit()),
      OfAction("ActionDeny", 1, ActionDeny()),
      OfAction("ActionCopyToCpu", 2, ActionCopyToCpu()),
      OfAction("ActionBlockEgressPorts", 3,
               ActionBlockEgressPorts(std::list<limid_t>{Eth(6), Eth(7)})),
      OfAction("ActionCopyToCpuCancel", 4,
               ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL)),
      OfAction("ActionSetPcp", 5, ActionSetPcp(3)),
      OfAction("ActionSetPcpAndQueue", 6, ActionSetPcpAndQueue(0x35)),
      OfAction("ActionSetInnerPcp", 7, ActionSetInnerPcp(2)),
      OfAction("ActionSetDSCP", 8, ActionSetDSCP(46)),
      OfAction("ActionMapToCosQueue", 9, ActionMapToCosQueue(4)),
      OfAction("ActionMapToCpuCosQueue", 10, ActionMapToCpuCosQueue(7)),
      OfAction("ActionRedirect", 11, ActionRedirect(Eth(8))),
      OfAction("ActionReplaceDstMac", 12, ActionReplaceDstMac(Mac(3))),
      OfAction("ActionRedirectCancel", 13, ActionRedirectCancel()),
      OfAction("ActionReplaceSrcMac", 14, ActionReplaceSrcMac(Mac(4))),
      OfAction("ActionL3Switch", 15, ActionL3Switch(100u)),
      OfAction("ActionBlackHole", 16, ActionBlackHole()),
      OfAction("ActionCopyInnerPcp", 17, ActionCopyInnerPcp()),
      OfAction("ActionMplsPortSet", 18,
               ActionMplsPortSet(limid_make(limid_type_mpls_vpws, 1), Eth(9))),
      OfAction("ActionL2ToCpuDrop", 19, ActionL2ToCpuDrop()),
      OfAction("ActionDoNotLearnMac", 20, ActionDoNotLearnMac()),
  };
  return samples;
}

FiltersEntry EntryOf(uint32_t id, uint32_t priority) {
  FiltersEntry entry(id);
  entry.setPriority(priority);
  return entry;
}

const KindSample& MatchSample(const std::string& name) {
  return Find(MatchSamples(), name);
}

const KindSample& ActionSample(const std::string& name) {
  return Find(ActionSamples(), name);
}

}  // namespace groups_test
