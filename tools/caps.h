// The "caps" command of filters-tool: the validation tables, readably.
#ifndef FILTERSCOMMON_TOOLS_CAPS_H_
#define FILTERSCOMMON_TOOLS_CAPS_H_

#include <optional>
#include <ostream>

#include "FiltersCommon/filter_types.h"

namespace filters_tool {

// Prints what `stage` allows (group types, action kinds, policer stage) and
// what `type` allows (match kinds, and the stages that allow it); every
// stage and type when neither is given, and whether they fit each other when
// both are. ToolError for a stage or type the tables do not know.
void printCaps(std::optional<FiltersCommon::filtersGroupStage_t> stage,
               std::optional<FiltersCommon::filtersGroupType_t> type,
               std::ostream& out);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_CAPS_H_
