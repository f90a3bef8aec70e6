// The entry's wire form: conversion to and from FiltersEntryPB, and the byte
// entry points built on it.
#include <array>
#include <bitset>
#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_serialized.h"
#include "common/kinds.h"
#include "filter_entries.pb.h"

namespace FiltersCommon {
namespace {

// Converts to any value that is trivially default-constructible (numbers,
// enumerations, address structures) as its zero; never to a match or action
// class, so it cannot be mistaken for a copy.
struct Zero {
  template <class U, class = std::enable_if_t<
                         std::is_trivially_default_constructible_v<U>>>
  operator U() const {  // NOLINT(google-explicit-constructor)
    return U();
  }
};

// A blank object of class T to load a wire element into. Every loader
// overwrites what a blank holds except the port-list loaders, which append,
// so those start from an empty list.
template <class T>
std::unique_ptr<T> MakeBlank() {
  if constexpr (std::is_same_v<T, ActionMplsPortSet>) {
    // Built in place: its identifiers are unset until the load sets them.
    return std::unique_ptr<T>(new T(T::BuildEmpty()));
  } else if constexpr (std::is_default_constructible_v<T>) {
    return std::make_unique<T>();
  } else if constexpr (std::is_constructible_v<T, std::list<limid_t>>) {
    return std::make_unique<T>(std::list<limid_t>());
  } else if constexpr (std::is_constructible_v<T, Zero>) {
    return std::make_unique<T>(Zero());
  } else {
    return std::make_unique<T>(Zero(), Zero());
  }
}

// The working objects of one message, one per kind, each reused for every
// wire element of its kind so that the appending loaders accumulate across
// repeated elements. An object is made the first time its kind appears.
// When the entry admits it, the working object itself moves into the entry;
// should the kind appear again, work continues on a copy of the stored
// object, which is exactly the state the working object had. So an element
// costs one construction and no copy in the usual message, which never
// repeats a kind.
template <class Base, std::size_t N>
class WorkingSet {
 public:
  // The working object of `kind`. `stored` is what the entry holds under the
  // kind; it is read only when it is the object this set handed over.
  template <class T>
  T& get(std::size_t kind, const Base* stored) {
    std::unique_ptr<Base>& slot = slots_[kind];
    if (slot == nullptr) {
      if (handedOver_.test(kind)) {
        slot = std::make_unique<T>(static_cast<const T&>(*stored));
      } else {
        slot = MakeBlank<T>();
      }
    }
    return static_cast<T&>(*slot);
  }

  // Gives the working object of `kind` to the entry.
  std::unique_ptr<Base> handOver(std::size_t kind) {
    handedOver_.set(kind);
    return std::move(slots_[kind]);
  }

 private:
  std::array<std::unique_ptr<Base>, N> slots_;
  std::bitset<N> handedOver_;
};

}  // namespace

// Fills one entry from the match and action elements of one message, by the
// same rules as setMatch<T> and setAction<T> for the class of each element's
// kind (which is always a known class, so only the pairing rules can refuse).
class FiltersEntryWireReader {
 public:
  explicit FiltersEntryWireReader(FiltersEntry* entry) : entry_(entry) {}

  void read(const MatchPB& pb) {
    switch (pb.type_()) {
#define FILTERS_READ_MATCH(value, Class) \
  case value:                            \
    return load<Class>(static_cast<filtersMatch_t>(value), pb);
      FILTERS_FOR_EACH_MATCH_KIND(FILTERS_READ_MATCH)
#undef FILTERS_READ_MATCH
      default:
        return;  // no class owns the kind: skipped
    }
  }

  void read(const ActionPB& pb) {
    switch (pb.type_()) {
#define FILTERS_READ_ACTION(value, Class) \
  case value:                             \
    return load<Class>(static_cast<filtersAction_t>(value), pb);
      FILTERS_FOR_EACH_ACTION_KIND(FILTERS_READ_ACTION)
#undef FILTERS_READ_ACTION
      default:
        return;  // no class owns the kind: skipped
    }
  }

 private:
  template <class T>
  void load(filtersMatch_t kind, const MatchPB& pb) {
    T& work = matches_.get<T>(kind, entry_->findMatch(kind));
    work.convertFromMatchPB(&pb);
    // A refused element is dropped; its working object stays for the next
    // element of the kind.
    if (entry_->admitsMatch(kind)) {
      entry_->storeMatch(kind, matches_.handOver(kind));
    }
  }

  template <class T>
  void load(filtersAction_t kind, const ActionPB& pb) {
    // A load that throws (ActionMplsPortSet) leaves the entry's action of the
    // kind as it was; the exception is the caller's.
    actions_.get<T>(kind, entry_->findAction(kind)).convertFromActionPB(&pb);
    entry_->storeAction(kind, actions_.handOver(kind));
  }

  FiltersEntry* entry_;
  WorkingSet<Match, FILTERS_MATCH_LAST + 1> matches_;
  WorkingSet<Action, FILTERS_ACTION_LAST + 1> actions_;
};

void FiltersEntry::convertToFiltersEntryPB(FiltersEntryPB* pb) const {
  pb->set_id_(id_);
  pb->set_priority_(priority_);
  pb->set_policer_(policer_.Serialize());
  if (policerParent_ != nullptr) {
    pb->set_policer_parent_(policerParent_->Serialize());
  }
  for (const auto& counter : counters_) {
    counter.second.Serialize(pb->add_counters_());
  }
  for (const auto& match : matches_) {
    match.second->convertToMatchPB(pb->add_matches_());
  }
  for (const auto& action : actions_) {
    action.second->convertToActionPB(pb->add_actions_());
  }
}

void FiltersEntry::convertFromFiltersEntryPB(const FiltersEntryPB* pb) {
  id_ = pb->id_();
  priority_ = pb->priority_();
  policer_ = policer::Policer(pb->policer_());
  // Without a parent on the wire the entry keeps the one it has.
  if (pb->has_policer_parent_()) {
    policerParent_ = std::make_shared<policer::Policer>(pb->policer_parent_());
  }
  // Stored data is taken as it was written: no setCounter rules, and a later
  // element with the same identifier wins.
  counters_.clear();
  for (const CounterPB& element : pb->counters_()) {
    const Counter counter(element);
    counters_[counter.GetId()] = counter;
  }
  FiltersEntryWireReader reader(this);
  for (const MatchPB& element : pb->matches_()) reader.read(element);
  for (const ActionPB& element : pb->actions_()) reader.read(element);
}

void FiltersEntry::serialize(std::string* out) const {
  FiltersEntryPB pb;
  convertToFiltersEntryPB(&pb);
  pb.SerializeToString(out);
}

void FiltersEntry::serialize(FiltersSerialized* out) const {
  std::string bytes;
  serialize(&bytes);
  out->setData(bytes);
}

FiltersEntry::FiltersEntry(const std::string& bytes) : FiltersEntry() {
  FiltersEntryPB pb;
  // The parse result is deliberately not examined: bytes that lack required
  // fields, or that end in a buffer's terminating zero byte (which the
  // parser reports as an error after reading every field before it), still
  // yield the entry they describe. The partial parse reads exactly what a
  // full one would, without the runtime logging the missing fields.
  static_cast<void>(pb.ParsePartialFromString(bytes));
  convertFromFiltersEntryPB(&pb);
}

FiltersEntry::FiltersEntry(const FiltersSerialized& buf)
    : FiltersEntry(buf.data() == nullptr
                       ? std::string()
                       : std::string(buf.data(), buf.size())) {}

}  // namespace FiltersCommon
