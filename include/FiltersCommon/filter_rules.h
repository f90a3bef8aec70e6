// The rules component (libfilter_rules) for C++ callers: filter groups and
// entries as rule text, and group differences for incremental updates, built
// on the public interface of libfilter_common.
#ifndef FILTERSCOMMON_FILTER_RULES_H_
#define FILTERSCOMMON_FILTER_RULES_H_

#include "FiltersCommon/filter_group_diff.h"
#include "FiltersCommon/filter_rule_text.h"

#endif  // FILTERSCOMMON_FILTER_RULES_H_
