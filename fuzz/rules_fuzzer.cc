// Any text given to the rule compiler must give a group (or an entry) or a
// list of errors, never a crash; and whatever it accepts prints as rule text
// that compiles to an equal object and prints the same again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "FiltersCommon/filter_rules.h"

namespace {

template <class Compile, class Format>
void roundTrip(const std::string& text, Compile compile, Format format) {
  std::vector<FiltersCommon::RuleError> errors;
  const auto first = compile(text, "fuzz", &errors);
  if (first == nullptr) {
    if (errors.empty()) std::abort();  // a refusal always says why
    return;
  }
  const std::string printed = format(*first);
  const auto second = compile(printed, "printed", &errors);
  if (second == nullptr || !(*second == *first)) std::abort();
  if (format(*second) != printed) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  roundTrip(text, FiltersCommon::compileGroupRules,
            [](const FiltersCommon::FiltersGroup& g) {
              return FiltersCommon::formatGroupRules(g);
            });
  roundTrip(text, FiltersCommon::compileEntryRule,
            [](const FiltersCommon::FiltersEntry& e) {
              return FiltersCommon::formatEntryRule(e);
            });
  return 0;
}
