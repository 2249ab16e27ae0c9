// Walking along a curve by forward differences, and the arc lengths that rest on
// the walk.
#include "geometry/curve.h"

namespace vexel {

// Positions of the walk have 4 more bits than coordinates.
static constexpr int kWalkBits = 4;
static constexpr SFIXED kTwo = 0x20000;
static constexpr uint16_t kLengthSteps = 16;

void CurveInitStepper(const CURVE* c, uint16_t steps, CURVE_STEPPER* st) {
  if (steps == 0) steps = 1;
  SPOINT a, b;
  PointScale(&c->control, kTwo, &a);
  a = c->anchor1 - a + c->anchor2;
  b = c->control - c->anchor1;
  PointScale(&b, kTwo, &b);
  st->dt = kFixedOne / steps;
  // Required: no term a dt^2 here, so the walk ends short of anchor2 by a / steps.
  PointScale(&b, st->dt << kWalkBits, &st->firstDiff);
  PointScale(&a, FixedMul(st->dt, st->dt) << (kWalkBits + 1), &st->secondDiff);
  st->stepsLeft = steps;
  st->t = 0;
  PointShift(&c->anchor1, kWalkBits, &st->ptExact);
  st->pt = st->prevPt = c->anchor1;
}

bool CurveStep(CURVE_STEPPER* st) {
  if (st->stepsLeft == 0) return false;
  st->ptExact = st->ptExact + st->firstDiff;
  st->firstDiff = st->firstDiff + st->secondDiff;
  st->t = WrapAdd(st->t, st->dt);
  st->prevPt = st->pt;
  st->pt = {Asr(st->ptExact.x, kWalkBits), Asr(st->ptExact.y, kWalkBits)};
  --st->stepsLeft;
  return true;
}

SCOORD CurveLength(const CURVE* c) {
  if (c->isLine) return PointDistance(&c->anchor1, &c->anchor2);
  CURVE_STEPPER st;
  CurveInitStepper(c, kLengthSteps, &st);
  SCOORD sum = 0;
  while (CurveStep(&st)) sum = WrapAdd(sum, PointDistance(&st.pt, &st.prevPt));
  return sum;
}

static SFIXED ClampParam(SFIXED t) {
  return t < 0 ? 0 : t > kFixedOne ? kFixedOne : t;
}

SFIXED CurveFindLength(const CURVE* c, SCOORD length) {
  if (c->isLine) return ClampParam(FixedDiv(length, PointDistance(&c->anchor1, &c->anchor2)));
  CURVE_STEPPER st;
  CurveInitStepper(c, kLengthSteps, &st);
  SCOORD sum = 0;
  SCOORD segment = 0;
  while (sum < length && CurveStep(&st)) {
    segment = PointDistance(&st.pt, &st.prevPt);
    sum = WrapAdd(sum, segment);
  }
  SFIXED t = st.t;
  if (segment > 0) t = WrapSub(t, FixedMul(st.dt, FixedDiv(WrapSub(sum, length), segment)));
  return ClampParam(t);
}

}  // namespace vexel
