// Thick lines: offsets along the normals, and arcs around the joints.
#include "geometry/trig.h"
#include "stage/stroker.h"

namespace vexel {

static constexpr SFIXED kDegree = kFixedOne;

// The normal of half the line's width on the arm from a to b; on the chord from
// c to d if the arm has no length.
static SPOINT Normal(const SPOINT& a, const SPOINT& b, const SPOINT& c, const SPOINT& d,
                     SCOORD half) {
  SPOINT n = {WrapSub(b.y, a.y), WrapSub(a.x, b.x)};
  if (n.x == 0 && n.y == 0) n = {WrapSub(d.y, c.y), WrapSub(c.x, d.x)};
  PointNormalize(&n, half);
  return n;
}

void SStroker::StrokeThickCurve(const CURVE* c) {
  constexpr int32_t kMaxDivisions = 5;
  if (depth < kMaxDivisions && CurveIsExtreme(c)) {
    CURVE first, second;
    CurveDivide(c, &first, &second);
    ++depth;
    StrokeThickCurve(&first);
    StrokeThickCurve(&second);
    --depth;
    return;
  }
  const SPOINT a = c->anchor1;
  const SPOINT b = c->anchor2;
  const SCOORD half = lineThickness / 2;
  const SPOINT normal1 = Normal(a, c->control, a, b, half);
  const SPOINT normal2 = c->isLine ? normal1 : Normal(c->control, b, a, b, half);
  const SPOINT l1 = a + normal1;
  const SPOINT l2 = b + normal2;
  const SPOINT r1 = a - normal1;
  const SPOINT r2 = b - normal2;
  if (c->isLine) {
    AddEdge(&l2, &l1);
    AddEdge(&r1, &r2);
  } else {
    CURVE_SHAPE shape;
    CurveGetShape(c, &shape);
    CURVE side;
    CurveAdjust(&shape, &l1, &l2, &side);
    CurveReverse(&side, &side);
    AddCurve(&side);
    CurveAdjust(&shape, &r1, &r2, &side);
    AddCurve(&side);
  }
  if (started) {
    StrokeJoin(&l1, &prevLeft, &prevPoint);
    StrokeJoin(&prevRight, &r1, &prevPoint);
  } else {
    startLeft = l1;
    startPoint = a;
    startRight = r1;
    started = true;
  }
  prevLeft = l2;
  prevPoint = b;
  prevRight = r2;
}

// From a to b, by an arc around center where the outline turns outward. On the
// inner side of a turn a straight edge does: the winding rule hides the overlap.
void SStroker::StrokeJoin(const SPOINT* a, const SPOINT* b, const SPOINT* center) {
  constexpr SCOORD kNear = 4;
  constexpr SFIXED kLeastTurn = kDegree + 1;
  constexpr SFIXED kMostTurn = 180 * kDegree;
  if (PointFastDistance(a, b) < kNear) {
    AddEdge(a, b);
    return;
  }
  SFIXED a1 = PointAngle(a, center);
  const SFIXED a2 = PointAngle(b, center);
  while (a1 < a2) a1 += 360 * kDegree;
  const SFIXED turn = a1 - a2;
  if (turn < kLeastTurn || turn > kMostTurn) {
    AddEdge(a, b);
    return;
  }
  // An arc for each 45 degrees: 4 at most. The controls lie where the tangents
  // cross.
  int32_t n = (turn + 44 * kDegree) / (45 * kDegree);
  if (n < 1) n = 1;
  const SFIXED step = -turn / n;
  const SCOORD r = FixedDiv(lineThickness / 2, _FPCos(step / 2, 16, 16));
  SPOINT control;
  PointPolar(r, a1 + step / 2, center, &control);
  CURVE arc = {*a, control, *b, false};
  for (int32_t i = 1; i < n; ++i) {
    SPOINT next;
    PointPolar(r, a1 + step / 2 + i * step, center, &next);
    arc.anchor2 = CurveMidPoint(arc.control, next);
    AddCurve(&arc);
    arc = {arc.anchor2, next, *b, false};
  }
  AddCurve(&arc);
}

}  // namespace vexel
