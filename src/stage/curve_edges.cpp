// Division of curves into edges. A curve is tested as a downward copy, but it is
// the curve itself that is divided, so that both halves see its true points.
#include "stage/curve_edges.h"

#include "raster/edge.h"
#include "stage/display_list.h"

namespace vexel {

// Limits in device units. Beyond the inner one nothing is seen; what stays
// within the outer one fits 16 bits.
static constexpr SCOORD kInnerLimit = 16000;
static constexpr SCOORD kOuterLimit = 32000;
static constexpr SCOORD kMaxCurveHeight = 256;
static constexpr SCOORD kSnapDistance = 2;
static constexpr int32_t kMaxDepth = 16;
// The greatest flatness at which an edge is stepped as a line.
static constexpr SCOORD kLineFlatness = 1;

void MakeVertLine(CURVE* c, SCOORD x) {
  if (c->anchor1.y < -kOuterLimit) c->anchor1.y = -kOuterLimit;
  if (c->anchor2.y > kOuterLimit) c->anchor2.y = kOuterLimit;
  const int64_t sum = int64_t{c->anchor1.y} + c->anchor2.y;
  c->control.y = static_cast<SCOORD>(sum / 2);
  c->anchor1.x = c->control.x = c->anchor2.x = x;
  c->isLine = true;
}

// 0 in the upper 16 bits for a coordinate that fits 16.
static uint32_t Excess(SCOORD v) {
  return static_cast<uint32_t>(WrapAdd(v, 0x8000));
}
static bool Fits16Bits(const CURVE& c) {
  return (Excess(c.anchor1.x) | Excess(c.anchor1.y) | Excess(c.control.x) | Excess(c.control.y) |
          Excess(c.anchor2.x) | Excess(c.anchor2.y)) < 0x10000;
}
static SCOORD Held(SCOORD v) {
  return v < INT16_MIN ? INT16_MIN : v > INT16_MAX ? INT16_MAX : v;
}
static SPOINT Held(const SPOINT& p) {
  return {Held(p.x), Held(p.y)};
}

static REdgePoint Narrow(const SPOINT& p) {
  return {static_cast<int16_t>(p.x), static_cast<int16_t>(p.y)};
}

// A curve that fits 16 bits and runs downward, its flatness given.
static inline void Store(const CURVE& c, bool isLine, int8_t dir, const EdgeTarget& target) {
  REdge* edge = target.display->NewEdge();
  if (!edge) return;
  edge->anchor1 = Narrow(c.anchor1);
  edge->control = Narrow(c.control);
  edge->anchor2 = Narrow(c.anchor2);
  edge->isLine = isLine;
  edge->dir = dir;
  edge->fillRule = target.fillRule;
  edge->color1 = target.color1;
  edge->color2 = target.color2;
  edge->next = *target.list;
  *target.list = edge;
}

void StoreEdge(const CURVE* c, int8_t dir, const EdgeTarget& target) {
  // Flatness is that of the true points.
  const bool isLine = CurveFlatness(c) <= kLineFlatness;
  if (Fits16Bits(*c)) {
    Store(*c, isLine, dir, target);
    return;
  }
  const CURVE held = {Held(c->anchor1), Held(c->control), Held(c->anchor2), c->isLine};
  if (held.anchor1.y < held.anchor2.y) Store(held, isLine, dir, target);
}

// Whether no part of the curve can leave an edge, which saves dividing it:
// divisions stay inside the box.
static bool LeavesNoEdge(const CURVE* c, const EdgeTarget& target) {
  if (target.display->edgeCount >= kMaxEdges) return true;
  SRECT box;
  CurveBounds(c, &box);
  return target.preclip ? box.ymax < -kInnerLimit || box.ymin > kInnerLimit
                        : box.ymax <= INT16_MIN || box.ymin >= INT16_MAX;
}

static void AddHalves(const CURVE* first, const CURVE* second, const EdgeTarget& target,
                      int32_t* depth) {
  if (++*depth > kMaxDepth) return;
  AddCurveEdges(first, target, depth);
  AddCurveEdges(second, target, depth);
  --*depth;
}

static void Divide(const CURVE* curve, const EdgeTarget& target, int32_t* depth) {
  CURVE first, second;
  CurveDivide(curve, &first, &second);
  AddHalves(&first, &second, target, depth);
}

static void DivideAtExtreme(const CURVE* curve, const EdgeTarget& target, int32_t* depth) {
  const SCOORD a = curve->anchor1.y;
  const SCOORD c = curve->control.y;
  const SCOORD b = curve->anchor2.y;
  // Required: these sums don't wrap.
  const SFIXED t = QuotientShifted(int64_t{a} - c, int64_t{a} - 2 * int64_t{c} + b, 16);
  CURVE first, second;
  CurveDivide(curve, t, &first, &second);
  AddHalves(&first, &second, target, depth);
}

static bool Within(const SRECT& box, SCOORD limit) {
  return box.xmin >= -limit && box.xmax <= limit && box.ymin >= -limit && box.ymax <= limit;
}

void AddCurveEdges(const CURVE* curve, const EdgeTarget& target, int32_t* depth) {
  CURVE c = *curve;
  int8_t dir = 1;
  if (c.anchor1.y > c.anchor2.y) {
    c.anchor1 = curve->anchor2;
    c.anchor2 = curve->anchor1;
    dir = -1;
  }
  if (!c.isLine) {
    const int64_t above = int64_t{c.anchor1.y} - c.control.y;
    const int64_t below = int64_t{c.control.y} - c.anchor2.y;
    if (above > kSnapDistance || below > kSnapDistance) {
      if (!LeavesNoEdge(curve, target)) DivideAtExtreme(curve, target, depth);
      return;
    }
    if (above > 0)
      c.control.y = c.anchor1.y;
    else if (below > 0)
      c.control.y = c.anchor2.y;
    // Required: a height of more than 31 bits wraps and counts as low.
    if (WrapSub(c.anchor2.y, c.anchor1.y) > kMaxCurveHeight) {
      if (!LeavesNoEdge(curve, target)) Divide(curve, target, depth);
      return;
    }
  }
  if (c.anchor1.y == c.anchor2.y) return;
  if (target.preclip) {
    SRECT box;
    CurveBounds(&c, &box);
    if (box.ymax < -kInnerLimit || box.ymin > kInnerLimit) return;
    if (!Within(box, kOuterLimit)) {
      if (box.xmax < -kInnerLimit) {
        MakeVertLine(&c, -kOuterLimit);
      } else if (box.xmin > kInnerLimit) {
        MakeVertLine(&c, kOuterLimit);
      } else if (*depth < kMaxDepth) {
        Divide(curve, target, depth);
        return;
      }
    }
  }
  StoreEdge(&c, dir, target);
}

}  // namespace vexel
