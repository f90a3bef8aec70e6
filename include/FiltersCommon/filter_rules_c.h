/*
 * The rules component (libfilter_rules) for C callers: filter groups and
 * entries as rule text, and group differences. Each header states its own
 * ownership rules. Compiles as C11 and as C++17.
 */
#ifndef FILTERSCOMMON_FILTER_RULES_C_H_
#define FILTERSCOMMON_FILTER_RULES_C_H_

#include "FiltersCommon/filter_group_diff_c.h"
#include "FiltersCommon/filter_rule_text_c.h"

#endif /* FILTERSCOMMON_FILTER_RULES_C_H_ */
