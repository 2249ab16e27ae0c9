// Spans that wait for the end of their row.
#include "raster/row_spans.h"

#include <cstdlib>
#include <cstring>

#include "raster/composite.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

constexpr int32_t kNoStack = -1;
constexpr int32_t kNoMore = kInt32Max;

// Makes room for one more item. False without memory.
template <class T>
bool RoomForOne(T** items, int32_t used, int32_t* room) {
  if (used < *room) return true;
  const int32_t n = *room * 2 + 32;
  auto* bigger = static_cast<T*>(std::realloc(*items, static_cast<size_t>(n) * sizeof(T)));
  if (bigger == nullptr) return false;
  *items = bigger;
  *room = n;
  return true;
}

// The colour of a stack at one pixel. A colour keeps its value for the pixel.
PackedRGBI StackColor(const RowStack& s, int32_t x, uint32_t key) {
  RGBIWords acc = {0, 0};
  for (int32_t i = s.n - 1; i >= 0; i--) {
    RColor* c = s.colors[i];
    if (c->cacheKey != key) {
      if (c->colorType != colorSolid) calcPixelProcs[c->colorType](c, x, &c->rgb);
      c->cacheKey = key;
    }
    acc = i == s.n - 1 ? LoadWords(&c->rgb) : CompositeWords(LoadWords(&c->rgb), acc);
  }
  return uint64_t{acc.ra} << 32 | acc.bg;
}

}  // namespace

bool RowStack::SameAs(const RowStack& o) const {
  if (n != o.n || crowded || o.crowded) return false;
  for (int32_t i = 0; i < n; i++) {
    if (colors[i] != o.colors[i]) return false;
  }
  return true;
}

RowSpans::~RowSpans() {
  for (Span* s : spans_) std::free(s);
  std::free(stacks_);
}

void RowSpans::Clear() {
  nStacks_ = 0;
  for (int32_t& n : nSpans_) n = 0;
}

bool RowSpans::AddToLane(int32_t lane, const Span& span) {
  if (!RoomForOne(&spans_[lane], nSpans_[lane], &spanRoom_[lane])) return false;
  spans_[lane][nSpans_[lane]++] = span;
  return true;
}

bool RowSpans::Add(const RowStack& stack, LaneMask mask, Lanes x1, Lanes x2) {
  int32_t id = nStacks_ - 1;
  if (id < 0 || !stacks_[id].SameAs(stack)) {
    if (!RoomForOne(&stacks_, nStacks_, &stackRoom_)) return false;
    id = nStacks_++;
    stacks_[id] = stack;
  }
  for (int32_t l = 0; l < kLanes; l++) {
    if ((mask >> l & 1) != 0 && !AddToLane(l, {x1[l], x2[l], id})) return false;
  }
  return true;
}

// Adds the samples between x1 and x2, which no end divides.
void RowSpans::SumPiece(CRaster* raster, RowSums* sums, int32_t x1, int32_t x2,
                        const int32_t* stacks) {
  const uint32_t row = static_cast<uint32_t>(raster->bitY) << 16;
  for (int32_t x = x1 >> 2; 4 * x < x2; x++) {
    const int32_t from = 4 * x > x1 ? 4 * x : x1;
    const int32_t to = 4 * x + 4 < x2 ? 4 * x + 4 : x2;
    for (int32_t l = 0; l < kLanes;) {
      // Lanes side by side with the same stack count together.
      int32_t n = 1;
      while (l + n < kLanes && stacks[l + n] == stacks[l]) n++;
      if (stacks[l] != kNoStack) {
        const PackedRGBI c =
            StackColor(stacks_[stacks[l]], x, row | (static_cast<uint32_t>(x) & 0xFFFF));
        sums->Add(x, c, static_cast<uint32_t>((to - from) * n));
      }
      l += n;
    }
  }
}

void RowSpans::DrawPiece(CRaster* raster, RowSums* sums, int32_t x1, int32_t x2,
                         const int32_t* stacks) {
  const int32_t px1 = (x1 + 3) >> 2;
  const int32_t px2 = x2 >> 2;
  bool alike = px1 < px2 && stacks[0] != kNoStack && !stacks_[stacks[0]].crowded;
  for (int32_t l = 1; l < kLanes && alike; l++) {
    alike = stacks[l] == stacks[0] ||
            (stacks[l] != kNoStack && stacks_[stacks[l]].SameAs(stacks_[stacks[0]]));
  }
  if (!alike) {
    SumPiece(raster, sums, x1, x2, stacks);
    return;
  }
  RowStack& s = stacks_[stacks[0]];
  if (x1 < 4 * px1) SumPiece(raster, sums, x1, 4 * px1, stacks);
  if (s.transparent) {
    raster->CompositeSlab(px1, px2, s.colors, s.n);
  } else {
    s.colors[0]->drawSlabProc(s.colors[0], px1, px2);
  }
  if (4 * px2 < x2) SumPiece(raster, sums, 4 * px2, x2, stacks);
}

void RowSpans::Draw(CRaster* raster, RowSums* sums) {
  int32_t at[kLanes] = {};
  int32_t stacks[kLanes];
  int32_t x = kNoMore;
  for (int32_t l = 0; l < kLanes; l++) {
    if (nSpans_[l] > 0 && spans_[l][0].x1 < x) x = spans_[l][0].x1;
  }
  while (x != kNoMore) {
    // The piece goes on to the next end in any lane.
    int32_t end = kNoMore;
    bool any = false;
    for (int32_t l = 0; l < kLanes; l++) {
      stacks[l] = kNoStack;
      if (at[l] == nSpans_[l]) continue;
      const Span& s = spans_[l][at[l]];
      if (s.x1 <= x) {
        stacks[l] = s.stack;
        any = true;
        if (s.x2 < end) end = s.x2;
      } else if (s.x1 < end) {
        end = s.x1;
      }
    }
    if (any) DrawPiece(raster, sums, x, end, stacks);
    for (int32_t l = 0; l < kLanes; l++) {
      if (at[l] < nSpans_[l] && spans_[l][at[l]].x2 <= end) at[l]++;
    }
    x = end;
  }
  Clear();
}

}  // namespace vexel
