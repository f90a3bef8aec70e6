/*
 * CHECK for the C clients among the tests: a failed check is reported with
 * its place and counted, and the client goes on, so one run names every
 * mismatch. c_check_exit_status() ends the run.
 */
#ifndef FILTERS_TESTS_C_CHECK_H_
#define FILTERS_TESTS_C_CHECK_H_

#include <stdio.h>

static int c_check_failures = 0;

#define CHECK(cond)                                                            \
  do {                                                                         \
    if (!(cond)) {                                                             \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
      ++c_check_failures;                                                      \
    }                                                                          \
  } while (0)

/* 0 when every check passed (printing `passed`), 1 otherwise. */
static int c_check_exit_status(const char* passed) {
  if (c_check_failures != 0) {
    fprintf(stderr, "%d check(s) failed\n", c_check_failures);
    return 1;
  }
  printf("%s\n", passed);
  return 0;
}

#endif /* FILTERS_TESTS_C_CHECK_H_ */
