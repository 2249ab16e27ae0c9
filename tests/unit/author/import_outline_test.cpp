// Outlines: quadratics for cubics, windings, strokes as regions, curves for polygons.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

#include "author/outline.h"

namespace vexel::author {
namespace {

constexpr double kTolerance = 0.01;

double AreaOf(const VectorPath& path) {
  WorkBudget budget;
  Polygons region;
  EXPECT_TRUE(UnionPolygons(FlattenFill(path, kTolerance / 4), Winding::kEvenOdd, kTolerance / 4,
                            &budget, &region));
  return std::fabs(SignedArea(region));
}

VectorPath Rectangles(std::initializer_list<std::array<double, 4>> list) {
  VectorPath path;
  for (const auto& r : list) path.AddRect(r[0], r[1], r[2], r[3]);
  return path;
}

double StrokeArea(const VectorPath& path, const StrokeStyle& style) {
  WorkBudget budget;
  Polygons region;
  EXPECT_TRUE(StrokeRegion(path, style, kTolerance, &budget, &region));
  return std::fabs(SignedArea(region));
}

VectorPath Line(std::initializer_list<Vec2> points, bool closed = false) {
  VectorPath path;
  for (Vec2 p : points) path.IsEmpty() ? path.MoveTo(p) : path.LineTo(p);
  if (closed) path.Close();
  return path;
}

TEST(ImportOutline, QuadraticsStayWithinTheToleranceOfCubics) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> at(-100, 100);
  for (int round = 0; round < 200; round++) {
    Vec2 p[4];
    for (Vec2& v : p) v = {at(random), at(random)};
    VectorPath path;
    path.MoveTo(p[0]);
    path.CubicTo(p[1], p[2], p[3]);
    VectorPath quads = CubicsToQuads(path, kTolerance);
    size_t n = quads.commands.size() - 1;
    Vec2 pen = p[0];
    for (size_t i = 1; i <= n; i++) {
      const PathCommand& c = quads.commands[i];
      ASSERT_EQ(c.op, PathOp::kQuad);
      // Pieces split the parameter evenly, so places correspond.
      for (double s = 0; s <= 1; s += 0.25) {
        double t = (double(i) - 1 + s) / double(n), u = 1 - t, r = 1 - s;
        Vec2 cubic =
            u * u * u * p[0] + 3 * u * u * t * p[1] + 3 * u * t * t * p[2] + t * t * t * p[3];
        Vec2 quad = r * r * pen + 2 * r * s * c.c1 + s * s * c.p;
        ASSERT_LT(Length(cubic - quad), kTolerance * 1.01) << "round " << round;
      }
      pen = c.p;
    }
    EXPECT_EQ(pen, p[3]);
  }
}

TEST(ImportOutline, WindingRuleKeepsTheCurvesWhereRulesAgree) {
  WorkBudget budget;
  VectorPath path, out;
  path.AddEllipse({0, 0}, 10, 10);
  ASSERT_TRUE(ResolveWinding(path, Winding::kNonZero, kTolerance, &budget, &out));
  EXPECT_EQ(out.commands.size(), CubicsToQuads(path, kTolerance).commands.size());
}

TEST(ImportOutline, OverlapsOfOneDirectionAreFilled) {
  WorkBudget budget;
  VectorPath path = Rectangles({{0, 0, 10, 10}, {5, 5, 10, 10}}), out;
  ASSERT_TRUE(ResolveWinding(path, Winding::kNonZero, kTolerance, &budget, &out));
  EXPECT_NEAR(AreaOf(out), 175, 0.1);
  ASSERT_TRUE(ResolveWinding(path, Winding::kEvenOdd, kTolerance, &budget, &out));
  EXPECT_NEAR(AreaOf(out), 150, 0.1);
}

TEST(ImportOutline, ANestedContourOfTheOtherDirectionStaysAHole) {
  WorkBudget budget;
  VectorPath path = Rectangles({{0, 0, 10, 10}}), out;
  path.Append(Line({{2, 2}, {2, 8}, {8, 8}, {8, 2}}, true));
  ASSERT_TRUE(ResolveWinding(path, Winding::kNonZero, kTolerance, &budget, &out));
  EXPECT_NEAR(AreaOf(out), 64, 0.1);
}

TEST(ImportOutline, FittedCurvesAreFewAndClose) {
  VectorPath circle;
  circle.AddEllipse({3, 4}, 20, 20);
  Polygons region = FlattenFill(circle, kTolerance / 10);
  VectorPath fitted = FitCurves(region, kTolerance);
  EXPECT_GT(region[0].size(), 100u);
  EXPECT_LT(fitted.commands.size(), 40u);
  EXPECT_NEAR(AreaOf(fitted), 3.14159265 * 400, 1);
}

TEST(ImportOutline, FittedCurvesKeepCorners) {
  VectorPath path = Rectangles({{0, 0, 10, 10}});
  VectorPath fitted = FitCurves(FlattenFill(path, kTolerance), kTolerance);
  for (const PathCommand& c : fitted.commands) EXPECT_NE(c.op, PathOp::kQuad);
  EXPECT_NEAR(AreaOf(fitted), 100, 1e-6);
}

TEST(ImportStroke, CapsAddWhatTheyAre) {
  StrokeStyle pen;
  pen.width = 4;
  VectorPath line = Line({{0, 0}, {10, 0}});
  EXPECT_NEAR(StrokeArea(line, pen), 40, 0.1);
  pen.cap = StrokeCap::kSquare;
  EXPECT_NEAR(StrokeArea(line, pen), 56, 0.1);
  pen.cap = StrokeCap::kRound;
  EXPECT_NEAR(StrokeArea(line, pen), 40 + 3.14159265 * 4, 0.1);
}

TEST(ImportStroke, JoinsAddWhatTheyAre) {
  StrokeStyle pen;
  pen.width = 2;
  VectorPath square = Line({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true);
  EXPECT_NEAR(StrokeArea(square, pen), 144 - 64, 0.1);
  pen.join = StrokeJoin::kBevel;
  EXPECT_NEAR(StrokeArea(square, pen), 80 - 4 * 0.5, 0.1);
  pen.join = StrokeJoin::kRound;
  EXPECT_NEAR(StrokeArea(square, pen), 80 - 4 * (1 - 3.14159265 / 4), 0.1);
}

TEST(ImportStroke, SharpMitersAreCutAtTheLimit) {
  StrokeStyle pen;
  pen.width = 2;
  VectorPath sharp = Line({{0, 0}, {20, 0}, {0, 2}});
  double cut = StrokeArea(sharp, pen);
  pen.miterLimit = 100;
  EXPECT_GT(StrokeArea(sharp, pen), cut + 5);
}

TEST(ImportStroke, DirectionOfContoursDoesNotMatter) {
  StrokeStyle pen;
  pen.width = 2;
  VectorPath crossed = Line({{0, 0}, {10, 0}});
  crossed.Append(Line({{5, 5}, {5, -5}}));
  VectorPath other = Line({{0, 0}, {10, 0}});
  other.Append(Line({{5, -5}, {5, 5}}));
  EXPECT_NEAR(StrokeArea(crossed, pen), 36, 0.1);
  EXPECT_NEAR(StrokeArea(other, pen), 36, 0.1);
}

TEST(ImportStroke, DotsShowTheirCapsAlone) {
  StrokeStyle pen;
  pen.width = 4;
  VectorPath dot = Line({{5, 5}, {5, 5}});
  EXPECT_EQ(StrokeArea(dot, pen), 0);
  pen.cap = StrokeCap::kSquare;
  EXPECT_NEAR(StrokeArea(dot, pen), 16, 0.1);
  pen.cap = StrokeCap::kRound;
  EXPECT_NEAR(StrokeArea(dot, pen), 12.566, 0.1);
}

TEST(ImportStroke, DashesCutTheLine) {
  StrokeStyle pen;
  pen.width = 2;
  pen.dashes = {3, 2};
  VectorPath line = Line({{0, 0}, {10, 0}});
  EXPECT_NEAR(StrokeArea(line, pen), 12, 0.1);
  pen.dashOffset = 3;
  EXPECT_NEAR(StrokeArea(line, pen), 2 * (3 + 3), 0.1);
  pen.dashes = {3};  // an odd list runs twice: 3 on, 3 off
  pen.dashOffset = 0;
  EXPECT_NEAR(StrokeArea(line, pen), 12, 0.1);
  pen.dashes = {0, 0};
  EXPECT_NEAR(StrokeArea(line, pen), 20, 0.1);
}

TEST(ImportStroke, ADashThroughTheStartOfARingIsOnePiece) {
  std::vector<Polyline> lines = Flatten(Line({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true), 0.1);
  ASSERT_TRUE(CutDashes({10, 5}, 5, &lines));
  EXPECT_EQ(lines.size(), 3u);
}

TEST(ImportStroke, EndlessDashesAreRefused) {
  std::vector<Polyline> lines = Flatten(Line({{0, 0}, {1e6, 0}}), 0.1);
  EXPECT_FALSE(CutDashes({1e-3, 1e-3}, 0, &lines));
  EXPECT_EQ(lines.size(), 1u);
}

TEST(ImportOutline, WorkIsBounded) {
  // Every side crosses every other.
  Polygon star;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> at(-100, 100);
  for (int i = 0; i < 20000; i++) star.push_back({at(random), at(random)});
  WorkBudget budget(1e6);
  Polygons out{{{1, 2}}};
  EXPECT_FALSE(UnionPolygons({star}, Winding::kNonZero, kTolerance, &budget, &out));
  EXPECT_EQ(out.size(), 1u);
}

TEST(ImportOutline, CoordinatesOffTheGridAreRefused) {
  WorkBudget budget;
  Polygons out;
  EXPECT_FALSE(
      UnionPolygons({{{0, 0}, {1e15, 0}, {0, NAN}}}, Winding::kNonZero, kTolerance, &budget, &out));
}

}  // namespace
}  // namespace vexel::author
