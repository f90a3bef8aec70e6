/*
 * FILTERS_RULES_EXPORT marks what libfilter_rules.so exports. Like the core
 * library it is built with hidden visibility; a static build defines
 * FILTERS_RULES_STATIC and exports nothing.
 */
#ifndef FILTERSCOMMON_FILTER_RULES_EXPORT_H_
#define FILTERSCOMMON_FILTER_RULES_EXPORT_H_

#if defined(FILTERS_RULES_STATIC)
#define FILTERS_RULES_EXPORT
#elif defined(__GNUC__) || defined(__clang__)
#define FILTERS_RULES_EXPORT __attribute__((visibility("default")))
#else
#define FILTERS_RULES_EXPORT
#endif

#endif /* FILTERSCOMMON_FILTER_RULES_EXPORT_H_ */
