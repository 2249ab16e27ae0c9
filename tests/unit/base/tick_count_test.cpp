#include "base/tick_count.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace vexel {
namespace {

TEST(GetTickCount, StartsAtAboutAThousandAndCountsMilliseconds) {
  UINT32 first = GetTickCount();
  EXPECT_GE(first, 1000u);
  EXPECT_LT(first, 60000u);
  usleep(20000);
  UINT32 passed = GetTickCount() - first;
  EXPECT_GE(passed, 19u);
  EXPECT_LT(passed, 20000u);
}

}  // namespace
}  // namespace vexel
