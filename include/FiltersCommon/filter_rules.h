// The C++ interface of libfilter_rules: rule text and group differences,
// built on the public interface of the filter library.
#ifndef FILTERSCOMMON_FILTER_RULES_H_
#define FILTERSCOMMON_FILTER_RULES_H_

#include "FiltersCommon/filter_group_diff.h"

#endif  // FILTERSCOMMON_FILTER_RULES_H_
