// Rectangles.
#include "geometry/rect.h"

#include <gtest/gtest.h>

#include <random>

namespace vexel {

static bool operator==(const SRECT& a, const SRECT& b) {
  return a.xmin == b.xmin && a.xmax == b.xmax && a.ymin == b.ymin && a.ymax == b.ymax;
}

namespace {

SRECT Empty() {
  SRECT r;
  RectSetEmpty(&r);
  return r;
}

TEST(RectUnion, OfAnEmptyRectangleIsTheOther) {
  const SRECT empty = Empty(), b = {1, 2, 3, 4};
  SRECT out;
  RectUnion(&empty, &b, &out);
  EXPECT_EQ(out, b);
  RectUnion(&b, &empty, &out);
  EXPECT_EQ(out, b);
  const SRECT c = {-5, 1, 9, 10};
  RectUnion(&b, &c, &out);
  EXPECT_EQ(out, (SRECT{-5, 2, 3, 10}));
}

TEST(RectInset, ByMoreThanHalfTheWidthGivesTheEmptyRectangle) {
  SRECT r = {0, 10, 0, 100};
  RectInset(6, &r);
  EXPECT_EQ(r, Empty());
  r = {0, 10, 0, 100};
  RectInset(5, &r);
  EXPECT_EQ(r, (SRECT{5, 5, 5, 95}));
  RectInset(-5, &r);
  EXPECT_EQ(r, (SRECT{0, 10, 0, 100}));
}

TEST(RectCenter, OfTheEmptyRectangleIsTheOrigin) {
  SRECT r = Empty();
  SPOINT p = {1, 1};
  RectCenter(&r, &p);
  EXPECT_EQ(p, (SPOINT{0, 0}));
  r = {-3, 0, 0, 5};
  RectCenter(&r, &p);
  EXPECT_EQ(p, (SPOINT{-2, 2}));
}

TEST(RectOffset, LeavesTheEmptyRectangle) {
  SRECT r = Empty();
  RectOffset(5, 5, &r);
  EXPECT_EQ(r, Empty());
  RectShift(&r, -1, &r);
  EXPECT_EQ(r, Empty());
  RectInset(-5, &r);
  EXPECT_EQ(r, Empty());
}

TEST(RectGetPoint, AndItsOppositeAreMirrored) {
  const SRECT r = {0, 11, 20, 41};
  const SPOINT expected[9] = {{0, 41},  {11, 41}, {11, 20}, {0, 20}, {5, 41},
                              {11, 30}, {5, 20},  {0, 30},  {5, 30}};
  const int opposite[9] = {2, 3, 0, 1, 6, 7, 4, 5, 8};
  for (int i = 0; i < 9; ++i) {
    SPOINT p;
    RectGetPoint(&r, i, &p);
    EXPECT_EQ(p, expected[i]) << i;
    EXPECT_EQ(RectOppositePoint(i), opposite[i]) << i;
  }
  EXPECT_EQ(RectOppositePoint(-1), 8);
  EXPECT_EQ(RectOppositePoint(99), 8);
}

TEST(RectIntersect, OfRectanglesApartIsEmpty) {
  const SRECT a = {0, 10, 0, 10}, b = {10, 20, 5, 8}, c = {11, 20, 5, 8};
  SRECT out;
  EXPECT_TRUE(RectTestIntersect(&a, &b)) << "touching counts";
  RectIntersect(&a, &b, &out);
  EXPECT_EQ(out, (SRECT{10, 10, 5, 8}));
  EXPECT_FALSE(RectTestIntersect(&a, &c));
  RectIntersect(&a, &c, &out);
  EXPECT_EQ(out, Empty());
  const SRECT empty = Empty();
  EXPECT_FALSE(RectTestIntersect(&a, &empty));
  EXPECT_FALSE(RectTestIntersect(&empty, &a));
}

TEST(RectUnionPoint, EqualsTheOuterBounds) {
  std::mt19937 random(3);
  for (int round = 0; round < 1000; ++round) {
    SRECT r = Empty();
    SRECT expected = {kInt32Max, -kInt32Max, kInt32Max, -kInt32Max};
    for (int i = 0; i < 6; ++i) {
      const SPOINT p = {static_cast<int32_t>(random()) >> 1, static_cast<int32_t>(random()) >> 1};
      RectUnionPoint(&p, &r);
      expected = {std::min(expected.xmin, p.x), std::max(expected.xmax, p.x),
                  std::min(expected.ymin, p.y), std::max(expected.ymax, p.y)};
      ASSERT_EQ(r, expected);
      ASSERT_TRUE(RectPointIn(&r, &p));
    }
  }
}

TEST(RectEqual, TreatsEmptyRectanglesApart) {
  const SRECT empty = Empty(), a = {0, 10, 0, 10}, b = {1, 9, 0, 11};
  EXPECT_TRUE(RectEqual(&empty, &empty, 0));
  EXPECT_FALSE(RectEqual(&empty, &a, kInt32Max));
  EXPECT_TRUE(RectEqual(&a, &b, 1));
  EXPECT_FALSE(RectEqual(&a, &b, 0));
}

TEST(RectDistance, MeasuresTheGap) {
  const SRECT a = {0, 10, 0, 10}, b = {20, 30, 5, 8};
  EXPECT_EQ(RectDistance(&a, &b), 10);
  EXPECT_EQ(RectDistance(&b, &a), 10);
  EXPECT_EQ(RectDistance(&a, &a), 0);
  SPOINT p = {5, 5};
  EXPECT_EQ(RectNearDistance(&a, &p), 0);
  p = {5, -7};
  EXPECT_EQ(RectNearDistance(&a, &p), 7);
  EXPECT_EQ(RectSize(&a), 14);
}

TEST(RectHuge, HoldsAllCoordinatesOfTheSystem) {
  SRECT r;
  RectSetHuge(&r);
  EXPECT_EQ(r, (SRECT{-4194304, 0x3FFFFF, -4194304, 0x3FFFFF}));
}

TEST(PlatformRect, IsConvertedBothWays) {
  const RECT platform = {9, 8, 1, 2};
  SRECT s;
  RectToSRect(&platform, &s);
  EXPECT_EQ(s, (SRECT{2, 8, 1, 9}));
  RECT out;
  SRectToRect(&s, &out, true);
  EXPECT_EQ(out.top, 1);
  EXPECT_EQ(out.bottom, 9);
  SRectToRect(&s, &out, false);
  EXPECT_EQ(out.top, 9);
  EXPECT_EQ(out.bottom, 1);
  EXPECT_EQ(out.left, 2);
  EXPECT_EQ(out.right, 8);
  s = Empty();
  SRectToRect(&s, &out, true);
  EXPECT_EQ(out.left | out.right | out.top | out.bottom, 0);
}

}  // namespace
}  // namespace vexel
