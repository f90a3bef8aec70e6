// The C interface to matches: each function creates, reads or destroys one
// match object behind an untyped handle (see c_handles.h).
#include "FiltersCommon/filter_matches_c.h"

#include "FiltersCommon/filter_matches.h"
#include "c_api/c_handles.h"
#include "common/filters_assert.h"

namespace FiltersCommon {

using c_api::as;
using c_api::newHandle;
using c_api::portList;

extern "C" {

void* newMatchAll(void) { return newHandle<MatchAll>(); }
void* newMatchIngressPorts(limid_t const* ports, uint32_t count) {
  return newHandle<MatchIngressPorts>(portList(ports, count));
}
void* newMatchEgressPorts(limid_t const* ports, uint32_t count) {
  return newHandle<MatchEgressPorts>(portList(ports, count));
}
void* newMatchExternalVlanId(uint16_t vlanId) {
  return newHandle<MatchExternalVlanId>(vlanId);
}
void* newMatchInternalVlanId(uint16_t vlanId) {
  return newHandle<MatchInternalVlanId>(vlanId);
}
void* newMatchTPID(tpid_t tpid) { return newHandle<MatchTPID>(tpid); }
void* newMatchDstL4Port(l4port_t port) {
  return newHandle<MatchDstL4Port>(port);
}
void* newMatchDstL4PortMask(l4port_t port, l4port_t mask) {
  return newHandle<MatchDstL4Port>(port, mask);
}
void* newMatchSrcL4Port(l4port_t port) {
  return newHandle<MatchSrcL4Port>(port);
}
void* newMatchSrcL4PortMask(l4port_t port, l4port_t mask) {
  return newHandle<MatchSrcL4Port>(port, mask);
}
void* newMatchDstL4PortRange(l4port_t minPort, l4port_t maxPort) {
  return newHandle<MatchDstL4PortRange>(minPort, maxPort);
}
void* newMatchDstMac(struct ether_addr mac) {
  return newHandle<MatchDstMac>(mac);
}
void* newMatchDstMacMask(struct ether_addr mac, struct ether_addr mask) {
  return newHandle<MatchDstMac>(mac, mask);
}
void* newMatchSrcMac(struct ether_addr mac) {
  return newHandle<MatchSrcMac>(mac);
}
void* newMatchSrcMacMask(struct ether_addr mac, struct ether_addr mask) {
  return newHandle<MatchSrcMac>(mac, mask);
}
void* newMatchL2SrcEntryType(l2SrcEntryType_t type) {
  return newHandle<MatchL2SrcEntryType>(type);
}
void* newMatchSrcIPv4(struct in_addr ip) { return newHandle<MatchSrcIPv4>(ip); }
void* newMatchSrcIPv4Mask(struct in_addr ip, struct in_addr mask) {
  return newHandle<MatchSrcIPv4>(ip, mask);
}
void* newMatchDstIPv4(struct in_addr ip) { return newHandle<MatchDstIPv4>(ip); }
void* newMatchDstIPv4Mask(struct in_addr ip, struct in_addr mask) {
  return newHandle<MatchDstIPv4>(ip, mask);
}
void* newMatchSrcIPv6(struct in6_addr ip) {
  return newHandle<MatchSrcIPv6>(ip);
}
void* newMatchDstIPv6(struct in6_addr ip) {
  return newHandle<MatchDstIPv6>(ip);
}
void* newMatchDstIPv6Mask(struct in6_addr ip, struct in6_addr mask) {
  return newHandle<MatchDstIPv6>(ip, mask);
}
void* newMatchPcp(uint8_t pcp) { return newHandle<MatchPcp>(pcp); }
void* newMatchInternalPcp(uint8_t pcp) {
  return newHandle<MatchInternalPcp>(pcp);
}
void* newMatchVlanTagging(vlan_tagging_t tagging) {
  return newHandle<MatchVlanTagging>(tagging);
}
void* newMatchIpProtocol(uint8_t protocol) {
  return newHandle<MatchIpProtocol>(protocol);
}
void* newMatchPacketRes(en_Resolution resolution) {
  return newHandle<MatchPacketRes>(resolution);
}
void* newMatchMplsTerm(bool terminated) {
  return newHandle<MatchMplsTerm>(terminated);
}
void* newMatchDSCP(uint8_t dscp) { return newHandle<MatchDSCP>(dscp); }
void* newMatchTTL(uint8_t ttl) { return newHandle<MatchTTL>(ttl); }
void* newMatchVirtualPort(limid_t port) {
  return newHandle<MatchVirtualPort>(port);
}
void* newMatchIngressStpState(en_StpState state) {
  return newHandle<MatchIngressStpState>(state);
}
void* newMatchVlanInfo(vlan_info_t info) {
  return newHandle<MatchVlanInfo>(info);
}
void* newMatchSrcPort(limid_t port) { return newHandle<MatchSrcPort>(port); }
void* newMatchVrfId(uint16_t vrfId) { return newHandle<MatchVrfId>(vrfId); }
void* newMatchDrop(bool drop) { return newHandle<MatchDrop>(drop); }
void* newMatchCpuPort(void) { return newHandle<MatchCpuPort>(); }
void* newMatchCPUInjectedPackets(bool injected) {
  return newHandle<MatchCPUInjectedPackets>(injected);
}
void* newMatchL2DestHit(bool hit) { return newHandle<MatchL2DestHit>(hit); }
void* newMatchL3SrcRouteHit(bool hit) {
  return newHandle<MatchL3SrcRouteHit>(hit);
}
void* newMatchVirtualPortClass(uint32_t classId) {
  return newHandle<MatchVirtualPortClass>(classId);
}
void* newMatchUnknownDestIp(void) { return newHandle<MatchUnknownDestIp>(); }

filtersMatch_t matchGetType(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::filtersMatch_t "
                 "FiltersCommon::matchGetType(void*)");
  return as<Match>(m)->getType();
}

void deleteMatch(void* m) {
  FILTERS_ASSERT(m != nullptr, "void FiltersCommon::deleteMatch(void*)");
  delete as<Match>(m);
}

limid_t matchGetLimId(void* m) {
  FILTERS_ASSERT(m != nullptr, "limid_t FiltersCommon::matchGetLimId(void*)");
  return as<MatchLimId>(m)->getLimId();
}

const struct ether_addr* matchMacGetMac(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const ether_addr* FiltersCommon::matchMacGetMac(void*)");
  return &as<MatchMac>(m)->getMac();
}

const struct ether_addr* matchMacGetMask(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const ether_addr* FiltersCommon::matchMacGetMask(void*)");
  return &as<MatchMac>(m)->getMask();
}

tpid_t matchGetTPID(MatchTPID* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::tpid_t "
                 "FiltersCommon::matchGetTPID(FiltersCommon::MatchTPID*)");
  return m->getTPID();
}

l4port_t matchGetL4Port(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::l4port_t "
                 "FiltersCommon::matchGetL4Port(void*)");
  return as<MatchL4Port>(m)->getParam1();
}

l4port_t matchGetL4PortMask(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::l4port_t "
                 "FiltersCommon::matchGetL4PortMask(void*)");
  return as<MatchL4Port>(m)->getParam2();
}

l4port_t matchGetL4PortRangeMin(MatchDstL4PortRange* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::l4port_t "
                 "FiltersCommon::matchGetL4PortRangeMin("
                 "FiltersCommon::MatchDstL4PortRange*)");
  return m->getMinPort();
}

l4port_t matchGetL4PortRangeMax(MatchDstL4PortRange* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::l4port_t "
                 "FiltersCommon::matchGetL4PortRangeMax("
                 "FiltersCommon::MatchDstL4PortRange*)");
  return m->getMaxPort();
}

l2SrcEntryType_t matchGetL2SrcEntryType(MatchL2SrcEntryType* m) {
  FILTERS_ASSERT(m != nullptr,
                 "FiltersCommon::l2SrcEntryType_t "
                 "FiltersCommon::matchGetL2SrcEntryType("
                 "FiltersCommon::MatchL2SrcEntryType*)");
  return m->getL2SrcEntryType();
}

const struct in_addr* matchIPv4GetIPv4(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const in_addr* FiltersCommon::matchIPv4GetIPv4(void*)");
  return &as<MatchIPv4>(m)->getIPv4();
}

const struct in_addr* matchIPv4GetIPv4Mask(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const in_addr* FiltersCommon::matchIPv4GetIPv4Mask(void*)");
  return &as<MatchIPv4>(m)->getIPv4Mask();
}

const struct in6_addr* matchIPv6GetIPv6(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const in6_addr* FiltersCommon::matchIPv6GetIPv6(void*)");
  return &as<MatchIPv6>(m)->getIPv6();
}

const struct in6_addr* matchIPv6GetIPv6Mask(void* m) {
  FILTERS_ASSERT(m != nullptr,
                 "const in6_addr* FiltersCommon::matchIPv6GetIPv6Mask(void*)");
  return &as<MatchIPv6>(m)->getIPv6Mask();
}

// The getters below check nothing, by design: callers that want the null
// test use the ones above.

uint8_t matchIpProtocolGetIpProt(void* m) {
  return as<MatchIpProtocol>(m)->getIpProtocol();
}
en_Resolution matchPacketResGet(void* m) {
  return as<MatchPacketRes>(m)->getPktRes();
}
bool matchMplsTermGet(void* m) { return as<MatchMplsTerm>(m)->getMplsTerm(); }
uint8_t matchDSCPGet(void* m) { return as<MatchDSCP>(m)->getDSCP(); }
uint8_t matchTTLGet(void* m) { return as<MatchTTL>(m)->getTTL(); }
en_StpState matchIngressStpStateGet(void* m) {
  return as<MatchIngressStpState>(m)->getIngressStpState();
}
vlan_info_t matchVlanInfoGet(void* m) {
  return as<MatchVlanInfo>(m)->getVlanInfo();
}
uint16_t matchVrfIdGet(void* m) { return as<MatchVrfId>(m)->getVrfId(); }
bool matchDropGet(void* m) { return as<MatchDrop>(m)->getDropFlag(); }
bool MatchCPUInjectedPacketsGet(void* m) {
  return as<MatchCPUInjectedPackets>(m)->getInjected();
}
bool matchL2DestHitGet(void* m) {
  return as<MatchL2DestHit>(m)->getMatchL2DestHit();
}
bool matchL3SrcRouteHitGet(void* m) {
  return as<MatchL3SrcRouteHit>(m)->getMatchL3SrcRouteHit();
}
uint32_t matchVirtualPortClassGet(void* m) {
  return as<MatchVirtualPortClass>(m)->getMatchVirtualPortClass();
}

}  // extern "C"

}  // namespace FiltersCommon
