// Computes the difference between an installed filter group and its next
// version, prints what an incremental update has to do, and applies it to
// the installed copy.
//
// Exits with 0 when the updated copy equals the next version.

#include <iostream>
#include <vector>

#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filters_common.h"

using namespace FiltersCommon;  // NOLINT(build/namespaces)

namespace {

FiltersEntry ttlEntry(filtersEntryId_t id, filtersEntryPriority_t priority,
                      uint8_t ttl) {
  FiltersEntry entry(id);
  entry.setPriority(priority);
  entry.setMatch(MatchTTL(ttl));
  entry.setAction(ActionDeny());
  return entry;
}

void printIds(const char* label, const std::vector<filtersEntryId_t>& ids) {
  std::cout << label << ':';
  for (filtersEntryId_t id : ids) std::cout << ' ' << id;
  std::cout << '\n';
}

}  // namespace

int main() {
  // Version 1: entries 1, 2 and 3 in stage 2, type 3.
  FiltersGroup installed(40);
  installed.setStage(FILTERS_STAGE_INGRESS);
  installed.setType(FILTERS_TYPE_IPV4_L4);
  installed.insertEntry(ttlEntry(1, 100, 1));
  installed.insertEntry(ttlEntry(2, 100, 2));
  installed.insertEntry(ttlEntry(3, 100, 3));

  // Version 2: entry 1 gone, entry 2 with a new priority, entry 4 new.
  FiltersGroup next(installed);
  next.removeEntry(1);
  next.insertEntry(ttlEntry(2, 150, 2));
  next.insertEntry(ttlEntry(4, 100, 4));

  FiltersGroupDiff diff = diffGroups(installed, next);
  printIds("removed", diff.removed());
  printIds("added", diff.added());
  printIds("changed", diff.changed());

  // All or nothing: on a refusal the group is left as it was.
  filtersErr_t code = diff.applyTo(&installed);
  std::cout << "applyTo returned " << code << "; the installed group "
            << (installed == next ? "now equals" : "differs from")
            << " version 2\n";
  return code == FILTERS_OK && installed == next ? 0 : 1;
}
