// Assertions that guard programming errors at the library's edges (a null
// handle, a second fill of a buffer). They stay on in every build type, since
// callers rely on the process stopping rather than on undefined behaviour, and
// they name the function with a fixed signature text so that the message does
// not depend on how a compiler spells function names.
#ifndef FILTERSCOMMON_SRC_COMMON_FILTERS_ASSERT_H_
#define FILTERSCOMMON_SRC_COMMON_FILTERS_ASSERT_H_

#include <assert.h>

// glibc declares its assertion-failure routine only when NDEBUG is unset.
extern "C" void __assert_fail(const char* assertion, const char* file,
                              unsigned int line, const char* function) noexcept
    __attribute__((__noreturn__));

#define FILTERS_ASSERT(expr, signature) \
  ((expr) ? static_cast<void>(0)        \
          : __assert_fail(#expr, __FILE__, __LINE__, signature))

#endif  // FILTERSCOMMON_SRC_COMMON_FILTERS_ASSERT_H_
