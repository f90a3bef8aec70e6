// Rule text: filter groups and entries written as readable rules, one line
// per entry, that compile back to exactly the objects they were printed
// from. The language is described in docs/rules.md.
//
// formatGroupRules and formatEntryRule print; compileGroupRules and
// compileEntryRule read. Printing then compiling gives an object equal to
// the original (FiltersGroup/FiltersEntry operator==), and printing what was
// compiled gives the same text again.
//
// Compiling collects every error of the text, each with the file name, the
// line and the column of the offending token, and then returns null: a
// caller never gets a partial object. A group is built through
// FiltersGroup::insertEntry, so an entry the group refuses is an error at
// its line, with the refusal code and the reason explainEntry gives.
//
// Every function here is reentrant and keeps no state between calls; the
// objects it reads or returns are the caller's.
#ifndef FILTERSCOMMON_FILTER_RULE_TEXT_H_
#define FILTERSCOMMON_FILTER_RULE_TEXT_H_

#include <memory>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups.h"

namespace FiltersCommon {

// One error found in rule text. `line` and `column` count from 1; the column
// is the byte offset of the offending token within its line.
struct FILTERS_EXPORT RuleError {
  std::string file;
  unsigned line = 0;
  unsigned column = 0;
  std::string message;
  // "FILE:LINE:COLUMN: error: MESSAGE".
  std::string toString() const;
};

// At most this many errors are collected; a last one, "too many errors",
// says that the text holds more.
constexpr std::size_t kMaxRuleErrors = 20;

// The group as rule text: its header line, then one line per entry in
// ascending identifier, each ending in a newline.
FILTERS_EXPORT std::string formatGroupRules(const FiltersGroup& group);
// The entry as one rule line, without a newline.
FILTERS_EXPORT std::string formatEntryRule(const FiltersEntry& entry);

// The group that `text` describes, or null when the text holds any error;
// then the errors are appended to `*errors` (when not null). `fileName`
// names the text in the errors.
FILTERS_EXPORT std::unique_ptr<FiltersGroup> compileGroupRules(
    const std::string& text, const std::string& fileName,
    std::vector<RuleError>* errors);
// The same for text holding a single entry line (and comments).
FILTERS_EXPORT std::unique_ptr<FiltersEntry> compileEntryRule(
    const std::string& text, const std::string& fileName,
    std::vector<RuleError>* errors);

}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_RULE_TEXT_H_
