// The demo group of filters-tool: a small ingress IPv4 access list of the
// kind a management process builds, and the "demo" command that builds it,
// validates it, saves it, reads it back and prints it.
#ifndef FILTERSCOMMON_TOOLS_DEMO_GROUP_H_
#define FILTERSCOMMON_TOOLS_DEMO_GROUP_H_

#include <ostream>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"

namespace filters_tool {

// One rule of the demo and what it is for, in a few words.
struct DemoEntry {
  std::string purpose;
  FiltersCommon::FiltersEntry entry;
};

// Group 100, priority 10, in stage 2 (ingress) and type 3 (IPv4 addresses,
// L4 ports, ingress ports and outer VLAN), without entries.
FiltersCommon::FiltersGroup demoGroupHead();
// The demo's entries, in the order they are inserted.
std::vector<DemoEntry> demoEntries();

// Builds the demo group, inserts every entry (printing each result), writes
// the group's bytes to `path`, reads them back, compares and prints the
// dump, telling `out` what it does and, at the end, which commands of
// `program` (the tool as invoked) look further. Returns the exit status: 0,
// or 1 when a step fails (a refused entry, a read-back that differs).
int runDemo(const std::string& path, const std::string& program,
            std::ostream& out);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_DEMO_GROUP_H_
