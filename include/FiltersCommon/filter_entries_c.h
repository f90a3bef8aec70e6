/*
 * C interface to filter entries.
 *
 * An entry is one rule of a filter group: an identifier, a priority, at most
 * one match per match kind and at most one action per action kind. C callers
 * hold it through an opaque FiltersEntry pointer.
 *
 * Conventions:
 * (1) newFiltersEntry and copyFiltersEntry return an entry that belongs to
 *     the caller until deleteFiltersEntry; nothing else frees it.
 * (2) filtersEntrySetMatch and filtersEntrySetAction store a copy of the
 *     match or action handle (see filter_matches_c.h, filter_actions_c.h):
 *     the caller still owns the handle and deletes it when done. Setting a
 *     kind already held replaces the held copy.
 * (3) filtersEntryGetMatch and filtersEntryGetAction copy the held value of
 *     the kind that the given handle reports into that handle; the handle
 *     must be of the class its kind belongs to.
 * (4) Functions returning filtersErr_t answer a null entry, match or action
 *     with FILTERS_ERR_REFUSED (-5) and a kind no class has with
 *     FILTERS_ERR_INVALID (-4). Every other function treats a null entry as
 *     a programming error and aborts the process through an assertion.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are
 * declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_ENTRIES_C_H_
#define FILTERSCOMMON_FILTER_ENTRIES_C_H_

#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"

#ifdef __cplusplus
namespace FiltersCommon {
class FiltersEntry;
extern "C" {
#else
typedef struct FiltersEntry FiltersEntry;
#endif

/* A new empty entry with identifier `id` and priority 0. */
FILTERS_EXPORT FiltersEntry* newFiltersEntry(filtersEntryId_t id);
/* A new deep copy of `e`; a parent policer stays shared with `e`. */
FILTERS_EXPORT FiltersEntry* copyFiltersEntry(FiltersEntry* e);
/* Destroys `e` with everything it holds. */
FILTERS_EXPORT void deleteFiltersEntry(FiltersEntry* e);

FILTERS_EXPORT filtersEntryId_t filtersEntryGetId(FiltersEntry* e);
FILTERS_EXPORT void filtersEntrySetPriority(FiltersEntry* e,
                                            filtersEntryPriority_t p);
FILTERS_EXPORT filtersEntryPriority_t filtersEntryGetPriority(FiltersEntry* e);

/* Copies the entry's match of m's kind into the match handle `m`: 0, or -3
 * when the entry holds no match of that kind. */
FILTERS_EXPORT filtersErr_t filtersEntryGetMatch(FiltersEntry* e, void* m);
/* Stores a copy of the match handle `m`: 0, or -4 when the entry refuses it
 * (IPv4 beside IPv6 addresses, a port beside a port range). */
FILTERS_EXPORT filtersErr_t filtersEntrySetMatch(FiltersEntry* e, void* m);
/* 0, or -3 when the entry holds no match of kind `t`. */
FILTERS_EXPORT filtersErr_t filtersEntryDeleteMatch(FiltersEntry* e,
                                                    filtersMatch_t t);

/* Copies the entry's action of a's kind into the action handle `a`: 0, or -3
 * when the entry holds no action of that kind. */
FILTERS_EXPORT filtersErr_t filtersEntryGetAction(FiltersEntry* e, void* a);
/* Stores a copy of the action handle `a`; 0. */
FILTERS_EXPORT filtersErr_t filtersEntrySetAction(FiltersEntry* e, void* a);
/* 0, or -3 when the entry holds no action of kind `t`. */
FILTERS_EXPORT filtersErr_t filtersEntryDeleteAction(FiltersEntry* e,
                                                     filtersAction_t t);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_ENTRIES_C_H_ */
