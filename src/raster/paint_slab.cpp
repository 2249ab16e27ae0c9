// The end of a span: without anti-aliasing it is drawn, with it the runs of the
// pixel row between its ends get one more stack of colours.
#include <cstddef>
#include <cstring>

#include "raster/paint_index.h"
#include "raster/paint_list.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/run.h"

namespace vexel {
namespace {

// Colours a span without anti-aliasing can stack up.
constexpr int32_t kMaxSpanColors = 255;

void DrawSpan(CRaster* raster, int32_t x1, int32_t x2) {
  if (x1 < raster->bitClip.xmin) x1 = raster->bitClip.xmin;
  if (x2 > raster->bitClip.xmax) x2 = raster->bitClip.xmax;
  if (x2 <= x1) return;
  RColor* shown[kMaxSpanColors];
  int32_t n = 0;
  for (RColor* c = FirstShown(raster->firstColor); c != nullptr; c = FirstShown(c->nextActive)) {
    if (n == kMaxSpanColors) n--;
    if (n == kMaxSpanColors - 1 && raster->paintIndexed) {
      // Each would take the last place from the one before.
      uint8_t types = 0;
      shown[n++] = raster->paintIndex->LowestShown(c, &types);
      break;
    }
    raster->spareSteps--;
    shown[n++] = c;
    if (!c->transparent) break;
  }
  if (n == 0) return;
  if (shown[0]->transparent) {
    raster->CompositeSlab(x1, x2, shown, n);
  } else {
    shown[0]->drawSlabProc(shown[0], x1, x2);
  }
}

// Splits r at x and returns the right part, null without memory. Of an opaque
// run only the first colour of each stack is ever read, so only that moves.
RRun* Split(CRaster* raster, RRun* r, int32_t x) {
  auto* right = static_cast<RRun*>(raster->runAlloc.Alloc());
  if (right == nullptr) return nullptr;
  if (r->transparent) {
    *right = *r;
  } else {
    std::memcpy(static_cast<void*>(right), r, offsetof(RRun, stacks));
    for (int32_t k = 0; k < kSubScanlines; k++) right->stacks[k][0] = r->stacks[k][0];
  }
  right->xmin = x;
  r->xmax = x;
  r->next = right;
  return right;
}

// Adds what the paint list shows as a stack.
void Fill(CRaster* raster, RRun* r) {
  if (r->nStacks == kSubScanlines) return;
  const int32_t k = r->nStacks;
  int32_t i = 0;
  for (RColor* c = FirstShown(raster->firstColor); c != nullptr; c = FirstShown(c->nextActive)) {
    // Required: with more colours than places, the last place takes whatever
    // comes next, and the comparison counts at each step on the way.
    if (i == kMaxStack) {
      i--;
      raster->spareSteps--;
    }
    if (i == kMaxStack - 1 && raster->paintIndexed) {
      uint8_t types = 0;
      RColor* lowest = raster->paintIndex->LowestShown(c, &types);
      r->typeMask |= types;
      if (lowest != c) {
        if (k > 0) r->isPure = false;
        r->transparent = true;
        c = lowest;
      }
    }
    r->stacks[k][i] = c;
    if (k > 0 && (i >= r->stackN[0] || r->stacks[0][i] != c)) r->isPure = false;
    r->typeMask |= c->colorType;
    i++;
    if (!c->transparent) break;
    r->transparent = true;
    if (i == kMaxStack && raster->paintIndexed) break;
  }
  if (i == 0) return;
  r->stackN[k] = static_cast<uint8_t>(i);
  if (i != r->stackN[0]) r->isPure = false;
  r->nStacks++;
}

void RecordSpan(CRaster* raster, int32_t x1, int32_t x2) {
  RRun* r = raster->curRun;
  if (r == nullptr || r->xmin >= x2) return;
  while (r->xmax < x1) {
    r = r->next;
    if (r == nullptr) {
      raster->curRun = nullptr;
      return;
    }
  }
  if (r->xmin < x1) {
    r = Split(raster, r, x1);
    if (r == nullptr) {
      raster->curRun = nullptr;
      return;
    }
  }
  while (r != nullptr && r->xmin < x2) {
    if (r->xmax > x2) {
      raster->curRun = Split(raster, r, x2);
      Fill(raster, r);
      return;
    }
    Fill(raster, r);
    r = r->next;
  }
  raster->curRun = r;
}

}  // namespace

void CRaster::PaintSlab(int32_t x) {
  const int32_t x1 = paintX;
  paintX = x;
  if (firstColor == nullptr) return;
  if (antialias) {
    RecordSpan(this, x1, x);
  } else {
    DrawSpan(this, x1, x);
  }
}

}  // namespace vexel
