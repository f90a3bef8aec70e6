// Any bytes, read as a group directly or from a FiltersSerialized buffer,
// must give a group that serializes, reloads equal, serializes again to the
// same bytes and dumps. The only exits the design allows are the MPLS
// port-set action's std::invalid_argument (identifiers of the wrong interface
// types) and allocation failure, which libFuzzer reports on its own.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_serialized.h"

namespace {

using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersSerialized;

void check(bool holds) {
  if (!holds) std::abort();
}

// The group's bytes reload as an equal group whose bytes are the same, and a
// buffer the group fills reloads equal too.
void checkReload(const FiltersGroup& group) {
  std::string bytes;
  group.serialize(&bytes);
  const FiltersGroup reloaded(bytes);
  check(reloaded == group);
  std::string again;
  reloaded.serialize(&again);
  check(again == bytes);

  FiltersSerialized buffer;
  group.serialize(&buffer);
  check(buffer.size() == bytes.size() + 1);
  const FiltersGroup fromBuffer(buffer);
  check(fromBuffer == group);

  std::ostringstream dump;
  dump << group;
  check(!dump.str().empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    const FiltersGroup group(bytes);
    checkReload(group);
  } catch (const std::invalid_argument&) {
    // An MPLS action with identifiers of the wrong interface types.
  }
  try {
    // A buffer holds the bytes and a terminating zero byte, and is read
    // terminator included: exactly as the bytes followed by that zero.
    FiltersSerialized buffer(bytes);
    const FiltersGroup group(buffer);
    checkReload(group);
    check(FiltersGroup(bytes + std::string(1, '\0')) == group);
  } catch (const std::invalid_argument&) {
    // As above.
  }
  return 0;
}
