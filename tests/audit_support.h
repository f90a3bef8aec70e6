// Helpers of the audit tests: one sample object of every match and action
// kind, stored into an entry through the typed setters, plus addresses,
// policers and a regular-expression escape for assertion messages.
#ifndef FILTERSCOMMON_TESTS_AUDIT_SUPPORT_H_
#define FILTERSCOMMON_TESTS_AUDIT_SUPPORT_H_

#include <arpa/inet.h>

#include <cstdint>
#include <list>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace audit {

using namespace FiltersCommon;  // NOLINT(build/namespaces)

// The sample kind that stands for a MatchDSCP: it shares kind 20 with
// MatchToS but is a class of its own.
constexpr int kDscpSample = 100;

inline ether_addr MacOf(uint8_t last) {
  ether_addr mac{};
  const uint8_t octets[6] = {0x02, 0xaa, 0xbb, 0xcc, 0xdd, last};
  for (int i = 0; i < 6; ++i) mac.ether_addr_octet[i] = octets[i];
  return mac;
}

inline in_addr V4(const char* text) {
  in_addr a{};
  inet_pton(AF_INET, text, &a);
  return a;
}

inline in6_addr V6(const char* text) {
  in6_addr a{};
  inet_pton(AF_INET6, text, &a);
  return a;
}

inline limid_t EthPort(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}

// Stores one match of `kind` (0 to 38, or kDscpSample) into `e` through
// setMatch of the kind's own class and returns the setter's code.
inline filtersErr_t SetMatchOfKind(FiltersEntry& e, int kind) {
  switch (kind) {
    case 0:
      return e.setMatch(MatchAll());
    case 1:
      return e.setMatch(MatchIngressPorts(std::list<limid_t>{EthPort(1)}));
    case 2:
      return e.setMatch(MatchExternalVlanId(uint16_t{10}));
    case 3:
      return e.setMatch(MatchTPID(0x8100));
    case 4:
      return e.setMatch(MatchDstMac(MacOf(1)));
    case 5:
      return e.setMatch(MatchDstL4Port(80));
    case 6:
      return e.setMatch(MatchSrcL4Port(81));
    case 7:
      return e.setMatch(MatchSrcMac(MacOf(2)));
    case 8:
      return e.setMatch(MatchL2SrcEntryType(L2_SRC_ENTRY_STATIC));
    case 9:
      return e.setMatch(MatchSrcIPv4(V4("10.0.0.1")));
    case 10:
      return e.setMatch(MatchDstIPv4(V4("10.0.0.2")));
    case 11:
      return e.setMatch(MatchInternalVlanId(uint16_t{20}));
    case 12:
      return e.setMatch(MatchPcp(uint8_t{3}));
    case 13:
      return e.setMatch(MatchInternalPcp(uint8_t{4}));
    case 14:
      return e.setMatch(MatchSrcIPv6(V6("2001:db8::1")));
    case 15:
      return e.setMatch(MatchDstIPv6(V6("2001:db8::2")));
    case 16:
      return e.setMatch(MatchVlanTagging(VLAN_TAGGING_SINGLE_TAGGED));
    case 17:
      return e.setMatch(MatchIpProtocol(6));
    case 18:
      return e.setMatch(MatchPacketRes(PKT_RES_MPLS));
    case 19:
      return e.setMatch(MatchMplsTerm(true));
    case 20:
      return e.setMatch(MatchToS(0x28));
    case 21:
      return e.setMatch(MatchVirtualPort(limid_make(limid_type_mpls_vpws, 3)));
    case 22:
      return e.setMatch(MatchEgressPorts(std::list<limid_t>{EthPort(2)}));
    case 23:
      return e.setMatch(MatchIngressStpState(STP_STATE_FORWARDING));
    case 24:
      return e.setMatch(MatchVlanInfo(vlan_info_t{1, 2}));
    case 25:
      return e.setMatch(MatchSrcPort(EthPort(3)));
    case 26:
      return e.setMatch(MatchTTL(64));
    case 27:
      return e.setMatch(MatchVrfId(7));
    case 28:
      return e.setMatch(MatchDrop(true));
    case 29:
      return e.setMatch(MatchMyStationHit(true));
    case 30:
      return e.setMatch(MatchCpuPort());
    case 31:
      return e.setMatch(MatchForwardingType(FORWARDING_TYPE_L3_ROUTED));
    case 32:
      return e.setMatch(MatchDestinationCpu());
    case 33:
      return e.setMatch(MatchCPUInjectedPackets(true));
    case 34:
      return e.setMatch(MatchDstL4PortRange(1000, 2000));
    case 35:
      return e.setMatch(MatchL2DestHit(true));
    case 36:
      return e.setMatch(MatchL3SrcRouteHit(true));
    case 37:
      return e.setMatch(MatchVirtualPortClass(5));
    case 38:
      return e.setMatch(MatchUnknownDestIp());
    case kDscpSample:
      return e.setMatch(MatchDSCP(46));
    default:
      return FILTERS_ERR_NOT_FOUND;
  }
}

// Stores one action of `kind` (0 to 20) into `e` through setAction of the
// kind's own class and returns the setter's code.
inline filtersErr_t SetActionOfKind(FiltersEntry& e, int kind) {
  switch (kind) {
    case 0:
      return e.setAction(ActionPermit());
    case 1:
      return e.setAction(ActionDeny());
    case 2:
      return e.setAction(ActionCopyToCpu());
    case 3:
      return e.setAction(
          ActionBlockEgressPorts(std::list<limid_t>{EthPort(4)}));
    case 4:
      return e.setAction(ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL));
    case 5:
      return e.setAction(ActionSetPcp(5));
    case 6:
      return e.setAction(ActionSetPcpAndQueue(6));
    case 7:
      return e.setAction(ActionSetInnerPcp(7));
    case 8:
      return e.setAction(ActionSetDSCP(46));
    case 9:
      return e.setAction(ActionMapToCosQueue(2));
    case 10:
      return e.setAction(ActionMapToCpuCosQueue(3));
    case 11:
      return e.setAction(ActionRedirect(EthPort(5)));
    case 12:
      return e.setAction(ActionReplaceDstMac(MacOf(3)));
    case 13:
      return e.setAction(ActionRedirectCancel());
    case 14:
      return e.setAction(ActionReplaceSrcMac(MacOf(4)));
    case 15:
      return e.setAction(ActionL3Switch(100));
    case 16:
      return e.setAction(ActionBlackHole());
    case 17:
      return e.setAction(ActionCopyInnerPcp());
    case 18:
      return e.setAction(
          ActionMplsPortSet(limid_make(limid_type_mpls_vpws, 9), EthPort(6)));
    case 19:
      return e.setAction(ActionL2ToCpuDrop());
    case 20:
      return e.setAction(ActionDoNotLearnMac());
    default:
      return FILTERS_ERR_NOT_FOUND;
  }
}

// A policer of the given policer stage (0 ingress, 1 egress, 2 none).
inline policer::Policer PolicerInStage(int stage, uint32_t id = 11) {
  return policer::Policer(id, static_cast<policer::Stage>(stage),
                          policer::Mode::SrTcm(1, 2, 3));
}

// `text` with every character that an extended regular expression treats
// specially escaped, for matching an exact assertion message.
inline std::string Literal(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (std::string("\\^$.|?*+()[]{}").find(c) != std::string::npos) {
      out += '\\';
    }
    out += c;
  }
  return out;
}

// The message of a failed standard assertion in `source` (the file name
// without directory), in function `signature`, on expression `expression`.
inline std::string AssertionMessage(const std::string& source,
                                    const std::string& signature,
                                    const std::string& expression) {
  return Literal(source) + ":[0-9]+: " + Literal(signature) + ": Assertion `" +
         Literal(expression) + "' failed\\.";
}

}  // namespace audit

#endif  // FILTERSCOMMON_TESTS_AUDIT_SUPPORT_H_
