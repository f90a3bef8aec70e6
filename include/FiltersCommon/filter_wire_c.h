/*
 * C interface to the wire form and the text dump of groups and entries.
 *
 * Conventions:
 * (1) filtersGroupSerialize, filtersGroupDump and filtersEntryDump return a
 *     new block allocated with malloc that belongs to the caller, who
 *     releases it with free(). They return null only when memory runs out.
 * (2) newFiltersGroupFromBytes returns a group that belongs to the caller
 *     until deleteFiltersGroup. It reads the bytes as the C++ constructor
 *     does: stage and type are taken as they come and entries the group
 *     refuses are dropped silently (compare entry counts, or explain each
 *     entry with filter_explain_c.h, to find out). Bytes holding an MPLS
 *     port action with identifiers of the wrong interface type cannot be
 *     read at all; the function then returns null.
 * (3) A null group or entry aborts the process through an assertion, like
 *     the rest of the C interface; a null `size` does too, and so do null
 *     bytes with a `size` above 0.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are
 * declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_WIRE_C_H_
#define FILTERSCOMMON_FILTER_WIRE_C_H_

#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
#else
#include <stddef.h>
#include <stdint.h>
#endif

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups_c.h"

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

/* The bytes of the group's FiltersGroupPB message; *size gets their number
 * (the block holds one more byte, a zero, so that it is never empty). */
FILTERS_EXPORT uint8_t* filtersGroupSerialize(FiltersGroup* g, size_t* size);
/* A new group read from the `size` bytes at `bytes` (null is allowed when
 * `size` is 0 and gives group 0 with no entries). */
FILTERS_EXPORT FiltersGroup* newFiltersGroupFromBytes(const uint8_t* bytes,
                                                      size_t size);
/* The group's text dump ("=FiltersGroup=" and everything below it) as a
 * zero-terminated string. */
FILTERS_EXPORT char* filtersGroupDump(FiltersGroup* g);
/* The entry's text dump ("  =FiltersEntry=" ...) as a zero-terminated
 * string. */
FILTERS_EXPORT char* filtersEntryDump(FiltersEntry* e);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_WIRE_C_H_ */
