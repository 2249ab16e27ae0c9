// The spans of a pixel row whose pixels depend on where spans begin and end:
// gradients and bitmaps, which step from a span's start, and stacks of
// transparent colours, which are composed onto the background one by one where
// they fill whole pixels, and summed up where they don't.
//
// They are kept until the row is done, a list for each lane, and then cut at
// all ends in any lane. Between two ends the whole pixels that all four lanes
// show alike are drawn as a slab; all others go to the row's sums.
#pragma once

#include <cstdint>

#include "raster/lanes.h"
#include "raster/row_sums.h"
#include "raster/run.h"

namespace vexel {

class CRaster;
struct RColor;

// The colours that a lane shows along a span, topmost first.
struct RowStack {
  RColor* colors[kMaxStack];
  int32_t n;
  bool transparent;  // the topmost is
  bool crowded;      // there were more than kMaxStack: it counts as unlike itself

  bool SameAs(const RowStack& o) const;
};

class RowSpans {
 public:
  RowSpans() = default;
  ~RowSpans();
  RowSpans(const RowSpans&) = delete;
  RowSpans& operator=(const RowSpans&) = delete;

  // Adds a span of the stack to each lane of the mask, behind the lane's
  // others, from x1 to x2 (quarter-pixels) where x1 < x2. False without memory.
  [[nodiscard]] bool Add(const RowStack& stack, LaneMask mask, Lanes x1, Lanes x2);

  bool Empty() const { return nStacks_ == 0; }

  // Draws all and forgets them. The raster stands on the row.
  void Draw(CRaster* raster, RowSums* sums);

  // Forgets all.
  void Clear();

 private:
  struct Span {
    int32_t x1;
    int32_t x2;
    int32_t stack;
  };

  bool AddToLane(int32_t lane, const Span& span);
  void DrawPiece(CRaster* raster, RowSums* sums, int32_t x1, int32_t x2, const int32_t* stacks);
  void SumPiece(CRaster* raster, RowSums* sums, int32_t x1, int32_t x2, const int32_t* stacks);

  Span* spans_[kLanes] = {};
  int32_t nSpans_[kLanes] = {};
  int32_t spanRoom_[kLanes] = {};
  RowStack* stacks_ = nullptr;
  int32_t nStacks_ = 0;
  int32_t stackRoom_ = 0;
};

}  // namespace vexel
