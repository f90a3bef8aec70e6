// FiltersGroupDiff is the difference between two filter groups, the old one
// ("from") and the new one ("to"), in the form an incremental update needs:
// the header fields that changed, the identifiers of the entries removed,
// added and changed (same identifier, entries not equal), each ascending, and
// the new content of every added or changed entry.
//
// Applying a diff to a group replays it through the group's own public
// operations (removeEntry, setStage, setType, insertEntry, setPriority), so
// the group's rules decide as they always do. Every step is checked against
// the group's validation tables before the first one is made: a refused
// apply returns the code of the first operation that would refuse and leaves
// the group as it was. When stage and type both change, the order of the two
// changes is chosen so that every intermediate stage and type is a valid
// pair for the entries the group keeps (through stage 0 or type 0 when no
// direct order fits), so a valid target is always reached.
//
// Ownership: a diff owns its data. It shares the new entries, which it never
// changes, between its copies; the groups it was made from may change or be
// destroyed afterwards. As with every copy of an entry, an entry's parent
// policer object stays shared with the group's entry it was copied from.
//
// Thread safety: a diff is immutable after construction, so any number of
// threads may read it and apply it to different groups at once. Applying
// needs exclusive access to the target group.
#ifndef FILTERSCOMMON_FILTER_GROUP_DIFF_H_
#define FILTERSCOMMON_FILTER_GROUP_DIFF_H_

#include <map>
#include <memory>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_types.h"

namespace FiltersCommon {

// The header fields of a group, as a diff records them for each side.
struct FiltersGroupHeader {
  filtersGroupId_t id = 0;
  filtersGroupPriority_t priority = 0;
  filtersGroupStage_t stage = FILTERS_STAGE_LOOKUP;
  filtersGroupType_t type = FILTERS_TYPE_NONE;
};

class FILTERS_EXPORT FiltersGroupDiff {
 public:
  // The empty diff: both headers zero, no entry changes.
  FiltersGroupDiff() = default;

  // The headers of the old and the new group.
  const FiltersGroupHeader& oldHeader() const { return old_; }
  const FiltersGroupHeader& newHeader() const { return new_; }
  bool idChanged() const { return old_.id != new_.id; }
  bool priorityChanged() const { return old_.priority != new_.priority; }
  bool stageChanged() const { return old_.stage != new_.stage; }
  bool typeChanged() const { return old_.type != new_.type; }
  bool headerChanged() const {
    return idChanged() || priorityChanged() || stageChanged() || typeChanged();
  }

  // Identifiers held only by the new group, only by the old one, and by both
  // with entries that are not equal; each ascending.
  const std::vector<filtersEntryId_t>& added() const { return added_; }
  const std::vector<filtersEntryId_t>& removed() const { return removed_; }
  const std::vector<filtersEntryId_t>& changed() const { return changed_; }

  // The new group's entry `id` when it is added or changed; null otherwise.
  // Valid as long as this diff or a copy of it exists.
  const FiltersEntry* newEntry(filtersEntryId_t id) const;

  // True exactly when the two groups were equal (FiltersGroup::operator==).
  bool empty() const { return !headerChanged() && entriesUnchanged(); }

  // Applies the diff to `group`: removes the removed entries, takes the
  // added and changed entries out of the way, sets the new stage and type
  // (only those that changed), inserts the new entries in ascending
  // identifier, and sets the new priority when it changed. The identifier is
  // not part of the change: a group keeps its own. Returns 0, or the code of
  // the first operation that refuses (-3 for a removed entry the group does
  // not hold; -4, -6, -7, -8, -9 or -10 from setStage, setType or
  // insertEntry), in which case `group` is left unchanged; -5 for a null
  // group.
  //
  // For groups a and b with the same identifier, applying diffGroups(a, b)
  // to a copy of a yields b whenever b's stage and type are a valid pair and
  // b's entries are acceptable to them.
  filtersErr_t applyTo(FiltersGroup* group) const;

 private:
  friend FILTERS_EXPORT FiltersGroupDiff diffGroups(const FiltersGroup& from,
                                                    const FiltersGroup& to);

  bool entriesUnchanged() const {
    return added_.empty() && removed_.empty() && changed_.empty();
  }

  FiltersGroupHeader old_;
  FiltersGroupHeader new_;
  std::vector<filtersEntryId_t> added_;
  std::vector<filtersEntryId_t> removed_;
  std::vector<filtersEntryId_t> changed_;
  // The added and changed entries of the new group, by identifier. They are
  // never modified, so copies of the diff share them.
  std::map<filtersEntryId_t, std::shared_ptr<const FiltersEntry>> newEntries_;
};

// The difference that turns `from` into `to`. Walks both entry maps once.
FILTERS_EXPORT FiltersGroupDiff diffGroups(const FiltersGroup& from,
                                           const FiltersGroup& to);

}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_GROUP_DIFF_H_
