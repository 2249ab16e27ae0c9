// Points and vectors.
#include "geometry/point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace vexel {
namespace {

TEST(PointLength, ComesFromTheTableNearTheTrueLength) {
  const SPOINT p = {3 * kFixedOne, 4 * kFixedOne};
  EXPECT_NEAR(PointLength(&p), 5 * kFixedOne, 16);
  const SPOINT exact = {-64, 0};
  EXPECT_EQ(PointLength(&exact), 64);
  const SPOINT zero = {0, 0};
  EXPECT_EQ(PointLength(&zero), 0);
}

// The length as it is defined, with the table's entries from the root itself.
SCOORD PlainLength(SPOINT p) {
  const int64_t x = std::abs(int64_t{p.x}), y = std::abs(int64_t{p.y});
  const int64_t hi = std::max(x, y), lo = std::min(x, y);
  if (hi == 0) return 0;
  const int64_t q = (lo << 16) / hi;
  const auto entry = [](int64_t k) {
    k = std::min<int64_t>(k, 64);
    return static_cast<int64_t>(std::sqrt(static_cast<long double>(4096 + k * k)) * 16384);
  };
  const int64_t f = q & 1023;
  const int64_t m = ((1024 - f) * entry(q >> 10) + f * entry((q >> 10) + 1)) >> 14;
  const int64_t r = (m * hi + 0x8000) >> 16;
  return static_cast<SCOORD>(std::min<int64_t>(r, kInt32Max));
}

TEST(PointLength, EqualsItsPlainTwin) {
  std::mt19937 random(1);
  for (int i = 0; i < 200000; ++i) {
    const int shift = static_cast<int>(random() % 31);
    const SPOINT p = {static_cast<int32_t>(random()) >> shift,
                      static_cast<int32_t>(random()) >> (random() % 31)};
    if (p.x == kInt32Min || p.y == kInt32Min) continue;
    ASSERT_EQ(PointLength(&p), PlainLength(p)) << "SPOINT{" << p.x << ", " << p.y << "}";
  }
}

TEST(PointLength, SurvivesTheMagnitudeThatDoesNotExist) {
  for (SCOORD other : {kInt32Min, -1, 0, 1, 5, kInt32Max}) {
    const SPOINT p = {kInt32Min, other}, q = {other, kInt32Min};
    PointLength(&p);
    PointLength(&q);
    PointFastLength(&p);
    PointFastDistance(&p, &q);
  }
}

TEST(PointFastDistance, IsHalfOfTheLargerDifference) {
  const SPOINT zero = {0, 0}, p = {10, 0}, q = {6, -9};
  EXPECT_EQ(PointFastDistance(&zero, &p), 5);
  EXPECT_EQ(PointFastLength(&p), 10);
  EXPECT_EQ(PointFastDistance(&zero, &q), 4);
  EXPECT_EQ(PointFastLength(&q), 12);
}

TEST(PointFastDistance, EqualsItsPlainTwin) {
  std::mt19937 random(2);
  for (int i = 0; i < 100000; ++i) {
    const SPOINT a = {static_cast<int32_t>(random()), static_cast<int32_t>(random())};
    const SPOINT b = {static_cast<int32_t>(random()), static_cast<int32_t>(random())};
    const int32_t dx = WrapAbs(WrapSub(a.x, b.x)), dy = WrapAbs(WrapSub(a.y, b.y));
    ASSERT_EQ(PointFastDistance(&a, &b), Asr(WrapSub(WrapAdd(dx, dy), std::min(dx, dy)), 1));
  }
}

TEST(PointShift, RoundsToTheRightAndCutsToTheLeft) {
  SPOINT p = {5, -5}, out;
  PointShift(&p, -1, &out);
  EXPECT_EQ(out, (SPOINT{3, -2}));
  PointShift(&p, 2, &out);
  EXPECT_EQ(out, (SPOINT{20, -20}));
  p = {0x40000001, 0};
  PointShift(&p, 1, &p);
  EXPECT_EQ(p.x, kInt32Min + 2);
}

TEST(PointAverage, WeighsTheFirstPoint) {
  const SPOINT a = {100, 0}, b = {0, 100};
  SPOINT out;
  PointAverage(&a, &b, kFixedOne, &out);
  EXPECT_EQ(out, a);
  PointAverage(&a, &b, 0, &out);
  EXPECT_EQ(out, b);
  PointAverage(&a, &b, 0x4000, &out);
  EXPECT_EQ(out, (SPOINT{25, 75}));
}

TEST(PointEqual, AllowsTheTolerance) {
  const SPOINT a = {0, 0}, b = {3, -3};
  EXPECT_TRUE(PointEqual(&a, &b, 3));
  EXPECT_FALSE(PointEqual(&a, &b, 2));
}

TEST(PointNormalize, LeavesTheZeroVector) {
  SPOINT p = {0, 0};
  PointNormalize(&p, 100);
  EXPECT_EQ(p, (SPOINT{0, 0}));
  p = {50, 0};
  PointNormalize(&p, 100);
  EXPECT_EQ(p, (SPOINT{100, 0}));
}

TEST(PointAngle, IsMeasuredFromTheOrigin) {
  const SPOINT p = {5, 5}, origin = {5, 1};
  EXPECT_EQ(PointAngle(&p, &origin), 90 * kFixedOne);
  EXPECT_NEAR(PointAngle(&p, nullptr), 45 * kFixedOne, 64);
}

TEST(PointPolar, GoesFromTheOrigin) {
  const SPOINT origin = {10, 20};
  SPOINT out;
  PointPolar(100, 90 * kFixedOne, &origin, &out);
  EXPECT_EQ(out, (SPOINT{10, 120}));
  PointPolar(100, 180 * kFixedOne, nullptr, &out);
  EXPECT_EQ(out, (SPOINT{-100, 0}));
}

TEST(PointPerpNearestLine, FollowsTheDominantAxis) {
  const SPOINT a = {0, 0}, b = {100, 50}, c = {50, 100};
  SPOINT p = {40, 99}, out;
  PointPerpNearestLine(&a, &b, &p, &out);
  EXPECT_EQ(out, (SPOINT{40, 20}));
  PointPerpNearestLine(&c, &a, &p, &out);
  EXPECT_EQ(out, (SPOINT{50, 99}));
  p = {-5, 1000};
  PointPerpNearestLine(&b, &a, &p, &out);
  EXPECT_EQ(out, a);
  PointPerpNearestLine(&a, &c, &p, &out);
  EXPECT_EQ(out, c);
  p = {3, 3};
  PointPerpNearestLine(&p, &p, &p, &out);
  EXPECT_EQ(out, p) << "two equal ends at p";
}

TEST(PointNearestLine, FindsTheFootOfThePerpendicularWithinTheSegment) {
  const SPOINT a = {0, 0}, b = {1000, 1000};
  SPOINT p = {0, 1000}, out;
  EXPECT_NEAR(PointNearestLine(&a, &b, &p, &out), 707, 2);
  EXPECT_EQ(out, (SPOINT{500, 500}));
  p = {3000, 2000};
  PointNearestLine(&b, &a, &p, &out);
  EXPECT_EQ(out, b);
  const SPOINT level = {2000, 0};
  p = {500, 33};
  EXPECT_EQ(PointNearestLine(&a, &level, &p, nullptr), 33);
}

}  // namespace
}  // namespace vexel
