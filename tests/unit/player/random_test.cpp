// The pseudo-random numbers of the action language.
#include "player/random.h"

#include <gtest/gtest.h>

#include "player/text.h"

namespace vexel::test {
namespace {

class RandomTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetTickClock([] { return uint32_t{12345}; });
    gRandomFast = {};
  }
  void TearDown() override {
    SetTickClock(nullptr);
    gRandomFast = {};
  }
};

TEST_F(RandomTest, SeedsFromTheClockAtTheFirstNumber) {
  Random(10);
  EXPECT_EQ(gRandomFast.taps, 0xA3000000u);
  EXPECT_EQ(gRandomFast.reserved, 0u);
  EXPECT_EQ(gRandomFast.seed, 12345u >> 1 ^ 0xA3000000u);
  Random(10);
  EXPECT_EQ(gRandomFast.seed, (12345u >> 1 ^ 0xA3000000u) >> 1);
}

TEST_F(RandomTest, GivesZeroForOne) {
  for (int i = 0; i < 100; ++i) EXPECT_EQ(Random(1), 0);
}

TEST_F(RandomTest, GivesZeroForZeroAndLessButSteps) {
  Random(1);
  const uint32_t before = gRandomFast.seed;
  EXPECT_EQ(Random(0), 0);
  const uint32_t between = gRandomFast.seed;
  EXPECT_NE(between, before);
  EXPECT_EQ(Random(-5), 0);
  EXPECT_NE(gRandomFast.seed, between);
}

TEST_F(RandomTest, StaysInRangeAndReachesAll) {
  int32_t seen[7] = {};
  for (int i = 0; i < 1000; ++i) {
    const int32_t n = Random(7);
    ASSERT_GE(n, 0);
    ASSERT_LT(n, 7);
    ++seen[n];
  }
  for (int32_t count : seen) EXPECT_GT(count, 50);
}

TEST_F(RandomTest, TriesTheClockAgainAfterASeedOfZero) {
  SetTickClock(nullptr);
  EXPECT_EQ(Random(0x7FFFFFFF), RandomPureHasher(0) & 0x7FFFFFFF);
  EXPECT_EQ(gRandomFast.seed, 0u);
}

// The same in 64-bit steps, each cut to 32 bits.
int32_t PlainHash(int32_t x) {
  const auto low = [](int64_t v) {
    return int64_t{static_cast<int32_t>(static_cast<uint32_t>(v))};
  };
  const int64_t a = low((low(int64_t{x} * 8192) ^ x) - (int64_t{x} >> 21));
  int64_t b = low(low(low(low(a * a) * 15731) + 789221) * a);
  b = low(b + 1376312589) & 0x7FFFFFFF;
  b = low(b + a);
  return static_cast<int32_t>(low((low(b * 8192) ^ b) - (b >> 21)));
}

TEST_F(RandomTest, HashesInWrappingArithmetic) {
  uint32_t x = 1;
  for (int i = 0; i < 100000; ++i) {
    x = x * 1664525 + 1013904223;
    const int32_t n = static_cast<int32_t>(x);
    ASSERT_EQ(RandomPureHasher(n), PlainHash(n)) << n;
  }
}

}  // namespace
}  // namespace vexel::test
