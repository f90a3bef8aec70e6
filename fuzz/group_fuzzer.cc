// Any bytes must give a group (or the one documented exception of a
// malformed MPLS action) that serializes, reloads equal and dumps.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_groups.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    FiltersCommon::FiltersGroup group(bytes);
    std::string again;
    group.serialize(&again);
    FiltersCommon::FiltersGroup reloaded(again);
    if (reloaded != group) std::abort();
    std::ostringstream dump;
    dump << group;
  } catch (const std::invalid_argument&) {
    // An MPLS action with identifiers of the wrong interface type.
  }
  return 0;
}
