// The C face of rule text: the C++ functions over the opaque pointers, with
// strings handed out from malloc.

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "FiltersCommon/filter_rule_text.h"
#include "FiltersCommon/filter_rule_text_c.h"

namespace FiltersCommon {
namespace {

char* copyOut(const std::string& text) {
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy != nullptr) std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

void reportErrors(const std::vector<RuleError>& found, char** errors) {
  if (errors == nullptr) return;
  if (found.empty()) {
    *errors = nullptr;
    return;
  }
  std::string text;
  for (const RuleError& error : found) text += error.toString() + "\n";
  *errors = copyOut(text);
}

}  // namespace

extern "C" {

char* filtersGroupFormatRules(const FiltersGroup* g) {
  assert(g != nullptr);
  return copyOut(formatGroupRules(*g));
}

char* filtersEntryFormatRule(const FiltersEntry* e) {
  assert(e != nullptr);
  return copyOut(formatEntryRule(*e));
}

FiltersGroup* filtersGroupCompileRules(const char* text, const char* fileName,
                                       char** errors) {
  assert(text != nullptr);
  std::vector<RuleError> found;
  auto group = compileGroupRules(text, fileName ? fileName : "rules", &found);
  reportErrors(found, errors);
  return group.release();
}

FiltersEntry* filtersEntryCompileRule(const char* text, const char* fileName,
                                      char** errors) {
  assert(text != nullptr);
  std::vector<RuleError> found;
  auto entry = compileEntryRule(text, fileName ? fileName : "rules", &found);
  reportErrors(found, errors);
  return entry.release();
}

void filtersRulesFree(char* text) { std::free(text); }

}  // extern "C"
}  // namespace FiltersCommon
