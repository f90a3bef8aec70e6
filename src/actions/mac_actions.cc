// The two MAC-rewrite kinds. They are alike in everything but the address
// they stand for, so both use the helpers below: six bytes in mac_ on the
// wire, byte-wise equality, and ether_ntoa_r text in the dump.
#include <netinet/ether.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "actions/action_dump.h"
#include "filter_actions.pb.h"

namespace FiltersCommon {
namespace {

void macToWire(const Action& action, const ether_addr& mac, ActionPB* pb) {
  action.Action::convertToActionPB(pb);
  pb->set_mac_(std::string(reinterpret_cast<const char*>(mac.ether_addr_octet),
                           ETH_ALEN));
}

// The first six bytes of mac_. A well-formed message always has six; a
// shorter one leaves the missing bytes zero rather than read past its end.
ether_addr macFromWire(const ActionPB* pb) {
  ether_addr mac{};
  const std::string& bytes = pb->mac_();
  std::memcpy(mac.ether_addr_octet, bytes.data(),
              std::min<size_t>(bytes.size(), ETH_ALEN));
  return mac;
}

bool sameMac(const ether_addr& a, const ether_addr& b) {
  return std::memcmp(a.ether_addr_octet, b.ether_addr_octet, ETH_ALEN) == 0;
}

// The address as ether_ntoa_r writes it (no leading zeros). Should it write
// nothing, the stream goes bad and the line ends without an address.
std::ostream& dumpMac(std::ostream& os, const Action& action,
                      const ether_addr& mac) {
  char text[18] = "00:00:00:00:00:00";
  action_dump::writeHeader(os, action);
  os << "      Replace MAC: ";
  if (ether_ntoa_r(&mac, text) != nullptr) {
    os << text;
  } else {
    os.setstate(std::ios::badbit);
  }
  return os << std::endl;
}

}  // namespace

// Both kinds, member by member; only the class and the kind differ.
#define FILTERS_MAC_ACTION(Kind, kind)                           \
  Kind::Kind(const ether_addr& mac) : Action(kind), mac_(mac) {} \
  void Kind::convertToActionPB(ActionPB* pb) const {             \
    macToWire(*this, mac_, pb);                                  \
  }                                                              \
  void Kind::convertFromActionPB(ActionPB const* pb) {           \
    mac_ = macFromWire(pb);                                      \
  }                                                              \
  bool Kind::operator==(const Kind& other) const {               \
    return sameMac(mac_, other.mac_);                            \
  }

FILTERS_MAC_ACTION(ActionReplaceDstMac, FILTERS_ACTION_REPLACE_DST_MAC)
FILTERS_MAC_ACTION(ActionReplaceSrcMac, FILTERS_ACTION_REPLACE_SRC_MAC)
#undef FILTERS_MAC_ACTION

}  // namespace FiltersCommon

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionReplaceDstMac& action) {
  return FiltersCommon::dumpMac(os, action, action.getReplaceDstMac());
}

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionReplaceSrcMac& action) {
  return FiltersCommon::dumpMac(os, action, action.getReplaceSrcMac());
}
