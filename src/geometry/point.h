// Points and vectors. The fast measures are inline, since subdivision of curves
// calls them for every piece; the exact length has a division and lives apart.
#pragma once

#include "geometry/intmath.h"

namespace vexel {

// A point or a vector, in the unit of the space it stands in.
struct SPOINT {
  SCOORD x;
  SCOORD y;
};

constexpr bool operator==(const SPOINT& a, const SPOINT& b) {
  return a.x == b.x && a.y == b.y;
}
constexpr bool operator!=(const SPOINT& a, const SPOINT& b) {
  return !(a == b);
}
constexpr SPOINT operator+(const SPOINT& a, const SPOINT& b) {
  return {WrapAdd(a.x, b.x), WrapAdd(a.y, b.y)};
}
constexpr SPOINT operator-(const SPOINT& a, const SPOINT& b) {
  return {WrapSub(a.x, b.x), WrapSub(a.y, b.y)};
}

// In all functions a result point may be the same object as an argument.

// out = p times s.
constexpr void PointScale(const SPOINT* p, SFIXED s, SPOINT* out) {
  *out = {FixedMul(s, p->x), FixedMul(s, p->y)};
}

// One component of PointShift: n from -31 to 31. To the left bits are lost, to
// the right the result is rounded to nearest.
constexpr SCOORD ShiftRounded(SCOORD v, int n) {
  if (n >= 0) return WrapShl(v, n);
  return Asr(WrapAdd(v, WrapShl(1, -n - 1)), -n);
}

// out = p times 2 to the power of n.
constexpr void PointShift(const SPOINT* p, int n, SPOINT* out) {
  *out = {ShiftRounded(p->x, n), ShiftRounded(p->y, n)};
}

// The weighted mean, t (0 to 1.0) being the weight of p1.
constexpr void PointAverage(const SPOINT* p1, const SPOINT* p2, SFIXED t, SPOINT* out) {
  *out = {WrapAdd(p2->x, FixedMul(WrapSub(p1->x, p2->x), t)),
          WrapAdd(p2->y, FixedMul(WrapSub(p1->y, p2->y), t))};
}

// True if neither coordinate differs by more than tolerance.
constexpr bool PointEqual(const SPOINT* p1, const SPOINT* p2, SCOORD tolerance) {
  return WrapAbs(WrapSub(p1->x, p2->x)) <= tolerance && WrapAbs(WrapSub(p1->y, p2->y)) <= tolerance;
}

// An estimate of the length of p: the larger magnitude plus half of the smaller.
constexpr SCOORD PointFastLength(const SPOINT* p) {
  const SCOORD x = WrapAbs(p->x);
  const SCOORD y = WrapAbs(p->y);
  return WrapSub(WrapAdd(x, y), Asr(x < y ? x : y, 1));
}

// Half of the larger difference.
// Required: it is not PointFastLength of the difference; the thresholds of the
// curve functions are tuned to this value.
constexpr SCOORD PointFastDistance(const SPOINT* p1, const SPOINT* p2) {
  const SCOORD dx = WrapAbs(WrapSub(p1->x, p2->x));
  const SCOORD dy = WrapAbs(WrapSub(p1->y, p2->y));
  return Asr(dx < dy ? dy : dx, 1);
}

// The length of p, from a table: right to a few units in 16 bits.
SCOORD PointLength(const SPOINT* p);
// The length of p1 - p2.
SCOORD PointDistance(const SPOINT* p1, const SPOINT* p2);

// The direction from origin (null: from 0, 0) to p, in degrees with 16 fraction
// bits, from -180 to +180. That of a zero vector is +90.
SFIXED PointAngle(const SPOINT* p, const SPOINT* origin);
// The point at distance r from origin (null: from 0, 0) in direction angle.
void PointPolar(SCOORD r, SFIXED angle, const SPOINT* origin, SPOINT* out);

// The point of segment ab that lies straight above or beside p along the
// segment's dominant axis.
void PointPerpNearestLine(const SPOINT* a, const SPOINT* b, const SPOINT* p, SPOINT* out);
// The point of segment ab nearest to p, into out if that is not null; returns
// its distance from p.
SCOORD PointNearestLine(const SPOINT* a, const SPOINT* b, const SPOINT* p, SPOINT* out);

// Scales p to the given length; a zero vector stays zero.
void PointNormalize(SPOINT* p, SCOORD length);

}  // namespace vexel
