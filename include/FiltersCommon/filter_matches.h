// The match qualifiers of a filter entry: one class per match kind, all
// derived from Match.
//
// A match is a small value object: it is built with its parameters (or with
// neutral ones and then filled from a MatchPB), copied freely, compared by
// content and printed by value. An entry owns its matches exclusively and
// deletes them through a Match pointer. No match is synchronised: concurrent
// readers of one object are safe, a writer needs exclusive access.
//
// Comparing through Match::operator==(Match const&) dispatches on the kind
// value, not on the dynamic class: a MatchDSCP compared that way is compared
// as the MatchToS whose slot it shares (all eight bits), while its own typed
// comparison looks at the six DSCP bits only. Every class keeps the base
// comparison visible beside its typed one, so `a == b` picks the typed
// comparison when both sides have the same static class and the base one
// otherwise.
//
// The text dumps are free operator<< functions in the global namespace,
// declared at the end of this header.
#ifndef FILTERSCOMMON_FILTER_MATCHES_H_
#define FILTERSCOMMON_FILTER_MATCHES_H_

#include <net/ethernet.h>
#include <netinet/in.h>

#include <cstdint>
#include <list>
#include <ostream>
#include <set>

#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_match_types.h"
#include "FiltersCommon/filter_types.h"
#include "limid/limid.h"

namespace FiltersCommon {

class MatchPB;

// The base of every match: the kind, and the operations each kind provides.
// The base conversions write only `type_` and read nothing, which is all the
// parameterless kinds need.
class FILTERS_EXPORT Match {
 public:
  explicit Match(filtersMatch_t type) : type_(type) {}
  Match(Match const&) = default;
  Match& operator=(Match const&) = default;
  virtual ~Match();

  filtersMatch_t getType() const { return type_; }

  // Writes `type_` and the kind's parameters into `pb`, which must not be
  // null.
  virtual void convertToMatchPB(MatchPB* pb) const;
  // Reads the kind's parameters from `pb`; absent fields read as zero. The
  // kind is never read: it is fixed by whoever chose the class.
  virtual void convertFromMatchPB(MatchPB const* pb);
  // False for different kinds and for kinds above FILTERS_MATCH_LAST;
  // otherwise the typed comparison of the class owning the kind value.
  virtual bool operator==(Match const& other) const;

 private:
  filtersMatch_t type_;
};

// Accepts every packet.
class FILTERS_EXPORT MatchAll : public Match {
 public:
  MatchAll() : Match(FILTERS_MATCH_ALL) {}
  using Match::operator==;
  bool operator==(MatchAll const& other) const;
  void convertFromMatchPB(MatchPB const* pb) override;
};

// ---- Value families: one value type shared by a pair of kinds ----

// A port set, given either as interfaces or as port types to exclude. Lists
// keep insertion order and duplicates. The wire conversions belong to the
// leaves and append to what is already there, in both directions.
class FILTERS_EXPORT MatchPorts : public Match {
 public:
  MatchPorts(filtersMatch_t type,
             std::list<port_type_t> const& excludedPortTypes);
  MatchPorts(filtersMatch_t type, std::list<limid_t> const& ports);

  std::list<limid_t> getPorts() const { return ports_; }
  std::list<port_type_t> getExcludedPortTypes() const {
    return excludedPortTypes_;
  }
  // Replaces the ports; refused with FILTERS_ERR_REFUSED while the match
  // holds excluded port types, which cannot be turned into a port list.
  filtersErr_t setPorts(std::list<limid_t> const& ports);

  using Match::operator==;
  bool operator==(MatchPorts const& other) const;

 protected:
  // Appends the ports, and the excluded types when asked, to `pb`.
  void appendToMatchPB(MatchPB* pb, bool withExcludedTypes) const;
  // Appends the ports, and the excluded types when asked, from `pb`.
  void appendFromMatchPB(MatchPB const* pb, bool withExcludedTypes);

 private:
  std::list<limid_t> ports_;
  std::list<port_type_t> excludedPortTypes_;
};

// One logical interface.
class FILTERS_EXPORT MatchLimId : public Match {
 public:
  MatchLimId(filtersMatch_t type, limid_t limId) : Match(type), limId_(limId) {}
  limid_t getLimId() const { return limId_; }

  using Match::operator==;
  bool operator==(MatchLimId const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 protected:
  void setLimId(limid_t limId) { limId_ = limId; }

 private:
  limid_t limId_;
};

// Two 16-bit layer-4 parameters: a port and its mask, or a port range. The
// wire conversions belong to the leaves.
class FILTERS_EXPORT MatchL4Port : public Match {
 public:
  MatchL4Port(filtersMatch_t type, uint16_t param1, uint16_t param2)
      : Match(type), param1_(param1), param2_(param2) {}
  uint16_t getParam1() const { return param1_; }
  uint16_t getParam2() const { return param2_; }

  using Match::operator==;
  bool operator==(MatchL4Port const& other) const;

 protected:
  void writeParams(MatchPB* pb) const;
  void readParams(MatchPB const* pb);

 private:
  uint16_t param1_;
  uint16_t param2_;
};

// A set of VLAN ids, unchecked (0 and ids above 4095 are kept).
class FILTERS_EXPORT MatchVlanId : public Match {
 public:
  MatchVlanId(filtersMatch_t type, std::set<uint16_t> const& vlanIds)
      : Match(type), vlanIds_(vlanIds) {}
  std::set<uint16_t> getVlanIds() const { return vlanIds_; }

  using Match::operator==;
  bool operator==(MatchVlanId const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  std::set<uint16_t> vlanIds_;
};

// A MAC address under a mask; the mask is never applied to the address.
class FILTERS_EXPORT MatchMac : public Match {
 public:
  // Exact match: mask ff:ff:ff:ff:ff:ff.
  MatchMac(filtersMatch_t type, ether_addr mac);
  MatchMac(filtersMatch_t type, ether_addr mac, ether_addr mask)
      : Match(type), mac_(mac), mask_(mask) {}
  ether_addr const& getMac() const { return mac_; }
  ether_addr const& getMask() const { return mask_; }

  using Match::operator==;
  bool operator==(MatchMac const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  ether_addr mac_;
  ether_addr mask_;
};

// An IPv4 address under a mask, both in network byte order.
class FILTERS_EXPORT MatchIPv4 : public Match {
 public:
  // Exact match: mask 255.255.255.255.
  MatchIPv4(filtersMatch_t type, in_addr ip);
  MatchIPv4(filtersMatch_t type, in_addr ip, in_addr mask)
      : Match(type), ipv4_(ip), ipv4Mask_(mask) {}
  in_addr const& getIPv4() const { return ipv4_; }
  in_addr const& getIPv4Mask() const { return ipv4Mask_; }

  using Match::operator==;
  bool operator==(MatchIPv4 const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  in_addr ipv4_;
  in_addr ipv4Mask_;
};

// An IPv6 address under a mask, both in network byte order.
class FILTERS_EXPORT MatchIPv6 : public Match {
 public:
  // Exact match: a mask of sixteen 0xff bytes.
  MatchIPv6(filtersMatch_t type, in6_addr ip);
  MatchIPv6(filtersMatch_t type, in6_addr ip, in6_addr mask)
      : Match(type), ipv6_(ip), ipv6Mask_(mask) {}
  in6_addr const& getIPv6() const { return ipv6_; }
  in6_addr const& getIPv6Mask() const { return ipv6Mask_; }

  using Match::operator==;
  bool operator==(MatchIPv6 const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  in6_addr ipv6_;
  in6_addr ipv6Mask_;
};

// ---- Leaves, by kind value ----

// Packets arriving on one of the ports, or on any port but the excluded
// port types.
class FILTERS_EXPORT MatchIngressPorts : public MatchPorts {
 public:
  explicit MatchIngressPorts(std::list<port_type_t> const& excludedPortTypes)
      : MatchPorts(FILTERS_MATCH_INGRESS_PORTS, excludedPortTypes) {}
  explicit MatchIngressPorts(std::list<limid_t> const& ports)
      : MatchPorts(FILTERS_MATCH_INGRESS_PORTS, ports) {}
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
};

// Packets whose outer VLAN id is in the set.
class FILTERS_EXPORT MatchExternalVlanId : public MatchVlanId {
 public:
  explicit MatchExternalVlanId(std::set<uint16_t> const& vlanIds)
      : MatchVlanId(FILTERS_MATCH_EXTERNAL_VLAN_ID, vlanIds) {}
  explicit MatchExternalVlanId(uint16_t vlanId)
      : MatchVlanId(FILTERS_MATCH_EXTERNAL_VLAN_ID, {vlanId}) {}
};

// Packets whose outer tag carries the tag protocol identifier. Its dump
// leaves the stream in hexadecimal.
class FILTERS_EXPORT MatchTPID : public Match {
 public:
  explicit MatchTPID(uint16_t tpid) : Match(FILTERS_MATCH_TPID), tpid_(tpid) {}
  uint16_t getTPID() const { return tpid_; }

  using Match::operator==;
  bool operator==(MatchTPID const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  uint16_t tpid_;
};

// Destination MAC address under a mask.
class FILTERS_EXPORT MatchDstMac : public MatchMac {
 public:
  explicit MatchDstMac(ether_addr mac) : MatchMac(FILTERS_MATCH_DST_MAC, mac) {}
  MatchDstMac(ether_addr mac, ether_addr mask)
      : MatchMac(FILTERS_MATCH_DST_MAC, mac, mask) {}
};

// Destination layer-4 port under a mask (0xffff: exact port).
class FILTERS_EXPORT MatchDstL4Port : public MatchL4Port {
 public:
  explicit MatchDstL4Port(uint16_t port, uint16_t mask = 0xFFFF)
      : MatchL4Port(FILTERS_MATCH_DST_L4_PORT, port, mask) {}
  uint16_t getPort() const { return getParam1(); }
  uint16_t getMask() const { return getParam2(); }
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
};

// Source layer-4 port under a mask (0xffff: exact port).
class FILTERS_EXPORT MatchSrcL4Port : public MatchL4Port {
 public:
  explicit MatchSrcL4Port(uint16_t port, uint16_t mask = 0xFFFF)
      : MatchL4Port(FILTERS_MATCH_SRC_L4_PORT, port, mask) {}
  uint16_t getPort() const { return getParam1(); }
  uint16_t getMask() const { return getParam2(); }
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
};

// Source MAC address under a mask.
class FILTERS_EXPORT MatchSrcMac : public MatchMac {
 public:
  explicit MatchSrcMac(ether_addr mac) : MatchMac(FILTERS_MATCH_SRC_MAC, mac) {}
  MatchSrcMac(ether_addr mac, ether_addr mask)
      : MatchMac(FILTERS_MATCH_SRC_MAC, mac, mask) {}
};

// How the L2 table holds the packet's source MAC.
class FILTERS_EXPORT MatchL2SrcEntryType : public Match {
 public:
  explicit MatchL2SrcEntryType(l2SrcEntryType_t entryType)
      : Match(FILTERS_MATCH_L2_SRC_ENTRY_TYPE), entryType_(entryType) {}
  l2SrcEntryType_t getL2SrcEntryType() const { return entryType_; }

  using Match::operator==;
  bool operator==(MatchL2SrcEntryType const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  l2SrcEntryType_t entryType_;
};

// Source IPv4 address under a mask.
class FILTERS_EXPORT MatchSrcIPv4 : public MatchIPv4 {
 public:
  explicit MatchSrcIPv4(in_addr ip) : MatchIPv4(FILTERS_MATCH_SRC_IPV4, ip) {}
  MatchSrcIPv4(in_addr ip, in_addr mask)
      : MatchIPv4(FILTERS_MATCH_SRC_IPV4, ip, mask) {}
};

// Destination IPv4 address under a mask.
class FILTERS_EXPORT MatchDstIPv4 : public MatchIPv4 {
 public:
  explicit MatchDstIPv4(in_addr ip) : MatchIPv4(FILTERS_MATCH_DST_IPV4, ip) {}
  MatchDstIPv4(in_addr ip, in_addr mask)
      : MatchIPv4(FILTERS_MATCH_DST_IPV4, ip, mask) {}
};

// Packets whose internal VLAN id is in the set.
class FILTERS_EXPORT MatchInternalVlanId : public MatchVlanId {
 public:
  explicit MatchInternalVlanId(std::set<uint16_t> const& vlanIds)
      : MatchVlanId(FILTERS_MATCH_INTERNAL_VLAN_ID, vlanIds) {}
  explicit MatchInternalVlanId(uint16_t vlanId)
      : MatchVlanId(FILTERS_MATCH_INTERNAL_VLAN_ID, {vlanId}) {}
};

// A set of priority code points of the outer tag, unchecked (values above 7
// are kept).
class FILTERS_EXPORT MatchPcp : public Match {
 public:
  explicit MatchPcp(std::set<uint8_t> const& pcps)
      : Match(FILTERS_MATCH_PCP), pcps_(pcps) {}
  explicit MatchPcp(uint8_t pcp) : Match(FILTERS_MATCH_PCP), pcps_({pcp}) {}
  std::set<uint8_t> getPcps() const { return pcps_; }

  using Match::operator==;
  bool operator==(MatchPcp const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  std::set<uint8_t> pcps_;
};

// A set of internal priority code points, unchecked.
class FILTERS_EXPORT MatchInternalPcp : public Match {
 public:
  explicit MatchInternalPcp(std::set<uint8_t> const& pcps)
      : Match(FILTERS_MATCH_INTERNAL_PCP), pcps_(pcps) {}
  explicit MatchInternalPcp(uint8_t pcp)
      : Match(FILTERS_MATCH_INTERNAL_PCP), pcps_({pcp}) {}
  std::set<uint8_t> getPcps() const { return pcps_; }

  using Match::operator==;
  bool operator==(MatchInternalPcp const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  std::set<uint8_t> pcps_;
};

// Source IPv6 address, exact only: a masked source IPv6 match is built
// through MatchIPv6 or read from the wire.
class FILTERS_EXPORT MatchSrcIPv6 : public MatchIPv6 {
 public:
  explicit MatchSrcIPv6(in6_addr ip) : MatchIPv6(FILTERS_MATCH_SRC_IPV6, ip) {}
};

// Destination IPv6 address under a mask.
class FILTERS_EXPORT MatchDstIPv6 : public MatchIPv6 {
 public:
  explicit MatchDstIPv6(in6_addr ip) : MatchIPv6(FILTERS_MATCH_DST_IPV6, ip) {}
  MatchDstIPv6(in6_addr ip, in6_addr mask)
      : MatchIPv6(FILTERS_MATCH_DST_IPV6, ip, mask) {}
};

// Tagged or untagged packets; every non-zero tagging value means tagged.
class FILTERS_EXPORT MatchVlanTagging : public Match {
 public:
  explicit MatchVlanTagging(vlan_tagging_t tagging)
      : Match(FILTERS_MATCH_VLAN_TAGGING), tagging_(tagging) {}
  vlan_tagging_t getTagging() const { return tagging_; }

  using Match::operator==;
  bool operator==(MatchVlanTagging const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  vlan_tagging_t tagging_;
};

// The IP protocol number.
class FILTERS_EXPORT MatchIpProtocol : public Match {
 public:
  explicit MatchIpProtocol(uint8_t protocol)
      : Match(FILTERS_MATCH_IP_PROTOCOL), protocol_(protocol) {}
  uint8_t getIpProtocol() const { return protocol_; }

  using Match::operator==;
  bool operator==(MatchIpProtocol const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  uint8_t protocol_;
};

// The packet class the switch resolved.
class FILTERS_EXPORT MatchPacketRes : public Match {
 public:
  explicit MatchPacketRes(en_Resolution resolution)
      : Match(FILTERS_MATCH_PACKET_RES), resolution_(resolution) {}
  en_Resolution getPktRes() const { return resolution_; }

  using Match::operator==;
  bool operator==(MatchPacketRes const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  en_Resolution resolution_;
};

// Whether the switch terminated the packet's MPLS label.
class FILTERS_EXPORT MatchMplsTerm : public Match {
 public:
  explicit MatchMplsTerm(bool terminated)
      : Match(FILTERS_MATCH_MPLS_TERM), terminated_(terminated) {}
  bool getMplsTerm() const { return terminated_; }

  using Match::operator==;
  bool operator==(MatchMplsTerm const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  bool terminated_;
};

// The whole type-of-service byte.
class FILTERS_EXPORT MatchToS : public Match {
 public:
  explicit MatchToS(uint8_t tos) : Match(FILTERS_MATCH_TOS), tos_(tos) {}
  uint8_t getToS() const { return tos_; }

  using Match::operator==;
  bool operator==(MatchToS const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  uint8_t tos_;
};

// The DSCP, written as the ToS byte it occupies (dscp << 2): it shares kind
// FILTERS_MATCH_TOS and the wire form of MatchToS, and comes back from the
// wire as a MatchToS. Its own comparison ignores the two low ToS bits.
class FILTERS_EXPORT MatchDSCP : public MatchToS {
 public:
  explicit MatchDSCP(uint8_t dscp)
      : MatchToS(static_cast<uint8_t>((dscp << 2) & 0xFF)) {}
  uint8_t getDSCP() const { return static_cast<uint8_t>(getToS() >> 2); }

  using MatchToS::operator==;
  bool operator==(MatchDSCP const& other) const;
};

// Packets of one virtual port.
class FILTERS_EXPORT MatchVirtualPort : public MatchLimId {
 public:
  explicit MatchVirtualPort(limid_t limId)
      : MatchLimId(FILTERS_MATCH_VIRTUAL_PORT, limId) {}
};

// Packets leaving on one of the ports. There is no form with excluded port
// types: those exist for ingress only.
class FILTERS_EXPORT MatchEgressPorts : public MatchPorts {
 public:
  explicit MatchEgressPorts(std::list<limid_t> const& ports)
      : MatchPorts(FILTERS_MATCH_EGRESS_PORTS, ports) {}
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
};

// The spanning-tree state of the ingress port.
class FILTERS_EXPORT MatchIngressStpState : public Match {
 public:
  explicit MatchIngressStpState(en_StpState state)
      : Match(FILTERS_MATCH_INGRESS_STP_STATE), state_(state) {}
  en_StpState getIngressStpState() const { return state_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchIngressStpState const& other) const;

 private:
  en_StpState state_;
};

// The SVC and protocol-to-CPU VLAN types of the packet.
class FILTERS_EXPORT MatchVlanInfo : public Match {
 public:
  explicit MatchVlanInfo(vlan_info_t vlanInfo)
      : Match(FILTERS_MATCH_VLAN_INFO), vlanInfo_(vlanInfo) {}
  vlan_info_t getVlanInfo() const { return vlanInfo_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchVlanInfo const& other) const;

 private:
  vlan_info_t vlanInfo_;
};

// Packets from one source port; the port can be replaced.
class FILTERS_EXPORT MatchSrcPort : public MatchLimId {
 public:
  explicit MatchSrcPort(limid_t limId)
      : MatchLimId(FILTERS_MATCH_SRC_PORT, limId) {}
  void setSrcPort(limid_t limId) { setLimId(limId); }
};

// The IP time-to-live.
class FILTERS_EXPORT MatchTTL : public Match {
 public:
  explicit MatchTTL(uint8_t ttl) : Match(FILTERS_MATCH_TTL), ttl_(ttl) {}
  uint8_t getTTL() const { return ttl_; }

  using Match::operator==;
  bool operator==(MatchTTL const& other) const;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;

 private:
  uint8_t ttl_;
};

// The VRF the packet is routed in; the id can be replaced.
class FILTERS_EXPORT MatchVrfId : public Match {
 public:
  explicit MatchVrfId(uint16_t vrfId)
      : Match(FILTERS_MATCH_VRF_ID), vrfId_(vrfId) {}
  uint16_t getVrfId() const { return vrfId_; }
  void setVrfId(uint16_t vrfId) { vrfId_ = vrfId; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchVrfId const& other) const;

 private:
  uint16_t vrfId_;
};

// Whether an earlier stage decided to drop the packet.
class FILTERS_EXPORT MatchDrop : public Match {
 public:
  explicit MatchDrop(bool dropFlag)
      : Match(FILTERS_MATCH_DROP), dropFlag_(dropFlag) {}
  bool getDropFlag() const { return dropFlag_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchDrop const& other) const;

 private:
  bool dropFlag_;
};

// Shares the wire field `hit_flag_` with MatchL2DestHit and
// MatchL3SrcRouteHit; `type_` tells them apart.
class FILTERS_EXPORT MatchMyStationHit : public Match {
 public:
  explicit MatchMyStationHit(bool hitFlag)
      : Match(FILTERS_MATCH_MY_STATION_HIT), hitFlag_(hitFlag) {}
  bool getHitFlag() const { return hitFlag_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchMyStationHit const& other) const;

 private:
  bool hitFlag_;
};

// Packets of the CPU port; no parameters.
class FILTERS_EXPORT MatchCpuPort : public Match {
 public:
  MatchCpuPort() : Match(FILTERS_MATCH_CPU_PORT) {}
  using Match::operator==;
  virtual bool operator==(MatchCpuPort const& other) const;
};

// How the packet is being forwarded.
class FILTERS_EXPORT MatchForwardingType : public Match {
 public:
  explicit MatchForwardingType(en_ForwardingType fwdType)
      : Match(FILTERS_MATCH_FORWARDING_TYPE), fwdType_(fwdType) {}
  en_ForwardingType getForwardingType() const { return fwdType_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchForwardingType const& other) const;

 private:
  en_ForwardingType fwdType_;
};

// Packets bound for the CPU; no parameters.
class FILTERS_EXPORT MatchDestinationCpu : public Match {
 public:
  MatchDestinationCpu() : Match(FILTERS_MATCH_DESTINATION_CPU) {}
  using Match::operator==;
  bool operator==(MatchDestinationCpu const& other) const;
};

// Whether the CPU injected the packet.
class FILTERS_EXPORT MatchCPUInjectedPackets : public Match {
 public:
  explicit MatchCPUInjectedPackets(bool injected)
      : Match(FILTERS_MATCH_CPU_INJECTED_PACKETS), injected_(injected) {}
  bool getInjected() const { return injected_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchCPUInjectedPackets const& other) const;

 private:
  bool injected_;
};

// Destination layer-4 ports from minPort to maxPort; the order of the bounds
// is not checked.
class FILTERS_EXPORT MatchDstL4PortRange : public MatchL4Port {
 public:
  MatchDstL4PortRange(uint16_t minPort, uint16_t maxPort)
      : MatchL4Port(FILTERS_MATCH_DST_L4_PORT_RANGE, minPort, maxPort) {}
  uint16_t getMinPort() const { return getParam1(); }
  uint16_t getMaxPort() const { return getParam2(); }

  using MatchL4Port::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchDstL4PortRange const& other) const;
};

// Whether the destination MAC was found in the L2 table (wire field
// `hit_flag_`, as MatchMyStationHit).
class FILTERS_EXPORT MatchL2DestHit : public Match {
 public:
  explicit MatchL2DestHit(bool hitFlag)
      : Match(FILTERS_MATCH_L2_DEST_HIT), hitFlag_(hitFlag) {}
  bool getMatchL2DestHit() const { return hitFlag_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchL2DestHit const& other) const;

 private:
  bool hitFlag_;
};

// Whether the source address hit a route (wire field `hit_flag_`, as
// MatchMyStationHit).
class FILTERS_EXPORT MatchL3SrcRouteHit : public Match {
 public:
  explicit MatchL3SrcRouteHit(bool hitFlag)
      : Match(FILTERS_MATCH_L3_SRC_ROUTE_HIT), hitFlag_(hitFlag) {}
  bool getMatchL3SrcRouteHit() const { return hitFlag_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchL3SrcRouteHit const& other) const;

 private:
  bool hitFlag_;
};

// The class id of the packet's virtual port.
class FILTERS_EXPORT MatchVirtualPortClass : public Match {
 public:
  explicit MatchVirtualPortClass(uint32_t classId)
      : Match(FILTERS_MATCH_VIRTUAL_PORT_CLASS), classId_(classId) {}
  uint32_t getMatchVirtualPortClass() const { return classId_; }

  using Match::operator==;
  void convertToMatchPB(MatchPB* pb) const override;
  void convertFromMatchPB(MatchPB const* pb) override;
  virtual bool operator==(MatchVirtualPortClass const& other) const;

 private:
  uint32_t classId_;
};

// Packets whose destination IP is unknown to the switch; no parameters.
class FILTERS_EXPORT MatchUnknownDestIp : public Match {
 public:
  MatchUnknownDestIp() : Match(FILTERS_MATCH_UNKNOWN_DEST_IP) {}
  using Match::operator==;
  virtual bool operator==(MatchUnknownDestIp const& other) const;
};

}  // namespace FiltersCommon

// Text dumps. The operator of a leaf prints its whole block (header, type
// line, parameter lines); the operator of a family prints only the family's
// parameter lines; the one for Match dispatches on the kind and prints
// nothing for a kind above FILTERS_MATCH_LAST. The TPID line leaves the
// stream in hexadecimal on purpose.
FILTERS_EXPORT std::ostream& operator<<(std::ostream& os,
                                        FiltersCommon::Match const& m);
#define FILTERS_DECLARE_MATCH_DUMP(Class)                   \
  FILTERS_EXPORT std::ostream& operator<<(std::ostream& os, \
                                          FiltersCommon::Class const& m);
FILTERS_DECLARE_MATCH_DUMP(MatchPorts)
FILTERS_DECLARE_MATCH_DUMP(MatchLimId)
FILTERS_DECLARE_MATCH_DUMP(MatchL4Port)
FILTERS_DECLARE_MATCH_DUMP(MatchVlanId)
FILTERS_DECLARE_MATCH_DUMP(MatchMac)
FILTERS_DECLARE_MATCH_DUMP(MatchIPv4)
FILTERS_DECLARE_MATCH_DUMP(MatchIPv6)
FILTERS_DECLARE_MATCH_DUMP(MatchAll)
FILTERS_DECLARE_MATCH_DUMP(MatchIngressPorts)
FILTERS_DECLARE_MATCH_DUMP(MatchExternalVlanId)
FILTERS_DECLARE_MATCH_DUMP(MatchTPID)
FILTERS_DECLARE_MATCH_DUMP(MatchDstMac)
FILTERS_DECLARE_MATCH_DUMP(MatchDstL4Port)
FILTERS_DECLARE_MATCH_DUMP(MatchSrcL4Port)
FILTERS_DECLARE_MATCH_DUMP(MatchSrcMac)
FILTERS_DECLARE_MATCH_DUMP(MatchL2SrcEntryType)
FILTERS_DECLARE_MATCH_DUMP(MatchSrcIPv4)
FILTERS_DECLARE_MATCH_DUMP(MatchDstIPv4)
FILTERS_DECLARE_MATCH_DUMP(MatchInternalVlanId)
FILTERS_DECLARE_MATCH_DUMP(MatchPcp)
FILTERS_DECLARE_MATCH_DUMP(MatchInternalPcp)
FILTERS_DECLARE_MATCH_DUMP(MatchSrcIPv6)
FILTERS_DECLARE_MATCH_DUMP(MatchDstIPv6)
FILTERS_DECLARE_MATCH_DUMP(MatchVlanTagging)
FILTERS_DECLARE_MATCH_DUMP(MatchIpProtocol)
FILTERS_DECLARE_MATCH_DUMP(MatchPacketRes)
FILTERS_DECLARE_MATCH_DUMP(MatchMplsTerm)
FILTERS_DECLARE_MATCH_DUMP(MatchToS)
FILTERS_DECLARE_MATCH_DUMP(MatchDSCP)
FILTERS_DECLARE_MATCH_DUMP(MatchVirtualPort)
FILTERS_DECLARE_MATCH_DUMP(MatchEgressPorts)
FILTERS_DECLARE_MATCH_DUMP(MatchIngressStpState)
FILTERS_DECLARE_MATCH_DUMP(MatchVlanInfo)
FILTERS_DECLARE_MATCH_DUMP(MatchSrcPort)
FILTERS_DECLARE_MATCH_DUMP(MatchTTL)
FILTERS_DECLARE_MATCH_DUMP(MatchVrfId)
FILTERS_DECLARE_MATCH_DUMP(MatchDrop)
FILTERS_DECLARE_MATCH_DUMP(MatchMyStationHit)
FILTERS_DECLARE_MATCH_DUMP(MatchCpuPort)
FILTERS_DECLARE_MATCH_DUMP(MatchForwardingType)
FILTERS_DECLARE_MATCH_DUMP(MatchDestinationCpu)
FILTERS_DECLARE_MATCH_DUMP(MatchCPUInjectedPackets)
FILTERS_DECLARE_MATCH_DUMP(MatchDstL4PortRange)
FILTERS_DECLARE_MATCH_DUMP(MatchL2DestHit)
FILTERS_DECLARE_MATCH_DUMP(MatchL3SrcRouteHit)
FILTERS_DECLARE_MATCH_DUMP(MatchVirtualPortClass)
FILTERS_DECLARE_MATCH_DUMP(MatchUnknownDestIp)
#undef FILTERS_DECLARE_MATCH_DUMP

// The dump operators live at global scope; this makes them reachable from
// code inside the namespace too, where FiltersCommon's own operator<< would
// otherwise hide them.
namespace FiltersCommon {
using ::operator<<;
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_MATCHES_H_
