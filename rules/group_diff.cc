// Computing and applying group differences. Applying plans every operation
// first and checks it with the group's public validation members, which are
// the very checks those operations run, so that the group is changed only
// when every step will be accepted.
#include "FiltersCommon/filter_group_diff.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace FiltersCommon {
namespace {

// One change of a group's stage or type.
struct HeaderStep {
  enum Field { kStage, kType } field;
  int32_t value;
};
using HeaderPath = std::vector<HeaderStep>;

// The entries a group keeps through the change of its stage and type: all
// it holds except those the diff removes, replaces or adds.
class KeptEntries {
 public:
  KeptEntries(const FiltersGroup& group, std::vector<filtersEntryId_t> leaving)
      : group_(group), leaving_(std::move(leaving)) {}

  // Calls `check` on each kept entry in ascending identifier and returns
  // the first non-zero code, or 0.
  template <class Check>
  filtersErr_t firstRefusal(Check check) const {
    for (const auto& [id, entry] : group_.getEntriesRef()) {
      if (std::binary_search(leaving_.begin(), leaving_.end(), id)) continue;
      filtersErr_t code = check(entry);
      if (code != FILTERS_OK) return code;
    }
    return FILTERS_OK;
  }

 private:
  const FiltersGroup& group_;
  const std::vector<filtersEntryId_t> leaving_;  // ascending
};

// The code FiltersGroup::insertEntry returns for `entry` in a group of
// `stage` and `type`: matches, actions, then the policer.
filtersErr_t admission(const FiltersGroup& group, const FiltersEntry& entry,
                       filtersGroupStage_t stage, filtersGroupType_t type) {
  filtersErr_t code = group.groupMatchValidation(entry, type);
  if (code == FILTERS_OK) code = group.groupActionValidation(entry, stage);
  if (code == FILTERS_OK) {
    code = group.groupPolicerValidation(entry.getPolicer(), stage);
  }
  return code;
}

// What setStage and setType would return, step after step, for a group at
// `*stage` and `*type` holding `kept`: the first refusal, or 0 with the
// stage and type the path ends at.
filtersErr_t checkPath(const FiltersGroup& group, const KeptEntries& kept,
                       const HeaderPath& path, filtersGroupStage_t* stage,
                       filtersGroupType_t* type) {
  for (const HeaderStep& step : path) {
    filtersErr_t code;
    if (step.field == HeaderStep::kStage) {
      const auto next = static_cast<filtersGroupStage_t>(step.value);
      code = group.groupStageValidation(next, *type);
      if (code == FILTERS_OK) {
        code = kept.firstRefusal([&](const FiltersEntry& entry) {
          filtersErr_t c = group.groupActionValidation(entry, next);
          return c != FILTERS_OK
                     ? c
                     : group.groupPolicerValidation(entry.getPolicer(), next);
        });
      }
      if (code == FILTERS_OK) *stage = next;
    } else {
      const auto next = static_cast<filtersGroupType_t>(step.value);
      code = group.groupStageValidation(*stage, next);
      if (code == FILTERS_OK) {
        code = kept.firstRefusal([&](const FiltersEntry& entry) {
          return group.groupMatchValidation(entry, next);
        });
      }
      if (code == FILTERS_OK) *type = next;
    }
    if (code != FILTERS_OK) return code;
  }
  return FILTERS_OK;
}

// The orders in which a group can move to `stage` and `type`, most direct
// first. Setting one field first needs the new value to fit the other's old
// one; when neither order does, type 0 (allowed in every known stage, but
// only for entries without matches) or stage 0 (allowing every known type,
// but not every action or policer) bridges the two. With the kept entries
// acceptable to the target, one of these always works unless the group's
// current stage and type are both unknown.
std::vector<HeaderPath> candidatePaths(bool stageChanges, bool typeChanges,
                                       filtersGroupStage_t stage,
                                       filtersGroupType_t type) {
  if (!stageChanges && !typeChanges) return {HeaderPath()};
  const HeaderStep toStage{HeaderStep::kStage, stage};
  const HeaderStep toType{HeaderStep::kType, type};
  std::vector<HeaderPath> paths;
  if (stageChanges && typeChanges) {
    paths.push_back({toStage, toType});
    paths.push_back({toType, toStage});
  } else {
    paths.push_back({stageChanges ? toStage : toType});
  }
  paths.push_back({{HeaderStep::kType, FILTERS_TYPE_NONE}, toStage, toType});
  paths.push_back(
      {{HeaderStep::kStage, FILTERS_STAGE_LOOKUP}, toType, toStage});
  return paths;
}

FiltersGroupHeader headerOf(const FiltersGroup& group) {
  return {group.getId(), group.getPriority(), group.getStage(),
          group.getType()};
}

}  // namespace

const FiltersEntry* FiltersGroupDiff::newEntry(filtersEntryId_t id) const {
  auto it = newEntries_.find(id);
  return it == newEntries_.end() ? nullptr : it->second.get();
}

filtersErr_t FiltersGroupDiff::applyTo(FiltersGroup* group) const {
  if (group == nullptr) return FILTERS_ERR_REFUSED;
  const auto& held = group->getEntriesRef();
  for (filtersEntryId_t id : removed_) {
    if (held.count(id) == 0) return FILTERS_ERR_NOT_FOUND;
  }

  // Entries that leave before the header changes: removed ones, and the old
  // versions of changed (or, on a group other than the old one, added) ones,
  // which need not fit the new stage and type.
  std::vector<filtersEntryId_t> leaving(removed_);
  for (const auto& [id, entry] : newEntries_) leaving.push_back(id);
  std::sort(leaving.begin(), leaving.end());
  const KeptEntries kept(*group, leaving);

  const filtersGroupStage_t targetStage =
      stageChanged() ? new_.stage : group->getStage();
  const filtersGroupType_t targetType =
      typeChanged() ? new_.type : group->getType();
  const std::vector<HeaderPath> paths =
      candidatePaths(stageChanged(), typeChanged(), targetStage, targetType);
  const HeaderPath* chosen = nullptr;
  filtersErr_t directRefusal = FILTERS_OK;
  filtersGroupStage_t stage = group->getStage();
  filtersGroupType_t type = group->getType();
  for (const HeaderPath& path : paths) {
    stage = group->getStage();
    type = group->getType();
    filtersErr_t code = checkPath(*group, kept, path, &stage, &type);
    if (code == FILTERS_OK) {
      chosen = &path;
      break;
    }
    // No order works: report what the most direct one meets.
    if (&path == &paths.front()) directRefusal = code;
  }
  if (chosen == nullptr) return directRefusal;
  for (const auto& [id, entry] : newEntries_) {
    filtersErr_t code = admission(*group, *entry, stage, type);
    if (code != FILTERS_OK) return code;
  }

  // Every step is known to be accepted; the codes are still passed on, so
  // that a group whose rules ever disagreed with its validation members
  // would show it rather than be silently half-updated.
  for (filtersEntryId_t id : leaving) {
    if (held.count(id) != 0) {
      filtersErr_t code = group->removeEntry(id);
      if (code != FILTERS_OK) return code;
    }
  }
  for (const HeaderStep& step : *chosen) {
    filtersErr_t code =
        step.field == HeaderStep::kStage
            ? group->setStage(static_cast<filtersGroupStage_t>(step.value))
            : group->setType(static_cast<filtersGroupType_t>(step.value));
    if (code != FILTERS_OK) return code;
  }
  for (const auto& [id, entry] : newEntries_) {
    filtersErr_t code = group->insertEntry(*entry);
    if (code != FILTERS_OK) return code;
  }
  if (priorityChanged()) group->setPriority(new_.priority);
  return FILTERS_OK;
}

FiltersGroupDiff diffGroups(const FiltersGroup& from, const FiltersGroup& to) {
  FiltersGroupDiff diff;
  diff.old_ = headerOf(from);
  diff.new_ = headerOf(to);
  const auto& before = from.getEntriesRef();
  const auto& after = to.getEntriesRef();
  auto a = before.begin();
  auto b = after.begin();
  auto keepNew = [&diff](filtersEntryId_t id, const FiltersEntry& entry) {
    diff.newEntries_.emplace_hint(diff.newEntries_.end(), id,
                                  std::make_shared<const FiltersEntry>(entry));
  };
  while (a != before.end() || b != after.end()) {
    if (b == after.end() || (a != before.end() && a->first < b->first)) {
      diff.removed_.push_back(a->first);
      ++a;
    } else if (a == before.end() || b->first < a->first) {
      diff.added_.push_back(b->first);
      keepNew(b->first, b->second);
      ++b;
    } else {
      if (!(a->second == b->second)) {
        diff.changed_.push_back(b->first);
        keepNew(b->first, b->second);
      }
      ++a;
      ++b;
    }
  }
  return diff;
}

}  // namespace FiltersCommon
