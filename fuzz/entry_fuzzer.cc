// Any bytes must give an entry (or the one documented exception of a
// malformed MPLS action) that serializes, reloads equal and dumps.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_serialized.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    FiltersCommon::FiltersEntry entry(bytes);
    std::string again;
    entry.serialize(&again);
    FiltersCommon::FiltersEntry reloaded(again);
    if (!(reloaded == entry)) std::abort();
    FiltersCommon::FiltersSerialized buf;
    entry.serialize(&buf);
    FiltersCommon::FiltersEntry from_buffer(buf);
    std::ostringstream dump;
    dump << entry << from_buffer;
  } catch (const std::invalid_argument&) {
    // An MPLS action with identifiers of the wrong interface type.
  }
  return 0;
}
