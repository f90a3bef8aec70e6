// The whole C++ interface of the filter library: groups and their validation
// tables, entries, counters, matches, actions, the serialized buffer, and the
// names, capability queries and explanations built on them.
#ifndef FILTERSCOMMON_FILTERS_COMMON_H_
#define FILTERSCOMMON_FILTERS_COMMON_H_

#include "FiltersCommon/filter_action_types.h"
#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_match_types.h"
#include "FiltersCommon/filter_matches.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_serialized.h"
#include "FiltersCommon/filter_types.h"

#endif  // FILTERSCOMMON_FILTERS_COMMON_H_
