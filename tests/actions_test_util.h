// Helpers shared by the action tests: identifiers of each interface type,
// MAC literals, and the text and wire forms of an action as strings.
#ifndef FILTERSCOMMON_TESTS_ACTIONS_TEST_UTIL_H_
#define FILTERSCOMMON_TESTS_ACTIONS_TEST_UTIL_H_

#include <net/ethernet.h>

#include <cstdint>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "filter_actions.pb.h"
#include "limid/limid.h"

namespace actions_test {

inline limid_t Eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}
inline limid_t Lag(uint32_t index) { return limid_make(limid_type_lag, index); }
inline limid_t Vpws(uint32_t index) {
  return limid_make(limid_type_mpls_vpws, index);
}
inline limid_t Vpls(uint32_t index) {
  return limid_make_bridgedomain(limid_bridgedomain_type_vpls, index);
}
inline limid_t VlanDomain(uint32_t index) {
  return limid_make_bridgedomain(limid_bridgedomain_type_vlan, index);
}
inline limid_t Cpu(uint32_t index) { return limid_make(limid_type_cpu, index); }

inline ether_addr Mac(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e,
                      uint8_t f) {
  return ether_addr{{a, b, c, d, e, f}};
}

// What operator<< writes for `value` into a fresh stream.
template <typename T>
std::string Dump(const T& value) {
  std::ostringstream os;
  os << value;
  return os.str();
}

inline FiltersCommon::ActionPB ToWire(const FiltersCommon::Action& action) {
  FiltersCommon::ActionPB pb;
  action.convertToActionPB(&pb);
  return pb;
}

// The fields present in the wire form, in text format: presence shows, so a
// field set to 0 appears and an absent one does not.
inline std::string WireText(const FiltersCommon::Action& action) {
  return ToWire(action).ShortDebugString();
}

// The message of the std::invalid_argument that `call` throws.
inline std::string InvalidArgumentOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
  return "<nothing thrown>";
}

}  // namespace actions_test

#endif  // FILTERSCOMMON_TESTS_ACTIONS_TEST_UTIL_H_
