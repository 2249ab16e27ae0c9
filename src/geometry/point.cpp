// The exact measures of vectors: length without a root, direction, and the point
// of a segment nearest to another.
#include "geometry/point.h"

#include <array>

#include "geometry/trig.h"

namespace vexel {

// Entry k is sqrt(1 + (k / 64)^2) times 2^20, truncated: the length of a vector
// whose larger component is 1 and whose smaller is k / 64. The last entry stands
// twice, so that every entry has a next one.
static constexpr std::array<int32_t, 66> kHypotenuse = [] {
  std::array<int32_t, 66> table{};
  for (uint64_t k = 0; k <= 64; ++k) {
    const uint64_t square = (4096 + k * k) << 28;
    uint64_t root = 0;
    for (uint64_t bit = 1u << 21; bit != 0; bit >>= 1)
      if ((root + bit) * (root + bit) <= square) root += bit;
    table[k] = static_cast<int32_t>(root);
  }
  table[65] = table[64];
  return table;
}();

SCOORD PointLength(const SPOINT* p) {
  const SCOORD x = WrapAbs(p->x);
  const SCOORD y = WrapAbs(p->y);
  const SCOORD hi = x < y ? y : x;
  if (hi == 0) return 0;
  SFIXED q = FixedDiv(x < y ? x : y, hi);
  // Only a component of 0x80000000, which has no magnitude, can leave the range.
  if (q < 0) q = 0;
  if (q > kFixedOne) q = kFixedOne;
  const int32_t k = q >> 10;
  const int32_t f = q & 0x3FF;
  const SFIXED m = Asr((1024 - f) * kHypotenuse[k] + f * kHypotenuse[k + 1], 14);
  return FixedMul(m, hi);
}

SCOORD PointDistance(const SPOINT* p1, const SPOINT* p2) {
  const SPOINT v = *p1 - *p2;
  return PointLength(&v);
}

SFIXED PointAngle(const SPOINT* p, const SPOINT* origin) {
  const SPOINT v = origin ? *p - *origin : *p;
  return _FPATan2(v.y, v.x, 16, 16);
}

void PointPolar(SCOORD r, SFIXED angle, const SPOINT* origin, SPOINT* out) {
  const SPOINT v = {FixedMul(_FPCos(angle, 16, 16), r), FixedMul(_FPSin(angle, 16, 16), r)};
  *out = origin ? *origin + v : v;
}

// The coordinate across the dominant axis at u, the segment running from
// (loU, loV) with slope dv / du.
static SCOORD Across(SCOORD loU, SCOORD loV, SCOORD du, SCOORD dv, SCOORD u) {
  return WrapAdd(loV, FixedMul(FixedDiv(dv, du), WrapSub(u, loU)));
}

void PointPerpNearestLine(const SPOINT* a, const SPOINT* b, const SPOINT* p, SPOINT* out) {
  const SPOINT d = *b - *a;
  const SPOINT at = *p;
  if (WrapAbs(d.y) <= WrapAbs(d.x)) {
    const SPOINT lo = a->x < b->x ? *a : *b;
    const SPOINT hi = a->x < b->x ? *b : *a;
    if (at.x < lo.x)
      *out = lo;
    else if (at.x > hi.x)
      *out = hi;
    else
      *out = {at.x, Across(lo.x, lo.y, d.x, d.y, at.x)};
  } else {
    const SPOINT lo = a->y < b->y ? *a : *b;
    const SPOINT hi = a->y < b->y ? *b : *a;
    if (at.y < lo.y)
      *out = lo;
    else if (at.y > hi.y)
      *out = hi;
    else
      *out = {Across(lo.y, lo.x, d.y, d.x, at.y), at.y};
  }
}

SCOORD PointNearestLine(const SPOINT* a, const SPOINT* b, const SPOINT* p, SPOINT* out) {
  const SPOINT at = *p;
  const SPOINT d = *b - *a;
  const SCOORD width = WrapAbs(d.x);
  const SCOORD height = WrapAbs(d.y);
  SPOINT near;
  if (d.x == 0 || d.y == 0 || Asr(width, 5) > height || Asr(height, 5) > width) {
    PointPerpNearestLine(a, b, &at, &near);
  } else {
    // Where the line meets its perpendicular through p.
    const SFIXED m = FixedDiv(d.y, d.x);
    const SFIXED n = FixedDiv(d.x, d.y);
    const SCOORD c1 = WrapSub(a->y, FixedMul(m, a->x));
    const SCOORD c2 = WrapAdd(FixedMul(n, at.x), at.y);
    near.x = FixedDiv(WrapSub(c2, c1), WrapAdd(m, n));
    near.y = WrapAdd(FixedMul(near.x, WrapNeg(n)), c2);
    const SPOINT* lo = a->x < b->x ? a : b;
    const SPOINT* hi = a->x < b->x ? b : a;
    if (near.x < lo->x)
      near = *lo;
    else if (near.x > hi->x)
      near = *hi;
  }
  if (out) *out = near;
  return PointDistance(&near, &at);
}

void PointNormalize(SPOINT* p, SCOORD length) {
  const SCOORD now = PointLength(p);
  if (now <= 0) return;
  PointScale(p, FixedDiv(length, now), p);
}

}  // namespace vexel
