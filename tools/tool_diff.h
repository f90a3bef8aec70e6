// The text behind "filters-tool diff": the difference of two groups as rule
// lines, in the manner of diff(1).
#ifndef FILTERSCOMMON_TOOLS_TOOL_DIFF_H_
#define FILTERSCOMMON_TOOLS_TOOL_DIFF_H_

#include <string>

#include "FiltersCommon/filter_groups.h"

namespace filters_tool {

// What turns `from` into `to`, one line each, every line ended by a
// newline: a changed header first ("- " and the old header line, "+ " and
// the new one), then, in ascending entry identifier, "- " and the rule line
// of each removed entry, "+ " and the rule line of each added entry, and
// both for each changed entry, old line first. Empty exactly when the
// groups are equal.
std::string groupDiffText(const FiltersCommon::FiltersGroup& from,
                          const FiltersCommon::FiltersGroup& to);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_TOOL_DIFF_H_
