// Any bytes must give an entry that serializes, reloads equal, serializes
// again to the same bytes and dumps, from a byte string and from a
// FiltersSerialized buffer alike. The only exits the design allows are the
// MPLS port-set action's std::invalid_argument (identifiers of the wrong
// interface types) and allocation failure, which libFuzzer reports on its
// own.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_serialized.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using FiltersCommon::FiltersEntry;
  using FiltersCommon::FiltersSerialized;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    const FiltersEntry entry(bytes);
    std::string again;
    entry.serialize(&again);
    const FiltersEntry reloaded(again);
    check(reloaded == entry);
    std::string third;
    reloaded.serialize(&third);
    check(third == again);

    FiltersSerialized buffer;
    entry.serialize(&buffer);
    const FiltersEntry fromBuffer(buffer);
    check(fromBuffer == entry);

    std::ostringstream dump;
    dump << entry;
    std::ostringstream dumpAgain;
    dumpAgain << fromBuffer;
    check(dump.str() == dumpAgain.str());
  } catch (const std::invalid_argument&) {
    // An MPLS action with identifiers of the wrong interface types.
  }
  return 0;
}
