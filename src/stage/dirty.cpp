// What must be repainted: a list of at most three rectangles. A paint is a full
// pass of the rasterizer over one rectangle, so rectangles are merged as they
// come in, by the least ground wasted, and cut apart before they are painted.
// All areas are 32-bit numbers that wrap, as the target's sides keep them small
// in any real use.
#include "geometry/rect.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// A rectangle is painted 2 pixels larger on each side than what changed: an
// anti-aliased edge and the division to whole pixels both reach beyond it.
constexpr int32_t kGrowPixels = 2;

}  // namespace

int32_t RectArea(const SRECT* r) {
  return WrapMul(WrapSub(r->xmax, r->xmin), WrapSub(r->ymax, r->ymin));
}

bool RectTestOverlap(const SRECT* a, const SRECT* b) {
  return a->xmin < b->xmax && b->xmin < a->xmax && a->ymin < b->ymax && b->ymin < a->ymax;
}

// The two rectangles form a cross, a corner or a step of three bands: what only
// the upper one covers, the rows that both have, and what only the lower one
// covers. The middle band, as wide as both, joins the neighbour with which it
// wastes less.
void DecomposeRect(SRECT* a, SRECT* b) {
  SRECT top;
  if (a->ymin >= b->ymin) {
    top = {b->xmin, b->xmax, b->ymin, a->ymin};
  } else {
    top = {a->xmin, a->xmax, a->ymin, b->ymin};
  }
  SRECT bottom;
  if (a->ymax >= b->ymax) {
    bottom = {a->xmin, a->xmax, b->ymax, a->ymax};
  } else {
    bottom = {b->xmin, b->xmax, a->ymax, b->ymax};
  }
  const SRECT middle = {a->xmin < b->xmin ? a->xmin : b->xmin,
                        a->xmax > b->xmax ? a->xmax : b->xmax, top.ymax, bottom.ymin};
  SRECT upper;
  SRECT lower;
  RectUnion(&top, &middle, &upper);
  RectUnion(&middle, &bottom, &lower);
  const int32_t shared = RectArea(&middle);
  const int32_t upperSpare = WrapSub(WrapAdd(RectArea(&top), shared), RectArea(&upper));
  const int32_t lowerSpare = WrapSub(WrapAdd(shared, RectArea(&bottom)), RectArea(&lower));
  if (upperSpare <= lowerSpare) {
    *a = top;
    *b = lower;
  } else {
    *a = upper;
    *b = bottom;
  }
}

void DisplayList::InvalidateRect(const SRECT* devRect) {
  SRECT grown = *devRect;
  RectInset(antialias ? -kGrowPixels * kDevPerPixel : -kGrowPixels, &grown);
  if (!RectTestIntersect(&grown, &devViewRect)) return;
  SRECT* entry = &dirtyRect[dirtyCount];
  RectIntersect(&devViewRect, &grown, entry);
  RectUnion(&devDirtyUnion, entry, &devDirtyUnion);
  dirtyArea[dirtyCount] = RectArea(entry);
  ++dirtyCount;
  MergeDirtyList(dirtyCount > kDirtyRects);
}

bool DisplayList::MergeDirtyList(bool force) {
  if (dirtyCount < 2) return false;
  int32_t best = force ? kInt32Max : 0;
  int32_t bestA = 0;
  int32_t bestB = 0;
  for (int32_t i = 0; i < dirtyCount - 1; ++i) {
    for (int32_t j = i + 1; j < dirtyCount; ++j) {
      SRECT both;
      RectUnion(&dirtyRect[i], &dirtyRect[j], &both);
      const int32_t waste = WrapSub(WrapSub(RectArea(&both), dirtyArea[i]), dirtyArea[j]);
      if (best > waste) {
        bestA = i;
        bestB = j;
        best = waste;
      }
    }
  }
  if (bestA == bestB) {
    if (!force) return false;
    // Areas that wrapped can leave no pair below the greatest number; the list
    // must shrink all the same.
    bestA = dirtyCount - 2;
    bestB = dirtyCount - 1;
  }
  RectUnion(&dirtyRect[bestA], &dirtyRect[bestB], &dirtyRect[bestA]);
  dirtyArea[bestA] = RectArea(&dirtyRect[bestA]);
  --dirtyCount;
  for (int32_t i = bestB; i < dirtyCount; ++i) {
    dirtyRect[i] = dirtyRect[i + 1];
    dirtyArea[i] = dirtyArea[i + 1];
  }
  return true;
}

void DisplayList::DecomposeDirtyList() {
  while (MergeDirtyList(false)) {
  }
  for (int32_t i = 0; i < dirtyCount - 1; ++i) {
    for (int32_t j = i + 1; j < dirtyCount; ++j) {
      if (RectTestOverlap(&dirtyRect[i], &dirtyRect[j]))
        DecomposeRect(&dirtyRect[i], &dirtyRect[j]);
    }
  }
}

}  // namespace vexel
