// The C interface to serialization and text dumps: the C++ byte string or
// stream text is copied into a malloc'd block the C caller frees.
#include "FiltersCommon/filter_wire_c.h"

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "common/filters_assert.h"

namespace FiltersCommon {

namespace {

// `text` and a terminating zero in a new malloc'd block, or null.
char* mallocCopy(const std::string& text) {
  char* block = static_cast<char*>(std::malloc(text.size() + 1));
  if (block == nullptr) return nullptr;
  std::memcpy(block, text.data(), text.size());
  block[text.size()] = '\0';
  return block;
}

template <class T>
char* dumpOf(const T& object) {
  std::ostringstream text;
  // The dumps are declared at global scope, which the counter's operator in
  // this namespace hides from unqualified lookup.
  ::operator<<(text, object);
  return mallocCopy(text.str());
}

}  // namespace

extern "C" {

uint8_t* filtersGroupSerialize(FiltersGroup* g, size_t* size) {
  FILTERS_ASSERT(g != nullptr && size != nullptr,
                 "uint8_t* FiltersCommon::filtersGroupSerialize("
                 "FiltersCommon::FiltersGroup*, size_t*)");
  std::string bytes;
  g->serialize(&bytes);
  *size = bytes.size();
  return reinterpret_cast<uint8_t*>(mallocCopy(bytes));
}

FiltersGroup* newFiltersGroupFromBytes(const uint8_t* bytes, size_t size) {
  FILTERS_ASSERT(bytes != nullptr || size == 0,
                 "FiltersCommon::FiltersGroup* "
                 "FiltersCommon::newFiltersGroupFromBytes(const uint8_t*, "
                 "size_t)");
  const std::string message =
      size == 0 ? std::string()
                : std::string(reinterpret_cast<const char*>(bytes), size);
  try {
    return new FiltersGroup(message);
  } catch (const std::invalid_argument&) {
    // An MPLS port action of the wrong interface types: the C++ reader
    // throws, which a C caller could not catch.
    return nullptr;
  }
}

char* filtersGroupDump(FiltersGroup* g) {
  FILTERS_ASSERT(
      g != nullptr,
      "char* FiltersCommon::filtersGroupDump(FiltersCommon::FiltersGroup*)");
  return dumpOf(*g);
}

char* filtersEntryDump(FiltersEntry* e) {
  FILTERS_ASSERT(
      e != nullptr,
      "char* FiltersCommon::filtersEntryDump(FiltersCommon::FiltersEntry*)");
  return dumpOf(*e);
}

}  // extern "C"

}  // namespace FiltersCommon
