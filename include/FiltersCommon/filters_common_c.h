/*
 * The whole C interface of the filter library: groups, entries, matches,
 * actions, and the explanation of what a group refuses. Each header states
 * its own ownership rules; in short, whatever a new... function returns
 * belongs to the caller until the matching delete... function, and handing an
 * object to an entry or a group stores a copy.
 *
 * Compiles as C11 and as C++17.
 */
#ifndef FILTERSCOMMON_FILTERS_COMMON_C_H_
#define FILTERSCOMMON_FILTERS_COMMON_C_H_

#include "FiltersCommon/filter_actions_c.h"
#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_explain_c.h"
#include "FiltersCommon/filter_groups_c.h"
#include "FiltersCommon/filter_matches_c.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_wire_c.h"

#endif /* FILTERSCOMMON_FILTERS_COMMON_C_H_ */
