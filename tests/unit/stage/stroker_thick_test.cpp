// Lines with normals, joins and caps.
#include "edge_fixture.h"
#include "raster/rcolor.h"
#include "stage/stroker.h"

namespace vexel::test {
namespace {

class ThickStroke : public EdgeTest {
 protected:
  std::vector<PlainEdge> Stroke(int thickness, const std::vector<CURVE>& path,
                                bool antialias = false) {
    SStroker stroker(&display, &list);
    stroker.antialias = antialias;
    stroker.BeginStroke(thickness, nullptr);
    for (const CURVE& c : path) stroker.AddStrokeCurve(&c);
    stroker.EndStroke();
    return Take();
  }
  static size_t Curved(const std::vector<PlainEdge>& edges) {
    size_t n = 0;
    for (const PlainEdge& e : edges) n += !e.isLine;
    return n;
  }
};

TEST_F(ThickStroke, TheHairlineIsAPixelWithAntialias) {
  SStroker stroker(&display, &list);
  stroker.antialias = true;
  stroker.BeginStroke(0, nullptr);
  EXPECT_EQ(stroker.lineThickness, 4);
  EXPECT_TRUE(stroker.thick);
  stroker.BeginStroke(3, nullptr);
  EXPECT_TRUE(stroker.thick);
}

TEST_F(ThickStroke, ALongUprightLineMovesToTheCentreOfItsPixel) {
  SRECT r = BoundsOf(Stroke(4, {LineOf({5, 0}, {5, 13})}, true));
  EXPECT_EQ(r.xmin, 4);
  EXPECT_EQ(r.xmax, 8);
  r = BoundsOf(Stroke(4, {LineOf({5, 0}, {5, 12})}, true));
  EXPECT_EQ(r.xmin, 3);
  EXPECT_EQ(r.xmax, 7);
}

TEST_F(ThickStroke, ALongLevelLineMovesLikewise) {
  SRECT r = BoundsOf(Stroke(12, {LineOf({0, 7}, {30, 7})}, true));
  EXPECT_EQ(r.ymin, 0);
  EXPECT_EQ(r.ymax, 12);
  r = BoundsOf(Stroke(8, {LineOf({0, 5}, {30, 5})}, true));
  EXPECT_EQ(r.ymin, 0) << "an even width goes to the edge of a pixel";
  EXPECT_EQ(r.ymax, 8);
  r = BoundsOf(Stroke(16, {LineOf({0, 5}, {30, 5})}, true));
  EXPECT_EQ(r.ymin, -3) << "other widths stay";
}

TEST_F(ThickStroke, SnappingKeepsTheNormalOfTheUnmovedControl) {
  // Anchors move by 1, the control does not: (control - anchor) leans.
  SStroker stroker(&display, &list);
  stroker.antialias = true;
  stroker.BeginStroke(4, nullptr);
  const CURVE c = LineOf({5, 0}, {5, 14});
  stroker.AddStrokeCurve(&c);
  // The arm is (-1, 7): the normal (7, 1), scaled to 2, is (2, 0).
  EXPECT_EQ(stroker.startLeft, (SPOINT{8, 0}));
  EXPECT_EQ(stroker.startRight, (SPOINT{4, 0}));
  EXPECT_EQ(stroker.startPoint, (SPOINT{6, 0}));
  EXPECT_EQ(stroker.lastPoint, (SPOINT{5, 14})) << "the curve that was given";
}

TEST_F(ThickStroke, AClosedSquareHasRoundOuterCornersAndNoCap) {
  const std::vector<CURVE> square = {LineOf({0, 0}, {200, 0}), LineOf({200, 0}, {200, 200}),
                                     LineOf({200, 200}, {0, 200}), LineOf({0, 200}, {0, 0})};
  const std::vector<PlainEdge> edges = Stroke(40, square);
  const SRECT r = BoundsOf(edges);
  EXPECT_EQ(r.xmin, -20);
  EXPECT_EQ(r.xmax, 220);
  EXPECT_EQ(WindingAt(edges, -19, -19), 0);
  EXPECT_EQ(WindingAt(edges, 218, 218), 0);
  EXPECT_NE(WindingAt(edges, -10, -10), 0);
  EXPECT_NE(WindingAt(edges, 0, 100), 0);
  EXPECT_EQ(WindingAt(edges, 100, 100), 0) << "hollow";
  EXPECT_EQ(Curved(edges), 4u * 2) << "two arcs a corner";
}

TEST_F(ThickStroke, APathThatMissesItsStartHasRoundCaps) {
  const std::vector<CURVE> path = {LineOf({0, 0}, {200, 0}), LineOf({200, 0}, {200, 200}),
                                   LineOf({200, 200}, {0, 200}), LineOf({0, 200}, {0, 1})};
  const std::vector<PlainEdge> edges = Stroke(40, path);
  EXPECT_EQ(Curved(edges), 3u * 2 + 2 * 4) << "three joins, and two caps of four arcs";
  EXPECT_NE(WindingAt(edges, 3, -18), 0);
  EXPECT_EQ(WindingAt(edges, -19, -19), 0);
}

TEST_F(ThickStroke, ATurnBelowOneDegreeIsJoinedStraight) {
  const std::vector<CURVE> straight = {LineOf({0, 0}, {0, 1000}), LineOf({0, 1000}, {8, 2000})};
  EXPECT_EQ(Curved(Stroke(2000, straight)), Curved(Stroke(2000, {straight[0]})));
  const std::vector<CURVE> turned = {LineOf({0, 0}, {0, 1000}), LineOf({0, 1000}, {50, 2000})};
  EXPECT_GT(Curved(Stroke(2000, turned)), Curved(Stroke(2000, {straight[0]})));
}

TEST_F(ThickStroke, AFullTurnHasFourArcs) {
  // A line there and back turns by 180 degrees at its far end.
  SStroker stroker(&display, &list);
  stroker.BeginStroke(40, nullptr);
  CURVE c = LineOf({0, 0}, {0, 100});
  stroker.AddStrokeCurve(&c);
  Take();
  c = LineOf({0, 100}, {0, 0});
  stroker.AddStrokeCurve(&c);
  const std::vector<PlainEdge> edges = Take();
  EXPECT_EQ(Curved(edges), 2u * 4) << "both sides turn by exactly 180";
  EXPECT_NEAR(BoundsOf(edges).ymax, 120, 1);
}

TEST_F(ThickStroke, ASharpBendIsDivided) {
  const std::vector<PlainEdge> edges = Stroke(40, {CurveOf({0, 0}, {300, 10}, {0, 20})});
  EXPECT_LE(BoundsOf(edges).xmax, 175);
  EXPECT_GE(BoundsOf(edges).xmax, 165);
}

TEST_F(ThickStroke, ACurveOfOnePointAddsNothing) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(40, nullptr);
  CURVE c = LineOf({0, 0}, {0, 100});
  stroker.AddStrokeCurve(&c);
  Take();
  c = CurveOf({50, 50}, {50, 50}, {50, 50});
  stroker.AddStrokeCurve(&c);
  EXPECT_TRUE(Take().empty());
  EXPECT_EQ(stroker.lastPoint, (SPOINT{0, 100}));
}

TEST_F(ThickStroke, ALoopBackToItsStartIsNotOnePoint) {
  const std::vector<PlainEdge> edges = Stroke(8, {CurveOf({50, 50}, {90, 90}, {50, 50})});
  EXPECT_FALSE(edges.empty());
}

TEST_F(ThickStroke, APathThatLostItsSegmentsIsADisc) {
  SStroker stroker(&display, &list);
  stroker.BeginStroke(40, nullptr);
  stroker.lastPoint = {100, 100};
  stroker.EndStroke();
  const std::vector<PlainEdge> edges = Take();
  EXPECT_EQ(Curved(edges), 8u);
  EXPECT_NE(WindingAt(edges, 85, 100), 0);
  EXPECT_NE(WindingAt(edges, 115, 100), 0);
  EXPECT_EQ(WindingAt(edges, 82, 82), 0);
}

TEST_F(ThickStroke, EdgesWindAndCarryTheColour) {
  RColor color;
  SStroker stroker(&display, &list);
  stroker.BeginStroke(40, &color);
  const CURVE c = LineOf({0, 0}, {0, 100});
  stroker.AddStrokeCurve(&c);
  stroker.EndStroke();
  for (const PlainEdge& e : Take()) {
    EXPECT_EQ(e.rule, ruleWinding);
    EXPECT_EQ(e.color1, &color);
    EXPECT_EQ(e.color2, nullptr);
  }
}

TEST_F(ThickStroke, AnyNumbersAreTaken) {
  for (SCOORD v : {kInt32Min, kInt32Max, 0x40000000, -5}) {
    SStroker stroker(&display, &list);
    stroker.preclip = v > 0;
    stroker.antialias = v < 0;
    stroker.BeginStroke(v, nullptr);
    CURVE c = CurveOf({v, 5}, {7, v}, {-1, kInt32Min});
    stroker.AddStrokeCurve(&c);
    c = LineOf({v, v}, {kInt32Max, 7});
    stroker.AddStrokeCurve(&c);
    stroker.EndStroke();
  }
}

}  // namespace
}  // namespace vexel::test
