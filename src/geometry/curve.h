// Quadratic curves. All outlines of the system are made of them; a straight
// line is a curve with a flag. Thresholds are in the units of the coordinates,
// which are device units or the stroker's finer ones for nearly all callers.
#pragma once

#include "geometry/matrix.h"
#include "geometry/rect.h"

namespace vexel {

struct CURVE {
  SPOINT anchor1;  // the start
  SPOINT control;  // of a line, the midpoint of the anchors
  SPOINT anchor2;  // the end
  bool isLine;     // straight: control is to be ignored
};

// The result of a search for a point that found none.
inline constexpr SFIXED kNoParam = -0x10000;

// The state of a walk along a curve by forward differences.
struct CURVE_STEPPER {
  int32_t stepsLeft;
  SFIXED t;           // parameter of the current point
  SPOINT pt;          // the current point
  SPOINT prevPt;      // the point before it
  SFIXED dt;          // the parameter's step
  SPOINT firstDiff;   // the next step, with 4 fraction bits
  SPOINT secondDiff;  // the change of firstDiff at each step, likewise
  SPOINT ptExact;     // the current point, likewise
};

// The state of a search for the nearest point.
struct FIT_INFO {
  SPOINT pt;    // the point searched for
  SFIXED t;     // best parameter so far, kNoParam while there is none
  SCOORD dist;  // the distance that a candidate must beat
};

constexpr void CurveSet(const SPOINT* a1, const SPOINT* c, const SPOINT* a2, CURVE* out) {
  *out = {*a1, *c, *a2, false};
}
// The middle of two points, rounded down.
constexpr SPOINT CurveMidPoint(const SPOINT& p, const SPOINT& q) {
  return {Asr(WrapAdd(p.x, q.x), 1), Asr(WrapAdd(p.y, q.y), 1)};
}
constexpr void CurveSetLine(const SPOINT* a1, const SPOINT* a2, CURVE* out) {
  *out = {*a1, CurveMidPoint(*a1, *a2), *a2, true};
}

// The box of the control polygon (of the anchors alone for a line).
constexpr void CurveBounds(const CURVE* c, SRECT* r) {
  RectSetPoint2(&c->anchor1, &c->anchor2, r);
  if (c->isLine) return;
  if (c->control.x < r->xmin)
    r->xmin = c->control.x;
  else if (c->control.x > r->xmax)
    r->xmax = c->control.x;
  if (c->control.y < r->ymin)
    r->ymin = c->control.y;
  else if (c->control.y > r->ymax)
    r->ymax = c->control.y;
}
// The box of the curve itself.
void CurveTightBounds(const CURVE* c, SRECT* r);

// Whether two curves, grown by d1 and d2, may meet; if so, the longer sides of
// their boxes go to size1 and size2.
bool CurveBoundsSect(const CURVE* c1, const CURVE* c2, SCOORD d1, SCOORD d2, SCOORD* size1,
                     SCOORD* size2);

// The extreme coordinate of a curve along one axis (a if there is none between
// the ends), and for both axes; either pointer may be null.
SCOORD CurveCalcExtreme(SCOORD a, SCOORD c, SCOORD b);
void CurveExtrema(const CURVE* c, SCOORD* x, SCOORD* y);

// How far the control point lies from the middle of the chord, 0 for a line.
constexpr SCOORD CurveFlatness(const CURVE* c) {
  if (c->isLine) return 0;
  const SPOINT v = CurveMidPoint(c->anchor1, c->anchor2) - c->control;
  return PointFastLength(&v);
}
// Whether the curve bends so sharply that its ends look like a corner.
bool CurveIsExtreme(const CURVE* c);

// Divides c at its middle; first and second may be c. Both take its isLine.
constexpr void CurveDivide(const CURVE* c, CURVE* first, CURVE* second) {
  const SPOINT a1 = c->anchor1;
  const SPOINT a2 = c->anchor2;
  const SPOINT m1 = CurveMidPoint(a1, c->control);
  const SPOINT m2 = CurveMidPoint(c->control, a2);
  const SPOINT m = CurveMidPoint(m1, m2);
  const bool isLine = c->isLine;
  *first = {a1, m1, m, isLine};
  *second = {m, m2, a2, isLine};
}
// The same at parameter t.
void CurveDivide(const CURVE* c, SFIXED t, CURVE* first, CURVE* second);
// Divides c at two parameters given in any order.
void CurveDivideTwo(const CURVE* c, SFIXED t1, SFIXED t2, CURVE* first, CURVE* middle, CURVE* last);

// The point at t. A line is evaluated through its control point.
void CurveCalcPoint(const CURVE* c, SFIXED t, SPOINT* out);
// The direction of the curve at its end nearer to t, in degrees.
SFIXED CurveTangentAngle(const CURVE* c, SFIXED t);

// out may be c in these three.
constexpr void CurveTransform(const CURVE* c, const MATRIX* m, CURVE* out) {
  MatrixTransformPoint(m, &c->anchor1, &out->anchor1);
  MatrixTransformPoint(m, &c->control, &out->control);
  MatrixTransformPoint(m, &c->anchor2, &out->anchor2);
  out->isLine = c->isLine;
}
void CurveReverse(const CURVE* c, CURVE* out);

// What CurveAdjust keeps of a curve: the longer arm of its control point.
struct CURVE_SHAPE {
  SCOORD chord;      // distance of the anchors
  SPOINT arm;        // from an anchor to the control point
  bool fromAnchor1;  // which
};
void CurveGetShape(const CURVE* c, CURVE_SHAPE* shape);
// Fits a curve onto new anchors while keeping its shape; the second form takes
// the shape, for the two sides of a line.
void CurveAdjust(const CURVE* c, const SPOINT* p1, const SPOINT* p2, CURVE* out);
void CurveAdjust(const CURVE_SHAPE* shape, const SPOINT* p1, const SPOINT* p2, CURVE* out);

// Prepares a walk of so many steps (0 counts as 1); then each CurveStep moves
// the stepper on, until it returns false.
void CurveInitStepper(const CURVE* c, uint16_t steps, CURVE_STEPPER* st);
bool CurveStep(CURVE_STEPPER* st);

// The length along the curve, and the parameter (0 to 1.0) at a length.
SCOORD CurveLength(const CURVE* c);
SFIXED CurveFindLength(const CURVE* c, SCOORD length);

// The parameter of a point p of the chord.
SFIXED CurveLineCalcParam(const CURVE* c, const SPOINT* p);
// The parameter on the whole curve of parameter p on a piece that is centred on
// t and reaches dt to each side.
constexpr SFIXED CurveParamInterpolate(SFIXED t, SFIXED dt, SFIXED p) {
  return WrapAdd(t, FixedMul(WrapMul(2, dt), WrapSub(p, 0x8000)));
}

// The parameter of the point of c nearest to p, which goes to out unless that
// is null; kNoParam, out left alone, if none is nearer than maxDist.
SFIXED CurveNearestPoint(const CURVE* c, const SPOINT* p, SCOORD maxDist, SPOINT* out);
// Its search in the piece c of the curve, t and dt being the middle and half of
// the width of the piece in parameters.
void DoCurveNearestPoint(const CURVE* c, FIT_INFO* fit, SFIXED t, SFIXED dt);

// How often the ray from p toward positive x crosses the curve. The outermost
// caller passes depth 0.
int CurveXRaySect(const CURVE* c, const SPOINT* p, uint16_t depth);

}  // namespace vexel
