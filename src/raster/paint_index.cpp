// The index of a long paint list.
#include "raster/paint_index.h"

#include <algorithm>

#include "raster/paint_list.h"

namespace vexel {

bool PaintIndex::Start(RColor** colors, int32_t n, RColor* first) {
  colors_ = colors;
  n_ = n;
  std::sort(colors, colors + n,
            [](const RColor* a, const RColor* b) { return a->order < b->order; });
  for (int32_t i = 0; i < n; i++) colors[i]->rank = i;
  for (int32_t i = 1; i < n; i++) {
    if (colors[i - 1]->order == colors[i]->order) return false;
  }
  if (!up_.Reset(n) || !down_.Reset(n)) return false;
  for (; first != nullptr; first = first->nextActive) Add(first);
  return true;
}

LaneMask PaintIndex::UpLanes(const RColor* c) {
  return c->colorType == colorClip ? kAll : kAll | kDrawn;
}

LaneMask PaintIndex::DownLanes(const RColor* c) {
  LaneMask lanes = c->transparent ? 0 : kOpaque;
  if (HidesBelow(c)) lanes |= kHides;
  if (c->colorType == colorBitmap) lanes |= kBitmap;
  if (c->colorType == colorGradient) lanes |= kGradient;
  return lanes;
}

void PaintIndex::Add(const RColor* c) {
  up_.Set(UpOf(c), UpLanes(c));
  const LaneMask lanes = DownLanes(c);
  if (lanes != 0) down_.Set(c->rank, lanes);
}

void PaintIndex::Drop(const RColor* c) {
  up_.Clear(UpOf(c), UpLanes(c));
  const LaneMask lanes = DownLanes(c);
  if (lanes != 0) down_.Clear(c->rank, lanes);
}

RColor* PaintIndex::Above(const RColor* c) const {
  const int32_t i = up_.Below(UpOf(c), kAll);
  return i >= 0 ? colors_[n_ - 1 - i] : nullptr;
}

// The highest number from `from` downward whose colour is in the lane and
// shows, or -1.
int32_t PaintIndex::FirstShown(int32_t from, LaneMask lane) const {
  int32_t i = down_.Below(from + 1, lane);
  while (i >= 0 && !IsShown(colors_[i])) i = down_.Below(i, lane);
  return i;
}

RColor* PaintIndex::LowestShown(RColor* c, uint8_t* types) const {
  const int32_t opaque = FirstShown(c->rank, kOpaque);
  int32_t lowest = opaque;
  if (opaque < 0) {
    // Upward from the list's end.
    for (int32_t i = n_; lowest < 0;) {
      i = up_.Below(i, kDrawn);
      if (i < UpOf(c)) return nullptr;
      if (IsShown(colors_[n_ - 1 - i])) lowest = n_ - 1 - i;
    }
  }
  *types = colors_[lowest]->colorType;
  if (FirstShown(c->rank, kBitmap) >= lowest) *types |= colorBitmap;
  if (FirstShown(c->rank, kGradient) >= lowest) *types |= colorGradient;
  return colors_[lowest];
}

}  // namespace vexel
