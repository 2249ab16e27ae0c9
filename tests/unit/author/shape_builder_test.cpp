#include "author/shape_builder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vexel::author {
namespace {

TEST(ShapeBuilder, GathersSelectionAndMoveIntoOneRecord) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{1, 2, 3})).MoveTo({10, 20}).LineTo({30, 20});
  ASSERT_EQ(shape.records().size(), 2u);
  EXPECT_EQ(shape.records()[0].flags, kChangeMove | kChangeFill0 | kChangeFill1 | kChangeLine);
  EXPECT_EQ(shape.records()[0].move, (Point{10, 20}));
  EXPECT_EQ(shape.records()[1].anchor, (Point{20, 0}));
}

TEST(ShapeBuilder, ASelectionThatNothingUsesLeavesNoTrace) {
  ShapeBuilder shape;
  shape.MoveTo({1, 1}).MoveTo({5, 5}).LineTo({6, 5});
  shape.MoveTo({9, 9});
  ASSERT_EQ(shape.records().size(), 2u);
  EXPECT_EQ(shape.records()[0].move, (Point{5, 5}));
}

TEST(ShapeBuilder, CutsEdgesThatAreTooLong) {
  ShapeBuilder shape;
  shape.MoveTo({-100000, 0}).LineTo({200000, 50000}).CurveTo({0, 100000}, {-200000, 0});
  int32_t x = -100000;
  int32_t y = 0;
  for (size_t i = 1; i < shape.records().size(); ++i) {
    const ShapeRecord& record = shape.records()[i];
    EXPECT_LE(std::abs(record.anchor.x), 65535);
    EXPECT_LE(std::abs(record.control.x), 65535);
    x += record.control.x + record.anchor.x;
    y += record.control.y + record.anchor.y;
  }
  EXPECT_EQ(x, -200000);
  EXPECT_EQ(y, 0);
  BitWriter out;
  EXPECT_NO_THROW(WriteShape(out, shape.styles(), shape.records(), true));
}

TEST(ShapeBuilder, BoundsHoldControlsAndHalfTheThickestLine) {
  ShapeBuilder shape;
  shape.Line(shape.AddLine(21, {})).MoveTo({0, 0}).CurveTo({50, -40}, {100, 0});
  EXPECT_EQ(shape.Bounds(), (Rect{-11, 111, -51, 11}));
  EXPECT_EQ(ShapeBuilder().Bounds(), Rect{});
}

TEST(ShapeBuilder, ARectangleIsFourEdges) {
  ShapeBuilder shape;
  shape.Rectangle({0, 10, 0, 5});
  EXPECT_EQ(shape.records().size(), 5u);
  EXPECT_EQ(shape.pen(), (Point{0, 0}));
}

TEST(ShapeBuilder, FiguresCloseWhereTheyBegan) {
  ShapeBuilder shape;
  shape.Ellipse({100, 100}, 50, 30);
  EXPECT_EQ(shape.pen(), (Point{150, 100}));
  shape.RoundRectangle({0, 100, 0, 100}, 20);
  EXPECT_EQ(shape.pen(), (Point{0, 20}));
  shape.Polygon({{1, 1}, {5, 1}, {3, 4}});
  EXPECT_EQ(shape.pen(), (Point{1, 1}));
}

TEST(ShapeBuilder, AnEllipseKeepsItsRadius) {
  ShapeBuilder shape;
  shape.Ellipse({0, 0}, 10000, 10000);
  Point pen = shape.records()[0].move;
  for (size_t i = 1; i < shape.records().size(); ++i) {
    const Point control = pen + shape.records()[i].control;
    const Point end = control + shape.records()[i].anchor;
    const double x = (pen.x + 2.0 * control.x + end.x) / 4;
    const double y = (pen.y + 2.0 * control.y + end.y) / 4;
    EXPECT_NEAR(std::hypot(x, y), 10000, 40);
    EXPECT_NEAR(std::hypot(end.x, end.y), 10000, 1);
    pen = end;
  }
}

TEST(ShapeBuilder, ACubicStaysWithinHalfAUnit) {
  const Point p0{0, 0}, p1{4000, -3000}, p2{-1000, 6000}, p3{5000, 2000};
  ShapeBuilder shape;
  shape.MoveTo(p0).CubicTo(p1, p2, p3);
  EXPECT_EQ(shape.pen(), p3);
  const size_t pieces = shape.records().size() - 1;
  Point pen = p0;
  for (size_t i = 0; i < pieces; ++i) {
    const Point control = pen + shape.records()[i + 1].control;
    const Point end = control + shape.records()[i + 1].anchor;
    for (double s : {0.25, 0.5, 0.75}) {
      const double t = (double(i) + s) / double(pieces);
      const double u = 1 - t;
      const double cx = 3 * u * u * t * p1.x + 3 * u * t * t * p2.x + t * t * t * p3.x;
      const double cy = 3 * u * u * t * p1.y + 3 * u * t * t * p2.y + t * t * t * p3.y;
      const double v = 1 - s;
      const double qx = v * v * pen.x + 2 * v * s * control.x + s * s * end.x;
      const double qy = v * v * pen.y + 2 * v * s * control.y + s * s * end.y;
      // Half a unit of fit, and the rounding of three points.
      EXPECT_LT(std::hypot(cx - qx, cy - qy), 1.6);
    }
    pen = end;
  }
}

TEST(ShapeBuilder, NewTablesStartTheNumbersAgain) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{1, 1, 1})).Rectangle({0, 10, 0, 10});
  shape.NewStyles();
  EXPECT_EQ(shape.AddFill(Color{2, 2, 2}), 1u);
  EXPECT_EQ(shape.AddFill(Color{3, 3, 3}), 2u);
  shape.Style(2).Rectangle({5, 15, 5, 15});
  EXPECT_EQ(shape.styles().fills.size(), 1u);
  const ShapeRecord& tables = shape.records()[5];
  EXPECT_EQ(tables.flags, kChangeStyles);
  EXPECT_EQ(tables.styles.fills.size(), 2u);
  const ShapeRecord& select = shape.records()[6];
  EXPECT_EQ(select.fill1, 2u);
  EXPECT_EQ(select.flags & kChangeStyles, 0);
}

}  // namespace
}  // namespace vexel::author
