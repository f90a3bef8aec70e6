/*
 * FILTERS_EXPORT marks what libfilter_common.so exports. The library is built
 * with hidden visibility, so only marked classes and functions are visible to
 * callers; a static build defines FILTERS_COMMON_STATIC and exports nothing.
 */
#ifndef FILTERSCOMMON_FILTER_EXPORT_H_
#define FILTERSCOMMON_FILTER_EXPORT_H_

#if defined(FILTERS_COMMON_STATIC)
#define FILTERS_EXPORT
#elif defined(__GNUC__) || defined(__clang__)
#define FILTERS_EXPORT __attribute__((visibility("default")))
#else
#define FILTERS_EXPORT
#endif

#endif /* FILTERSCOMMON_FILTER_EXPORT_H_ */
