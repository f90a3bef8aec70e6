#include "FiltersCommon/filter_groups.h"

#include <unordered_map>
#include <utility>

namespace FiltersCommon {
namespace {

// Checks the objects an entry holds (matches or actions, in ascending kind)
// against the row `key` of `table`: `unknown` when there is no such row,
// `refused` for the first object whose reported kind the row lacks.
template <class Table, class Key, class Held>
filtersErr_t CheckKinds(const Table& table, Key key, const Held& held,
                        filtersErr_t unknown, filtersErr_t refused) {
  const auto row = table.find(key);
  if (row == table.end()) return unknown;
  for (const auto& item : held) {
    if (row->second.count(item.second->getType()) == 0) return refused;
  }
  return FILTERS_OK;
}

}  // namespace

FiltersGroup::FiltersGroup(const filtersGroupId_t& id)
    : id_(id),
      priority_(0),
      stage_(FILTERS_STAGE_LOOKUP),
      type_(FILTERS_TYPE_NONE) {}

FiltersGroup::FiltersGroup(const FiltersGroup& other) = default;

void FiltersGroup::setPriority(const filtersGroupPriority_t& priority) {
  priority_ = priority;
}

filtersErr_t FiltersGroup::setStage(const filtersGroupStage_t& stage) {
  filtersErr_t code = groupStageValidation(stage, type_);
  // The matches are not rechecked: they depend on the type alone.
  for (auto it = entries_.begin(); code == FILTERS_OK && it != entries_.end();
       ++it) {
    code = groupActionValidation(it->second, stage);
    if (code == FILTERS_OK) {
      code = groupPolicerValidation(it->second.getPolicer(), stage);
    }
  }
  if (code == FILTERS_OK) stage_ = stage;
  return code;
}

filtersErr_t FiltersGroup::setType(const filtersGroupType_t& type) {
  filtersErr_t code = groupStageValidation(stage_, type);
  for (auto it = entries_.begin(); code == FILTERS_OK && it != entries_.end();
       ++it) {
    code = groupMatchValidation(it->second, type);
  }
  if (code == FILTERS_OK) type_ = type;
  return code;
}

filtersErr_t FiltersGroup::insertEntry(const FiltersEntry& entry) {
  const filtersErr_t code = entryValidation(entry, stage_, type_);
  if (code != FILTERS_OK) return code;
  const filtersEntryId_t id = entry.getId();
  const auto hint = vacate(id, &entry);
  // Re-inserting an entry the group holds is a replacement by itself; erasing
  // first would leave `entry` dangling before the copy.
  if (hint != entries_.end() && &hint->second == &entry) return FILTERS_OK;
  entries_.emplace_hint(hint, id, entry);
  return FILTERS_OK;
}

filtersErr_t FiltersGroup::adoptEntry(FiltersEntry&& entry) {
  const filtersErr_t code = entryValidation(entry, stage_, type_);
  if (code != FILTERS_OK) return code;
  const filtersEntryId_t id = entry.getId();
  entries_.emplace_hint(vacate(id, &entry), id, std::move(entry));
  return FILTERS_OK;
}

std::map<filtersEntryId_t, FiltersEntry>::iterator FiltersGroup::vacate(
    filtersEntryId_t id, const FiltersEntry* incoming) {
  // Groups are mostly filled in ascending identifier (loads, copies, bulk
  // inserts): an identifier past the last one belongs at the end, and the
  // search down the tree, which misses the cache in a large group, is saved.
  if (entries_.empty() || entries_.rbegin()->first < id) return entries_.end();
  auto it = entries_.lower_bound(id);
  if (it != entries_.end() && it->first == id && &it->second != incoming) {
    it = entries_.erase(it);
  }
  return it;
}

filtersErr_t FiltersGroup::removeEntry(const filtersEntryId_t& id) {
  return entries_.erase(id) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

std::map<filtersEntryId_t, FiltersEntry> FiltersGroup::getEntries() const {
  return entries_;
}

bool FiltersGroup::operator==(const FiltersGroup& other) const {
  if (id_ != other.id_ || priority_ != other.priority_ ||
      stage_ != other.stage_ || type_ != other.type_ ||
      entries_.size() != other.entries_.size()) {
    return false;
  }
  for (auto mine = entries_.begin(), theirs = other.entries_.begin();
       mine != entries_.end(); ++mine, ++theirs) {
    if (mine->first != theirs->first || !(mine->second == theirs->second)) {
      return false;
    }
  }
  return true;
}

bool FiltersGroup::operator!=(const FiltersGroup& other) const {
  return !(*this == other);
}

filtersErr_t FiltersGroup::entryValidation(const FiltersEntry& entry,
                                           filtersGroupStage_t stage,
                                           filtersGroupType_t type) const {
  filtersErr_t code = groupMatchValidation(entry, type);
  if (code == FILTERS_OK) code = groupActionValidation(entry, stage);
  if (code == FILTERS_OK) {
    // Only the entry's own policer is metered in this group; the parent
    // belongs to whatever group programs it.
    code = groupPolicerValidation(entry.getPolicer(), stage);
  }
  return code;
}

filtersErr_t FiltersGroup::groupMatchValidation(const FiltersEntry& entry,
                                                filtersGroupType_t type) const {
  return CheckKinds(TypeDescription_, type, entry.getMatches(),
                    FILTERS_ERR_INVALID, FILTERS_ERR_MATCH_NOT_ALLOWED);
}

filtersErr_t FiltersGroup::groupActionValidation(
    const FiltersEntry& entry, filtersGroupStage_t stage) const {
  return CheckKinds(StageActionsDescription_, stage, entry.getActions(),
                    FILTERS_ERR_UNKNOWN_STAGE, FILTERS_ERR_ACTION_NOT_ALLOWED);
}

filtersErr_t FiltersGroup::groupStageValidation(filtersGroupStage_t stage,
                                                filtersGroupType_t type) const {
  const auto row = StageTypesDescription_.find(stage);
  if (row == StageTypesDescription_.end()) return FILTERS_ERR_UNKNOWN_STAGE;
  if (row->second.count(type) == 0) return FILTERS_ERR_TYPE_NOT_IN_STAGE;
  return FILTERS_OK;
}

filtersErr_t FiltersGroup::groupPolicerValidation(
    const policer::Policer& policer, filtersGroupStage_t stage) const {
  // The policer stage each group stage meters in. Built on first use; the
  // local static makes concurrent first calls wait for a single builder.
  static const std::unordered_map<filtersGroupStage_t, policer::Stage>
      kPolicerStage = {
          {FILTERS_STAGE_LOOKUP, policer::STAGE_NONE},
          {FILTERS_STAGE_VLAN, policer::STAGE_NONE},
          {FILTERS_STAGE_INGRESS, policer::STAGE_INGRESS},
          {FILTERS_STAGE_EGRESS, policer::STAGE_EGRESS},
      };
  // A policer without stage meters nowhere and fits every group.
  if (policer.GetStage() == policer::STAGE_NONE) return FILTERS_OK;
  const auto row = kPolicerStage.find(stage);
  if (row == kPolicerStage.end()) return FILTERS_ERR_UNKNOWN_STAGE;
  return row->second == policer.GetStage() ? FILTERS_OK
                                           : FILTERS_ERR_POLICER_STAGE;
}

}  // namespace FiltersCommon

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::FiltersGroup& group) {
  // Numbers go through the stream's own formatting: the dumps never change
  // the stream's state on the caller's behalf.
  os << "=FiltersGroup=\n"
     << "  ID: " << static_cast<unsigned>(group.getId()) << '\n'
     << "  Priority: " << static_cast<unsigned>(group.getPriority()) << '\n'
     << "  Stage: " << static_cast<int>(group.getStage()) << '\n'
     << "  Type: " << static_cast<int>(group.getType()) << '\n';
  for (const auto& held : group.getEntriesRef()) os << held.second;
  return os;
}
