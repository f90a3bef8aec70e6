// The C interface to entries: thin guards around FiltersEntry. Matches and
// actions arrive as untyped handles; the functions recover the class from the
// kind the object reports and call the entry's template for that class.
#include "FiltersCommon/filter_entries_c.h"

#include "FiltersCommon/filter_entries.h"
#include "c_api/c_handles.h"
#include "common/filters_assert.h"
#include "common/kinds.h"

namespace FiltersCommon {
namespace {

// Calls `use` with the match behind `m` seen as the class of its kind (a
// MatchDSCP as the MatchToS whose kind it shares). The object is trusted to
// be of that class. -5 for a null entry or match, -4 for a kind no class has.
template <class Use>
filtersErr_t withMatchClass(FiltersEntry* e, void* m, Use use) {
  if (e == nullptr || m == nullptr) return FILTERS_ERR_REFUSED;
  Match* match = c_api::as<Match>(m);
  switch (match->getType()) {
#define FILTERS_MATCH_CASE(value, Class) \
  case value:                            \
    return use(static_cast<Class&>(*match));
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_MATCH_CASE)
#undef FILTERS_MATCH_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

// The same for actions.
template <class Use>
filtersErr_t withActionClass(FiltersEntry* e, void* a, Use use) {
  if (e == nullptr || a == nullptr) return FILTERS_ERR_REFUSED;
  Action* action = c_api::as<Action>(a);
  switch (action->getType()) {
#define FILTERS_ACTION_CASE(value, Class) \
  case value:                             \
    return use(static_cast<Class&>(*action));
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_ACTION_CASE)
#undef FILTERS_ACTION_CASE
    default:
      return FILTERS_ERR_INVALID;
  }
}

}  // namespace

extern "C" {

FiltersEntry* newFiltersEntry(filtersEntryId_t id) {
  return new FiltersEntry(id);
}

FiltersEntry* copyFiltersEntry(FiltersEntry* e) {
  FILTERS_ASSERT(
      e != nullptr,
      "FiltersCommon::FiltersEntry* "
      "FiltersCommon::copyFiltersEntry(FiltersCommon::FiltersEntry*)");
  return new FiltersEntry(*e);
}

void deleteFiltersEntry(FiltersEntry* e) {
  FILTERS_ASSERT(e != nullptr,
                 "void FiltersCommon::deleteFiltersEntry("
                 "FiltersCommon::FiltersEntry*)");
  delete e;
}

filtersEntryId_t filtersEntryGetId(FiltersEntry* e) {
  FILTERS_ASSERT(
      e != nullptr,
      "FiltersCommon::filtersEntryId_t "
      "FiltersCommon::filtersEntryGetId(FiltersCommon::FiltersEntry*)");
  return e->getId();
}

void filtersEntrySetPriority(FiltersEntry* e, filtersEntryPriority_t p) {
  FILTERS_ASSERT(e != nullptr,
                 "void FiltersCommon::filtersEntrySetPriority("
                 "FiltersCommon::FiltersEntry*, "
                 "FiltersCommon::filtersEntryPriority_t)");
  e->setPriority(p);
}

filtersEntryPriority_t filtersEntryGetPriority(FiltersEntry* e) {
  FILTERS_ASSERT(e != nullptr,
                 "FiltersCommon::filtersEntryPriority_t "
                 "FiltersCommon::filtersEntryGetPriority("
                 "FiltersCommon::FiltersEntry*)");
  return e->getPriority();
}

filtersErr_t filtersEntryGetMatch(FiltersEntry* e, void* m) {
  return withMatchClass(e, m, [e](auto& match) { return e->getMatch(match); });
}

filtersErr_t filtersEntrySetMatch(FiltersEntry* e, void* m) {
  return withMatchClass(e, m, [e](auto& match) { return e->setMatch(match); });
}

filtersErr_t filtersEntryDeleteMatch(FiltersEntry* e, filtersMatch_t t) {
  FILTERS_ASSERT(
      e != nullptr,
      "FiltersCommon::filtersErr_t "
      "FiltersCommon::filtersEntryDeleteMatch("
      "FiltersCommon::FiltersEntry*, FiltersCommon::filtersMatch_t)");
  return e->deleteMatch(t);
}

filtersErr_t filtersEntryGetAction(FiltersEntry* e, void* a) {
  return withActionClass(e, a,
                         [e](auto& action) { return e->getAction(action); });
}

filtersErr_t filtersEntrySetAction(FiltersEntry* e, void* a) {
  return withActionClass(e, a,
                         [e](auto& action) { return e->setAction(action); });
}

filtersErr_t filtersEntryDeleteAction(FiltersEntry* e, filtersAction_t t) {
  FILTERS_ASSERT(e != nullptr,
                 "FiltersCommon::filtersErr_t "
                 "FiltersCommon::filtersEntryDeleteAction("
                 "FiltersCommon::FiltersEntry*, "
                 "FiltersCommon::filtersAction_t)");
  return e->deleteAction(t);
}

}  // extern "C"

}  // namespace FiltersCommon
