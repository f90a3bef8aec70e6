// Building blocks shared by the match kinds: the parts of a text dump block
// (header, type line, line ends, value formats) and the raw wire forms of
// value sets and address structures. Every kind is assembled from these, so
// one place decides what all kinds have in common.
#ifndef FILTERSCOMMON_SRC_MATCHES_MATCH_INTERNAL_H_
#define FILTERSCOMMON_SRC_MATCHES_MATCH_INTERNAL_H_

#include <google/protobuf/repeated_field.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <set>
#include <string>

#include "FiltersCommon/filter_matches.h"

namespace FiltersCommon {
namespace match_internal {

// ---- Families ----

// The leaves that add nothing to their family but a kind value and
// constructors: they compare as their family and print their header
// followed by the family's parameter lines. (MatchDstL4PortRange has its own
// comparison and lines, so it is not one of them.)
#define FILTERS_FOR_EACH_FAMILY_LEAF(X) \
  X(MatchIngressPorts, MatchPorts)      \
  X(MatchEgressPorts, MatchPorts)       \
  X(MatchVirtualPort, MatchLimId)       \
  X(MatchSrcPort, MatchLimId)           \
  X(MatchDstL4Port, MatchL4Port)        \
  X(MatchSrcL4Port, MatchL4Port)        \
  X(MatchExternalVlanId, MatchVlanId)   \
  X(MatchInternalVlanId, MatchVlanId)   \
  X(MatchDstMac, MatchMac)              \
  X(MatchSrcMac, MatchMac)              \
  X(MatchSrcIPv4, MatchIPv4)            \
  X(MatchDstIPv4, MatchIPv4)            \
  X(MatchSrcIPv6, MatchIPv6)            \
  X(MatchDstIPv6, MatchIPv6)

// The class that holds a kind's value: the family for the leaves above, the
// class itself otherwise. Dispatching on a kind value goes through it, so
// that a family object built with a leaf's kind (a masked MatchIPv6 of the
// source kind, say) is never taken for the leaf it is not.
template <class Class>
struct FamilyOf {
  using type = Class;
};
#define FILTERS_FAMILY_OF(Leaf, Family) \
  template <>                           \
  struct FamilyOf<Leaf> {               \
    using type = Family;                \
  };
FILTERS_FOR_EACH_FAMILY_LEAF(FILTERS_FAMILY_OF)
#undef FILTERS_FAMILY_OF

// ---- Dump ----

// The header line of a class's block, with its newline: "    =MatchTPID=\n".
#define FILTERS_MATCH_HEADER(Class) "    =" #Class "=\n"

// Which lines of a block end with a bare newline; the others also flush the
// stream, as std::endl does. Only flushing differs, never the text.
struct LineEnds {
  bool bareHeader;
  bool bareTypeLine;
  bool bareParams;
};
constexpr LineEnds kFlushed{false, false, false};
constexpr LineEnds kBareParams{false, false, true};
constexpr LineEnds kBareTypeAndParams{false, true, true};
constexpr LineEnds kAllBare{true, true, true};

inline std::ostream& endLine(std::ostream& os, bool bare) {
  if (bare) {
    return os << '\n';
  }
  return os << std::endl;
}

// Prints the header and the type line of a block.
inline std::ostream& printHead(std::ostream& os, char const* header,
                               Match const& m, LineEnds ends = kFlushed) {
  os << header;
  if (!ends.bareHeader) {
    os << std::flush;
  }
  os << "      Match Type ID: " << m.getType();
  return endLine(os, ends.bareTypeLine);
}

// The block of a family leaf: its header and type line, then the family's
// parameter lines.
template <class Family>
std::ostream& printFamilyLeaf(std::ostream& os, char const* header,
                              Family const& m) {
  printHead(os, header, m);
  return ::operator<<(os, m);
}

// Value formats of parameter lines. All but printHex leave the stream's
// format state alone; printHex switches it to hexadecimal for good.
template <class T>
void printUnsigned(std::ostream& os, T value) {
  os << static_cast<uint32_t>(value);
}
template <class T>
void printSigned(std::ostream& os, T value) {
  os << static_cast<int32_t>(value);
}
inline void printFlag(std::ostream& os, bool flag) { os << flag; }
inline void printHex(std::ostream& os, uint16_t value) {
  os << std::hex << value;
}
inline void printTagging(std::ostream& os, vlan_tagging_t tagging) {
  os << (tagging == VLAN_TAGGING_UNTAGGED ? "untagged" : "tagged");
}

// `label`, "[ ", every value followed by a space, "]", and a flushed line
// end. A uint8_t value goes out as the raw character it is, a wider one as
// a number.
template <class T>
std::ostream& printSetLine(std::ostream& os, char const* label,
                           std::set<T> const& values) {
  os << label << "[ ";
  for (T value : values) {
    os << value << ' ';
  }
  return os << "]" << std::endl;
}

// The interface name of `limId`, as limid_to_intfname writes it; empty when
// the identifier has no name.
std::string interfaceName(limid_t limId);

// ---- Wire ----

// Empties `field`, then appends the values in ascending order.
template <class T>
void writeSet(std::set<T> const& values,
              google::protobuf::RepeatedField<uint32_t>* field) {
  field->Clear();
  for (T value : values) {
    field->Add(value);
  }
}

// The low bits of every value of `field`; duplicates collapse.
template <class T>
std::set<T> readSet(google::protobuf::RepeatedField<uint32_t> const& field) {
  std::set<T> values;
  for (uint32_t value : field) {
    values.insert(static_cast<T>(value));
  }
  return values;
}

// The bytes of an address structure as it is stored: network byte order for
// IP addresses, first octet first for a MAC.
template <class Addr>
std::string toBytes(Addr const& addr) {
  return std::string(reinterpret_cast<char const*>(&addr), sizeof(Addr));
}

// The first sizeof(Addr) bytes of `bytes`. A shorter field is never read
// past its end; the missing bytes are zero.
template <class Addr>
Addr fromBytes(std::string const& bytes) {
  Addr addr;
  std::memset(&addr, 0, sizeof(Addr));
  std::memcpy(&addr, bytes.data(), std::min(bytes.size(), sizeof(Addr)));
  return addr;
}

// Bytewise equality; masks are never applied first.
template <class Addr>
bool sameBytes(Addr const& a, Addr const& b) {
  return std::memcmp(&a, &b, sizeof(Addr)) == 0;
}

}  // namespace match_internal
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_SRC_MATCHES_MATCH_INTERNAL_H_
