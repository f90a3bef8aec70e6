// The value families (ports, logical interface, layer-4 parameters, VLAN
// set, MAC, IPv4, IPv6), the kinds built on them, and the PCP-set kinds,
// which follow the VLAN-set pattern without sharing its class.
#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cstring>

#include "FiltersCommon/filter_matches.h"
#include "filter_matches.pb.h"
#include "matches/match_internal.h"

namespace FiltersCommon {

using match_internal::fromBytes;
using match_internal::readSet;
using match_internal::sameBytes;
using match_internal::toBytes;
using match_internal::writeSet;

// ---- Ports ----

MatchPorts::MatchPorts(filtersMatch_t type,
                       std::list<port_type_t> const& excludedPortTypes)
    : Match(type), excludedPortTypes_(excludedPortTypes) {}

MatchPorts::MatchPorts(filtersMatch_t type, std::list<limid_t> const& ports)
    : Match(type), ports_(ports) {}

filtersErr_t MatchPorts::setPorts(std::list<limid_t> const& ports) {
  if (!excludedPortTypes_.empty()) {
    return FILTERS_ERR_REFUSED;
  }
  ports_ = ports;
  return FILTERS_OK;
}

bool MatchPorts::operator==(MatchPorts const& other) const {
  return ports_ == other.ports_ &&
         excludedPortTypes_ == other.excludedPortTypes_;
}

// Neither direction empties what is already there: converting twice
// accumulates. Excluded types go before ports.
void MatchPorts::appendToMatchPB(MatchPB* pb, bool withExcludedTypes) const {
  Match::convertToMatchPB(pb);
  if (withExcludedTypes) {
    for (port_type_t type : excludedPortTypes_) {
      pb->add_excluded_port_types_(static_cast<uint32_t>(type));
    }
  }
  for (limid_t port : ports_) {
    pb->add_ports_(port);
  }
}

void MatchPorts::appendFromMatchPB(MatchPB const* pb, bool withExcludedTypes) {
  if (withExcludedTypes) {
    for (uint32_t type : pb->excluded_port_types_()) {
      excludedPortTypes_.push_back(static_cast<port_type_t>(type));
    }
  }
  for (uint32_t port : pb->ports_()) {
    ports_.push_back(port);
  }
}

void MatchIngressPorts::convertToMatchPB(MatchPB* pb) const {
  appendToMatchPB(pb, true);
}
void MatchIngressPorts::convertFromMatchPB(MatchPB const* pb) {
  appendFromMatchPB(pb, true);
}
// Excluded port types exist for ingress only.
void MatchEgressPorts::convertToMatchPB(MatchPB* pb) const {
  appendToMatchPB(pb, false);
}
void MatchEgressPorts::convertFromMatchPB(MatchPB const* pb) {
  appendFromMatchPB(pb, false);
}

// ---- Logical interface ----

bool MatchLimId::operator==(MatchLimId const& other) const {
  return limId_ == other.limId_;
}
void MatchLimId::convertToMatchPB(MatchPB* pb) const {
  Match::convertToMatchPB(pb);
  pb->set_limid_(limId_);
}
void MatchLimId::convertFromMatchPB(MatchPB const* pb) {
  limId_ = pb->limid_();
}

// ---- Layer-4 parameters ----

bool MatchL4Port::operator==(MatchL4Port const& other) const {
  return param1_ == other.param1_ && param2_ == other.param2_;
}

// Both parameters are always written; absent ones read as 0, so a port read
// without its mask gets mask 0, not 0xffff.
void MatchL4Port::writeParams(MatchPB* pb) const {
  Match::convertToMatchPB(pb);
  pb->set_l4port_param1_(param1_);
  pb->set_l4port_param2_(param2_);
}
void MatchL4Port::readParams(MatchPB const* pb) {
  param1_ = static_cast<uint16_t>(pb->l4port_param1_());
  param2_ = static_cast<uint16_t>(pb->l4port_param2_());
}

// The leaves supply the conversions; all three carry the same two fields.
#define FILTERS_DEFINE_L4_PORT_WIRE(Class)                             \
  void Class::convertToMatchPB(MatchPB* pb) const { writeParams(pb); } \
  void Class::convertFromMatchPB(MatchPB const* pb) { readParams(pb); }
FILTERS_DEFINE_L4_PORT_WIRE(MatchDstL4Port)
FILTERS_DEFINE_L4_PORT_WIRE(MatchSrcL4Port)
FILTERS_DEFINE_L4_PORT_WIRE(MatchDstL4PortRange)
#undef FILTERS_DEFINE_L4_PORT_WIRE

bool MatchDstL4PortRange::operator==(MatchDstL4PortRange const& other) const {
  return MatchL4Port::operator==(other);
}

// ---- Value sets: VLAN ids and priority code points ----
//
// Written in ascending order into an emptied field; read back into an
// emptied set, each value cut to the element width.

#define FILTERS_DEFINE_SET_MATCH(Class, member, field)           \
  bool Class::operator==(Class const& other) const {             \
    return member == other.member;                               \
  }                                                              \
  void Class::convertToMatchPB(MatchPB* pb) const {              \
    Match::convertToMatchPB(pb);                                 \
    writeSet(member, pb->mutable_##field());                     \
  }                                                              \
  void Class::convertFromMatchPB(MatchPB const* pb) {            \
    member = readSet<decltype(member)::value_type>(pb->field()); \
  }
FILTERS_DEFINE_SET_MATCH(MatchVlanId, vlanIds_, vlan_id_)
FILTERS_DEFINE_SET_MATCH(MatchPcp, pcps_, pcp_)
FILTERS_DEFINE_SET_MATCH(MatchInternalPcp, pcps_, pcp_)
#undef FILTERS_DEFINE_SET_MATCH

// ---- Addresses under a mask ----
//
// Raw bytes in both directions, no byte-order conversion, masks never
// applied; comparison is bytewise.

#define FILTERS_DEFINE_ADDRESS_MATCH(Class, addr, mask, field)         \
  bool Class::operator==(Class const& other) const {                   \
    return sameBytes(addr, other.addr) && sameBytes(mask, other.mask); \
  }                                                                    \
  void Class::convertToMatchPB(MatchPB* pb) const {                    \
    Match::convertToMatchPB(pb);                                       \
    pb->set_##field(toBytes(addr));                                    \
    pb->set_##field##mask_(toBytes(mask));                             \
  }                                                                    \
  void Class::convertFromMatchPB(MatchPB const* pb) {                  \
    addr = fromBytes<decltype(addr)>(pb->field());                     \
    mask = fromBytes<decltype(mask)>(pb->field##mask_());              \
  }
FILTERS_DEFINE_ADDRESS_MATCH(MatchMac, mac_, mask_, mac_)
FILTERS_DEFINE_ADDRESS_MATCH(MatchIPv4, ipv4_, ipv4Mask_, ipv4_)
FILTERS_DEFINE_ADDRESS_MATCH(MatchIPv6, ipv6_, ipv6Mask_, ipv6_)
#undef FILTERS_DEFINE_ADDRESS_MATCH

MatchMac::MatchMac(filtersMatch_t type, ether_addr mac)
    : Match(type), mac_(mac) {
  std::memset(&mask_, 0xFF, sizeof(mask_));
}

MatchIPv4::MatchIPv4(filtersMatch_t type, in_addr ip) : Match(type), ipv4_(ip) {
  std::memset(&ipv4Mask_, 0xFF, sizeof(ipv4Mask_));
}

MatchIPv6::MatchIPv6(filtersMatch_t type, in6_addr ip)
    : Match(type), ipv6_(ip) {
  std::memset(&ipv6Mask_, 0xFF, sizeof(ipv6Mask_));
}

}  // namespace FiltersCommon

// ---- Dumps ----

using FiltersCommon::match_internal::endLine;
using FiltersCommon::match_internal::interfaceName;
using FiltersCommon::match_internal::printHead;
using FiltersCommon::match_internal::printSetLine;

namespace {

char const* portTypeName(FiltersCommon::port_type_t type) {
  return type == FiltersCommon::CPU_PORT ? "CPU_PORT" : "";
}

std::string macText(ether_addr const& mac) {
  char text[32] = {};
  ether_ntoa_r(&mac, text);
  return text;
}

std::string ipText(in_addr const& ip) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &ip, text, sizeof(text));
  return text;
}

std::string ipText(in6_addr const& ip) {
  char text[INET6_ADDRSTRLEN] = {};
  inet_ntop(AF_INET6, &ip, text, sizeof(text));
  return text;
}

// Two labelled lines, e.g. an address and its mask.
std::ostream& printPair(std::ostream& os, char const* label1,
                        std::string const& value1, char const* label2,
                        std::string const& value2, bool bare) {
  endLine(os << label1 << value1, bare);
  return endLine(os << label2 << value2, bare);
}

}  // namespace

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchPorts const& m) {
  std::list<FiltersCommon::port_type_t> const excluded =
      m.getExcludedPortTypes();
  if (!excluded.empty()) {
    os << "      Excluded Port Types: ";
    for (FiltersCommon::port_type_t type : excluded) {
      os << '"' << portTypeName(type) << "\" ";
    }
    return os << std::endl;
  }
  std::list<limid_t> const ports = m.getPorts();
  os << "      Number of ports: " << ports.size() << std::endl;
  os << "      LIMIDs: ";
  for (limid_t port : ports) {
    os << '"' << interfaceName(port) << "\" ";
  }
  return os << std::endl;
}

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchLimId const& m) {
  return os << "      LIMID: " << interfaceName(m.getLimId()) << std::endl;
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchL4Port const& m) {
  os << "      Param1: " << m.getParam1() << std::endl;
  return os << "      Param2: " << m.getParam2() << std::endl;
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchVlanId const& m) {
  return printSetLine(os, "      VLAN IDs: ", m.getVlanIds());
}

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchMac const& m) {
  return printPair(os, "      MAC: ", macText(m.getMac()),
                   "      Mask: ", macText(m.getMask()), false);
}

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchIPv4 const& m) {
  return printPair(os, "      IP: ", ipText(m.getIPv4()),
                   "      Mask: ", ipText(m.getIPv4Mask()), false);
}

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchIPv6 const& m) {
  return printPair(os, "      IPv6: ", ipText(m.getIPv6()),
                   "      Mask: ", ipText(m.getIPv6Mask()), true);
}

#define FILTERS_DEFINE_FAMILY_LEAF_DUMP(Leaf, Family)                        \
  std::ostream& operator<<(std::ostream& os, FiltersCommon::Leaf const& m) { \
    return FiltersCommon::match_internal::printFamilyLeaf(                   \
        os, FILTERS_MATCH_HEADER(Leaf),                                      \
        static_cast<FiltersCommon::Family const&>(m));                       \
  }
FILTERS_FOR_EACH_FAMILY_LEAF(FILTERS_DEFINE_FAMILY_LEAF_DUMP)
#undef FILTERS_DEFINE_FAMILY_LEAF_DUMP

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchDstL4PortRange const& m) {
  printHead(os, FILTERS_MATCH_HEADER(MatchDstL4PortRange), m);
  os << "      Min Port: " << m.getMinPort() << std::endl;
  return os << "      Max Port: " << m.getMaxPort() << std::endl;
}

// The PCP-set kinds print each value as the raw byte it is.
std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchPcp const& m) {
  printHead(os, FILTERS_MATCH_HEADER(MatchPcp), m);
  return printSetLine(os, "      PCPs: ", m.getPcps());
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchInternalPcp const& m) {
  printHead(os, FILTERS_MATCH_HEADER(MatchInternalPcp), m);
  return printSetLine(os, "      PCPs: ", m.getPcps());
}
