/*
 * Computes the difference between an installed filter group and its next
 * version through the C interface, prints what an incremental update has to
 * do, and applies it to the installed copy.
 *
 * Exits with 0 when the update is accepted and leaves the installed group
 * with the next version's entries.
 */
#include <stdio.h>

#include "FiltersCommon/filter_rules_c.h"
#include "FiltersCommon/filters_common_c.h"

/* A group 40 in stage 2, type 3, holding a deny entry for each identifier. */
static FiltersGroup* group_of(const filtersEntryId_t* ids, int count) {
  FiltersGroup* g = newFiltersGroup(40);
  int i;
  filtersGroupSetStage(g, FILTERS_STAGE_INGRESS);
  filtersGroupSetType(g, FILTERS_TYPE_IPV4_L4);
  for (i = 0; i < count; ++i) {
    FiltersEntry* e = newFiltersEntry(ids[i]);
    void* deny = newActionDeny();
    filtersEntrySetAction(e, deny);
    deleteAction(deny);
    filtersGroupInsertEntry(g, e);
    deleteFiltersEntry(e);
  }
  return g;
}

static void print_ids(const char* label, const filtersEntryId_t* ids,
                      uint32_t count) {
  uint32_t i;
  printf("%s:", label);
  for (i = 0; i < count; ++i) printf(" %u", (unsigned)ids[i]);
  printf("\n");
}

int main(void) {
  const filtersEntryId_t v1[] = {1, 2, 3};
  const filtersEntryId_t v2[] = {2, 3, 4, 5};
  FiltersGroup* installed = group_of(v1, 3);
  FiltersGroup* next = group_of(v2, 4);
  FiltersGroupDiff* diff = newFiltersGroupDiff(installed, next);
  filtersErr_t code;
  entriesStruct held;
  int ok;

  print_ids("removed", filtersGroupDiffRemovedIds(diff),
            filtersGroupDiffRemovedCount(diff));
  print_ids("added", filtersGroupDiffAddedIds(diff),
            filtersGroupDiffAddedCount(diff));

  code = filtersGroupDiffApply(diff, installed); /* all or nothing */
  filtersGroupGetEntries(installed, &held);
  printf("filtersGroupDiffApply returned %d; the group holds %d entries\n",
         (int)code, (int)held.count);
  ok = code == FILTERS_OK && held.count == 4;
  deleteFiltersEntriesStruct(&held);

  deleteFiltersGroupDiff(diff); /* the diff keeps its own copies */
  deleteFiltersGroup(next);
  deleteFiltersGroup(installed);
  return ok ? 0 : 1;
}
