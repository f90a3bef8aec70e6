// Reads the input as a program of C-interface calls (c_api_program.h) on one
// group and a few entry handles, and makes every call a second time through
// the C++ classes. Each call must answer what its C++ counterpart answers,
// and at the end the group and every live entry must equal their C++ twins
// and serialize to the same bytes. The program never hands a freed handle to
// the interface, nor a null one where the interface asserts; the null
// handles it does pass go where the interface answers FILTERS_ERR_REFUSED.
// Every handle is freed before the input ends, so a leak in the interface is
// reported by LeakSanitizer.
//
// The only exit the design allows, the MPLS port-set action's
// std::invalid_argument, cannot occur: the program builds that action from
// identifiers of the documented types only.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_groups_c.h"
#include "c_api_makers.h"
#include "common/kinds.h"

namespace fuzz_c_api {
namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// The C++ calls the C interface makes for a handle: the class is chosen by
// the kind the object reports, from the library's table of kinds.
filtersErr_t setMatchAsCpp(FiltersEntry& entry, const Match& match) {
  switch (match.getType()) {
#define FUZZ_MATCH_CASE(value, Class) \
  case value:                         \
    return entry.setMatch(static_cast<const Class&>(match));
    FILTERS_FOR_EACH_MATCH_KIND(FUZZ_MATCH_CASE)
#undef FUZZ_MATCH_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

filtersErr_t getMatchAsCpp(const FiltersEntry& entry, Match& match) {
  switch (match.getType()) {
#define FUZZ_MATCH_CASE(value, Class) \
  case value:                         \
    return entry.getMatch(static_cast<Class&>(match));
    FILTERS_FOR_EACH_MATCH_KIND(FUZZ_MATCH_CASE)
#undef FUZZ_MATCH_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

filtersErr_t setActionAsCpp(FiltersEntry& entry, const Action& action) {
  switch (action.getType()) {
#define FUZZ_ACTION_CASE(value, Class) \
  case value:                          \
    return entry.setAction(static_cast<const Class&>(action));
    FILTERS_FOR_EACH_ACTION_KIND(FUZZ_ACTION_CASE)
#undef FUZZ_ACTION_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

filtersErr_t getActionAsCpp(const FiltersEntry& entry, Action& action) {
  switch (action.getType()) {
#define FUZZ_ACTION_CASE(value, Class) \
  case value:                          \
    return entry.getAction(static_cast<Class&>(action));
    FILTERS_FOR_EACH_ACTION_KIND(FUZZ_ACTION_CASE)
#undef FUZZ_ACTION_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

std::string bytesOf(const FiltersGroup& group) {
  std::string bytes;
  group.serialize(&bytes);
  return bytes;
}

std::string bytesOf(const FiltersEntry& entry) {
  std::string bytes;
  entry.serialize(&bytes);
  return bytes;
}

// A group and entry slots driven through the C interface, and their C++
// twins driven through the classes.
class Program {
 public:
  explicit Program(filtersGroupId_t id)
      : group_(newFiltersGroup(id)), twinGroup_(id) {
    check(filtersGroupGetId(group_) == id);
  }

  ~Program() {
    for (FiltersEntry*& entry : entries_) dropEntry(entry);
    deleteFiltersGroup(group_);
  }

  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void run(ProgramReader& in) {
    while (!in.done()) step(in);
    compareAll();
  }

 private:
  static void dropEntry(FiltersEntry*& entry) {
    if (entry != nullptr) deleteFiltersEntry(entry);
    entry = nullptr;
  }

  void step(ProgramReader& in) {
    switch (static_cast<Op>(in.u8() % kOpCount)) {
      case kNewEntry: {
        const uint8_t slot = in.u8() % kSlots;
        const filtersEntryId_t id = in.u8() % kIds;
        dropEntry(entries_[slot]);
        entries_[slot] = newFiltersEntry(id);
        twins_[slot] = std::make_unique<FiltersEntry>(id);
        check(filtersEntryGetId(entries_[slot]) == id);
        break;
      }
      case kCopyEntry: {
        const uint8_t from = in.u8() % kSlots;
        const uint8_t to = in.u8() % kSlots;
        if (entries_[from] == nullptr || from == to) break;
        dropEntry(entries_[to]);
        entries_[to] = copyFiltersEntry(entries_[from]);
        twins_[to] = std::make_unique<FiltersEntry>(*twins_[from]);
        check(*entries_[to] == *entries_[from]);
        break;
      }
      case kDeleteEntry: {
        const uint8_t slot = in.u8() % kSlots;
        dropEntry(entries_[slot]);
        twins_[slot].reset();
        break;
      }
      case kEntryPriority: {
        const uint8_t slot = in.u8() % kSlots;
        const filtersEntryPriority_t priority = in.u32();
        if (entries_[slot] == nullptr) break;
        filtersEntrySetPriority(entries_[slot], priority);
        twins_[slot]->setPriority(priority);
        check(filtersEntryGetPriority(entries_[slot]) == priority);
        break;
      }
      case kSetMatch:
        setMatch(in);
        break;
      case kGetMatch:
        getMatch(in);
        break;
      case kDeleteMatch: {
        const uint8_t slot = in.u8() % kSlots;
        // Kinds beyond the last one are asked for as well.
        const auto kind = static_cast<filtersMatch_t>(in.u8() % 48);
        if (entries_[slot] == nullptr) break;
        check(filtersEntryDeleteMatch(entries_[slot], kind) ==
              twins_[slot]->deleteMatch(kind));
        break;
      }
      case kSetAction:
        setAction(in);
        break;
      case kGetAction:
        getAction(in);
        break;
      case kDeleteAction: {
        const uint8_t slot = in.u8() % kSlots;
        const auto kind = static_cast<filtersAction_t>(in.u8() % 24);
        if (entries_[slot] == nullptr) break;
        check(filtersEntryDeleteAction(entries_[slot], kind) ==
              twins_[slot]->deleteAction(kind));
        break;
      }
      case kGroupPriority: {
        const filtersGroupPriority_t priority = in.u16();
        filtersGroupSetPriority(group_, priority);
        twinGroup_.setPriority(priority);
        check(filtersGroupGetPriority(group_) == priority);
        break;
      }
      case kGroupStage: {
        // Unknown stages are tried too; the C call reports nothing, so the
        // stage read back must be the one the C++ call kept.
        const auto stage = static_cast<filtersGroupStage_t>(in.u8() % 6);
        filtersGroupSetStage(group_, stage);
        static_cast<void>(twinGroup_.setStage(stage));
        check(filtersGroupGetStage(group_) == twinGroup_.getStage());
        break;
      }
      case kGroupType: {
        const auto type = static_cast<filtersGroupType_t>(in.u8() % 17);
        check(filtersGroupSetType(group_, type) == twinGroup_.setType(type));
        check(filtersGroupGetType(group_) == twinGroup_.getType());
        break;
      }
      case kInsertEntry: {
        const uint8_t slot = in.u8() % kSlots;
        if (entries_[slot] == nullptr) break;
        check(filtersGroupInsertEntry(group_, entries_[slot]) ==
              twinGroup_.insertEntry(*twins_[slot]));
        break;
      }
      case kRemoveEntry: {
        const filtersEntryId_t id = in.u8() % kIds;
        check(filtersGroupRemoveEntry(group_, id) ==
              twinGroup_.removeEntry(id));
        break;
      }
      case kGetEntries:
        getEntries();
        break;
      case kRefusedNullUse:
        refusedNullUse(in);
        break;
      case kOpCount:
        break;
    }
  }

  // Makes one handle with the maker the program names; `maker` is set to the
  // index used so that a twin handle can be made from the same operands.
  static void* makeHandle(const Maker* table, size_t count, ProgramReader& in,
                          ProgramReader* operands, const Maker** maker) {
    *maker = &table[in.u8() % count];
    *operands = in.take((*maker)->operandBytes);
    ProgramReader copy = *operands;
    return (*maker)->make(copy);
  }

  void setMatch(ProgramReader& in) {
    const uint8_t slot = in.u8() % kSlots;
    ProgramReader operands(nullptr, 0);
    const Maker* maker = nullptr;
    void* handle =
        makeHandle(kMatchMakers, kMatchMakerCount, in, &operands, &maker);
    if (entries_[slot] == nullptr) {
      check(filtersEntrySetMatch(nullptr, handle) == FILTERS_ERR_REFUSED);
    } else {
      const filtersErr_t result = filtersEntrySetMatch(entries_[slot], handle);
      check(result ==
            setMatchAsCpp(*twins_[slot], *static_cast<Match*>(handle)));
    }
    // The entry keeps a copy: the handle is still the caller's to delete.
    deleteMatch(handle);
  }

  void getMatch(ProgramReader& in) {
    const uint8_t slot = in.u8() % kSlots;
    ProgramReader operands(nullptr, 0);
    const Maker* maker = nullptr;
    void* handle =
        makeHandle(kMatchMakers, kMatchMakerCount, in, &operands, &maker);
    if (entries_[slot] == nullptr) {
      check(filtersEntryGetMatch(nullptr, handle) == FILTERS_ERR_REFUSED);
      deleteMatch(handle);
      return;
    }
    void* twin = maker->make(operands);
    const filtersErr_t result = filtersEntryGetMatch(entries_[slot], handle);
    check(result == getMatchAsCpp(*twins_[slot], *static_cast<Match*>(twin)));
    check(matchGetType(handle) == matchGetType(twin));
    check(*static_cast<Match*>(handle) == *static_cast<Match*>(twin));
    deleteMatch(twin);
    deleteMatch(handle);
  }

  void setAction(ProgramReader& in) {
    const uint8_t slot = in.u8() % kSlots;
    ProgramReader operands(nullptr, 0);
    const Maker* maker = nullptr;
    void* handle =
        makeHandle(kActionMakers, kActionMakerCount, in, &operands, &maker);
    if (entries_[slot] == nullptr) {
      check(filtersEntrySetAction(nullptr, handle) == FILTERS_ERR_REFUSED);
    } else {
      const filtersErr_t result = filtersEntrySetAction(entries_[slot], handle);
      check(result ==
            setActionAsCpp(*twins_[slot], *static_cast<Action*>(handle)));
    }
    deleteAction(handle);
  }

  void getAction(ProgramReader& in) {
    const uint8_t slot = in.u8() % kSlots;
    ProgramReader operands(nullptr, 0);
    const Maker* maker = nullptr;
    void* handle =
        makeHandle(kActionMakers, kActionMakerCount, in, &operands, &maker);
    if (entries_[slot] == nullptr) {
      check(filtersEntryGetAction(nullptr, handle) == FILTERS_ERR_REFUSED);
      deleteAction(handle);
      return;
    }
    void* twin = maker->make(operands);
    const filtersErr_t result = filtersEntryGetAction(entries_[slot], handle);
    check(result == getActionAsCpp(*twins_[slot], *static_cast<Action*>(twin)));
    check(actionGetType(handle) == actionGetType(twin));
    check(*static_cast<Action*>(handle) == *static_cast<Action*>(twin));
    deleteAction(twin);
    deleteAction(handle);
  }

  // The record lists the group's entries in the group's order, as copies
  // the record owns until deleteFiltersEntriesStruct.
  void getEntries() {
    entriesStruct record{};
    filtersGroupGetEntries(group_, &record);
    const auto& held = twinGroup_.getEntriesRef();
    check(record.count >= 0 &&
          static_cast<size_t>(record.count) == held.size());
    int32_t i = 0;
    for (const auto& [id, entry] : held) {
      check(record.ids[i] == id);
      check(record.entries[i] != nullptr && *record.entries[i] == entry);
      ++i;
    }
    deleteFiltersEntriesStruct(&record);
  }

  // The calls that answer a null handle instead of asserting.
  void refusedNullUse(ProgramReader& in) {
    switch (in.u8() % 3) {
      case 0:
        check(filtersGroupRemoveEntry(nullptr, in.u8() % kIds) ==
              FILTERS_ERR_REFUSED);
        break;
      case 1: {
        const uint8_t slot = in.u8() % kSlots;
        if (entries_[slot] == nullptr) break;
        check(filtersEntrySetMatch(entries_[slot], nullptr) ==
              FILTERS_ERR_REFUSED);
        check(filtersEntryGetMatch(entries_[slot], nullptr) ==
              FILTERS_ERR_REFUSED);
        break;
      }
      default: {
        const uint8_t slot = in.u8() % kSlots;
        if (entries_[slot] == nullptr) break;
        check(filtersEntrySetAction(entries_[slot], nullptr) ==
              FILTERS_ERR_REFUSED);
        check(filtersEntryGetAction(entries_[slot], nullptr) ==
              FILTERS_ERR_REFUSED);
        break;
      }
    }
  }

  void compareAll() {
    check(*group_ == twinGroup_);
    check(bytesOf(*group_) == bytesOf(twinGroup_));
    for (uint8_t slot = 0; slot < kSlots; ++slot) {
      check((entries_[slot] == nullptr) == (twins_[slot] == nullptr));
      if (entries_[slot] == nullptr) continue;
      check(*entries_[slot] == *twins_[slot]);
      check(bytesOf(*entries_[slot]) == bytesOf(*twins_[slot]));
    }
  }

  FiltersGroup* group_;
  FiltersGroup twinGroup_;
  FiltersEntry* entries_[kSlots] = {};
  std::unique_ptr<FiltersEntry> twins_[kSlots];
};

}  // namespace
}  // namespace fuzz_c_api

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz_c_api::ProgramReader in(data, size);
  const auto id = static_cast<FiltersCommon::filtersGroupId_t>(in.u16());
  fuzz_c_api::Program program(id);
  program.run(in);
  return 0;
}
