// The dump operators are declared at global scope; code written inside
// namespace FiltersCommon must still find them next to Counter's own.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"

namespace FiltersCommon {
namespace {

TEST(DumpLookup, GlobalDumpOperatorsReachableInsideNamespace) {
  std::ostringstream os;
  os << ActionDeny() << MatchAll() << Counter(1, COUNTER_TYPE_PACKETS)
     << FiltersEntry(2) << FiltersGroup(3);
  EXPECT_EQ(os.str(),
            "    =ActionDeny=\n"
            "      Action Type ID: 1\n"
            "      <no parameters>\n"
            "    =MatchAll=\n"
            "      Match Type ID: 0\n"
            "      <no parameters>\n"
            "ID: 1\nType: Packets\n"
            "  =FiltersEntry=\n"
            "    ID: 2\n"
            "    Priority: 0\n"
            "=FiltersGroup=\n"
            "  ID: 3\n"
            "  Priority: 0\n"
            "  Stage: 0\n"
            "  Type: 0\n");
}

}  // namespace
}  // namespace FiltersCommon
