// Helpers shared by the tests of the C interface: owners for the handles it
// hands out, address and interface values, and the pattern of the assertion
// message a guarded function prints when it aborts.
#ifndef FILTERSCOMMON_TESTS_C_API_TEST_UTIL_H_
#define FILTERSCOMMON_TESTS_C_API_TEST_UTIL_H_

#include <arpa/inet.h>
#include <net/ethernet.h>
#include <netinet/in.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "FiltersCommon/filters_common_c.h"
#include "limid/limid.h"

namespace FiltersCommon {
namespace c_api_test {

// Owners that release a handle through the C interface.
using MatchPtr = std::unique_ptr<void, void (*)(void*)>;
using ActionPtr = std::unique_ptr<void, void (*)(void*)>;
using EntryPtr = std::unique_ptr<FiltersEntry, void (*)(FiltersEntry*)>;
using GroupPtr = std::unique_ptr<FiltersGroup, void (*)(FiltersGroup*)>;

inline MatchPtr OwnMatch(void* m) { return MatchPtr(m, &deleteMatch); }
inline ActionPtr OwnAction(void* a) { return ActionPtr(a, &deleteAction); }
inline EntryPtr OwnEntry(FiltersEntry* e) {
  return EntryPtr(e, &deleteFiltersEntry);
}
inline GroupPtr OwnGroup(FiltersGroup* g) {
  return GroupPtr(g, &deleteFiltersGroup);
}

inline ether_addr Mac(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e,
                      uint8_t f) {
  return ether_addr{{a, b, c, d, e, f}};
}

inline in_addr Ipv4(const char* text) {
  in_addr addr{};
  if (inet_pton(AF_INET, text, &addr) != 1) throw std::invalid_argument(text);
  return addr;
}

inline in6_addr Ipv6(const char* text) {
  in6_addr addr{};
  if (inet_pton(AF_INET6, text, &addr) != 1) throw std::invalid_argument(text);
  return addr;
}

inline limid_t Eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}

// `text` with every character that means something in an extended regular
// expression escaped.
inline std::string RegexEscape(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (std::string(".[]()*+?{}|^$\\").find(c) != std::string::npos) {
      out += '\\';
    }
    out += c;
  }
  return out;
}

// What the platform's assertion prints when `expression` fails in
// `signature`, compiled in source file `file`: "<file>:<line>: <signature>:
// Assertion `<expression>' failed."
inline std::string AssertionPattern(const std::string& file,
                                    const std::string& signature,
                                    const std::string& expression) {
  return RegexEscape(file) + ":[0-9]+: " + RegexEscape(signature) +
         ": Assertion `" + RegexEscape(expression) + "' failed";
}

// One guarded function called with a null pointer: the assertion must name
// the source file, `signature` and `expression`.
struct Guard {
  const char* name;
  std::function<void()> call;
  const char* signature;
  const char* expression;
  const char* file = nullptr;
};

// Names a guard in test listings by its function rather than by its bytes.
inline void PrintTo(const Guard& guard, std::ostream* os) { *os << guard.name; }

// The guards of one source file, as test parameters.
inline std::vector<Guard> GuardsOf(const char* file,
                                   std::vector<Guard> guards) {
  for (Guard& guard : guards) guard.file = file;
  return guards;
}

inline std::string GuardName(const ::testing::TestParamInfo<Guard>& info) {
  return info.param.name;
}

// Every guard runs in a child process that must abort with its assertion.
// The test lives in c_api_guard_test.cc; each area instantiates it with
// GuardsOf its own source file.
class CInterfaceDeathTest : public ::testing::TestWithParam<Guard> {};

}  // namespace c_api_test
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_TESTS_C_API_TEST_UTIL_H_
