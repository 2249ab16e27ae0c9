// Axis-aligned rectangles. A rectangle is empty when its xmin is kEmptyCoord;
// otherwise xmin <= xmax and ymin <= ymax, and all four sides belong to it.
#pragma once

#include "geometry/point.h"

namespace vexel {

inline constexpr SCOORD kEmptyCoord = kInt32Min;

struct SRECT {
  SCOORD xmin;
  SCOORD xmax;
  SCOORD ymin;
  SCOORD ymax;
};

// The platform's rectangle; it occurs only at the border to the platform.
struct RECT {
  int32_t top;
  int32_t left;
  int32_t bottom;
  int32_t right;
};

// Positions of a rectangle for RectGetPoint and RectOppositePoint.
enum RectPoint : int {
  rectBottomLeft = 0,   // (xmin, ymax)
  rectBottomRight = 1,  // (xmax, ymax)
  rectTopRight = 2,     // (xmax, ymin)
  rectTopLeft = 3,      // (xmin, ymin)
  rectBottomMid = 4,
  rectRightMid = 5,
  rectTopMid = 6,
  rectLeftMid = 7,
  rectCenter = 8,  // as is any other number
};

// Results may be the same object as an argument.

constexpr bool RectIsEmpty(const SRECT* r) {
  return r->xmin == kEmptyCoord;
}
constexpr void RectSetEmpty(SRECT* r) {
  *r = {kEmptyCoord, kEmptyCoord, kEmptyCoord, kEmptyCoord};
}
// A rectangle that covers every coordinate that the system uses.
constexpr void RectSetHuge(SRECT* r) {
  *r = {-4194304, 0x3FFFFF, -4194304, 0x3FFFFF};
}

// The rectangle of two opposite corners in any order.
constexpr void RectSet(SCOORD x1, SCOORD y1, SCOORD x2, SCOORD y2, SRECT* r) {
  *r = {x1 < x2 ? x1 : x2, x1 < x2 ? x2 : x1, y1 < y2 ? y1 : y2, y1 < y2 ? y2 : y1};
}
constexpr void RectSetPoint(const SPOINT* p, SRECT* r) {
  *r = {p->x, p->x, p->y, p->y};
}
constexpr void RectSetPoint2(const SPOINT* p1, const SPOINT* p2, SRECT* r) {
  RectSet(p1->x, p1->y, p2->x, p2->y, r);
}

// Grows r to hold p; an empty r becomes the point.
constexpr void RectUnionPoint(const SPOINT* p, SRECT* r) {
  if (RectIsEmpty(r)) {
    RectSetPoint(p, r);
    return;
  }
  if (p->x < r->xmin)
    r->xmin = p->x;
  else if (p->x > r->xmax)
    r->xmax = p->x;
  if (p->y < r->ymin)
    r->ymin = p->y;
  else if (p->y > r->ymax)
    r->ymax = p->y;
}

// Touching counts as intersecting. An empty b fails the comparison by itself.
constexpr bool RectTestIntersect(const SRECT* a, const SRECT* b) {
  return !RectIsEmpty(a) && a->xmin <= b->xmax && b->xmin <= a->xmax && a->ymin <= b->ymax &&
         b->ymin <= a->ymax;
}
// All four sides are inside.
constexpr bool RectPointIn(const SRECT* r, const SPOINT* p) {
  return p->x >= r->xmin && p->x <= r->xmax && p->y >= r->ymin && p->y <= r->ymax;
}

// Makes a rectangle with exchanged sides the empty one.
constexpr void RectValidate(SRECT* r) {
  if (r->xmin > r->xmax || r->ymin > r->ymax) RectSetEmpty(r);
}

// The outer and the inner bounds of two rectangles.
void RectUnion(const SRECT* a, const SRECT* b, SRECT* out);
void RectIntersect(const SRECT* a, const SRECT* b, SRECT* out);

// The centre, (0, 0) of the empty rectangle.
void RectCenter(const SRECT* r, SPOINT* p);
// The three leave an empty rectangle as it is. RectInset moves all sides inward
// by d and gives the empty rectangle if they pass each other; RectShift
// multiplies by 2 to the power of n, rounded.
void RectOffset(SCOORD dx, SCOORD dy, SRECT* r);
void RectInset(SCOORD d, SRECT* r);
void RectShift(const SRECT* r, int n, SRECT* out);

// The position opposite to position i, and the point at position i.
int RectOppositePoint(int i);
void RectGetPoint(const SRECT* r, int i, SPOINT* p);

// Both empty, or all four differences within tolerance.
bool RectEqual(const SRECT* a, const SRECT* b, SCOORD tolerance);
// The length of the diagonal.
SCOORD RectSize(const SRECT* r);
// Width and height, without a test for emptiness.
void RectSizePoint(const SRECT* r, SPOINT* p);
// The distance of p from r, 0 inside.
SCOORD RectNearDistance(const SRECT* r, const SPOINT* p);
// The distance between two rectangles, 0 if they touch.
SCOORD RectDistance(const SRECT* a, const SRECT* b);

// Between the system's rectangles and the platform's. An empty s gives four
// zeros; flip keeps y as it is, else top takes ymax and bottom ymin.
void RectToSRect(const RECT* r, SRECT* s);
void SRectToRect(const SRECT* s, RECT* r, bool flip);

}  // namespace vexel
