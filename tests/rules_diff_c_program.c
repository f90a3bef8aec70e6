/*
 * A C client of group differences, written against the C headers only.
 *
 * It builds an old and a new group, reads the diff between them through
 * every accessor, applies it to a fresh copy of the old group and compares
 * the result with the new group dump for dump, checks that a refused apply
 * leaves a group as it was, and releases everything it was given. It exits
 * non-zero when any check fails.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "FiltersCommon/filter_rules_c.h"
#include "FiltersCommon/filters_common_c.h"
#include "c_check.h"

/* Inserts entry `id` with `priority`, a TTL match of `ttl` (none when 0) and
 * a deny action (permit when `permit`), and frees every handle. */
static void add_entry(FiltersGroup* g, filtersEntryId_t id,
                      filtersEntryPriority_t priority, uint8_t ttl,
                      int permit) {
  FiltersEntry* e = newFiltersEntry(id);
  void* action = permit ? newActionPermit() : newActionDeny();
  filtersEntrySetPriority(e, priority);
  if (ttl != 0) {
    void* match = newMatchTTL(ttl);
    CHECK(filtersEntrySetMatch(e, match) == FILTERS_OK);
    deleteMatch(match);
  }
  CHECK(filtersEntrySetAction(e, action) == FILTERS_OK);
  deleteAction(action);
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_OK);
  deleteFiltersEntry(e);
}

static FiltersGroup* new_group(filtersGroupPriority_t priority,
                               filtersGroupType_t type) {
  FiltersGroup* g = newFiltersGroup(30);
  filtersGroupSetPriority(g, priority);
  filtersGroupSetStage(g, FILTERS_STAGE_INGRESS);
  CHECK(filtersGroupSetType(g, type) == FILTERS_OK);
  return g;
}

/* Entries 1, 2 and 3 in stage 2, type 3. */
static FiltersGroup* old_group(void) {
  FiltersGroup* g = new_group(1, FILTERS_TYPE_IPV4_L4);
  add_entry(g, 1, 10, 64, 0);
  add_entry(g, 2, 20, 0, 0);
  add_entry(g, 3, 30, 0, 1);
  return g;
}

/* Entry 1 removed, 2 changed (priority), 3 kept, 4 and 8 added; priority
 * and type changed. */
static FiltersGroup* new_group_of_test(void) {
  FiltersGroup* g = new_group(7, FILTERS_TYPE_UNKNOWN_DEST);
  add_entry(g, 2, 21, 0, 0);
  add_entry(g, 3, 30, 0, 1);
  add_entry(g, 8, 80, 0, 1);
  add_entry(g, 4, 40, 5, 0);
  return g;
}

static int same_dump(FiltersGroup* a, FiltersGroup* b) {
  char* da = filtersGroupDump(a);
  char* db = filtersGroupDump(b);
  int same = strcmp(da, db) == 0;
  free(da);
  free(db);
  return same;
}

static void check_accessors(const FiltersGroupDiff* d) {
  filtersGroupPriority_t oldPriority = 0, newPriority = 0;
  filtersGroupStage_t oldStage, newStage;
  filtersGroupType_t oldType, newType;
  filtersGroupId_t oldId = 0, newId = 0;
  const filtersEntryId_t* ids;
  FiltersEntry* e;

  CHECK(filtersGroupDiffIsEmpty(d) == 0);
  CHECK(filtersGroupDiffIdChanged(d, &oldId, &newId) == 0);
  CHECK(oldId == 30 && newId == 30);
  CHECK(filtersGroupDiffPriorityChanged(d, &oldPriority, &newPriority) == 1);
  CHECK(oldPriority == 1 && newPriority == 7);
  CHECK(filtersGroupDiffStageChanged(d, &oldStage, &newStage) == 0);
  CHECK(oldStage == FILTERS_STAGE_INGRESS && newStage == FILTERS_STAGE_INGRESS);
  CHECK(filtersGroupDiffTypeChanged(d, &oldType, &newType) == 1);
  CHECK(oldType == FILTERS_TYPE_IPV4_L4 &&
        newType == FILTERS_TYPE_UNKNOWN_DEST);
  /* Either output may be left out. */
  CHECK(filtersGroupDiffTypeChanged(d, NULL, NULL) == 1);

  CHECK(filtersGroupDiffRemovedCount(d) == 1);
  ids = filtersGroupDiffRemovedIds(d);
  CHECK(ids != NULL && ids[0] == 1);
  CHECK(filtersGroupDiffChangedCount(d) == 1);
  ids = filtersGroupDiffChangedIds(d);
  CHECK(ids != NULL && ids[0] == 2);
  CHECK(filtersGroupDiffAddedCount(d) == 2);
  ids = filtersGroupDiffAddedIds(d);
  CHECK(ids != NULL && ids[0] == 4 && ids[1] == 8);

  e = filtersGroupDiffGetNewEntry(d, 2);
  CHECK(e != NULL && filtersEntryGetPriority(e) == 21);
  if (e != NULL) deleteFiltersEntry(e);
  e = filtersGroupDiffGetNewEntry(d, 4);
  CHECK(e != NULL && filtersEntryGetPriority(e) == 40);
  if (e != NULL) deleteFiltersEntry(e);
  CHECK(filtersGroupDiffGetNewEntry(d, 1) == NULL);
  CHECK(filtersGroupDiffGetNewEntry(d, 3) == NULL);
}

int main(void) {
  FiltersGroup* a = old_group();
  FiltersGroup* b = new_group_of_test();
  FiltersGroupDiff* d = newFiltersGroupDiff(a, b);
  FiltersGroupDiff* none;
  FiltersGroup* target;

  /* The diff keeps its own copies: the groups may go first. */
  deleteFiltersGroup(a);
  check_accessors(d);

  target = old_group();
  CHECK(filtersGroupDiffApply(d, target) == FILTERS_OK);
  CHECK(same_dump(target, b));
  deleteFiltersGroup(target);

  /* Without entry 1 to remove, nothing is done. */
  target = old_group();
  CHECK(filtersGroupRemoveEntry(target, 1) == FILTERS_OK);
  {
    char* before = filtersGroupDump(target);
    char* after;
    CHECK(filtersGroupDiffApply(d, target) == FILTERS_ERR_NOT_FOUND);
    after = filtersGroupDump(target);
    CHECK(strcmp(before, after) == 0);
    free(before);
    free(after);
  }
  deleteFiltersGroup(target);

  /* Equal groups give an empty diff without lists. */
  none = newFiltersGroupDiff(b, b);
  CHECK(filtersGroupDiffIsEmpty(none) == 1);
  CHECK(filtersGroupDiffAddedCount(none) == 0);
  CHECK(filtersGroupDiffRemovedCount(none) == 0);
  CHECK(filtersGroupDiffChangedCount(none) == 0);
  CHECK(filtersGroupDiffPriorityChanged(none, NULL, NULL) == 0);
  deleteFiltersGroupDiff(none);

  CHECK(filtersGroupDiffApply(NULL, b) == FILTERS_ERR_REFUSED);
  CHECK(filtersGroupDiffApply(d, NULL) == FILTERS_ERR_REFUSED);

  deleteFiltersGroupDiff(d);
  deleteFiltersGroup(b);
  return c_check_exit_status("group diff C client: all checks passed");
}
