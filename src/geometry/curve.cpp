// Curves: boxes, extremes, division, evaluation and fitting.
#include "geometry/curve.h"

#include "geometry/trig.h"

namespace vexel {

void CurveTightBounds(const CURVE* c, SRECT* r) {
  RectSetPoint2(&c->anchor1, &c->anchor2, r);
  if (c->isLine) return;
  SPOINT extreme;
  CurveExtrema(c, &extreme.x, &extreme.y);
  RectUnionPoint(&extreme, r);
}

// The smallest and largest of three coordinates.
struct Range {
  SCOORD min;
  SCOORD max;
};
static Range RangeOf(SCOORD a, SCOORD c, SCOORD b) {
  Range r = a < b ? Range{a, b} : Range{b, a};
  if (c < r.min) r.min = c;
  if (c > r.max) r.max = c;
  return r;
}
static bool Apart(const Range& r1, const Range& r2, SCOORD d1, SCOORD d2) {
  return WrapAdd(r2.max, d2) < WrapSub(r1.min, d1) || WrapAdd(r1.max, d1) < WrapSub(r2.min, d2);
}
static SCOORD LongerSide(const Range& x, const Range& y) {
  const SCOORD width = WrapSub(x.max, x.min);
  const SCOORD height = WrapSub(y.max, y.min);
  return width < height ? height : width;
}

bool CurveBoundsSect(const CURVE* c1, const CURVE* c2, SCOORD d1, SCOORD d2, SCOORD* size1,
                     SCOORD* size2) {
  const Range x1 = RangeOf(c1->anchor1.x, c1->control.x, c1->anchor2.x);
  const Range x2 = RangeOf(c2->anchor1.x, c2->control.x, c2->anchor2.x);
  if (Apart(x1, x2, d1, d2)) return false;
  const Range y1 = RangeOf(c1->anchor1.y, c1->control.y, c1->anchor2.y);
  const Range y2 = RangeOf(c2->anchor1.y, c2->control.y, c2->anchor2.y);
  if (Apart(y1, y2, d1, d2)) return false;
  *size1 = LongerSide(x1, y1);
  *size2 = LongerSide(x2, y2);
  return true;
}

// t^2 s - 2 t u + a, with s = a - 2 c + b and u = a - c: the curve along one
// axis at parameter t.
static SCOORD Evaluate(SFIXED t, SCOORD s, SCOORD u, SCOORD a) {
  const SCOORD square = FixedMul(FixedMul(t, t), s);
  return WrapAdd(WrapSub(square, WrapMul(2, FixedMul(t, u))), a);
}
static SCOORD SecondDifference(SCOORD a, SCOORD c, SCOORD b) {
  return WrapAdd(WrapSub(a, WrapMul(2, c)), b);
}

SCOORD CurveCalcExtreme(SCOORD a, SCOORD c, SCOORD b) {
  const SCOORD s = SecondDifference(a, c, b);
  const SCOORD u = WrapSub(a, c);
  const bool sameSign = (s >= 1 && u >= 0) || (s < 0 && u <= 0);
  if (!sameSign || WrapAbs(u) > WrapAbs(s)) return a;
  return Evaluate(FixedDiv(u, s), s, u, a);
}

void CurveExtrema(const CURVE* c, SCOORD* x, SCOORD* y) {
  if (x) *x = CurveCalcExtreme(c->anchor1.x, c->control.x, c->anchor2.x);
  if (y) *y = CurveCalcExtreme(c->anchor1.y, c->control.y, c->anchor2.y);
}

bool CurveIsExtreme(const CURVE* c) {
  constexpr SCOORD kLeast = 7;
  if (c->isLine) return false;
  const SPOINT middle = CurveMidPoint(c->anchor1, c->anchor2);
  const SCOORD d = PointFastDistance(&c->control, &middle);
  if (d < kLeast) return false;
  return WrapMul(2, d) > PointFastDistance(&c->anchor1, &c->anchor2);
}

void CurveDivide(const CURVE* c, SFIXED t, CURVE* first, CURVE* second) {
  const CURVE whole = *c;
  SPOINT m1, m2, m;
  PointAverage(&whole.control, &whole.anchor1, t, &m1);
  PointAverage(&whole.anchor2, &whole.control, t, &m2);
  PointAverage(&m2, &m1, t, &m);
  *first = {whole.anchor1, m1, m, whole.isLine};
  *second = {m, m2, whole.anchor2, whole.isLine};
}

void CurveDivideTwo(const CURVE* c, SFIXED t1, SFIXED t2, CURVE* first, CURVE* middle,
                    CURVE* last) {
  // How far off the curve the second point may lie on the remainder.
  constexpr SCOORD kReach = 1000;
  const SFIXED low = t1 < t2 ? t1 : t2;
  const SFIXED high = t1 < t2 ? t2 : t1;
  SPOINT point;
  CurveCalcPoint(c, high, &point);
  CURVE rest;
  CurveDivide(c, low, first, &rest);
  // Required: a search that finds nothing passes on kNoParam.
  CurveDivide(&rest, CurveNearestPoint(&rest, &point, kReach, nullptr), middle, last);
}

void CurveCalcPoint(const CURVE* c, SFIXED t, SPOINT* out) {
  const SPOINT a = c->anchor1;
  const SPOINT m = c->control;
  const SPOINT b = c->anchor2;
  if (t == 0x8000) {
    *out = {static_cast<SCOORD>((int64_t{a.x} + 2 * int64_t{m.x} + b.x) / 4),
            static_cast<SCOORD>((int64_t{a.y} + 2 * int64_t{m.y} + b.y) / 4)};
    return;
  }
  *out = {Evaluate(t, SecondDifference(a.x, m.x, b.x), WrapSub(a.x, m.x), a.x),
          Evaluate(t, SecondDifference(a.y, m.y, b.y), WrapSub(a.y, m.y), a.y)};
}

SFIXED CurveTangentAngle(const CURVE* c, SFIXED t) {
  // A shorter arm gives no direction; the chord has to do.
  constexpr SCOORD kShortArm = 9;
  if (t == 0) {
    return PointFastDistance(&c->control, &c->anchor1) > kShortArm
               ? PointAngle(&c->control, &c->anchor1)
               : PointAngle(&c->anchor2, &c->anchor1);
  }
  if (t == kFixedOne) {
    return PointFastDistance(&c->anchor2, &c->control) > kShortArm
               ? PointAngle(&c->anchor2, &c->control)
               : PointAngle(&c->anchor2, &c->anchor1);
  }
  // Required: the direction at the outer end of the piece, not at t.
  CURVE first, second;
  CurveDivide(c, t, &first, &second);
  return t <= 0x7FFF ? CurveTangentAngle(&first, 0) : CurveTangentAngle(&second, kFixedOne);
}

void CurveReverse(const CURVE* c, CURVE* out) {
  const SPOINT a1 = c->anchor1;
  out->anchor1 = c->anchor2;
  out->anchor2 = a1;
  if (out == c) return;
  out->control = c->control;
  out->isLine = c->isLine;
}

void CurveGetShape(const CURVE* c, CURVE_SHAPE* shape) {
  const SPOINT arm1 = c->control - c->anchor1;
  const SPOINT arm2 = c->control - c->anchor2;
  shape->chord = PointDistance(&c->anchor1, &c->anchor2);
  shape->fromAnchor1 = PointFastLength(&arm1) > PointFastLength(&arm2);
  shape->arm = shape->fromAnchor1 ? arm1 : arm2;
}

void CurveAdjust(const CURVE_SHAPE* shape, const SPOINT* p1, const SPOINT* p2, CURVE* out) {
  const SFIXED scale =
      shape->chord >= 1 ? FixedDiv(PointDistance(p1, p2), shape->chord) : kFixedOne;
  SPOINT arm;
  PointScale(&shape->arm, scale, &arm);
  const SPOINT control = (shape->fromAnchor1 ? *p1 : *p2) + arm;
  CurveSet(p1, &control, p2, out);
}

void CurveAdjust(const CURVE* c, const SPOINT* p1, const SPOINT* p2, CURVE* out) {
  CURVE_SHAPE shape;
  CurveGetShape(c, &shape);
  CurveAdjust(&shape, p1, p2, out);
}

}  // namespace vexel
