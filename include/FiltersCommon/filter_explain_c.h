/*
 * C interface to what a group can hold and why it refuses an entry.
 *
 * Capability queries read the group validation tables: the match kinds a
 * group type allows, the group types and action kinds a stage allows, and the
 * policer stage a stage requires. The explanation is a dry run of
 * filtersGroupInsertEntry: the code it would return for an entry, and the
 * element that causes it (the first refused match kind, the first refused
 * action kind, the policer, or an unknown stage or type) with a one-line
 * message. The explanation runs the group's own checks in the order the
 * insertion runs them, so the two always agree; nothing is inserted.
 *
 * Conventions:
 * (1) The list queries fill an array the caller owns: at most `capacity`
 *     elements, in ascending order, and set *count to the full length of the
 *     list (larger than `capacity` when the array was too small; the array
 *     may then be null with capacity 0 to ask for the length). Arrays of
 *     FILTERS_MATCH_LAST + 1 elements always suffice.
 * (2) The explanation is written into a record the caller owns; it holds no
 *     pointers, so there is nothing to free.
 * (3) A null count, output or entry pointer answers FILTERS_ERR_REFUSED (-5)
 *     and writes nothing. The group functions abort through an assertion on
 *     a null group, like the rest of the group interface.
 *
 * This header compiles as C11 and as C++17; in C++ the declarations live in
 * namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_EXPLAIN_C_H_
#define FILTERSCOMMON_FILTER_EXPLAIN_C_H_

#ifdef __cplusplus
#include <cstdint>
#define FILTERS_CAUSE_ENUM_BASE : int32_t
#else
#include <stdint.h>
#define FILTERS_CAUSE_ENUM_BASE
#endif

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups_c.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_types.h"

#ifdef __cplusplus
namespace FiltersCommon {
#endif

/* What an explanation blames, and so what its `value` holds. */
typedef enum filtersCause_t FILTERS_CAUSE_ENUM_BASE {
  /* Nothing: the entry would be accepted. */
  FILTERS_CAUSE_NONE = 0,
  /* The group type is unknown; value: the type. */
  FILTERS_CAUSE_TYPE = 1,
  /* A match the type does not allow; value: its filtersMatch_t. */
  FILTERS_CAUSE_MATCH = 2,
  /* The stage is unknown; value: the stage. */
  FILTERS_CAUSE_STAGE = 3,
  /* An action the stage does not allow; value: its filtersAction_t. */
  FILTERS_CAUSE_ACTION = 4,
  /* The entry's own policer is of another policer stage than the group
   * stage requires; value: the policer's stage (0 ingress, 1 egress). */
  FILTERS_CAUSE_POLICER = 5
} filtersCause_t;

/* Room for the longest message, its terminating zero included. */
#define FILTERS_EXPLANATION_MESSAGE_SIZE 160

/* The outcome of an explanation. */
typedef struct filtersExplanation_t {
  /* What filtersGroupInsertEntry would return. */
  filtersErr_t code;
  filtersCause_t cause;
  int32_t value;
  /* For example "match MatchSrcIPv4 (9) is not allowed in group type 8";
   * always zero-terminated. */
  char message[FILTERS_EXPLANATION_MESSAGE_SIZE];
} filtersExplanation_t;

#ifdef __cplusplus
extern "C" {
#endif

/* The match kinds group type `type` allows: 0, or FILTERS_ERR_INVALID (-4)
 * for a type no table knows (type 0 is known and allows none). */
FILTERS_EXPORT filtersErr_t filtersTypeGetMatches(filtersGroupType_t type,
                                                  filtersMatch_t* kinds,
                                                  uint32_t capacity,
                                                  uint32_t* count);
/* The group types stage `stage` allows: 0, or FILTERS_ERR_UNKNOWN_STAGE. */
FILTERS_EXPORT filtersErr_t filtersStageGetTypes(filtersGroupStage_t stage,
                                                 filtersGroupType_t* types,
                                                 uint32_t capacity,
                                                 uint32_t* count);
/* The action kinds stage `stage` allows: 0, or FILTERS_ERR_UNKNOWN_STAGE. */
FILTERS_EXPORT filtersErr_t filtersStageGetActions(filtersGroupStage_t stage,
                                                   filtersAction_t* kinds,
                                                   uint32_t capacity,
                                                   uint32_t* count);
/* The policer stage an entry's policer must have in stage `stage` (0
 * ingress, 1 egress, 2 none; a policer without stage fits every stage): 0,
 * or FILTERS_ERR_UNKNOWN_STAGE. */
FILTERS_EXPORT filtersErr_t
filtersStageGetPolicerStage(filtersGroupStage_t stage, int32_t* policerStage);

/* Explains what filtersGroupInsertEntry(g, e) would return, without
 * inserting. Returns the code it writes into `out`, or -5 for a null entry
 * or output. */
FILTERS_EXPORT filtersErr_t filtersGroupExplainEntry(FiltersGroup* g,
                                                     FiltersEntry* e,
                                                     filtersExplanation_t* out);
/* The same for a group of stage `stage` and type `type`, which need not be
 * a valid pair (a group read from the wire keeps whatever it was given). */
FILTERS_EXPORT filtersErr_t filtersExplainEntry(filtersGroupStage_t stage,
                                                filtersGroupType_t type,
                                                FiltersEntry* e,
                                                filtersExplanation_t* out);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#undef FILTERS_CAUSE_ENUM_BASE

#endif /* FILTERSCOMMON_FILTER_EXPLAIN_C_H_ */
