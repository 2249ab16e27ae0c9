// Lines of 1 to 3 units without anti-aliasing.
#include "edge_fixture.h"
#include "stage/stroker.h"

namespace vexel::test {
namespace {

class ThinStroke : public EdgeTest {
 protected:
  std::vector<PlainEdge> Stroke(int thickness, const std::vector<CURVE>& path) {
    SStroker stroker(&display, &list);
    stroker.BeginStroke(thickness, nullptr);
    for (const CURVE& c : path) stroker.AddStrokeCurve(&c);
    stroker.EndStroke();
    return Take();
  }
  std::vector<SPOINT> Cells(int thickness, const std::vector<CURVE>& path) {
    const std::vector<PlainEdge> edges = Stroke(thickness, path);
    std::vector<SPOINT> cells;
    for (int y = -10; y < 60; ++y)
      for (int x = -10; x < 60; ++x)
        if (WindingAt(edges, x, y) != 0) cells.push_back({x, y});
    return cells;
  }
};

TEST_F(ThinStroke, TheHairlineIsOneUnit) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(0, nullptr);
  EXPECT_EQ(stroker.lineThickness, 1);
  EXPECT_FALSE(stroker.thick);
  stroker.BeginStroke(3, nullptr);
  EXPECT_FALSE(stroker.thick);
  stroker.BeginStroke(4, nullptr);
  EXPECT_TRUE(stroker.thick);
}

TEST_F(ThinStroke, TwoUnitsCoverTheSameRowsInBothDirections) {
  const std::vector<SPOINT> there = Cells(2, {LineOf({0, 10}, {20, 10})});
  EXPECT_EQ(there, Cells(2, {LineOf({20, 10}, {0, 10})}));
  EXPECT_EQ(there.size(), 40u);
  EXPECT_EQ(there.front(), (SPOINT{0, 9}));
  EXPECT_EQ(there.back(), (SPOINT{19, 10}));
}

TEST_F(ThinStroke, OneUnitLiesOnASideThatDependsOnTheDirection) {
  // dx is positive for travel to the left, dy for travel downward.
  EXPECT_EQ(Cells(1, {LineOf({0, 10}, {20, 10})}).front(), (SPOINT{0, 10}));
  EXPECT_EQ(Cells(1, {LineOf({20, 10}, {0, 10})}).front(), (SPOINT{0, 10}));
  const std::vector<PlainEdge> right = Stroke(1, {LineOf({0, 10}, {20, 12})});
  const std::vector<PlainEdge> left = Stroke(1, {LineOf({20, 12}, {0, 10})});
  // Travel to the right leaves the left side on the path and moves the right
  // one; travel to the left moves the left one.
  SStroker stroker(&display, &list);
  stroker.BeginStroke(1, nullptr);
  CURVE c = LineOf({0, 10}, {20, 10});
  stroker.AddStrokeCurve(&c);
  EXPECT_EQ(stroker.startLeft, (SPOINT{0, 10}));
  EXPECT_EQ(stroker.startRight, (SPOINT{0, 11}));
  stroker.BeginStroke(1, nullptr);
  c = LineOf({20, 10}, {0, 10});
  stroker.AddStrokeCurve(&c);
  EXPECT_EQ(stroker.startLeft, (SPOINT{20, 11}));
  EXPECT_EQ(stroker.startRight, (SPOINT{20, 10}));
  EXPECT_FALSE(right.empty());
  EXPECT_FALSE(left.empty());
}

TEST_F(ThinStroke, ThreeUnitsShiftBothSides) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(3, nullptr);
  const CURVE c = LineOf({10, 0}, {12, 20});
  stroker.AddStrokeCurve(&c);
  EXPECT_EQ(stroker.startLeft, (SPOINT{11, 0}));
  EXPECT_EQ(stroker.startRight, (SPOINT{8, 0}));
  EXPECT_EQ(stroker.prevLeft, (SPOINT{13, 20}));
  EXPECT_EQ(stroker.prevRight, (SPOINT{10, 20}));
}

TEST_F(ThinStroke, AHorizontalLineHasEdgesThoughTheCurveHasNone) {
  EXPECT_FALSE(Stroke(1, {LineOf({0, 10}, {20, 10})}).empty());
}

TEST_F(ThinStroke, ACurveOfFlatnessTwoIsOnePieceHoweverLong) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(2, nullptr);
  // The control stands behind the start: the arms go opposite ways in x.
  CURVE c = CurveOf({0, 0}, {2, 200}, {0, 400});
  ASSERT_EQ(CurveFlatness(&c), 2);
  stroker.AddStrokeCurve(&c);
  // One piece makes one vector of joins: started, and no AddEdge between.
  EXPECT_EQ(stroker.startLeft, (SPOINT{1, 0}));
  const size_t one = Take().size();
  stroker.BeginStroke(2, nullptr);
  c = CurveOf({0, 0}, {3, 200}, {0, 400});
  ASSERT_EQ(CurveFlatness(&c), 3);
  stroker.AddStrokeCurve(&c);
  EXPECT_GE(Take().size(), one);
  // Divided where the arms leave one another, it is joined in the middle.
  stroker.BeginStroke(2, nullptr);
  c = CurveOf({0, 0}, {200, 2}, {0, 4});
  stroker.AddStrokeCurve(&c);
  EXPECT_GT(Take().size(), 4u);
}

TEST_F(ThinStroke, AClosedPathIsJoinedAtItsStartAsElsewhere) {
  const CURVE sides[4] = {LineOf({0, 0}, {20, 0}), LineOf({20, 0}, {20, 20}),
                          LineOf({20, 20}, {0, 20}), LineOf({0, 20}, {0, 0})};
  const std::vector<SPOINT> cells = Cells(2, {sides[0], sides[1], sides[2], sides[3]});
  EXPECT_EQ(cells, Cells(2, {sides[1], sides[2], sides[3], sides[0]}));
  EXPECT_NEAR(cells.size(), 160, 4);
  EXPECT_LT(Cells(2, {sides[0], sides[1], sides[2]}).size(), cells.size());
}

TEST_F(ThinStroke, AnEmptyPathDrawsNothing) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(1, nullptr);
  const CURVE c = LineOf({5, 5}, {5, 5});
  stroker.AddStrokeCurve(&c);
  EXPECT_EQ(stroker.lastPoint.x, kInt32Min);
  stroker.EndStroke();
  EXPECT_TRUE(Take().empty());
}

TEST_F(ThinStroke, APathThatLostItsSegmentsIsASquare) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(3, nullptr);
  stroker.lastPoint = {10, 10};
  stroker.EndStroke();
  const std::vector<PlainEdge> edges = Take();
  ASSERT_EQ(edges.size(), 2u);
  int covered = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 20; ++x) covered += WindingAt(edges, x, y) != 0;
  EXPECT_EQ(covered, 9);
  EXPECT_EQ(BoundsOf(edges).xmin, 9);
  EXPECT_EQ(BoundsOf(edges).ymax, 12);
}

TEST_F(ThinStroke, WrappingCoordinatesEnd) {
  SStroker stroker(&display, &list);
  stroker.preclip = true;
  stroker.BeginStroke(1, nullptr);
  const CURVE c = CurveOf({kInt32Min, kInt32Max}, {kInt32Max, kInt32Min}, {kInt32Min + 9, 77});
  stroker.AddStrokeCurve(&c);
  stroker.EndStroke();
}

}  // namespace
}  // namespace vexel::test
