// The notation of single values in rule text, both ways: numbers,
// interfaces by their limid names, and MAC, IPv4 and IPv6 addresses with a
// prefix length or a mask. Each parser accepts exactly what the matching
// formatter writes, plus the usual alternatives (hex numbers, names).
#ifndef FILTERSCOMMON_RULES_RULE_VALUES_H_
#define FILTERSCOMMON_RULES_RULE_VALUES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "limid/limid.h"

namespace FiltersCommon {
namespace rules {

void appendUnsigned(std::string* out, uint64_t value);
void appendSigned(std::string* out, int64_t value);
// "0x" and at least `digits` lower-case hex digits.
void appendHex(std::string* out, uint64_t value, int digits);

// A decimal number, or hex after "0x"; no sign. Nothing when malformed or
// above `max`; `*malformed` tells the two apart.
std::optional<uint64_t> parseUnsigned(std::string_view text, uint64_t max,
                                      bool* malformed);
// The same with an optional '-' for values from `min` to `max`.
std::optional<int64_t> parseSigned(std::string_view text, int64_t min,
                                   int64_t max, bool* malformed);

// The interface's limid name ("eth1", "lag2", "vpls7"), or its number in hex
// when it has no name that reads back as the same identifier.
void appendInterface(std::string* out, limid_t limid);
// A limid name or a 32-bit number.
std::optional<limid_t> parseInterface(std::string_view text);

// An address of `size` bytes (6 MAC, 4 IPv4, 16 IPv6) with its mask:
// nothing after it for a full mask, "/len" for a prefix mask, "/mask" else.
void appendAddress(std::string* out, const std::string& address,
                   const std::string& mask, std::size_t size);
// Parses what appendAddress writes; a missing mask is a full one. The error
// text says what was wrong; `*errorOffset` is where, within `text`.
bool parseAddress(std::string_view text, std::size_t size, std::string* address,
                  std::string* mask, std::string* error,
                  std::size_t* errorOffset);
// "MAC", "IPv4" or "IPv6" for an address of `size` bytes.
const char* addressName(std::size_t size);

// Lower-case hex of `bytes`, two digits a byte; and back.
void appendHexBytes(std::string* out, const std::string& bytes);
std::optional<std::string> parseHexBytes(std::string_view text);

}  // namespace rules
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_RULES_RULE_VALUES_H_
