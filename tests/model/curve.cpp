// Quadratic curves.
#include "geom.h"

namespace vexel::model {

static Point Mid(Point a, Point b) {
  return {(a.x + b.x) >> 1, (a.y + b.y) >> 1};
}

Curve Line(Point a, Point b) {
  return {a, Mid(a, b), b, true};
}

Rect CurveBounds(const Curve& c) {
  Rect r;
  RectUnionPoint(c.a1, r);
  RectUnionPoint(c.a2, r);
  if (!c.isLine) RectUnionPoint(c.c, r);
  return r;
}

i32 CurveFlatness(const Curve& c) {
  if (c.isLine) return 0;
  const Point m = Mid(c.a1, c.a2);
  return PointFastLength({m.x - c.c.x, m.y - c.c.y});
}

bool CurveIsExtreme(const Curve& c) {
  if (c.isLine) return false;
  const i32 d = PointFastDistance(c.c, Mid(c.a1, c.a2));
  if (d < 7) return false;
  return 2 * d > PointFastDistance(c.a1, c.a2);
}

void CurveDivide(const Curve& c, Curve& first, Curve& second) {
  const Point m1 = Mid(c.a1, c.c), m2 = Mid(c.c, c.a2), m = Mid(m1, m2);
  const Curve f{c.a1, m1, m, c.isLine}, s{m, m2, c.a2, c.isLine};
  first = f;
  second = s;
}

void CurveDivide(const Curve& c, i32 t, Curve& first, Curve& second) {
  const Point m1 = PointAverage(c.c, c.a1, t), m2 = PointAverage(c.a2, c.c, t);
  const Point m = PointAverage(m2, m1, t);
  const Curve f{c.a1, m1, m, c.isLine}, s{m, m2, c.a2, c.isLine};
  first = f;
  second = s;
}

Curve CurveReverse(const Curve& c) {
  return {c.a2, c.c, c.a1, c.isLine};
}

Curve CurveAdjust(const Curve& c, Point p1, Point p2) {
  const i32 length = PointDistance(c.a1, c.a2);
  const i32 s = length >= 1 ? FixedDiv(PointDistance(p1, p2), length) : 0x10000;
  const Point arm1{c.c.x - c.a1.x, c.c.y - c.a1.y}, arm2{c.c.x - c.a2.x, c.c.y - c.a2.y};
  Point control;
  if (PointFastLength(arm1) <= PointFastLength(arm2)) {
    control = {p2.x + FixedMul(s, arm2.x), p2.y + FixedMul(s, arm2.y)};
  } else {
    control = {p1.x + FixedMul(s, arm1.x), p1.y + FixedMul(s, arm1.y)};
  }
  return {p1, control, p2, false};
}

}  // namespace vexel::model
