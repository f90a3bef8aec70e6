// The match and action constructors of the C interface as the C-interface
// fuzzer calls them: each maker reads a fixed number of operand bytes and
// returns a new handle the caller deletes. The seed generator writes programs
// from the same tables, so a maker's operand count is stated once.
#ifndef FILTERSCOMMON_FUZZ_C_API_MAKERS_H_
#define FILTERSCOMMON_FUZZ_C_API_MAKERS_H_

#include <cstddef>
#include <cstdint>

#include "FiltersCommon/filter_actions_c.h"
#include "FiltersCommon/filter_matches_c.h"
#include "c_api_program.h"
#include "limid/limid.h"

namespace fuzz_c_api {

using namespace FiltersCommon;  // NOLINT(build/namespaces): the C names

// One constructor: how many operand bytes it reads, and the call.
struct Maker {
  const char* name;
  uint8_t operandBytes;
  void* (*make)(ProgramReader& in);
};

namespace makers {

constexpr uint8_t kMaxPorts = 4;
// Count byte and up to kMaxPorts identifiers.
constexpr uint8_t kPortsBytes = 1 + 4 * kMaxPorts;

struct Ports {
  limid_t ids[kMaxPorts];
  uint32_t count;
};

inline Ports ports(ProgramReader& in) {
  Ports p{};
  p.count = in.u8() % (kMaxPorts + 1);
  for (limid_t& id : p.ids) id = in.u32();
  return p;
}

inline ether_addr mac(ProgramReader& in) {
  ether_addr m{};
  for (uint8_t& octet : m.ether_addr_octet) octet = in.u8();
  return m;
}

inline in_addr ipv4(ProgramReader& in) {
  in_addr a{};
  a.s_addr = in.u32();
  return a;
}

inline in6_addr ipv6(ProgramReader& in) {
  in6_addr a{};
  for (uint8_t& octet : a.s6_addr) octet = in.u8();
  return a;
}

inline bool flag(ProgramReader& in) { return (in.u8() & 1) != 0; }

// The MPLS port-set action takes only identifiers of the interface types the
// C interface documents (anything else raises an exception a C caller cannot
// catch): the VPN an MPLS VPWS interface or a VPLS bridge domain, the access
// port a link aggregation or an Ethernet port.
inline void* mplsPortSet(ProgramReader& in) {
  const bool vpls = flag(in);
  const uint32_t vpnIndex = in.u32();
  const bool lag = flag(in);
  const uint32_t portIndex = in.u32();
  const limid_t vpn =
      vpls ? limid_make_bridgedomain(limid_bridgedomain_type_vpls, vpnIndex)
           : limid_make(limid_type_mpls_vpws, vpnIndex);
  const limid_t port =
      limid_make(lag ? limid_type_lag : limid_type_ethernet, portIndex);
  return newActionMplsPortSet(vpn, port);
}

}  // namespace makers

// clang-format off
inline const Maker kMatchMakers[] = {
  {"All", 0, [](ProgramReader&) { return newMatchAll(); }},
  {"IngressPorts", makers::kPortsBytes, [](ProgramReader& in) {
     const makers::Ports p = makers::ports(in);
     return newMatchIngressPorts(p.ids, p.count); }},
  {"EgressPorts", makers::kPortsBytes, [](ProgramReader& in) {
     const makers::Ports p = makers::ports(in);
     return newMatchEgressPorts(p.ids, p.count); }},
  {"ExternalVlanId", 2, [](ProgramReader& in) { return newMatchExternalVlanId(in.u16()); }},
  {"InternalVlanId", 2, [](ProgramReader& in) { return newMatchInternalVlanId(in.u16()); }},
  {"TPID", 2, [](ProgramReader& in) { return newMatchTPID(in.u16()); }},
  {"DstL4Port", 2, [](ProgramReader& in) { return newMatchDstL4Port(in.u16()); }},
  {"DstL4PortMask", 4, [](ProgramReader& in) {
     const l4port_t port = in.u16();
     return newMatchDstL4PortMask(port, in.u16()); }},
  {"SrcL4Port", 2, [](ProgramReader& in) { return newMatchSrcL4Port(in.u16()); }},
  {"SrcL4PortMask", 4, [](ProgramReader& in) {
     const l4port_t port = in.u16();
     return newMatchSrcL4PortMask(port, in.u16()); }},
  {"DstL4PortRange", 4, [](ProgramReader& in) {
     const l4port_t low = in.u16();
     return newMatchDstL4PortRange(low, in.u16()); }},
  {"DstMac", 6, [](ProgramReader& in) { return newMatchDstMac(makers::mac(in)); }},
  {"DstMacMask", 12, [](ProgramReader& in) {
     const ether_addr m = makers::mac(in);
     return newMatchDstMacMask(m, makers::mac(in)); }},
  {"SrcMac", 6, [](ProgramReader& in) { return newMatchSrcMac(makers::mac(in)); }},
  {"SrcMacMask", 12, [](ProgramReader& in) {
     const ether_addr m = makers::mac(in);
     return newMatchSrcMacMask(m, makers::mac(in)); }},
  {"L2SrcEntryType", 4, [](ProgramReader& in) {
     return newMatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(in.u32())); }},
  {"SrcIPv4", 4, [](ProgramReader& in) { return newMatchSrcIPv4(makers::ipv4(in)); }},
  {"SrcIPv4Mask", 8, [](ProgramReader& in) {
     const in_addr a = makers::ipv4(in);
     return newMatchSrcIPv4Mask(a, makers::ipv4(in)); }},
  {"DstIPv4", 4, [](ProgramReader& in) { return newMatchDstIPv4(makers::ipv4(in)); }},
  {"DstIPv4Mask", 8, [](ProgramReader& in) {
     const in_addr a = makers::ipv4(in);
     return newMatchDstIPv4Mask(a, makers::ipv4(in)); }},
  {"SrcIPv6", 16, [](ProgramReader& in) { return newMatchSrcIPv6(makers::ipv6(in)); }},
  {"DstIPv6", 16, [](ProgramReader& in) { return newMatchDstIPv6(makers::ipv6(in)); }},
  {"DstIPv6Mask", 32, [](ProgramReader& in) {
     const in6_addr a = makers::ipv6(in);
     return newMatchDstIPv6Mask(a, makers::ipv6(in)); }},
  {"Pcp", 1, [](ProgramReader& in) { return newMatchPcp(in.u8()); }},
  {"InternalPcp", 1, [](ProgramReader& in) { return newMatchInternalPcp(in.u8()); }},
  {"VlanTagging", 4, [](ProgramReader& in) {
     return newMatchVlanTagging(static_cast<vlan_tagging_t>(in.u32())); }},
  {"IpProtocol", 1, [](ProgramReader& in) { return newMatchIpProtocol(in.u8()); }},
  {"PacketRes", 4, [](ProgramReader& in) {
     return newMatchPacketRes(static_cast<en_Resolution>(in.u32())); }},
  {"MplsTerm", 1, [](ProgramReader& in) { return newMatchMplsTerm(makers::flag(in)); }},
  {"DSCP", 1, [](ProgramReader& in) { return newMatchDSCP(in.u8()); }},
  {"TTL", 1, [](ProgramReader& in) { return newMatchTTL(in.u8()); }},
  {"VirtualPort", 4, [](ProgramReader& in) { return newMatchVirtualPort(in.u32()); }},
  {"IngressStpState", 4, [](ProgramReader& in) {
     return newMatchIngressStpState(static_cast<en_StpState>(in.u32())); }},
  {"VlanInfo", 8, [](ProgramReader& in) {
     vlan_info_t info{};
     info.svcVlanType = in.u32();
     info.protoCpuVlanType = in.u32();
     return newMatchVlanInfo(info); }},
  {"SrcPort", 4, [](ProgramReader& in) { return newMatchSrcPort(in.u32()); }},
  {"VrfId", 2, [](ProgramReader& in) { return newMatchVrfId(in.u16()); }},
  {"Drop", 1, [](ProgramReader& in) { return newMatchDrop(makers::flag(in)); }},
  {"CpuPort", 0, [](ProgramReader&) { return newMatchCpuPort(); }},
  {"CPUInjectedPackets", 1, [](ProgramReader& in) {
     return newMatchCPUInjectedPackets(makers::flag(in)); }},
  {"L2DestHit", 1, [](ProgramReader& in) { return newMatchL2DestHit(makers::flag(in)); }},
  {"L3SrcRouteHit", 1, [](ProgramReader& in) {
     return newMatchL3SrcRouteHit(makers::flag(in)); }},
  {"VirtualPortClass", 4, [](ProgramReader& in) {
     return newMatchVirtualPortClass(in.u32()); }},
  {"UnknownDestIp", 0, [](ProgramReader&) { return newMatchUnknownDestIp(); }},
};

inline const Maker kActionMakers[] = {
  {"Permit", 0, [](ProgramReader&) { return newActionPermit(); }},
  {"Deny", 0, [](ProgramReader&) { return newActionDeny(); }},
  {"CopyToCpu", 0, [](ProgramReader&) { return newActionCopyToCpu(); }},
  {"BlockEgressPorts", makers::kPortsBytes, [](ProgramReader& in) {
     const makers::Ports p = makers::ports(in);
     return newActionBlockEgressPorts(p.ids, p.count); }},
  {"CopyToCpuCancel", 0, [](ProgramReader&) { return newActionCopyToCpuCancel(); }},
  {"SwitchToCpuCancel", 0, [](ProgramReader&) { return newActionSwitchToCpuCancel(); }},
  {"SetPcp", 1, [](ProgramReader& in) { return newActionSetPcp(in.u8()); }},
  {"SetPcpAndQueue", 1, [](ProgramReader& in) { return newActionSetPcpAndQueue(in.u8()); }},
  {"SetDSCP", 1, [](ProgramReader& in) { return newActionSetDSCP(in.u8()); }},
  {"MapToCosQueue", 1, [](ProgramReader& in) { return newActionMapToCosQueue(in.u8()); }},
  {"MapToCpuCosQueue", 1, [](ProgramReader& in) { return newActionMapToCpuCosQueue(in.u8()); }},
  {"ReplaceDstMac", 6, [](ProgramReader& in) { return newReplaceDstMac(makers::mac(in)); }},
  {"Redirect", 4, [](ProgramReader& in) { return newActionRedirect(in.u32()); }},
  {"RedirectCancel", 0, [](ProgramReader&) { return newActionRedirectCancel(); }},
  {"ReplaceSrcMac", 6, [](ProgramReader& in) { return newReplaceSrcMac(makers::mac(in)); }},
  {"L3Switch", 4, [](ProgramReader& in) { return newActionL3Switch(in.u32()); }},
  {"CopyInnerPcp", 0, [](ProgramReader&) { return newActionCopyInnerPcp(); }},
  {"MplsPortSet", 10, makers::mplsPortSet},
  {"DoNotLearnMac", 0, [](ProgramReader&) { return newActionDoNotLearnMac(); }},
};
// clang-format on

constexpr size_t kMatchMakerCount = sizeof(kMatchMakers) / sizeof(Maker);
constexpr size_t kActionMakerCount = sizeof(kActionMakers) / sizeof(Maker);

}  // namespace fuzz_c_api

#endif  // FILTERSCOMMON_FUZZ_C_API_MAKERS_H_
