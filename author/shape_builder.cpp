// The drawing pen. Selections and moves wait in `pending_` until an edge needs
// them; an edge whose deltas do not fit 17 bits is cut in pieces.
#include "author/shape_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace vexel::author {

namespace {

// The largest delta of an edge: 17 bits with the sign.
constexpr int32_t kMaxDelta = 65535;
// Two cubic end pieces differ from a quadratic by this factor of the third
// difference: sqrt(3) / 36.
constexpr double kCubicError = 0.0481125;

bool Fits(Point delta) {
  return std::abs(int64_t(delta.x)) <= kMaxDelta && std::abs(int64_t(delta.y)) <= kMaxDelta;
}

Point Middle(Point p, Point q) {
  return {static_cast<int32_t>((int64_t(p.x) + q.x) >> 1),
          static_cast<int32_t>((int64_t(p.y) + q.y) >> 1)};
}

}  // namespace

StyleTables& ShapeBuilder::Current() {
  if (pendingTables_) return pending_.styles;
  return tables_ == 0 ? first_ : records_[tables_ - 1].styles;
}

uint32_t ShapeBuilder::AddFill(const FillStyle& fill) {
  Current().fills.push_back(fill);
  return static_cast<uint32_t>(Current().fills.size());
}

uint32_t ShapeBuilder::AddLine(uint16_t width, Color color) {
  Current().lines.push_back({width, color});
  thickest_ = std::max<int32_t>(thickest_, width);
  return static_cast<uint32_t>(Current().lines.size());
}

ShapeBuilder& ShapeBuilder::NewStyles() {
  // The old indexes are written in the widths of the old tables, so what is
  // selected now goes out first; the numbers selected later need a record of
  // their own behind the tables.
  Flush();
  pending_.flags = kChangeStyles;
  pending_.styles = {};
  pendingTables_ = true;
  return *this;
}

ShapeBuilder& ShapeBuilder::Fill0(uint32_t fill) {
  if (pendingTables_) Flush();
  pending_.flags |= kChangeFill0;
  pending_.fill0 = fill;
  return *this;
}

ShapeBuilder& ShapeBuilder::Fill1(uint32_t fill) {
  if (pendingTables_) Flush();
  pending_.flags |= kChangeFill1;
  pending_.fill1 = fill;
  return *this;
}

ShapeBuilder& ShapeBuilder::Line(uint32_t line) {
  if (pendingTables_) Flush();
  pending_.flags |= kChangeLine;
  pending_.line = line;
  return *this;
}

ShapeBuilder& ShapeBuilder::Style(uint32_t fill, uint32_t line) {
  return Fill0(0).Fill1(fill).Line(line);
}

ShapeBuilder& ShapeBuilder::MoveTo(Point to) {
  if (pendingTables_) Flush();
  pending_.flags |= kChangeMove;
  pending_.move = to;
  pen_ = to;
  start_ = to;
  return *this;
}

void ShapeBuilder::Flush() {
  if (pending_.flags == 0) return;
  records_.push_back(pending_);
  if (pendingTables_) tables_ = records_.size();
  pending_ = {};
  pendingTables_ = false;
}

void ShapeBuilder::Grow(Point point) {
  if (!drawn_) bounds_ = {point.x, point.x, point.y, point.y};
  drawn_ = true;
  bounds_.xmin = std::min(bounds_.xmin, point.x);
  bounds_.xmax = std::max(bounds_.xmax, point.x);
  bounds_.ymin = std::min(bounds_.ymin, point.y);
  bounds_.ymax = std::max(bounds_.ymax, point.y);
}

ShapeBuilder& ShapeBuilder::LineTo(Point to) {
  if (!Fits(to - pen_)) {
    const Point middle = Middle(pen_, to);
    return LineTo(middle).LineTo(to);
  }
  return Record(ShapeRecord::LineBy(to - pen_));
}

ShapeBuilder& ShapeBuilder::CurveTo(Point control, Point anchor) {
  if (!Fits(control - pen_) || !Fits(anchor - control)) {
    const Point left = Middle(pen_, control);
    const Point right = Middle(control, anchor);
    const Point middle = Middle(left, right);
    return CurveTo(left, middle).CurveTo(right, anchor);
  }
  return Record(ShapeRecord::CurveBy(control - pen_, anchor - control));
}

ShapeBuilder& ShapeBuilder::CubicTo(Point control1, Point control2, Point anchor) {
  const Point from = pen_;
  // The third difference says how far a cubic is from any quadratic; it falls
  // with the cube of the number of pieces.
  const double dx = double(anchor.x) - 3.0 * control2.x + 3.0 * control1.x - from.x;
  const double dy = double(anchor.y) - 3.0 * control2.y + 3.0 * control1.y - from.y;
  const double error = kCubicError * std::hypot(dx, dy);
  const int pieces = std::clamp(static_cast<int>(std::ceil(std::cbrt(error / 0.5))), 1, 64);
  const auto at = [&](double t, bool derivative, double p, double q, double r, double s) {
    const double u = 1 - t;
    return derivative ? 3 * (u * u * (q - p) + 2 * u * t * (r - q) + t * t * (s - r))
                      : u * u * u * p + 3 * u * u * t * q + 3 * u * t * t * r + t * t * t * s;
  };
  const double step = 1.0 / pieces;
  for (int i = 0; i < pieces; ++i) {
    const double t0 = i * step;
    const double t1 = t0 + step;
    const auto coordinate = [&](double p, double q, double r, double s, int32_t& control,
                                int32_t& end) {
      const double a = at(t0, false, p, q, r, s);
      const double b = at(t1, false, p, q, r, s);
      const double slopes = at(t0, true, p, q, r, s) - at(t1, true, p, q, r, s);
      control = static_cast<int32_t>(std::lround((a + b) / 2 + slopes * step / 4));
      end = static_cast<int32_t>(std::lround(b));
    };
    Point control;
    Point end;
    coordinate(from.x, control1.x, control2.x, anchor.x, control.x, end.x);
    coordinate(from.y, control1.y, control2.y, anchor.y, control.y, end.y);
    CurveTo(control, i == pieces - 1 ? anchor : end);
  }
  return *this;
}

ShapeBuilder& ShapeBuilder::Close() {
  return pen_ == start_ ? *this : LineTo(start_);
}

ShapeBuilder& ShapeBuilder::Rectangle(const Rect& rect) {
  return MoveTo({rect.xmin, rect.ymin})
      .LineTo({rect.xmax, rect.ymin})
      .LineTo({rect.xmax, rect.ymax})
      .LineTo({rect.xmin, rect.ymax})
      .Close();
}

ShapeBuilder& ShapeBuilder::Ellipse(Point center, int32_t rx, int32_t ry) {
  // Eight quadratic pieces: the controls lie on the tangents, 1 / cos 22.5
  // degrees away from the centre.
  constexpr int kPieces = 8;
  constexpr double kStep = 0.78539816339744830962;
  const double stretch = 1 / std::cos(kStep / 2);
  const auto point = [&](double angle, double scale) {
    return Point{center.x + static_cast<int32_t>(std::lround(rx * scale * std::cos(angle))),
                 center.y + static_cast<int32_t>(std::lround(ry * scale * std::sin(angle)))};
  };
  MoveTo(point(0, 1));
  for (int i = 0; i < kPieces; ++i) {
    CurveTo(point((i + 0.5) * kStep, stretch),
            i == kPieces - 1 ? start_ : point((i + 1) * kStep, 1));
  }
  return *this;
}

ShapeBuilder& ShapeBuilder::Polygon(const std::vector<Point>& points) {
  if (points.empty()) return *this;
  MoveTo(points.front());
  for (size_t i = 1; i < points.size(); ++i) LineTo(points[i]);
  return Close();
}

ShapeBuilder& ShapeBuilder::RoundRectangle(const Rect& rect, int32_t radius) {
  const int32_t r = std::min({radius, (rect.xmax - rect.xmin) / 2, (rect.ymax - rect.ymin) / 2});
  // Two pieces a corner: sin and tan of 45 and 22.5 degrees.
  const auto corner = [&](Point at, Point out, Point in) {
    // `at` is the corner, `out` and `in` point from it along the two sides.
    const double k = 1 - 0.41421356;
    const double m = 1 - 0.70710678;
    const auto mix = [&](double p, double q) {
      return Point{at.x + static_cast<int32_t>(std::lround(r * (p * out.x + q * in.x))),
                   at.y + static_cast<int32_t>(std::lround(r * (p * out.y + q * in.y)))};
    };
    LineTo(mix(1, 0));
    CurveTo(mix(k, 0), mix(m, m));
    CurveTo(mix(0, k), mix(0, 1));
  };
  MoveTo({rect.xmin, rect.ymin + r});
  corner({rect.xmin, rect.ymin}, {0, 1}, {1, 0});
  corner({rect.xmax, rect.ymin}, {-1, 0}, {0, 1});
  corner({rect.xmax, rect.ymax}, {0, -1}, {-1, 0});
  corner({rect.xmin, rect.ymax}, {1, 0}, {0, -1});
  return Close();
}

ShapeBuilder& ShapeBuilder::Record(const ShapeRecord& record) {
  Flush();
  records_.push_back(record);
  if (record.kind == RecordKind::kChange) {
    if (record.flags & kChangeStyles) tables_ = records_.size();
    if (record.flags & kChangeMove) pen_ = start_ = record.move;
    return *this;
  }
  Grow(pen_);
  if (record.kind == RecordKind::kCurve) {
    pen_ = pen_ + record.control;
    Grow(pen_);
  }
  pen_ = pen_ + record.anchor;
  Grow(pen_);
  return *this;
}

Rect ShapeBuilder::Bounds() const {
  const int32_t half = drawn_ ? (thickest_ + 1) / 2 : 0;
  return {bounds_.xmin - half, bounds_.xmax + half, bounds_.ymin - half, bounds_.ymax + half};
}

}  // namespace vexel::author
