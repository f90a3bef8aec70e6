// FiltersEntry is one rule of a filter group: an identifier, a priority, at
// most one match per match kind, at most one action per action kind, counters
// keyed by counter identifier, its own policer and an optional parent policer.
//
// Ownership: the entry owns its matches and actions exclusively (it always
// stores its own heap copy of what it is given) and holds its counters and
// own policer by value. Only the parent policer is shared, between the copies
// of an entry. The entry admits matches by its own rules (a known class, no
// IPv4-only beside IPv6-only address match, no single destination port beside
// a destination port range); which kinds a group allows is the group's
// business.
//
// Thread safety: none. Concurrent readers of one entry are safe, a writer
// needs exclusive access. The shared parent's reference count is atomic, so
// copies held by different threads may be destroyed independently, but the
// parent object itself is not protected.
#ifndef FILTERSCOMMON_FILTER_ENTRIES_H_
#define FILTERSCOMMON_FILTER_ENTRIES_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_matches.h"
#include "FiltersCommon/filter_types.h"
#include "policer/policer.h"

namespace FiltersCommon {

class FiltersEntryPB;
class FiltersSerialized;

class FILTERS_EXPORT FiltersEntry {
 public:
  using MatchMap = std::map<filtersMatch_t, std::unique_ptr<Match>>;
  using ActionMap = std::map<filtersAction_t, std::unique_ptr<Action>>;

  // Identifier 0 (or `id`), priority 0, the policer library's default
  // policer, no parent, no counters, matches or actions.
  FiltersEntry();
  explicit FiltersEntry(const filtersEntryId_t& id);
  // Copies identifier, priority, policer and counters and shares the parent;
  // matches and actions are rebuilt through copyMatches/copyActions, so they
  // pass the admission rules again (refusals are ignored).
  FiltersEntry(const FiltersEntry& other);
  // Takes the maps and the parent; `other` keeps its identifier, priority and
  // policer and is left with empty maps and no parent.
  FiltersEntry(FiltersEntry&& other);
  // An entry read from the bytes of a FiltersEntryPB. The parse result is not
  // examined: whatever the parser filled in is converted.
  explicit FiltersEntry(const std::string& bytes);
  // The same from the bytes of `buf`, its terminating zero byte included.
  explicit FiltersEntry(const FiltersSerialized& buf);
  ~FiltersEntry();

  // The same as the move constructor, after destroying this entry's own
  // maps. There is no copy assignment.
  FiltersEntry& operator=(FiltersEntry&& other);
  FiltersEntry& operator=(const FiltersEntry&) = delete;

  void setId(filtersEntryId_t id) { id_ = id; }
  filtersEntryId_t getId() const { return id_; }
  void setPriority(const filtersEntryPriority_t& priority) {
    priority_ = priority;
  }
  filtersEntryPriority_t getPriority() const { return priority_; }

  // Identifier, priority, policer field by field, map sizes, counters,
  // parent policer by content, then matches and actions kind by kind.
  bool operator==(const FiltersEntry& other) const;

  // ---- Matches ----

  // Stores a copy of `match` under its kind, replacing a match of that kind.
  // -4 when T is not a match class of the catalogue, when an IPv4-only match
  // would stand beside an IPv6-only one, or when a single destination port
  // would stand beside a destination port range; the entry is then unchanged.
  template <class T>
  filtersErr_t setMatch(const T& match);
  // Copies the held match of the kind `match` reports into `match`: -4 when
  // T is not a match class, -3 when no match of that kind is held.
  template <class T>
  filtersErr_t getMatch(T& match) const;
  // Whether `match` may join the entry as far as IPv4/IPv6 is concerned.
  template <class T>
  bool isL3CompatibleMatch(T match) const {
    return isL3Compatible(match.getType());
  }
  // Whether `match` may join the entry as far as the destination-port
  // qualifiers are concerned.
  template <class T>
  bool isL4DstPortCompatibleMatch(T match) const {
    return isL4DstPortCompatible(match.getType());
  }

  // Offers every match of `src`, in ascending key, to setMatch as the class
  // of the kind it reports (kinds above the last are skipped). Returns the
  // first refusal at once, keeping what was added before it.
  filtersErr_t copyMatches(const MatchMap& src);
  // Replaces the matches with those of `src`, all or nothing: on a refusal
  // the former matches are restored and the refusal returned.
  filtersErr_t setMatches(const MatchMap& src);
  // -3 when no match of `type` is held.
  filtersErr_t deleteMatch(filtersMatch_t type);
  const MatchMap& getMatches() const { return matches_; }

  // ---- Actions ----

  // Stores a copy of `action` under its kind, replacing an action of that
  // kind; actions never exclude each other. -4 only for a class outside the
  // catalogue.
  template <class T>
  filtersErr_t setAction(const T& action);
  // -4 when T is not an action class, -3 when no action of the kind held.
  template <class T>
  filtersErr_t getAction(T& action) const;
  filtersErr_t copyActions(const ActionMap& src);
  filtersErr_t setActions(const ActionMap& src);
  // -3 when no action of `type` is held.
  filtersErr_t deleteAction(filtersAction_t type);
  const ActionMap& getActions() const { return actions_; }

  // ---- Counters and policers ----

  // -4 for type 0 and for a type some held counter already has, even one
  // with the same identifier: an entry never holds two counters of one type.
  // Otherwise stores `c` under its identifier, replacing a held one.
  filtersErr_t setCounter(const Counter& c);
  // The held counter or null.
  const Counter* getCounter(uint16_t id) const;
  const std::map<uint16_t, Counter>& getCounters() const { return counters_; }
  // -5 (not -3 as for matches and actions) when no counter has `id`.
  filtersErr_t deleteCounter(uint16_t id);
  // Always 0.
  filtersErr_t deleteCounters();

  // Copies `p` into the entry's own policer; no check here. Always 0.
  filtersErr_t setPolicer(const policer::Policer& p);
  const policer::Policer& getPolicer() const { return policer_; }
  // Makes a fresh shared copy of `p` the parent, so entries that shared the
  // previous parent keep it. Always 0.
  filtersErr_t setPolicerParent(const policer::Policer& p);
  // A new reference to the parent, or empty.
  std::shared_ptr<policer::Policer> getPolicerParent() const {
    return policerParent_;
  }

  // ---- Wire form ----

  // Fills `pb`: identifier, priority, the policers' own bytes (the parent
  // only when set), then counters, matches and actions in ascending key.
  void convertToFiltersEntryPB(FiltersEntryPB* pb) const;
  // Fills this entry from `pb`. Counters are taken as stored, without the
  // setCounter rules; matches and actions go through the admission rules and
  // refused or unknown ones are dropped silently. Matches and actions held
  // before are kept unless replaced by kind.
  void convertFromFiltersEntryPB(const FiltersEntryPB* pb);
  // Replaces `*out` with the message bytes.
  void serialize(std::string* out) const;
  // Fills `out`, which must be empty (a filled buffer aborts).
  void serialize(FiltersSerialized* out) const;

  // The class registries behind the admission rules, built at load.
  // Hash codes of the 40 match classes.
  static const std::set<std::size_t> validMatchTypes;
  // Kinds that only make sense for IPv4 packets, and for IPv6 packets.
  static const std::set<filtersMatch_t> ipv4OnlyMatchTypes;
  static const std::set<filtersMatch_t> ipv6OnlyMatchTypes;
  // Hash codes of the 21 action classes.
  static const std::set<std::size_t> validActionTypes;
  // The destination-port kinds that exclude each other.
  static const std::set<filtersMatch_t> l4DstPortMatchTypes;

 private:
  friend class FiltersEntryWireReader;

  // The class whose value getMatch<T> copies out: a DSCP match is held as
  // the ToS match whose kind it shares.
  template <class T>
  using HeldMatch =
      std::conditional_t<std::is_same_v<T, MatchDSCP>, MatchToS, T>;

  // The two match rules, decided by kind alone.
  bool isL3Compatible(filtersMatch_t type) const;
  bool isL4DstPortCompatible(filtersMatch_t type) const;
  bool admitsMatch(filtersMatch_t type) const {
    return isL3Compatible(type) && isL4DstPortCompatible(type);
  }
  // Whether a match of a kind in `kinds`, other than `except`, is held.
  bool holdsMatchIn(const std::set<filtersMatch_t>& kinds,
                    filtersMatch_t except) const;
  // The held object of a kind, or null.
  const Match* findMatch(filtersMatch_t type) const;
  const Action* findAction(filtersAction_t type) const;
  // Stores an owned object under `type`, destroying one held there.
  void storeMatch(filtersMatch_t type, std::unique_ptr<Match> match);
  void storeAction(filtersAction_t type, std::unique_ptr<Action> action);

  filtersEntryId_t id_;
  filtersEntryPriority_t priority_;
  policer::Policer policer_;
  std::shared_ptr<policer::Policer> policerParent_;
  std::map<uint16_t, Counter> counters_;
  MatchMap matches_;
  ActionMap actions_;
};

template <class T>
filtersErr_t FiltersEntry::setMatch(const T& match) {
  if (validMatchTypes.count(typeid(T).hash_code()) == 0) {
    return FILTERS_ERR_INVALID;
  }
  const filtersMatch_t type = match.getType();
  if (!admitsMatch(type)) return FILTERS_ERR_INVALID;
  storeMatch(type, std::make_unique<T>(match));
  return FILTERS_OK;
}

template <class T>
filtersErr_t FiltersEntry::getMatch(T& match) const {
  if (validMatchTypes.count(typeid(T).hash_code()) == 0) {
    return FILTERS_ERR_INVALID;
  }
  const Match* held = findMatch(match.getType());
  if (held == nullptr) return FILTERS_ERR_NOT_FOUND;
  static_cast<HeldMatch<T>&>(match) = static_cast<const HeldMatch<T>&>(*held);
  return FILTERS_OK;
}

template <class T>
filtersErr_t FiltersEntry::setAction(const T& action) {
  if (validActionTypes.count(typeid(T).hash_code()) == 0) {
    return FILTERS_ERR_INVALID;
  }
  storeAction(action.getType(), std::make_unique<T>(action));
  return FILTERS_OK;
}

template <class T>
filtersErr_t FiltersEntry::getAction(T& action) const {
  if (validActionTypes.count(typeid(T).hash_code()) == 0) {
    return FILTERS_ERR_INVALID;
  }
  const Action* held = findAction(action.getType());
  if (held == nullptr) return FILTERS_ERR_NOT_FOUND;
  action = static_cast<const T&>(*held);
  return FILTERS_OK;
}

}  // namespace FiltersCommon

// "  =FiltersEntry=", identifier and priority, the own policer unless it has
// no stage, the counters, matches and actions, and the parent policer when
// one is set.
FILTERS_EXPORT std::ostream& operator<<(std::ostream& os,
                                        const FiltersCommon::FiltersEntry& e);

// The dump operators live at global scope; this makes them reachable from
// code inside the namespace too, where FiltersCommon's own operator<< would
// otherwise hide them.
namespace FiltersCommon {
using ::operator<<;
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_ENTRIES_H_
