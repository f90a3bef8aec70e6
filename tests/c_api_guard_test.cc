// The null-pointer guards of the C interface. Each area's test file
// instantiates this test with the guards of its own source file.
#include <gtest/gtest.h>

#include "c_api_test_util.h"

namespace FiltersCommon {
namespace c_api_test {
namespace {

TEST_P(CInterfaceDeathTest, NullPointerAbortsWithSignatureAndExpression) {
  const Guard& guard = GetParam();
  EXPECT_DEATH(guard.call(),
               AssertionPattern(guard.file, guard.signature, guard.expression));
}

}  // namespace
}  // namespace c_api_test
}  // namespace FiltersCommon
