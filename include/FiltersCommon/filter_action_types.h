/*
 * Enumerations that belong to single action kinds and that C callers pass
 * through the flat interface as well as C++ callers through the classes.
 *
 * This header is plain C11 and C++17. In C++ everything lives in namespace
 * FiltersCommon; in C the same names are global. Like the vocabulary in
 * filter_types.h, each enumeration is held in 32 bits and its numbers are part
 * of the interface: they travel on the wire and C callers compare against
 * them, so none of them may ever change.
 */
#ifndef FILTERSCOMMON_FILTER_ACTION_TYPES_H_
#define FILTERSCOMMON_FILTER_ACTION_TYPES_H_

#ifdef __cplusplus
#include <cstdint>
#define FILTERS_ACTION_ENUM_BASE : int32_t
namespace FiltersCommon {
#else
#include <stdint.h>
#define FILTERS_ACTION_ENUM_BASE
#endif

/* Which decision of an earlier lookup ActionCopyToCpuCancel takes back. The
 * dump names the two values by a two-entry table, so no other value belongs
 * in an action. */
typedef enum cp2cpuCancelParam_t FILTERS_ACTION_ENUM_BASE {
  /* Cancel a copy-to-CPU decision. */
  COPY_TO_CPU_CANCEL = 0,
  /* Cancel a switch-to-CPU decision. */
  SWITCH_TO_CPU_CANCEL = 1
} cp2cpuCancelParam_t;

#ifdef __cplusplus
}  // namespace FiltersCommon
#endif

#undef FILTERS_ACTION_ENUM_BASE

#endif /* FILTERSCOMMON_FILTER_ACTION_TYPES_H_ */
