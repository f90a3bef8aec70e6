// The interface-name and ifindex readers of limid take text and numbers from
// outside. Any input, read as a name, must be refused or name an identifier
// whose name is that text again; its first four bytes, read as an ifindex,
// must be refused or give an identifier whose ifindex they are; and read as
// an identifier, whatever name and ifindex it has must read back to it.
// Nothing here may throw or abort.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "limid/limid.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// Longer than any name limid writes ("vpls" and a 20-bit index, "eth" and a
// 24-bit one), so a refused name is never a truncated one.
constexpr size_t kNameSize = 32;

void nameRoundTrip(const std::string& name) {
  limid_t id = 0xdeadbeef;
  if (limid_from_intfname(name.c_str(), &id) != 0) {
    check(id == 0xdeadbeef);  // a refusal leaves the output alone
    return;
  }
  char written[kNameSize];
  check(limid_to_intfname(id, written, sizeof written) == 0);
  check(name == written);
}

uint32_t word(const uint8_t* data, size_t size) {
  uint8_t bytes[4] = {};
  std::memcpy(bytes, data, size < 4 ? size : 4);
  return static_cast<uint32_t>(bytes[0]) |
         (static_cast<uint32_t>(bytes[1]) << 8) |
         (static_cast<uint32_t>(bytes[2]) << 16) |
         (static_cast<uint32_t>(bytes[3]) << 24);
}

void ifindexRoundTrip(uint32_t ifindex) {
  limid_t id = 0;
  if (limid_from_ifindex(ifindex, &id) != 0) return;
  uint32_t back = ~ifindex;
  check(limid_to_ifindex(id, &back) == 0);
  check(back == ifindex);
}

void identifierRoundTrip(limid_t id) {
  char name[kNameSize];
  if (limid_to_intfname(id, name, sizeof name) == 0) {
    limid_t back = ~id;
    check(limid_from_intfname(name, &back) == 0);
    check(back == id);
  } else {
    check(name[0] == '\0');
  }
  uint32_t ifindex = 0;
  if (limid_to_ifindex(id, &ifindex) == 0) {
    limid_t back = ~id;
    check(limid_from_ifindex(ifindex, &back) == 0);
    check(back == id);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The name is the text up to the first zero byte, as a C caller has it.
  const std::string text(reinterpret_cast<const char*>(data), size);
  nameRoundTrip(text.substr(0, text.find('\0')));
  ifindexRoundTrip(word(data, size));
  identifierRoundTrip(word(data, size));
  return 0;
}
