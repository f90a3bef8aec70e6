// The C interface to group differences: each function forwards to
// FiltersGroupDiff after checking its pointers.
#include "FiltersCommon/filter_group_diff_c.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "FiltersCommon/filter_group_diff.h"

// Null handles are programming errors: stop the process in every build
// type, naming the function, as the core library's C interface does.
#define FILTERS_DIFF_REQUIRE(expr)                                          \
  do {                                                                      \
    if (!(expr)) {                                                          \
      std::fprintf(stderr, "%s:%d: %s: Assertion `%s' failed.\n", __FILE__, \
                   __LINE__, __func__, #expr);                              \
      std::abort();                                                         \
    }                                                                       \
  } while (0)

namespace FiltersCommon {
namespace {

const filtersEntryId_t* idsOf(const std::vector<filtersEntryId_t>& ids) {
  return ids.empty() ? nullptr : ids.data();
}

// Stores `oldValue` and `newValue` where asked; 1 when they differ.
template <class T>
int fieldChange(T oldValue, T newValue, T* oldOut, T* newOut) {
  if (oldOut != nullptr) *oldOut = oldValue;
  if (newOut != nullptr) *newOut = newValue;
  return oldValue != newValue ? 1 : 0;
}

}  // namespace

extern "C" {

FiltersGroupDiff* newFiltersGroupDiff(const FiltersGroup* from,
                                      const FiltersGroup* to) {
  FILTERS_DIFF_REQUIRE(from != nullptr);
  FILTERS_DIFF_REQUIRE(to != nullptr);
  return new FiltersGroupDiff(diffGroups(*from, *to));
}

void deleteFiltersGroupDiff(FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  delete d;
}

int filtersGroupDiffIsEmpty(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return d->empty() ? 1 : 0;
}

int filtersGroupDiffIdChanged(const FiltersGroupDiff* d,
                              filtersGroupId_t* oldId,
                              filtersGroupId_t* newId) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return fieldChange(d->oldHeader().id, d->newHeader().id, oldId, newId);
}

int filtersGroupDiffPriorityChanged(const FiltersGroupDiff* d,
                                    filtersGroupPriority_t* oldPriority,
                                    filtersGroupPriority_t* newPriority) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return fieldChange(d->oldHeader().priority, d->newHeader().priority,
                     oldPriority, newPriority);
}

int filtersGroupDiffStageChanged(const FiltersGroupDiff* d,
                                 filtersGroupStage_t* oldStage,
                                 filtersGroupStage_t* newStage) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return fieldChange(d->oldHeader().stage, d->newHeader().stage, oldStage,
                     newStage);
}

int filtersGroupDiffTypeChanged(const FiltersGroupDiff* d,
                                filtersGroupType_t* oldType,
                                filtersGroupType_t* newType) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return fieldChange(d->oldHeader().type, d->newHeader().type, oldType,
                     newType);
}

uint32_t filtersGroupDiffAddedCount(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return static_cast<uint32_t>(d->added().size());
}

const filtersEntryId_t* filtersGroupDiffAddedIds(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return idsOf(d->added());
}

uint32_t filtersGroupDiffRemovedCount(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return static_cast<uint32_t>(d->removed().size());
}

const filtersEntryId_t* filtersGroupDiffRemovedIds(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return idsOf(d->removed());
}

uint32_t filtersGroupDiffChangedCount(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return static_cast<uint32_t>(d->changed().size());
}

const filtersEntryId_t* filtersGroupDiffChangedIds(const FiltersGroupDiff* d) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  return idsOf(d->changed());
}

FiltersEntry* filtersGroupDiffGetNewEntry(const FiltersGroupDiff* d,
                                          filtersEntryId_t id) {
  FILTERS_DIFF_REQUIRE(d != nullptr);
  const FiltersEntry* entry = d->newEntry(id);
  return entry == nullptr ? nullptr : new FiltersEntry(*entry);
}

filtersErr_t filtersGroupDiffApply(const FiltersGroupDiff* d, FiltersGroup* g) {
  if (d == nullptr || g == nullptr) return FILTERS_ERR_REFUSED;
  return d->applyTo(g);
}

}  // extern "C"

}  // namespace FiltersCommon
