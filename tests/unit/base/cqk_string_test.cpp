#include "base/cqk_string.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(CQKString, HasRoomToGrow) {
  EXPECT_EQ(CQKString(CQKString('a', 100)).GetAllocLength(), 200);
}

}  // namespace
}  // namespace vexel
