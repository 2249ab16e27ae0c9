// Rectangles: what is not simple enough, or not hot enough, to stand inline.
#include "geometry/rect.h"

namespace vexel {

static SCOORD Smaller(SCOORD a, SCOORD b) {
  return a < b ? a : b;
}
static SCOORD Larger(SCOORD a, SCOORD b) {
  return a < b ? b : a;
}

void RectUnion(const SRECT* a, const SRECT* b, SRECT* out) {
  if (RectIsEmpty(a))
    *out = *b;
  else if (RectIsEmpty(b))
    *out = *a;
  else
    *out = {Smaller(a->xmin, b->xmin), Larger(a->xmax, b->xmax), Smaller(a->ymin, b->ymin),
            Larger(a->ymax, b->ymax)};
}

void RectIntersect(const SRECT* a, const SRECT* b, SRECT* out) {
  if (RectIsEmpty(a) || RectIsEmpty(b)) {
    RectSetEmpty(out);
    return;
  }
  *out = {Larger(a->xmin, b->xmin), Smaller(a->xmax, b->xmax), Larger(a->ymin, b->ymin),
          Smaller(a->ymax, b->ymax)};
  RectValidate(out);
}

void RectCenter(const SRECT* r, SPOINT* p) {
  if (RectIsEmpty(r))
    *p = {0, 0};
  else
    *p = {WrapAdd(r->xmin, WrapSub(r->xmax, r->xmin) / 2),
          WrapAdd(r->ymin, WrapSub(r->ymax, r->ymin) / 2)};
}

void RectOffset(SCOORD dx, SCOORD dy, SRECT* r) {
  if (RectIsEmpty(r)) return;
  *r = {WrapAdd(r->xmin, dx), WrapAdd(r->xmax, dx), WrapAdd(r->ymin, dy), WrapAdd(r->ymax, dy)};
}

void RectInset(SCOORD d, SRECT* r) {
  if (RectIsEmpty(r)) return;
  *r = {WrapAdd(r->xmin, d), WrapSub(r->xmax, d), WrapAdd(r->ymin, d), WrapSub(r->ymax, d)};
  RectValidate(r);
}

void RectShift(const SRECT* r, int n, SRECT* out) {
  if (RectIsEmpty(r))
    *out = *r;
  else
    *out = {ShiftRounded(r->xmin, n), ShiftRounded(r->xmax, n), ShiftRounded(r->ymin, n),
            ShiftRounded(r->ymax, n)};
}

int RectOppositePoint(int i) {
  static constexpr int8_t kOpposite[8] = {rectTopRight,    rectTopLeft, rectBottomLeft,
                                          rectBottomRight, rectTopMid,  rectLeftMid,
                                          rectBottomMid,   rectRightMid};
  return i >= 0 && i < 8 ? kOpposite[i] : int{rectCenter};
}

void RectGetPoint(const SRECT* r, int i, SPOINT* p) {
  const SCOORD midX = Asr(WrapAdd(r->xmin, r->xmax), 1);
  const SCOORD midY = Asr(WrapAdd(r->ymin, r->ymax), 1);
  switch (i) {
    case rectBottomLeft:
      *p = {r->xmin, r->ymax};
      break;
    case rectBottomRight:
      *p = {r->xmax, r->ymax};
      break;
    case rectTopRight:
      *p = {r->xmax, r->ymin};
      break;
    case rectTopLeft:
      *p = {r->xmin, r->ymin};
      break;
    case rectBottomMid:
      *p = {midX, r->ymax};
      break;
    case rectRightMid:
      *p = {r->xmax, midY};
      break;
    case rectTopMid:
      *p = {midX, r->ymin};
      break;
    case rectLeftMid:
      *p = {r->xmin, midY};
      break;
    default:
      *p = {midX, midY};
      break;
  }
}

bool RectEqual(const SRECT* a, const SRECT* b, SCOORD tolerance) {
  if (RectIsEmpty(a) || RectIsEmpty(b)) return RectIsEmpty(a) && RectIsEmpty(b);
  return WrapAbs(WrapSub(a->xmin, b->xmin)) <= tolerance &&
         WrapAbs(WrapSub(a->xmax, b->xmax)) <= tolerance &&
         WrapAbs(WrapSub(a->ymin, b->ymin)) <= tolerance &&
         WrapAbs(WrapSub(a->ymax, b->ymax)) <= tolerance;
}

SCOORD RectSize(const SRECT* r) {
  SPOINT size;
  RectSizePoint(r, &size);
  return PointLength(&size);
}

void RectSizePoint(const SRECT* r, SPOINT* p) {
  *p = {WrapSub(r->xmax, r->xmin), WrapSub(r->ymax, r->ymin)};
}

SCOORD RectNearDistance(const SRECT* r, const SPOINT* p) {
  if (RectPointIn(r, p)) return 0;
  const SPOINT near = {p->x < r->xmin ? r->xmin : Smaller(p->x, r->xmax),
                       p->y < r->ymin ? r->ymin : Smaller(p->y, r->ymax)};
  return PointDistance(p, &near);
}

// The gap between two ranges, 0 if they touch.
static SCOORD Gap(SCOORD min1, SCOORD max1, SCOORD min2, SCOORD max2) {
  const SCOORD after = WrapSub(min1, max2);
  if (after > 0) return after;
  const SCOORD before = WrapSub(min2, max1);
  return before > 0 ? before : 0;
}

SCOORD RectDistance(const SRECT* a, const SRECT* b) {
  const SPOINT gap = {Gap(a->xmin, a->xmax, b->xmin, b->xmax),
                      Gap(a->ymin, a->ymax, b->ymin, b->ymax)};
  return PointLength(&gap);
}

void RectToSRect(const RECT* r, SRECT* s) {
  RectSet(r->left, r->top, r->right, r->bottom, s);
}

void SRectToRect(const SRECT* s, RECT* r, bool flip) {
  if (RectIsEmpty(s))
    *r = {0, 0, 0, 0};
  else if (flip)
    *r = {s->ymin, s->xmin, s->ymax, s->xmax};
  else
    *r = {s->ymax, s->xmin, s->ymin, s->xmax};
}

}  // namespace vexel
