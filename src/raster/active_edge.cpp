// Set-up and steps of active edges. All sums wrap at 32 bits, which for edges
// within reach of a buffer never happens, and for others decides where they go.
#include "raster/active_edge.h"

#include "raster/edge.h"

namespace vexel {
namespace {

constexpr int32_t kHalf = 0x8000;
constexpr int32_t kParamOne = 0x1000000;  // a curve's parameter has 24 fraction bits
constexpr int kStepShift = 8;             // from 24 fraction bits to the 16 of xl and yl

int32_t Round16(int32_t v) {
  return Asr(WrapAdd(v, kHalf), 16);
}

// One axis of a curve as forward differences for steps of dt.
void SetUpDifferences(int32_t a1, int32_t control, int32_t a2, int32_t dt, int32_t dt2,
                      int32_t* step, int32_t* stepStep) {
  *step = WrapMul(dt, 2 * (control - a1));
  *stepStep = WrapMul(2 * (a1 - 2 * control + a2), dt2);
}

// Steps until yl reaches target or the curve's steps are used up.
void StepTo(RActiveEdge* e, int32_t target) {
  while (e->yl < target && e->t >= 0) {
    e->yl = WrapAdd(e->yl, Asr(e->yStep, kStepShift));
    e->yStep = WrapAdd(e->yStep, e->yStepStep);
    e->xl = WrapAdd(e->xl, Asr(e->xStep, kStepShift));
    e->xStep = WrapAdd(e->xStep, e->xStepStep);
    e->t--;
  }
}

}  // namespace

bool RActiveEdge::SetUp(const REdge* e, int32_t yStart, bool interpolate) {
  const int32_t dy = e->anchor2.y - e->anchor1.y;
  if (dy <= 0) return false;
  ymax = e->anchor2.y;
  color1 = e->color1;
  color2 = e->color2;
  dir = e->dir;
  const uint8_t rule = e->fillRule < kFillRuleCount ? e->fillRule : uint8_t{ruleEdgeEdge};
  doEdgeProc = doEdgeProcs[rule];
  if (e->isLine) {
    stepProc = StepLine;
    xStep = WrapShl(e->anchor2.x - e->anchor1.x, 16) / dy;
    xl = WrapAdd(WrapShl(e->anchor1.x, 16), WrapMul(xStep, yStart - e->anchor1.y));
    x = Round16(xl);
    return true;
  }
  stepProc = interpolate ? StepCurveInterpolate : StepCurve;
  t = 2 * dy;  // two steps a scanline on average
  const int32_t dt = kParamOne / t;
  const auto dt2 = static_cast<int32_t>(Asr64(int64_t{dt} * dt + 0x800000, 24));
  SetUpDifferences(e->anchor1.x, e->control.x, e->anchor2.x, dt, dt2, &xStep, &xStepStep);
  SetUpDifferences(e->anchor1.y, e->control.y, e->anchor2.y, dt, dt2, &yStep, &yStepStep);
  xl = WrapShl(e->anchor1.x, 16);
  yl = WrapShl(e->anchor1.y, 16);
  x = e->anchor1.x;
  if (yStart > e->anchor1.y) stepProc(this, yStart);
  return true;
}

void StepLine(RActiveEdge* e, int32_t) {
  e->xl = WrapAdd(e->xl, e->xStep);
  e->x = Round16(e->xl);
}

void StepCurve(RActiveEdge* e, int32_t y) {
  StepTo(e, WrapShl(y, 16));
  e->x = Round16(e->xl);
}

void StepCurveInterpolate(RActiveEdge* e, int32_t y) {
  const int32_t target = WrapShl(y, 16);
  const int32_t oldXl = e->xl;
  const int32_t oldYl = e->yl;
  StepTo(e, target);
  if (e->yl == oldYl) {
    e->x = Round16(e->xl);
    return;
  }
  const int32_t back =
      FixedDiv(FixedMul(WrapSub(e->xl, oldXl), WrapSub(target, e->yl)), WrapSub(e->yl, oldYl));
  e->x = Round16(WrapAdd(e->xl, back));
}

}  // namespace vexel
