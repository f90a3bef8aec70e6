// FiltersGroup is one filter group: the rules of one hardware lookup table,
// with an identifier, a priority, the pipeline stage it runs in, the type of
// key it matches on, and its entries keyed by entry identifier.
//
// The group owns copies of its entries (an ordered map of FiltersEntry
// values) and guards them with constant validation tables: an entry is only
// admitted when its matches fit the group's type, its actions fit the stage
// and its policer belongs to the policer stage the group's stage requires.
// Changing the stage or the type is all-or-nothing: a change that would not
// fit an entry already held is refused and the group stays as it was. A group
// read from the wire is the one exception: its stage and type are stored as
// they come, and entries that do not fit them are dropped.
//
// A group is a value: it copies deeply and compares by content. It is not
// synchronised: concurrent readers are safe, a writer needs exclusive access.
// The validation tables are constant and may be read from any thread.
#ifndef FILTERSCOMMON_FILTER_GROUPS_H_
#define FILTERSCOMMON_FILTER_GROUPS_H_

#include <map>
#include <ostream>
#include <set>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"
#include "policer/policer.h"

namespace FiltersCommon {

class FiltersGroupPB;
class FiltersSerialized;

class FILTERS_EXPORT FiltersGroup {
 public:
  // Group `id` with priority, stage and type 0 and no entries. Type 0 allows
  // no match, so callers set the stage and the type before inserting.
  explicit FiltersGroup(const filtersGroupId_t& id);
  // Copies every field; each entry through its own copy constructor.
  FiltersGroup(const FiltersGroup& other);
  // A group read from the bytes of a FiltersGroupPB. The parse result is not
  // examined: malformed or incomplete bytes yield whatever could be read, and
  // empty bytes yield group 0 with no entries.
  explicit FiltersGroup(const std::string& bytes);
  // The same from the bytes held in `buffer`, which is left unchanged.
  explicit FiltersGroup(FiltersSerialized& buffer);

  filtersGroupId_t getId() const { return id_; }

  // Stored as given.
  void setPriority(const filtersGroupPriority_t& priority);
  filtersGroupPriority_t getPriority() const { return priority_; }

  // Checks `stage` against the current type, then every entry's actions and
  // policer against it; the first refusal is returned and nothing changes.
  filtersErr_t setStage(const filtersGroupStage_t& stage);
  filtersGroupStage_t getStage() const { return stage_; }

  // Checks the current stage against `type`, then every entry's matches
  // against it; the first refusal is returned and nothing changes.
  filtersErr_t setType(const filtersGroupType_t& type);
  filtersGroupType_t getType() const { return type_; }

  // Checks the entry's matches against the type, its actions against the
  // stage and its policer against the stage, in this order, and returns the
  // first refusal. Otherwise stores a copy under entry.getId(), replacing an
  // entry held under that identifier, and returns 0.
  filtersErr_t insertEntry(const FiltersEntry& entry);
  // -3 when no entry has `id`; otherwise erases it and returns 0.
  filtersErr_t removeEntry(const filtersEntryId_t& id);

  // A deep copy of the entries.
  std::map<filtersEntryId_t, FiltersEntry> getEntries() const;
  // The entries themselves; valid until the group is changed or destroyed.
  const std::map<filtersEntryId_t, FiltersEntry>& getEntriesRef() const {
    return entries_;
  }

  // Identifiers, priorities, stages, types, entry counts, then the entries
  // pairwise in ascending identifier; the first difference answers false.
  bool operator==(const FiltersGroup& other) const;
  bool operator!=(const FiltersGroup& other) const;

  // The validations read only the tables and their arguments, never the
  // group's own fields, so that a change can be checked before it is made.

  // -4 for a type the table does not know (even for an entry without
  // matches); -6 for the first match, in ascending kind, the type does not
  // allow; 0 otherwise.
  filtersErr_t groupMatchValidation(const FiltersEntry& entry,
                                    filtersGroupType_t type) const;
  // -8 for an unknown stage (even for an entry without actions); -9 for the
  // first action, in ascending kind, the stage does not allow; 0 otherwise.
  filtersErr_t groupActionValidation(const FiltersEntry& entry,
                                     filtersGroupStage_t stage) const;
  // -8 for an unknown stage; -7 when the stage does not allow `type`.
  filtersErr_t groupStageValidation(filtersGroupStage_t stage,
                                    filtersGroupType_t type) const;
  // 0 for a policer without stage, whatever the group stage; otherwise -8
  // for an unknown group stage and -10 when the policer's stage is not the
  // one the group stage requires.
  filtersErr_t groupPolicerValidation(const policer::Policer& policer,
                                      filtersGroupStage_t stage) const;

  // The message for this group, entries in ascending identifier.
  FiltersGroupPB convertToFiltersGroupPB() const;
  // Takes identifier and priority (low 16 bits), stage and type as they come,
  // without checks, then offers each entry of the message, in message order,
  // to the group's rules: refused entries are dropped silently, a repeated
  // identifier replaces the earlier entry, entries already held are kept.
  void convertFromFiltersGroupPB(const FiltersGroupPB* message);
  // Replaces `*out` with the message bytes.
  void serialize(std::string* out) const;
  // Fills `out`, which must be empty (a filled buffer aborts).
  void serialize(FiltersSerialized* out) const;

  // The match kinds each group type allows. Type 0 is present with no kind:
  // such a group admits only entries without matches.
  static const std::map<filtersGroupType_t, const std::set<filtersMatch_t>>
      TypeDescription_;
  // The group types each stage allows.
  static const std::map<filtersGroupStage_t, const std::set<filtersGroupType_t>>
      StageTypesDescription_;
  // The action kinds each stage allows.
  static const std::map<filtersGroupStage_t, const std::set<filtersAction_t>>
      StageActionsDescription_;

 private:
  // The code insertEntry would return for `entry` in a group of `stage` and
  // `type`: the match, action and policer checks in this order.
  filtersErr_t entryValidation(const FiltersEntry& entry,
                               filtersGroupStage_t stage,
                               filtersGroupType_t type) const;
  // insertEntry for an entry the caller gives away: the same checks and
  // codes, but the entry is moved into the map instead of copied. The wire
  // loader builds every entry once and hands it over this way.
  filtersErr_t adoptEntry(FiltersEntry&& entry);
  // Erases the entry held under `id`, unless it is `incoming` itself, and
  // returns the position where an entry with that identifier belongs (the
  // held `incoming` when it was kept).
  std::map<filtersEntryId_t, FiltersEntry>::iterator vacate(
      filtersEntryId_t id, const FiltersEntry* incoming);

  filtersGroupId_t id_;
  filtersGroupPriority_t priority_;
  filtersGroupStage_t stage_;
  filtersGroupType_t type_;
  std::map<filtersEntryId_t, FiltersEntry> entries_;
};

}  // namespace FiltersCommon

// "=FiltersGroup=" and the identifier, priority, stage and type lines, then
// every entry's own dump in ascending identifier.
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::FiltersGroup& group);

// The dump operators live at global scope; this makes them reachable from
// code inside the namespace too, where FiltersCommon's own operator<< would
// otherwise hide them.
namespace FiltersCommon {
using ::operator<<;
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_GROUPS_H_
