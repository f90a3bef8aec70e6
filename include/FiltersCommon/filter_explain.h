// What a filter group can hold, and why it refuses an entry.
//
// The capability queries read FiltersGroup's validation tables and answer in
// ascending order. The explanation is a dry run of FiltersGroup::insertEntry:
// it runs the group's own match, action and policer checks in the order the
// insertion runs them, so its code is the one insertEntry would return, and
// it names the element behind a refusal (the first refused match kind in
// ascending kind, the first refused action kind, the entry's own policer, or
// the unknown stage or type) with a one-line message. It never changes the
// group or the entry.
//
// Everything here reads constant tables and its arguments only, so any
// thread may call it.
#ifndef FILTERSCOMMON_FILTER_EXPLAIN_H_
#define FILTERSCOMMON_FILTER_EXPLAIN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_explain_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_types.h"
#include "policer/policer.h"

namespace FiltersCommon {

// The stages and group types the tables know, ascending.
FILTERS_EXPORT std::vector<filtersGroupStage_t> knownGroupStages();
FILTERS_EXPORT std::vector<filtersGroupType_t> knownGroupTypes();

// The match kinds `type` allows; nothing for a type no table knows (type 0
// is known and allows no kind).
FILTERS_EXPORT std::optional<std::vector<filtersMatch_t>> allowedMatchKinds(
    filtersGroupType_t type);
// The group types `stage` allows; nothing for an unknown stage.
FILTERS_EXPORT std::optional<std::vector<filtersGroupType_t>> allowedGroupTypes(
    filtersGroupStage_t stage);
// The action kinds `stage` allows; nothing for an unknown stage.
FILTERS_EXPORT std::optional<std::vector<filtersAction_t>> allowedActionKinds(
    filtersGroupStage_t stage);
// The policer stage an entry's own policer must have in `stage`; a policer
// of stage STAGE_NONE fits every stage besides. Nothing for an unknown stage.
FILTERS_EXPORT std::optional<policer::Stage> requiredPolicerStage(
    filtersGroupStage_t stage);

// The outcome of explainEntry; `cause` says what `value` holds (see
// filtersCause_t).
struct EntryExplanation {
  filtersErr_t code = FILTERS_OK;
  filtersCause_t cause = FILTERS_CAUSE_NONE;
  int32_t value = 0;
  // "match MatchSrcIPv4 (9) is not allowed in group type 8", ...; for an
  // accepted entry "fits group stage 2, type 3".
  std::string message;
};

// What group.insertEntry(entry) would return, and why.
FILTERS_EXPORT EntryExplanation explainEntry(const FiltersGroup& group,
                                             const FiltersEntry& entry);
// The same for a group of `stage` and `type`, which need not be a valid pair:
// a group read from the wire keeps whatever stage and type it was given.
FILTERS_EXPORT EntryExplanation explainEntry(filtersGroupStage_t stage,
                                             filtersGroupType_t type,
                                             const FiltersEntry& entry);

}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_EXPLAIN_H_
