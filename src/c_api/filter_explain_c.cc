// The C interface to the capability queries and the explanation: each
// function forwards to its C++ counterpart and copies the answer into the
// caller's array or record.
#include "FiltersCommon/filter_explain_c.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "common/filters_assert.h"

namespace FiltersCommon {

namespace {

// Copies at most `capacity` elements of `list` into `out` and its length
// into `*count`; `unknown` when there is no list.
template <class T>
filtersErr_t fillList(const std::optional<std::vector<T>>& list,
                      filtersErr_t unknown, T* out, uint32_t capacity,
                      uint32_t* count) {
  if (count == nullptr || (out == nullptr && capacity != 0)) {
    return FILTERS_ERR_REFUSED;
  }
  if (!list) return unknown;
  const std::size_t copied = std::min<std::size_t>(capacity, list->size());
  std::copy_n(list->begin(), copied, out);
  *count = static_cast<uint32_t>(list->size());
  return FILTERS_OK;
}

filtersErr_t fillExplanation(const EntryExplanation& in,
                             filtersExplanation_t* out) {
  out->code = in.code;
  out->cause = in.cause;
  out->value = in.value;
  std::snprintf(out->message, sizeof out->message, "%s", in.message.c_str());
  return in.code;
}

}  // namespace

extern "C" {

filtersErr_t filtersTypeGetMatches(filtersGroupType_t type,
                                   filtersMatch_t* kinds, uint32_t capacity,
                                   uint32_t* count) {
  return fillList(allowedMatchKinds(type), FILTERS_ERR_INVALID, kinds, capacity,
                  count);
}

filtersErr_t filtersStageGetTypes(filtersGroupStage_t stage,
                                  filtersGroupType_t* types, uint32_t capacity,
                                  uint32_t* count) {
  return fillList(allowedGroupTypes(stage), FILTERS_ERR_UNKNOWN_STAGE, types,
                  capacity, count);
}

filtersErr_t filtersStageGetActions(filtersGroupStage_t stage,
                                    filtersAction_t* kinds, uint32_t capacity,
                                    uint32_t* count) {
  return fillList(allowedActionKinds(stage), FILTERS_ERR_UNKNOWN_STAGE, kinds,
                  capacity, count);
}

filtersErr_t filtersStageGetPolicerStage(filtersGroupStage_t stage,
                                         int32_t* policerStage) {
  if (policerStage == nullptr) return FILTERS_ERR_REFUSED;
  const std::optional<policer::Stage> required = requiredPolicerStage(stage);
  if (!required) return FILTERS_ERR_UNKNOWN_STAGE;
  *policerStage = *required;
  return FILTERS_OK;
}

filtersErr_t filtersGroupExplainEntry(FiltersGroup* g, FiltersEntry* e,
                                      filtersExplanation_t* out) {
  FILTERS_ASSERT(g != nullptr,
                 "FiltersCommon::filtersErr_t "
                 "FiltersCommon::filtersGroupExplainEntry("
                 "FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*, "
                 "FiltersCommon::filtersExplanation_t*)");
  if (e == nullptr || out == nullptr) return FILTERS_ERR_REFUSED;
  return fillExplanation(explainEntry(*g, *e), out);
}

filtersErr_t filtersExplainEntry(filtersGroupStage_t stage,
                                 filtersGroupType_t type, FiltersEntry* e,
                                 filtersExplanation_t* out) {
  if (e == nullptr || out == nullptr) return FILTERS_ERR_REFUSED;
  return fillExplanation(explainEntry(stage, type, *e), out);
}

}  // extern "C"

}  // namespace FiltersCommon
