/*
 * C interface to filter groups.
 *
 * A group is one hardware lookup table's worth of rules: an identifier, a
 * priority, a stage, a type and its entries keyed by entry identifier. C
 * callers hold it through an opaque FiltersGroup pointer.
 *
 * Conventions:
 * (1) newFiltersGroup returns a group that belongs to the caller until
 *     deleteFiltersGroup, which also destroys the group's entries.
 * (2) filtersGroupInsertEntry stores a copy of the entry: the caller still
 *     owns its entry and frees it with deleteFiltersEntry; later changes to
 *     it do not reach the group.
 * (3) filtersGroupGetEntries fills a caller-provided entriesStruct with
 *     copies of the entries. The record itself stays the caller's; the two
 *     arrays and every entry they point to belong to the caller too, and are
 *     released together by deleteFiltersEntriesStruct (never by free or
 *     deleteFiltersEntry). The copies are independent of the group and
 *     outlive it. Filling a record overwrites it without releasing what it
 *     held, so release a record before filling it again.
 * (4) A null group aborts the process through an assertion, except in
 *     filtersGroupRemoveEntry, which answers FILTERS_ERR_REFUSED (-5).
 * (5) filtersGroupSetStage reports nothing: a refused stage leaves the old
 *     one in place, which filtersGroupGetStage shows.
 *
 * A new group has stage 0 and type 0; type 0 admits no match, so set the
 * stage and the type before inserting entries.
 *
 * This header compiles as C11 and as C++17; in C++ the functions and the
 * record are declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_GROUPS_C_H_
#define FILTERSCOMMON_FILTER_GROUPS_C_H_

#ifdef __cplusplus
#include <cstdint>
#else
#include <stdint.h>
#endif

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"

#ifdef __cplusplus
namespace FiltersCommon {
class FiltersGroup;
extern "C" {
#else
typedef struct FiltersGroup FiltersGroup;
#endif

/* The entries of a group as filtersGroupGetEntries copies them out: `count`
 * identifiers in ascending order and, at the same index, a separately
 * allocated copy of the entry with that identifier. Both arrays hold exactly
 * `count` elements and are allocated even when `count` is 0. */
typedef struct entriesStruct {
  int32_t count;
  filtersEntryId_t* ids;
  FiltersEntry** entries;
} entriesStruct;

/* A new group `id` with priority, stage and type 0 and no entries. */
FILTERS_EXPORT FiltersGroup* newFiltersGroup(filtersGroupId_t id);
/* Destroys `g` and its entries. */
FILTERS_EXPORT void deleteFiltersGroup(FiltersGroup* g);

FILTERS_EXPORT filtersGroupId_t filtersGroupGetId(FiltersGroup* g);
FILTERS_EXPORT void filtersGroupSetPriority(FiltersGroup* g,
                                            filtersGroupPriority_t priority);
FILTERS_EXPORT filtersGroupPriority_t filtersGroupGetPriority(FiltersGroup* g);
/* Changes the stage unless the type or an entry does not fit it. */
FILTERS_EXPORT void filtersGroupSetStage(FiltersGroup* g,
                                         filtersGroupStage_t stage);
FILTERS_EXPORT filtersGroupStage_t filtersGroupGetStage(FiltersGroup* g);
/* 0, or the refusal code; a refused type leaves the group unchanged. */
FILTERS_EXPORT filtersErr_t filtersGroupSetType(FiltersGroup* g,
                                                filtersGroupType_t type);
FILTERS_EXPORT filtersGroupType_t filtersGroupGetType(FiltersGroup* g);

/* Checks the entry's matches against the type, its actions and policer
 * against the stage, and returns the first refusal; otherwise stores a copy
 * of `e`, replacing an entry with the same identifier, and returns 0. */
FILTERS_EXPORT filtersErr_t filtersGroupInsertEntry(FiltersGroup* g,
                                                    FiltersEntry* e);
/* 0, -3 when no entry has `id`, -5 for a null group. */
FILTERS_EXPORT filtersErr_t filtersGroupRemoveEntry(FiltersGroup* g,
                                                    filtersEntryId_t id);

/* Overwrites `*entries` with copies of the group's entries. */
FILTERS_EXPORT void filtersGroupGetEntries(FiltersGroup* g,
                                           entriesStruct* entries);
/* Frees the arrays and entries of `*entries`, not the record itself. */
FILTERS_EXPORT void deleteFiltersEntriesStruct(entriesStruct* entries);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_GROUPS_C_H_ */
