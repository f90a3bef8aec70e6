// The check behind "filters-tool check": which entries of a group message
// the library's loader would drop, and why.
//
// The loader offers each entry, in message order, to the group's
// insertEntry and drops refusals without a word; an entry whose identifier
// repeats an earlier one replaces it. The check offers the same entries to
// the explanation of the same checks, prints one line per entry and a
// summary, and then loads the message with the library itself to confirm
// that both keep the same entries.
#ifndef FILTERSCOMMON_TOOLS_GROUP_CHECK_H_
#define FILTERSCOMMON_TOOLS_GROUP_CHECK_H_

#include <ostream>
#include <string>

#include "filter_groups.pb.h"

namespace filters_tool {

struct CheckResult {
  // Entries in the message.
  int total = 0;
  // Entries insertEntry would accept, those that replace an earlier entry
  // with the same identifier included.
  int accepted = 0;
  // Accepted entries that replace an earlier one.
  int replaced = 0;
};

// Writes the report on `message` (read from `source`) to `out`. ToolError
// when the library cannot load the message at all (an MPLS port action of
// the wrong interface types) or keeps other entries than the check found.
CheckResult checkGroup(const FiltersCommon::FiltersGroupPB& message,
                       const std::string& source, std::ostream& out);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_GROUP_CHECK_H_
