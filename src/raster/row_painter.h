// The fast way to paint an anti-aliased picture into a buffer of 24 or 32 bits:
// a pixel row at a time, its four sub-scanlines side by side as lanes.
//
// Its pixels are those of the plain way (active_list, paint_list, paint_slab,
// aa_runs) to the bit. What makes that possible: where a span shows a single
// solid colour, a pixel is the sum of its 16 samples, in any order and however
// spans divide them, so sums and plain fills do. Other spans wait for the end of
// their row, where their ends fall as they do in runs (RowSpans). Pictures whose
// pixels depend on more than that are left to the plain way.
#pragma once

#include <cstdint>

#include "raster/lane_set.h"
#include "raster/row_edges.h"
#include "raster/row_spans.h"
#include "raster/row_sums.h"

namespace vexel {

class CRaster;
struct RColor;

class RowPainter {
 public:
  RowPainter() = default;
  ~RowPainter();
  RowPainter(const RowPainter&) = delete;
  RowPainter& operator=(const RowPainter&) = delete;

  // Paints the raster's picture, from its clip's top to its bottom. False, with
  // nothing painted, if that is for the plain way. An allocation that fails
  // under way drops what it was for. Numbers the colours (RColor::rank) by
  // their order.
  [[nodiscard]] bool Paint(CRaster* raster);

 private:
  // A colour of the picture, by number: the higher, the further up it lies.
  struct Source {
    PackedRGBI rgb;  // a solid's
    RColor* color;
    uint32_t counts;  // for ruleWinding, a signed byte a lane
    int32_t clip;     // the mask around it, by number, or kUnclipped or kNeverOn
    bool hides;       // covers all below it wherever it is on
    bool transparent;
    bool isSolid;
    bool isClip;
  };
  static constexpr int32_t kUnclipped = -1;
  static constexpr int32_t kNeverOn = -2;  // in a mask without edges in the picture

  bool Prepare();
  bool NumberColors();
  int32_t ClipNumber(const RColor* clip) const;
  void PaintRow();
  void EndRow(bool isLast);

  void Apply(const RowEvent& e);
  void Toggle(int32_t i, LaneMask mask, Lanes x);
  void Count(int32_t i, int8_t dir, LaneMask mask, Lanes x);
  LaneMask Uncovered(int32_t i, LaneMask mask) const;
  void Switch(int32_t i, LaneMask add, LaneMask remove);

  void EndSpans(LaneMask mask, Lanes x);
  void NoteBreaks(LaneMask mask, Lanes x1, Lanes x2);
  LaneMask ShownLanes(int32_t clip) const;
  LaneMask ShowSpans(LaneMask mask, Lanes x1, Lanes x2);
  void ShowStack(const int32_t* stack, int32_t n, bool crowded, LaneMask mask, Lanes x1, Lanes x2);
  void ShowSolid(PackedRGBI c, bool opaque, LaneMask mask, Lanes x1, Lanes x2);
  void FillPixels(PackedRGBI c, bool opaque, int32_t x1, int32_t x2);

  CRaster* raster_ = nullptr;
  Source* sources_ = nullptr;
  int32_t sourceRoom_ = 0;
  int32_t nSources_ = 0;
  LaneSet on_;         // the colours that are on
  LaneSet hiders_;     // those of them that hide what is below
  Lanes cover_ = {};   // the topmost of those in each lane, or -1
  Lanes paintX_ = {};  // where the next span starts, quarter-pixels
  RowEdges edges_;
  RowSums sums_;
  RowSpans spans_;
};

}  // namespace vexel
