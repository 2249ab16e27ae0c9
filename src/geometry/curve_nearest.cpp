// Searches by subdivision: the nearest point of a curve, and the crossings with
// a ray. Both keep their halves on the stack; the first ends when dt, which
// starts at 0x8000 and halves, falls below 3, the second at depth 12.
#include "geometry/curve.h"

namespace vexel {

SFIXED CurveLineCalcParam(const CURVE* c, const SPOINT* p) {
  return FixedDiv(PointDistance(&c->anchor1, p), PointDistance(&c->anchor1, &c->anchor2));
}

void DoCurveNearestPoint(const CURVE* c, FIT_INFO* fit, SFIXED t, SFIXED dt) {
  constexpr SCOORD kFlat = 5;
  constexpr SFIXED kLeastWidth = 3;
  SRECT bounds;
  CurveBounds(c, &bounds);
  if (RectNearDistance(&bounds, &fit->pt) > fit->dist) return;
  if (CurveFlatness(c) >= kFlat && dt >= kLeastWidth) {
    CURVE first, second;
    CurveDivide(c, &first, &second);
    const SFIXED h = Asr(dt, 1);
    // The nearer half goes first, so that its distance cuts off the other.
    if (PointFastDistance(&first.control, &fit->pt) >=
        PointFastDistance(&second.control, &fit->pt)) {
      DoCurveNearestPoint(&second, fit, WrapAdd(t, h), h);
      DoCurveNearestPoint(&first, fit, WrapSub(t, h), h);
    } else {
      DoCurveNearestPoint(&first, fit, WrapSub(t, h), h);
      DoCurveNearestPoint(&second, fit, WrapAdd(t, h), h);
    }
    return;
  }
  SPOINT near;
  const SCOORD d = PointNearestLine(&c->anchor1, &c->anchor2, &fit->pt, &near);
  if (d >= fit->dist) return;
  fit->t = CurveParamInterpolate(t, dt, CurveLineCalcParam(c, &near));
  fit->dist = d;
}

SFIXED CurveNearestPoint(const CURVE* c, const SPOINT* p, SCOORD maxDist, SPOINT* out) {
  if (c->isLine) {
    SPOINT near;
    if (PointNearestLine(&c->anchor1, &c->anchor2, p, &near) >= maxDist) return kNoParam;
    const SFIXED t = CurveLineCalcParam(c, &near);
    if (out) *out = near;
    return t;
  }
  FIT_INFO fit = {*p, kNoParam, maxDist};
  DoCurveNearestPoint(c, &fit, 0x8000, 0x8000);
  if (out && fit.t >= 0) CurveCalcPoint(c, fit.t, out);
  return fit.t;
}

int CurveXRaySect(const CURVE* c, const SPOINT* p, uint16_t depth) {
  constexpr uint16_t kMaxDepth = 12;
  constexpr SCOORD kSmall = 4;
  SRECT bounds;
  CurveBounds(c, &bounds);
  // Half open in y, so that the shared end of two curves counts once.
  if (bounds.xmax < p->x || bounds.ymin > p->y || bounds.ymax <= p->y) return 0;
  if (RectPointIn(&bounds, p) && depth < kMaxDepth && RectSize(&bounds) > kSmall) {
    CURVE first, second;
    CurveDivide(c, &first, &second);
    const uint16_t below = static_cast<uint16_t>(depth + 1);
    return static_cast<uint16_t>(CurveXRaySect(&first, p, below) +
                                 CurveXRaySect(&second, p, below));
  }
  const SCOORD y1 = c->anchor1.y < c->anchor2.y ? c->anchor1.y : c->anchor2.y;
  const SCOORD y2 = c->anchor1.y < c->anchor2.y ? c->anchor2.y : c->anchor1.y;
  return y1 <= p->y && p->y < y2 ? 1 : 0;
}

}  // namespace vexel
