/*
 * C interface to rule text: filter groups and entries printed as readable
 * rules and compiled back (the language is described in docs/rules.md).
 *
 * Ownership:
 * (1) Every returned string is allocated with malloc and belongs to the
 *     caller, who frees it with filtersRulesFree (or free).
 * (2) A compiled group or entry belongs to the caller until
 *     deleteFiltersGroup or deleteFiltersEntry.
 * (3) The functions only read their arguments; a null group, entry or text
 *     aborts the process through an assertion.
 *
 * Compiling returns null when the text holds any error. Then, when `errors`
 * is not null, *errors receives the error lines ("FILE:LINE:COLUMN: error:
 * ..."), each ended by a newline; otherwise *errors is set to null.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are declared
 * in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_RULE_TEXT_C_H_
#define FILTERSCOMMON_FILTER_RULE_TEXT_C_H_

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_groups_c.h"

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

/* The group as rule text: the header line and one line per entry. */
FILTERS_EXPORT char* filtersGroupFormatRules(const FiltersGroup* g);
/* The entry as one rule line, without a newline. */
FILTERS_EXPORT char* filtersEntryFormatRule(const FiltersEntry* e);

/* The group `text` describes, or null; `fileName` (may be null: "rules")
 * names the text in the errors. */
FILTERS_EXPORT FiltersGroup* filtersGroupCompileRules(const char* text,
                                                      const char* fileName,
                                                      char** errors);
/* The same for text holding one entry line. */
FILTERS_EXPORT FiltersEntry* filtersEntryCompileRule(const char* text,
                                                     const char* fileName,
                                                     char** errors);

/* Frees a string returned by the functions above; null is ignored. */
FILTERS_EXPORT void filtersRulesFree(char* text);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_RULE_TEXT_C_H_ */
