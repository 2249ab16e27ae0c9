// What a block remembers of its constants.
#include "player/action_cache.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

// Far more constants than the cache has room for, asked for in turn as a loop
// does it: each is its own, or not known.
TEST(ActionCacheTest, ConstantsThatShareAPlaceStayApart) {
  static const uint8_t block[2048] = {};
  ActionCache cache;
  cache.NextBlock();
  int known = 0;
  for (int round = 0; round < 3; ++round) {
    for (int stride : {1, 5, 9, 128, 129}) {
      for (int at = 0; at < 2048; at += stride) {
        for (int again = 0; again <= at % 4; ++again) {
          if (const ScriptValue* constant = cache.Constant(block + at)) {
            ++known;
            ASSERT_EQ(at, constant->ToNumber());
          } else {
            cache.NoteConstant(block + at, ScriptValue::Number(at));
          }
        }
      }
    }
  }
  EXPECT_GT(known, 0);
}

TEST(ActionCacheTest, AnotherBlockForgetsThem) {
  static const uint8_t block[4] = {};
  ActionCache cache;
  cache.NextBlock();
  cache.NoteConstant(block, ScriptValue::Number(1));
  cache.NoteConstant(block, ScriptValue::Number(1));
  ASSERT_TRUE(cache.Constant(block));
  cache.NextBlock();
  EXPECT_FALSE(cache.Constant(block));
  cache.NoteConstant(block, ScriptValue::Number(2));
  EXPECT_FALSE(cache.Constant(block));
}

}  // namespace
}  // namespace vexel
