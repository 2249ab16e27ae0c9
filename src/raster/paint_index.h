// An index of the paint list, for pictures that have hundreds of colours on at
// one place. Edges find a colour's place on the list with it, and spans the
// colours far down, in a few steps. A picture gets it only once it has spent
// many steps along a long list: a short one is quicker without.
#pragma once

#include <cstdint>

#include "raster/lane_set.h"
#include "raster/rcolor.h"

namespace vexel {

class PaintIndex {
 public:
  PaintIndex() = default;
  PaintIndex(const PaintIndex&) = delete;
  PaintIndex& operator=(const PaintIndex&) = delete;

  // Sorts the n colours of the picture, numbers them (RColor::rank), and notes
  // those on the list `first`. The colours must stay as they are until the next
  // Start. False without memory, and if two colours are of one order: the one
  // that is on first then lies on top, which no index knows.
  [[nodiscard]] bool Start(RColor** colors, int32_t n, RColor* first);

  void Add(const RColor* c);
  void Drop(const RColor* c);

  bool Has(const RColor* c) const { return (up_.Get(UpOf(c)) & kAll) != 0; }
  // The entry that c stands behind on the list, or belongs behind; or null.
  RColor* Above(const RColor* c) const;
  // Whether an entry above covers all below it.
  bool IsHidden(const RColor* c) const { return down_.Top(kHides) > c->rank; }

  // Of what shows from the listed colour c downward, to the first opaque one:
  // the lowest, and the colour types ORed. Null if nothing does.
  RColor* LowestShown(RColor* c, uint8_t* types) const;

 private:
  // Lanes of up_, which holds the numbers from the topmost down, ...
  static constexpr LaneMask kAll = 1;
  static constexpr LaneMask kDrawn = 2;  // not a mask
  // ... and of down_.
  static constexpr LaneMask kHides = 1;
  static constexpr LaneMask kOpaque = 2;
  static constexpr LaneMask kBitmap = 4;
  static constexpr LaneMask kGradient = 8;

  int32_t UpOf(const RColor* c) const { return n_ - 1 - c->rank; }
  static LaneMask UpLanes(const RColor* c);
  static LaneMask DownLanes(const RColor* c);
  int32_t FirstShown(int32_t from, LaneMask lane) const;

  RColor** colors_ = nullptr;  // by rank; not owned
  int32_t n_ = 0;
  LaneSet up_;
  LaneSet down_;
};

}  // namespace vexel
