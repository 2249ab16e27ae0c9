#include <array>
#include <random>
#include <vector>

#include "geometry/rect.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

// xmin, xmax, ymin, ymax
using Sides = std::array<SCOORD, 4>;

Sides Of(const SRECT& r) {
  return {r.xmin, r.xmax, r.ymin, r.ymax};
}

// A stage without a target: its view is 2000 by 2000 pixels.
class Dirty : public ::testing::Test {
 protected:
  void Invalidate(SCOORD x1, SCOORD y1, SCOORD x2, SCOORD y2) {
    const SRECT r = {x1, x2, y1, y2};
    stage.InvalidateRect(&r);
    EXPECT_EQ(CheckStage(stage), "");
  }
  std::vector<Sides> List() const {
    std::vector<Sides> list;
    for (int32_t i = 0; i < stage.dirtyCount; ++i) list.push_back(Of(stage.dirtyRect[i]));
    return list;
  }
  DisplayList stage;
};

TEST_F(Dirty, ARectangleGrowsBy2PixelsOnAllSides) {
  Invalidate(10, 20, 30, 40);
  ASSERT_EQ(stage.dirtyCount, 1);
  EXPECT_EQ(Of(stage.dirtyRect[0]), (Sides{8, 32, 18, 42}));
  EXPECT_EQ(stage.dirtyArea[0], 24 * 24);
  EXPECT_EQ(Of(stage.devDirtyUnion), (Sides{8, 32, 18, 42}));
}

TEST_F(Dirty, ARectangleGrowsBy8DeviceUnitsWhileAntiAliased) {
  stage.antialias = true;
  stage.UpdateDevViewRect();
  EXPECT_EQ(Of(stage.devViewRect), (Sides{0, 8000, 0, 8000}));
  Invalidate(10, 20, 30, 40);
  EXPECT_EQ(Of(stage.dirtyRect[0]), (Sides{2, 38, 12, 48}));
}

TEST_F(Dirty, WhatLiesOutsideTheViewIsDroppedAndWhatTouchesItIsNot) {
  Invalidate(2003, 0, 2010, 10);
  Invalidate(-50, 0, -3, 10);
  const SRECT empty = {kEmptyCoord, kEmptyCoord, kEmptyCoord, kEmptyCoord};
  stage.InvalidateRect(&empty);
  EXPECT_EQ(stage.dirtyCount, 0);
  EXPECT_TRUE(RectIsEmpty(&stage.devDirtyUnion));
  Invalidate(2002, 0, 2010, 10);
  ASSERT_EQ(stage.dirtyCount, 1);
  EXPECT_EQ(Of(stage.dirtyRect[0]), (Sides{2000, 2000, 0, 12}));
}

TEST_F(Dirty, TheFourthOfDisjointRectanglesMergesThePairOfLeastWaste) {
  Invalidate(102, 102, 108, 108);
  Invalidate(502, 102, 508, 108);
  Invalidate(102, 502, 108, 508);
  EXPECT_EQ(stage.dirtyCount, 3);
  Invalidate(522, 102, 528, 108);
  EXPECT_EQ(List(),
            (std::vector<Sides>{{100, 110, 100, 110}, {500, 530, 100, 110}, {100, 110, 500, 510}}));
}

TEST_F(Dirty, OnATieTheFirstPairIsMerged) {
  // Four in a row at equal distances: pairs 0-1, 1-2 and 2-3 waste the same.
  for (const SCOORD x : {100, 200, 300, 400}) Invalidate(x + 2, 102, x + 8, 108);
  EXPECT_EQ(List(),
            (std::vector<Sides>{{100, 210, 100, 110}, {300, 310, 100, 110}, {400, 410, 100, 110}}));
}

TEST_F(Dirty, ASmallOverlapStaysTwoAndIsCutApart) {
  Invalidate(102, 102, 198, 198);
  Invalidate(192, 192, 298, 298);
  ASSERT_EQ(stage.dirtyCount, 2) << "the union would waste more than it saves";
  stage.DecomposeDirtyList();
  ASSERT_EQ(stage.dirtyCount, 2);
  EXPECT_FALSE(RectTestOverlap(&stage.dirtyRect[0], &stage.dirtyRect[1]));
}

TEST_F(Dirty, ALargeOverlapIsMerged) {
  Invalidate(102, 102, 198, 198);
  Invalidate(112, 104, 208, 198);
  EXPECT_EQ(List(), (std::vector<Sides>{{100, 210, 100, 200}}));
}

TEST_F(Dirty, EqualRectanglesWasteTheirAreaLessAndMerge) {
  Invalidate(102, 102, 198, 198);
  Invalidate(102, 102, 198, 198);
  EXPECT_EQ(List(), (std::vector<Sides>{{100, 200, 100, 200}}));
}

TEST_F(Dirty, AreasThatWrapStillLeaveThreeEntries) {
  stage.devViewRect = {0, 0x7FFFFFFF, 0, 0x7FFFFFFF};
  std::mt19937 random(5);
  for (int i = 0; i < 2000; ++i) {
    const SCOORD x = static_cast<SCOORD>(random() & 0x7FFFFFF0);
    const SCOORD y = static_cast<SCOORD>(random() & 0x7FFFFFF0);
    Invalidate(x / 2, y / 2, x, y);
    ASSERT_LE(stage.dirtyCount, 3);
    if (i % 7 == 0) stage.DecomposeDirtyList();
    if (i % 7 == 0) stage.dirtyCount = 0;
  }
}

TEST_F(Dirty, WithNoPairBelowTheGreatestNumberAForcedMergeTakesTheLastTwo) {
  // Areas 0 and a union whose wrapped area is 0x7FFFFFFF: (2^31 - 1) by 1.
  stage.dirtyCount = 2;
  stage.dirtyRect[0] = {0, 0, 0, 1};
  stage.dirtyRect[1] = {0x7FFFFFFF, 0x7FFFFFFF, 0, 1};
  stage.dirtyArea[0] = stage.dirtyArea[1] = 0;
  EXPECT_FALSE(stage.MergeDirtyList(false));
  EXPECT_TRUE(stage.MergeDirtyList(true));
  EXPECT_EQ(stage.dirtyCount, 1);
  stage.dirtyCount = 0;
}

TEST(DecomposeRectTest, LeavesNoOverlapAndLosesNoGround) {
  std::mt19937 random(1);
  const auto some = [&] {
    const SCOORD x = static_cast<SCOORD>(random() % 20);
    const SCOORD y = static_cast<SCOORD>(random() % 20);
    return SRECT{x, x + 1 + static_cast<SCOORD>(random() % 12), y,
                 y + 1 + static_cast<SCOORD>(random() % 12)};
  };
  const auto covers = [](const SRECT& r, SCOORD x, SCOORD y) {
    return x >= r.xmin && x < r.xmax && y >= r.ymin && y < r.ymax;
  };
  int tested = 0;
  while (tested < 500) {
    const SRECT a = some();
    const SRECT b = some();
    if (!RectTestOverlap(&a, &b)) continue;
    ++tested;
    SRECT c = a;
    SRECT d = b;
    DecomposeRect(&c, &d);
    for (SCOORD y = 0; y < 34; ++y) {
      for (SCOORD x = 0; x < 34; ++x) {
        const bool before = covers(a, x, y) || covers(b, x, y);
        ASSERT_FALSE(covers(c, x, y) && covers(d, x, y)) << x << ',' << y;
        ASSERT_TRUE(!before || covers(c, x, y) || covers(d, x, y)) << x << ',' << y;
      }
    }
  }
}

TEST(DecomposeRectTest, TheMiddleBandJoinsTheNeighbourThatWastesLess) {
  // A wide bar above and right of a tall one: the middle band is as wide as both.
  SRECT a = {0, 100, 0, 50};
  SRECT b = {60, 110, 40, 200};
  DecomposeRect(&a, &b);
  EXPECT_EQ(Of(a), (Sides{0, 110, 0, 50}));
  EXPECT_EQ(Of(b), (Sides{60, 110, 50, 200}));

  SRECT c = {60, 110, 0, 50};
  SRECT d = {0, 100, 40, 200};
  DecomposeRect(&c, &d);
  EXPECT_EQ(Of(c), (Sides{60, 110, 0, 40}));
  EXPECT_EQ(Of(d), (Sides{0, 110, 40, 200}));
}

TEST(RectTests, TouchingIsNoOverlapAndAreasWrap) {
  const SRECT a = {0, 10, 0, 10};
  const SRECT b = {10, 20, 0, 10};
  EXPECT_FALSE(RectTestOverlap(&a, &b));
  EXPECT_EQ(RectArea(&a), 100);
  const SRECT wide = {0, 0x10000, 0, 0x10001};
  EXPECT_EQ(RectArea(&wide), 0x10000);
}

}  // namespace
}  // namespace vexel::test
