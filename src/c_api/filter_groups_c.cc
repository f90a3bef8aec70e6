// The C interface to groups: each function forwards to one member of
// FiltersGroup after checking its pointers; filtersGroupGetEntries turns the
// entry map into a plain record of arrays.
#include "FiltersCommon/filter_groups_c.h"

#include <cstddef>
#include <memory>

#include "FiltersCommon/filter_groups.h"
#include "common/filters_assert.h"

namespace FiltersCommon {

extern "C" {

FiltersGroup* newFiltersGroup(filtersGroupId_t id) {
  return new FiltersGroup(id);
}

void deleteFiltersGroup(FiltersGroup* g) {
  FILTERS_ASSERT(g != nullptr,
                 "void FiltersCommon::deleteFiltersGroup("
                 "FiltersCommon::FiltersGroup*)");
  delete g;
}

filtersGroupId_t filtersGroupGetId(FiltersGroup* g) {
  FILTERS_ASSERT(
      g != nullptr,
      "FiltersCommon::filtersGroupId_t "
      "FiltersCommon::filtersGroupGetId(FiltersCommon::FiltersGroup*)");
  return g->getId();
}

void filtersGroupSetPriority(FiltersGroup* g, filtersGroupPriority_t priority) {
  FILTERS_ASSERT(g != nullptr,
                 "void FiltersCommon::filtersGroupSetPriority("
                 "FiltersCommon::FiltersGroup*, "
                 "FiltersCommon::filtersGroupPriority_t)");
  g->setPriority(priority);
}

filtersGroupPriority_t filtersGroupGetPriority(FiltersGroup* g) {
  FILTERS_ASSERT(g != nullptr,
                 "FiltersCommon::filtersGroupPriority_t "
                 "FiltersCommon::filtersGroupGetPriority("
                 "FiltersCommon::FiltersGroup*)");
  return g->getPriority();
}

void filtersGroupSetStage(FiltersGroup* g, filtersGroupStage_t stage) {
  FILTERS_ASSERT(g != nullptr,
                 "void FiltersCommon::filtersGroupSetStage("
                 "FiltersCommon::FiltersGroup*, "
                 "FiltersCommon::filtersGroupStage_t)");
  // The C interface has never reported a refused stage; callers that must
  // know read the stage back.
  static_cast<void>(g->setStage(stage));
}

filtersGroupStage_t filtersGroupGetStage(FiltersGroup* g) {
  FILTERS_ASSERT(g != nullptr,
                 "FiltersCommon::filtersGroupStage_t "
                 "FiltersCommon::filtersGroupGetStage("
                 "FiltersCommon::FiltersGroup*)");
  return g->getStage();
}

filtersErr_t filtersGroupSetType(FiltersGroup* g, filtersGroupType_t type) {
  FILTERS_ASSERT(g != nullptr,
                 "FiltersCommon::filtersErr_t "
                 "FiltersCommon::filtersGroupSetType("
                 "FiltersCommon::FiltersGroup*, "
                 "FiltersCommon::filtersGroupType_t)");
  return g->setType(type);
}

filtersGroupType_t filtersGroupGetType(FiltersGroup* g) {
  FILTERS_ASSERT(g != nullptr,
                 "FiltersCommon::filtersGroupType_t "
                 "FiltersCommon::filtersGroupGetType("
                 "FiltersCommon::FiltersGroup*)");
  return g->getType();
}

filtersErr_t filtersGroupInsertEntry(FiltersGroup* g, FiltersEntry* e) {
  FILTERS_ASSERT(g != nullptr && e != nullptr,
                 "FiltersCommon::filtersErr_t "
                 "FiltersCommon::filtersGroupInsertEntry("
                 "FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*)");
  return g->insertEntry(*e);
}

filtersErr_t filtersGroupRemoveEntry(FiltersGroup* g, filtersEntryId_t id) {
  // The one group function that answers a null group instead of aborting.
  if (g == nullptr) return FILTERS_ERR_REFUSED;
  return g->removeEntry(id);
}

void filtersGroupGetEntries(FiltersGroup* g, entriesStruct* entries) {
  FILTERS_ASSERT(
      g != nullptr && entries != nullptr,
      "void FiltersCommon::filtersGroupGetEntries("
      "FiltersCommon::FiltersGroup*, FiltersCommon::entriesStruct*)");
  // Everything is built before the record is touched, so an allocation
  // failure leaves the record as it was and leaks nothing. The arrays are
  // allocated even for no entry: deleteFiltersEntriesStruct frees both.
  const auto& held = g->getEntriesRef();
  const std::size_t count = held.size();
  std::unique_ptr<filtersEntryId_t[]> ids(new filtersEntryId_t[count]);
  std::unique_ptr<std::unique_ptr<FiltersEntry>[]> copies(
      new std::unique_ptr<FiltersEntry>[count]);
  std::size_t i = 0;
  for (const auto& [id, entry] : held) {
    ids[i] = id;
    copies[i] = std::make_unique<FiltersEntry>(entry);
    ++i;
  }
  std::unique_ptr<FiltersEntry*[]> list(new FiltersEntry*[count]);
  for (i = 0; i < count; ++i) list[i] = copies[i].release();

  entries->count = static_cast<int32_t>(count);
  entries->ids = ids.release();
  entries->entries = list.release();
}

void deleteFiltersEntriesStruct(entriesStruct* entries) {
  FILTERS_ASSERT(entries != nullptr,
                 "void FiltersCommon::deleteFiltersEntriesStruct("
                 "FiltersCommon::entriesStruct*)");
  // A count of 0 or less frees no entry; null elements and arrays are
  // skipped. The record itself is the caller's and keeps its fields.
  if (entries->entries != nullptr) {
    for (int32_t i = 0; i < entries->count; ++i) delete entries->entries[i];
  }
  delete[] entries->ids;
  delete[] entries->entries;
}

}  // extern "C"

}  // namespace FiltersCommon
