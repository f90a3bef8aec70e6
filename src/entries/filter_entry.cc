#include <memory>
#include <utility>

#include "FiltersCommon/filter_entries.h"
#include "common/kinds.h"

namespace FiltersCommon {
namespace {

// Policers compare field by field in the policer library's own order: id,
// stage, the mode's seven words, the number of colour actions, then the
// actions pairwise in the policer's set order.
bool SamePolicerFields(const policer::Policer& a, const policer::Policer& b) {
  if (a.GetId() != b.GetId() || a.GetStage() != b.GetStage()) return false;
  const policer::Mode& ma = a.GetMode();
  const policer::Mode& mb = b.GetMode();
  if (ma.GetType() != mb.GetType() || ma.GetCir() != mb.GetCir() ||
      ma.GetCbs() != mb.GetCbs() || ma.GetEbs() != mb.GetEbs() ||
      ma.GetPir() != mb.GetPir() || ma.GetPbs() != mb.GetPbs() ||
      ma.GetEir() != mb.GetEir()) {
    return false;
  }
  const std::set<policer::Action>& aa = a.GetActions();
  const std::set<policer::Action>& ab = b.GetActions();
  if (aa.size() != ab.size()) return false;
  for (auto x = aa.begin(), y = ab.begin(); x != aa.end(); ++x, ++y) {
    if (x->GetColor() != y->GetColor() || x->GetType() != y->GetType() ||
        x->GetPcp() != y->GetPcp() || x->GetDscp() != y->GetDscp()) {
      return false;
    }
  }
  return true;
}

// Offers every object of `src`, in ascending key, to `offer` and stops at
// the first refusal; what was added before it stays.
template <class Map, class Offer>
filtersErr_t OfferEach(const Map& src, Offer offer) {
  for (const auto& element : src) {
    if (element.second == nullptr) continue;
    const filtersErr_t result = offer(*element.second);
    if (result != FILTERS_OK) return result;
  }
  return FILTERS_OK;
}

// Replaces `current` with what `copy` builds from `src`, or leaves it as it
// was when `copy` refuses. Moving the former objects aside and back restores
// exactly what was held, without cloning each one.
template <class Map, class CopyFn>
filtersErr_t ReplaceAllOrNothing(Map& current, const Map& src, CopyFn copy) {
  Map backup = std::move(current);
  current.clear();
  const filtersErr_t result = copy(src);
  if (result != FILTERS_OK) current = std::move(backup);
  return result;
}

// The object held under `key`, or null.
template <class Map>
auto FindIn(const Map& map, typename Map::key_type key)
    -> decltype(map.begin()->second.get()) {
  auto it = map.find(key);
  return it == map.end() ? nullptr : it->second.get();
}

// Erases `key`: -3 when it is not held.
template <class Map>
filtersErr_t EraseHeld(Map& map, typename Map::key_type key) {
  return map.erase(key) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

}  // namespace

// The registries are built at load in declaration order and never change.
#define FILTERS_HASH_OF(value, Class) typeid(Class).hash_code(),

const std::set<std::size_t> FiltersEntry::validMatchTypes = {
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_HASH_OF) typeid(MatchDSCP).hash_code()};
const std::set<filtersMatch_t> FiltersEntry::ipv4OnlyMatchTypes = {
    FILTERS_MATCH_SRC_IPV4, FILTERS_MATCH_DST_IPV4};
const std::set<filtersMatch_t> FiltersEntry::ipv6OnlyMatchTypes = {
    FILTERS_MATCH_SRC_IPV6, FILTERS_MATCH_DST_IPV6};
const std::set<std::size_t> FiltersEntry::validActionTypes = {
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_HASH_OF)};
const std::set<filtersMatch_t> FiltersEntry::l4DstPortMatchTypes = {
    FILTERS_MATCH_DST_L4_PORT, FILTERS_MATCH_DST_L4_PORT_RANGE};

#undef FILTERS_HASH_OF

FiltersEntry::FiltersEntry() : FiltersEntry(0) {}

FiltersEntry::FiltersEntry(const filtersEntryId_t& id)
    : id_(id), priority_(0) {}

FiltersEntry::FiltersEntry(const FiltersEntry& other)
    : id_(other.id_),
      priority_(other.priority_),
      policer_(other.policer_),
      policerParent_(other.policerParent_),
      counters_(other.counters_) {
  // The source already satisfied the same rules, so nothing is refused in
  // practice; a refusal would only leave that element out of the copy.
  copyMatches(other.matches_);
  copyActions(other.actions_);
}

FiltersEntry::FiltersEntry(FiltersEntry&& other) : FiltersEntry(other.id_) {
  *this = std::move(other);
}

FiltersEntry::~FiltersEntry() = default;

FiltersEntry& FiltersEntry::operator=(FiltersEntry&& other) {
  id_ = other.id_;
  priority_ = other.priority_;
  policer_ = other.policer_;
  policerParent_ = std::move(other.policerParent_);
  // The former contents go first; a moved-from map is only "valid but
  // unspecified", and the source is promised to be left empty.
  counters_ = std::exchange(other.counters_, {});
  matches_ = std::exchange(other.matches_, {});
  actions_ = std::exchange(other.actions_, {});
  return *this;
}

bool FiltersEntry::operator==(const FiltersEntry& other) const {
  if (id_ != other.id_ || priority_ != other.priority_) return false;
  if (!SamePolicerFields(policer_, other.policer_)) return false;
  if (matches_.size() != other.matches_.size() ||
      actions_.size() != other.actions_.size() ||
      counters_.size() != other.counters_.size()) {
    return false;
  }
  for (auto mine = counters_.begin(), theirs = other.counters_.begin();
       mine != counters_.end(); ++mine, ++theirs) {
    if (mine->first != theirs->first || mine->second != theirs->second) {
      return false;
    }
  }
  if (policerParent_ != nullptr) {
    if (other.policerParent_ == nullptr ||
        !SamePolicerFields(*policerParent_, *other.policerParent_)) {
      return false;
    }
  } else if (other.policerParent_ != nullptr) {
    return false;
  }
  for (const auto& [type, match] : matches_) {
    const Match* theirs = other.findMatch(type);
    // The other entry's match is the left operand: the base comparison may
    // dispatch to its class's virtual typed comparison.
    if (theirs == nullptr || !(*theirs == *match)) return false;
  }
  for (const auto& [type, action] : actions_) {
    const Action* theirs = other.findAction(type);
    if (theirs == nullptr || !(*theirs == *action)) return false;
  }
  return true;
}

// ---- Matches ----

bool FiltersEntry::holdsMatchIn(const std::set<filtersMatch_t>& kinds,
                                filtersMatch_t except) const {
  for (const auto& held : matches_) {
    if (held.first != except && kinds.count(held.first) != 0) return true;
  }
  return false;
}

bool FiltersEntry::isL3Compatible(filtersMatch_t type) const {
  // An address match of one IP version never stands beside one of the
  // other: no packet could satisfy both.
  if (ipv4OnlyMatchTypes.count(type) != 0) {
    return !holdsMatchIn(ipv6OnlyMatchTypes, type);
  }
  if (ipv6OnlyMatchTypes.count(type) != 0) {
    return !holdsMatchIn(ipv4OnlyMatchTypes, type);
  }
  return true;
}

bool FiltersEntry::isL4DstPortCompatible(filtersMatch_t type) const {
  // A single destination port and a destination port range exclude each
  // other; replacing one by the same kind is fine.
  if (l4DstPortMatchTypes.count(type) == 0) return true;
  return !holdsMatchIn(l4DstPortMatchTypes, type);
}

const Match* FiltersEntry::findMatch(filtersMatch_t type) const {
  return FindIn(matches_, type);
}

void FiltersEntry::storeMatch(filtersMatch_t type,
                              std::unique_ptr<Match> match) {
  // Kinds usually arrive in ascending order (copies, the wire), so the end is
  // the likely place; the hint costs nothing when it is wrong.
  matches_.insert_or_assign(matches_.end(), type, std::move(match));
}

filtersErr_t FiltersEntry::copyMatches(const MatchMap& src) {
  return OfferEach(src, [this](const Match& match) {
    // The object is offered as the class of the kind it reports, so a DSCP
    // match is copied as the ToS match it is.
    // What setMatch does, less its class check: every class of the table
    // passes it.
    switch (match.getType()) {
#define FILTERS_COPY_MATCH(value, Class)                                   \
  case value:                                                              \
    if (!admitsMatch(static_cast<filtersMatch_t>(value))) {                \
      return FILTERS_ERR_INVALID;                                          \
    }                                                                      \
    storeMatch(static_cast<filtersMatch_t>(value),                         \
               std::make_unique<Class>(static_cast<const Class&>(match))); \
    return FILTERS_OK;
      FILTERS_FOR_EACH_MATCH_KIND(FILTERS_COPY_MATCH)
#undef FILTERS_COPY_MATCH
      default:
        return FILTERS_OK;  // no class owns the kind: skipped
    }
  });
}

filtersErr_t FiltersEntry::setMatches(const MatchMap& src) {
  return ReplaceAllOrNothing(
      matches_, src, [this](const MatchMap& m) { return copyMatches(m); });
}

filtersErr_t FiltersEntry::deleteMatch(filtersMatch_t type) {
  return EraseHeld(matches_, type);
}

// ---- Actions ----

const Action* FiltersEntry::findAction(filtersAction_t type) const {
  return FindIn(actions_, type);
}

void FiltersEntry::storeAction(filtersAction_t type,
                               std::unique_ptr<Action> action) {
  actions_.insert_or_assign(actions_.end(), type, std::move(action));
}

filtersErr_t FiltersEntry::copyActions(const ActionMap& src) {
  return OfferEach(src, [this](const Action& action) {
    switch (action.getType()) {
#define FILTERS_COPY_ACTION(value, Class)                                    \
  case value:                                                                \
    storeAction(static_cast<filtersAction_t>(value),                         \
                std::make_unique<Class>(static_cast<const Class&>(action))); \
    return FILTERS_OK;
      FILTERS_FOR_EACH_ACTION_KIND(FILTERS_COPY_ACTION)
#undef FILTERS_COPY_ACTION
      default:
        return FILTERS_OK;  // no class owns the kind: skipped
    }
  });
}

filtersErr_t FiltersEntry::setActions(const ActionMap& src) {
  return ReplaceAllOrNothing(
      actions_, src, [this](const ActionMap& a) { return copyActions(a); });
}

filtersErr_t FiltersEntry::deleteAction(filtersAction_t type) {
  return EraseHeld(actions_, type);
}

// ---- Counters and policers ----

filtersErr_t FiltersEntry::setCounter(const Counter& c) {
  if (c.GetType() == COUNTER_TYPE_INVALID) return FILTERS_ERR_INVALID;
  // Deliberately also refuses re-setting a counter with its own type.
  for (const auto& held : counters_) {
    if (held.second.GetType() == c.GetType()) return FILTERS_ERR_INVALID;
  }
  counters_[c.GetId()] = c;
  return FILTERS_OK;
}

const Counter* FiltersEntry::getCounter(uint16_t id) const {
  auto it = counters_.find(id);
  return it == counters_.end() ? nullptr : &it->second;
}

filtersErr_t FiltersEntry::deleteCounter(uint16_t id) {
  // -5 rather than the -3 of matches and actions: callers compare against it.
  return counters_.erase(id) == 0 ? FILTERS_ERR_REFUSED : FILTERS_OK;
}

filtersErr_t FiltersEntry::deleteCounters() {
  counters_.clear();
  return FILTERS_OK;
}

filtersErr_t FiltersEntry::setPolicer(const policer::Policer& p) {
  policer_ = p;
  return FILTERS_OK;
}

filtersErr_t FiltersEntry::setPolicerParent(const policer::Policer& p) {
  policerParent_ = std::make_shared<policer::Policer>(p);
  return FILTERS_OK;
}

}  // namespace FiltersCommon
