// Rule text in filters-tool: recognising it among the input forms, compiling
// it with every error reported, and reading a group or an entry from a file
// in any of the four forms (message bytes, hex text, JSON, rule text).
//
// Every failure is a ToolError; errors in rule text are a RuleTextError,
// whose text is the compiler's lines ("FILE:LINE:COLUMN: error: ...").
#ifndef FILTERSCOMMON_TOOLS_TOOL_RULES_H_
#define FILTERSCOMMON_TOOLS_TOOL_RULES_H_

#include <memory>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "tool_input.h"

namespace filters_tool {

// The errors of a rule file, one "FILE:LINE:COLUMN: error: ..." line each,
// every line ended by a newline.
class RuleTextError : public ToolError {
 public:
  using ToolError::ToolError;
};

// Whether `data` is rule text: not hex text, and its first non-blank
// character is a letter or '#'. Message bytes never start that way (they
// start with the tag byte 0x08) and JSON starts with '{' or '['.
bool looksLikeRules(const std::string& data);

// The group or entry the rule text describes; `source` names it in errors.
std::unique_ptr<FiltersCommon::FiltersGroup> compileGroupText(
    const std::string& data, const std::string& source);
std::unique_ptr<FiltersCommon::FiltersEntry> compileEntryText(
    const std::string& data, const std::string& source);

// The group in `path` (or standard input for "-"), in any of the four
// forms; a message is loaded as a receiver loads it, and a note says how
// many entries the group dropped.
std::unique_ptr<FiltersCommon::FiltersGroup> readGroup(const std::string& path,
                                                       const InputForm& form,
                                                       Notes* notes);
// The entry in `path`, in any of the four forms.
std::unique_ptr<FiltersCommon::FiltersEntry> readEntry(const std::string& path,
                                                       const InputForm& form,
                                                       Notes* notes);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_TOOL_RULES_H_
