/*
 * C interface to group differences.
 *
 * A FiltersGroupDiff records how a new group differs from an old one: which
 * header fields changed, which entries were removed, added or changed (same
 * identifier, entries not equal), each list in ascending identifier, and the
 * new content of the added and changed entries. Applying it to a group
 * replays it through the group's own operations, all or nothing.
 *
 * Conventions:
 * (1) newFiltersGroupDiff returns a diff that belongs to the caller until
 *     deleteFiltersGroupDiff. It keeps copies of what it needs: the two
 *     groups stay the caller's and may change or be deleted afterwards.
 * (2) The identifier arrays returned by filtersGroupDiffAddedIds,
 *     filtersGroupDiffRemovedIds and filtersGroupDiffChangedIds belong to the
 *     diff: they stay valid until deleteFiltersGroupDiff and are never freed
 *     by the caller. An empty list may be a null pointer.
 * (3) filtersGroupDiffGetNewEntry returns a new copy of an entry, which
 *     belongs to the caller until deleteFiltersEntry.
 * (4) A null diff or group aborts the process through an assertion, except
 *     in filtersGroupDiffApply, which answers FILTERS_ERR_REFUSED (-5).
 *
 * A diff is never changed after it is made, so several threads may read one
 * diff at once; applying it needs exclusive access to the target group.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are
 * declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_GROUP_DIFF_C_H_
#define FILTERSCOMMON_FILTER_GROUP_DIFF_C_H_

#ifdef __cplusplus
#include <cstdint>
#else
#include <stdint.h>
#endif

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups_c.h"
#include "FiltersCommon/filter_types.h"

#ifdef __cplusplus
namespace FiltersCommon {
class FiltersGroupDiff;
extern "C" {
#else
typedef struct FiltersGroupDiff FiltersGroupDiff;
#endif

/* The difference that turns `from` into `to`. */
FILTERS_EXPORT FiltersGroupDiff* newFiltersGroupDiff(const FiltersGroup* from,
                                                     const FiltersGroup* to);
/* Destroys `d` and the arrays and entries it holds. */
FILTERS_EXPORT void deleteFiltersGroupDiff(FiltersGroupDiff* d);

/* 1 when the two groups were equal, 0 otherwise. */
FILTERS_EXPORT int filtersGroupDiffIsEmpty(const FiltersGroupDiff* d);

/* Each returns 1 when the field differs between the old and the new group
 * and 0 otherwise, and stores the old and the new value where the pointers
 * are not null. */
FILTERS_EXPORT int filtersGroupDiffIdChanged(const FiltersGroupDiff* d,
                                             filtersGroupId_t* oldId,
                                             filtersGroupId_t* newId);
FILTERS_EXPORT int filtersGroupDiffPriorityChanged(
    const FiltersGroupDiff* d, filtersGroupPriority_t* oldPriority,
    filtersGroupPriority_t* newPriority);
FILTERS_EXPORT int filtersGroupDiffStageChanged(const FiltersGroupDiff* d,
                                                filtersGroupStage_t* oldStage,
                                                filtersGroupStage_t* newStage);
FILTERS_EXPORT int filtersGroupDiffTypeChanged(const FiltersGroupDiff* d,
                                               filtersGroupType_t* oldType,
                                               filtersGroupType_t* newType);

/* The number of entries added, removed and changed, and their identifiers
 * in ascending order (arrays of exactly that many elements). */
FILTERS_EXPORT uint32_t filtersGroupDiffAddedCount(const FiltersGroupDiff* d);
FILTERS_EXPORT const filtersEntryId_t* filtersGroupDiffAddedIds(
    const FiltersGroupDiff* d);
FILTERS_EXPORT uint32_t filtersGroupDiffRemovedCount(const FiltersGroupDiff* d);
FILTERS_EXPORT const filtersEntryId_t* filtersGroupDiffRemovedIds(
    const FiltersGroupDiff* d);
FILTERS_EXPORT uint32_t filtersGroupDiffChangedCount(const FiltersGroupDiff* d);
FILTERS_EXPORT const filtersEntryId_t* filtersGroupDiffChangedIds(
    const FiltersGroupDiff* d);

/* A copy of the new group's entry `id` when it is added or changed; NULL
 * otherwise. */
FILTERS_EXPORT FiltersEntry* filtersGroupDiffGetNewEntry(
    const FiltersGroupDiff* d, filtersEntryId_t id);

/* Applies `d` to `g`: 0, or the code of the first operation the group
 * refuses, in which case `g` is unchanged (-3 when `g` lacks a removed
 * entry; -5 for a null pointer). */
FILTERS_EXPORT filtersErr_t filtersGroupDiffApply(const FiltersGroupDiff* d,
                                                  FiltersGroup* g);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_GROUP_DIFF_C_H_ */
