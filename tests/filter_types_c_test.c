/* Compiles the vocabulary header as C11 and checks the fixed numbers. */
#include "FiltersCommon/filter_types.h"

#include <stdio.h>

#define CHECK(cond)                                 \
  do {                                              \
    if (!(cond)) {                                  \
      fprintf(stderr, "check failed: %s\n", #cond); \
      return 1;                                     \
    }                                               \
  } while (0)

int main(void) {
  filtersGroupId_t group_id = (filtersGroupId_t)65537u;
  filtersEntryId_t entry_id = 0xFFFFFFFFu;
  CHECK(group_id == 1);
  CHECK(entry_id == 4294967295u);
  CHECK(sizeof(filtersGroupPriority_t) == 2);
  CHECK(sizeof(filtersEntryPriority_t) == 4);
  CHECK(sizeof(filtersMatch_t) == 4);
  CHECK(sizeof(filtersAction_t) == 4);
  CHECK(sizeof(filtersGroupStage_t) == 4);
  CHECK(sizeof(filtersGroupType_t) == 4);
  CHECK(sizeof(filtersErr_t) == 4);
  CHECK(FILTERS_MATCH_ALL == 0 && FILTERS_MATCH_TOS == 20);
  CHECK(FILTERS_MATCH_UNKNOWN_DEST_IP == 38 && FILTERS_MATCH_LAST == 38);
  CHECK(FILTERS_ACTION_PERMIT == 0 && FILTERS_ACTION_DO_NOT_LEARN_MAC == 20);
  CHECK(FILTERS_ACTION_LAST == 20);
  CHECK(FILTERS_STAGE_LOOKUP == 0 && FILTERS_STAGE_EGRESS == 3);
  CHECK(FILTERS_TYPE_NONE == 0 && FILTERS_TYPE_UNKNOWN_DEST == 14);
  CHECK(FILTERS_OK == 0);
  CHECK(FILTERS_ERR_NOT_FOUND == -3);
  CHECK(FILTERS_ERR_INVALID == -4);
  CHECK(FILTERS_ERR_REFUSED == -5);
  CHECK(FILTERS_ERR_MATCH_NOT_ALLOWED == -6);
  CHECK(FILTERS_ERR_TYPE_NOT_IN_STAGE == -7);
  CHECK(FILTERS_ERR_UNKNOWN_STAGE == -8);
  CHECK(FILTERS_ERR_ACTION_NOT_ALLOWED == -9);
  CHECK(FILTERS_ERR_POLICER_STAGE == -10);
  return 0;
}
