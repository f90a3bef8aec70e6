/*
 * Names of the numbers of the filter model, for messages and tools: the
 * symbolic name and a one-line description of every error code, the class
 * name of every match and action kind, and the enumerator names of the
 * stages, group types and policer stages.
 *
 * Every function returns a pointer to a constant string with static storage:
 * nothing to free, valid for the life of the process, safe from any thread.
 * A number outside the known range gives "unknown" (and "unknown error code"
 * as a description), never null.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are declared
 * in namespace FiltersCommon, with C linkage either way, so both faces call
 * the same functions.
 */
#ifndef FILTERSCOMMON_FILTER_NAMES_H_
#define FILTERSCOMMON_FILTER_NAMES_H_

#ifdef __cplusplus
#include <cstdint>
#else
#include <stdint.h>
#endif

#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

/* The enumerator name of `code`: "FILTERS_OK", "FILTERS_ERR_NOT_FOUND", ...,
 * "FILTERS_ERR_POLICER_STAGE". */
FILTERS_EXPORT const char* filtersErrName(filtersErr_t code);
/* What `code` means, in one line without a final full stop. */
FILTERS_EXPORT const char* filtersErrDescription(filtersErr_t code);

/* The class that owns match kind `kind`: "MatchAll" ... "MatchUnknownDestIp".
 * Kind 20 is "MatchToS", the class MatchDSCP shares it with. */
FILTERS_EXPORT const char* filtersMatchName(filtersMatch_t kind);
/* The class that owns action kind `kind`: "ActionPermit" ...
 * "ActionDoNotLearnMac". */
FILTERS_EXPORT const char* filtersActionName(filtersAction_t kind);

/* The enumerator name of a stage ("FILTERS_STAGE_INGRESS") and of a group
 * type ("FILTERS_TYPE_IPV4_L4"). */
FILTERS_EXPORT const char* filtersStageName(filtersGroupStage_t stage);
FILTERS_EXPORT const char* filtersTypeName(filtersGroupType_t type);

/* The policer library's stage numbers as the entry dump prints them:
 * "Ingress" (0), "Egress" (1), "None" (2). */
FILTERS_EXPORT const char* filtersPolicerStageName(int32_t policerStage);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_NAMES_H_ */
