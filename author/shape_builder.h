// Draws a shape: styles, a pen with absolute moves and edges, and a few figures.
#pragma once

#include "author/shape.h"

namespace vexel::author {

// Styles are numbered from 1 in the order they are added; 0 selects none.
// Style selections and moves gather into one record before the next edge, so
// an unused one leaves no trace. Edges that are too long for one record are
// split.
class ShapeBuilder {
 public:
  uint32_t AddFill(const FillStyle& fill);
  uint32_t AddFill(Color color) { return AddFill(FillStyle::Solid(color)); }
  uint32_t AddLine(uint16_t width, Color color);
  // Starts new tables: numbers begin at 1 again, and what is drawn from here
  // on lies above what was drawn before.
  ShapeBuilder& NewStyles();

  ShapeBuilder& Fill0(uint32_t fill);
  ShapeBuilder& Fill1(uint32_t fill);
  ShapeBuilder& Line(uint32_t line);
  // Fill 1, fill 0 none, and a line.
  ShapeBuilder& Style(uint32_t fill, uint32_t line = 0);

  ShapeBuilder& MoveTo(Point to);
  ShapeBuilder& LineTo(Point to);
  ShapeBuilder& CurveTo(Point control, Point anchor);
  // A cubic curve, as quadratic pieces that stay within half a movie unit.
  ShapeBuilder& CubicTo(Point control1, Point control2, Point anchor);
  // A line back to the last move, if the pen is not there.
  ShapeBuilder& Close();

  ShapeBuilder& Rectangle(const Rect& rect);
  ShapeBuilder& Ellipse(Point center, int32_t rx, int32_t ry);
  ShapeBuilder& Polygon(const std::vector<Point>& points);
  ShapeBuilder& RoundRectangle(const Rect& rect, int32_t radius);

  // A record as it is given; edges in it still move the pen.
  ShapeBuilder& Record(const ShapeRecord& record);

  Point pen() const { return pen_; }
  // Bounds of all edges, control points included, grown by half the thickest
  // line; empty at 0 when nothing was drawn.
  Rect Bounds() const;
  // What was drawn; a pending selection is not in it.
  const StyleTables& styles() const { return first_; }
  const std::vector<ShapeRecord>& records() const { return records_; }
  // The first tables, for forced counts and widths.
  StyleTables& mutableStyles() { return first_; }

 private:
  StyleTables& Current();
  void Flush();
  void Grow(Point point);

  StyleTables first_;
  std::vector<ShapeRecord> records_;
  ShapeRecord pending_;
  size_t tables_ = 0;  // record that holds the tables in use, plus 1; 0: first_
  bool pendingTables_ = false;
  Point pen_;
  Point start_;
  bool drawn_ = false;
  Rect bounds_;
  int32_t thickest_ = 0;
};

}  // namespace vexel::author
