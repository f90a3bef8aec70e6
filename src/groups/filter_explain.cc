// Capability queries and the dry run of insertEntry.
//
// The explanation takes its code from the group's own validation operations,
// called in the order insertEntry calls them, so the code cannot disagree
// with an insertion. Only the element to blame is looked up in the tables,
// once a check has already refused.

#include "FiltersCommon/filter_explain.h"

#include <map>
#include <set>
#include <string>

namespace FiltersCommon {

namespace {

// The holder of the validation operations for callers that have no group:
// they read the tables and their arguments only, never the group's fields.
const FiltersGroup& validator() {
  static const FiltersGroup group(0);
  return group;
}

template <class Key, class Element>
std::vector<Key> keysOf(const std::map<Key, const std::set<Element>>& table) {
  std::vector<Key> keys;
  for (const auto& row : table) keys.push_back(row.first);
  return keys;
}

template <class Key, class Element>
std::optional<std::vector<Element>> rowOf(
    const std::map<Key, const std::set<Element>>& table, Key key) {
  const auto row = table.find(key);
  if (row == table.end()) return std::nullopt;
  return std::vector<Element>(row->second.begin(), row->second.end());
}

// The first held element, in ascending kind, whose kind `allowed` lacks, or
// null.
template <class HeldMap, class Kind>
const typename HeldMap::mapped_type* firstRefused(
    const HeldMap& held, const std::set<Kind>& allowed) {
  for (const auto& element : held) {
    if (allowed.count(element.second->getType()) == 0) return &element.second;
  }
  return nullptr;
}

std::string number(int32_t value) { return std::to_string(value); }

void blame(EntryExplanation* out, filtersCause_t cause, int32_t value,
           std::string message) {
  out->cause = cause;
  out->value = value;
  out->message = std::move(message);
}

// For a code no rule below expects: its name and meaning.
void blameCode(EntryExplanation* out) {
  blame(out, FILTERS_CAUSE_NONE, 0,
        std::string(filtersErrName(out->code)) + ": " +
            filtersErrDescription(out->code));
}

void blameStage(EntryExplanation* out, filtersGroupStage_t stage) {
  blame(out, FILTERS_CAUSE_STAGE, stage,
        "group stage " + number(stage) + " is unknown");
}

const char* kindName(filtersMatch_t kind) { return filtersMatchName(kind); }
const char* kindName(filtersAction_t kind) { return filtersActionName(kind); }

// Blames the first held element, in ascending kind, that the row of `key`
// in `table` lacks, when `refused` is the code; any other code gets its
// name and meaning. `word` and `place` shape the message: "match MatchX (9)
// is not allowed in group type 8".
template <class Key, class Kind, class HeldMap>
void blameKind(EntryExplanation* out,
               const std::map<Key, const std::set<Kind>>& table, Key key,
               const HeldMap& held, filtersErr_t refused, filtersCause_t cause,
               const char* word, const std::string& place) {
  const auto row = table.find(key);
  const auto* element = out->code == refused && row != table.end()
                            ? firstRefused(held, row->second)
                            : nullptr;
  if (element == nullptr) return blameCode(out);
  const Kind kind = (*element)->getType();
  blame(out, cause, kind,
        std::string(word) + " " + kindName(kind) + " (" + number(kind) +
            ") is not allowed in " + place);
}

void blameMatches(EntryExplanation* out, filtersGroupType_t type,
                  const FiltersEntry& entry) {
  if (out->code == FILTERS_ERR_INVALID &&
      FiltersGroup::TypeDescription_.count(type) == 0) {
    return blame(out, FILTERS_CAUSE_TYPE, type,
                 "group type " + number(type) + " is unknown");
  }
  blameKind(out, FiltersGroup::TypeDescription_, type, entry.getMatches(),
            FILTERS_ERR_MATCH_NOT_ALLOWED, FILTERS_CAUSE_MATCH, "match",
            "group type " + number(type));
}

void blameActions(EntryExplanation* out, filtersGroupStage_t stage,
                  const FiltersEntry& entry) {
  if (out->code == FILTERS_ERR_UNKNOWN_STAGE &&
      FiltersGroup::StageActionsDescription_.count(stage) == 0) {
    return blameStage(out, stage);
  }
  blameKind(out, FiltersGroup::StageActionsDescription_, stage,
            entry.getActions(), FILTERS_ERR_ACTION_NOT_ALLOWED,
            FILTERS_CAUSE_ACTION, "action", "stage " + number(stage));
}

void blamePolicer(EntryExplanation* out, filtersGroupStage_t stage,
                  const policer::Policer& policer) {
  const std::optional<policer::Stage> required = requiredPolicerStage(stage);
  if (out->code == FILTERS_ERR_UNKNOWN_STAGE && !required) {
    return blameStage(out, stage);
  }
  if (out->code != FILTERS_ERR_POLICER_STAGE || !required) {
    return blameCode(out);
  }
  const int32_t own = policer.GetStage();
  blame(out, FILTERS_CAUSE_POLICER, own,
        "policer stage " + number(own) + " (" + filtersPolicerStageName(own) +
            ") does not fit group stage " + number(stage) +
            ", which requires policer stage " + number(*required) + " (" +
            filtersPolicerStageName(*required) + ")");
}

// The three checks of insertEntry, in its order, through `checks`.
EntryExplanation explainWith(const FiltersGroup& checks,
                             filtersGroupStage_t stage, filtersGroupType_t type,
                             const FiltersEntry& entry) {
  EntryExplanation out;
  out.code = checks.groupMatchValidation(entry, type);
  if (out.code != FILTERS_OK) {
    blameMatches(&out, type, entry);
    return out;
  }
  out.code = checks.groupActionValidation(entry, stage);
  if (out.code != FILTERS_OK) {
    blameActions(&out, stage, entry);
    return out;
  }
  // Only the entry's own policer is checked, as insertEntry does.
  out.code = checks.groupPolicerValidation(entry.getPolicer(), stage);
  if (out.code != FILTERS_OK) {
    blamePolicer(&out, stage, entry.getPolicer());
    return out;
  }
  out.message = "fits group stage " + number(stage) + ", type " + number(type);
  return out;
}

}  // namespace

std::vector<filtersGroupStage_t> knownGroupStages() {
  return keysOf(FiltersGroup::StageTypesDescription_);
}

std::vector<filtersGroupType_t> knownGroupTypes() {
  return keysOf(FiltersGroup::TypeDescription_);
}

std::optional<std::vector<filtersMatch_t>> allowedMatchKinds(
    filtersGroupType_t type) {
  return rowOf(FiltersGroup::TypeDescription_, type);
}

std::optional<std::vector<filtersGroupType_t>> allowedGroupTypes(
    filtersGroupStage_t stage) {
  return rowOf(FiltersGroup::StageTypesDescription_, stage);
}

std::optional<std::vector<filtersAction_t>> allowedActionKinds(
    filtersGroupStage_t stage) {
  return rowOf(FiltersGroup::StageActionsDescription_, stage);
}

std::optional<policer::Stage> requiredPolicerStage(filtersGroupStage_t stage) {
  // The policer stage map is private to the policer check, so ask the check
  // itself which stage passes.
  for (policer::Stage candidate :
       {policer::STAGE_INGRESS, policer::STAGE_EGRESS}) {
    const filtersErr_t code = validator().groupPolicerValidation(
        policer::Policer(0, candidate, policer::Mode()), stage);
    if (code == FILTERS_ERR_UNKNOWN_STAGE) return std::nullopt;
    if (code == FILTERS_OK) return candidate;
  }
  return policer::STAGE_NONE;
}

EntryExplanation explainEntry(const FiltersGroup& group,
                              const FiltersEntry& entry) {
  return explainWith(group, group.getStage(), group.getType(), entry);
}

EntryExplanation explainEntry(filtersGroupStage_t stage,
                              filtersGroupType_t type,
                              const FiltersEntry& entry) {
  return explainWith(validator(), stage, type, entry);
}

}  // namespace FiltersCommon
