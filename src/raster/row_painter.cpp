// Painting by rows: what edges switch, and what spans show.
#include "raster/row_painter.h"

#include <cstdlib>

#include "raster/composite.h"
#include "raster/edge.h"
#include "raster/pix32_ops.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

// A byte of 1 in each lane of a mask.
constexpr uint32_t LaneBytes(LaneMask mask) {
  return (mask & 1) | (mask & 2) << 7 | (mask & 4) << 14 | (mask & 8) << 21;
}

// The lanes whose byte isn't 0.
constexpr LaneMask NonZeroLanes(uint32_t bytes) {
  const uint32_t tops = (((bytes & 0x7F7F7F7F) + 0x7F7F7F7F) | bytes) & 0x80808080;
  return (tops * 0x00204081u) >> 28;
}

// Adds lane by lane, each byte wrapping by itself.
constexpr uint32_t AddLaneBytes(uint32_t a, uint32_t b) {
  return ((a & 0x7F7F7F7F) + (b & 0x7F7F7F7F)) ^ ((a ^ b) & 0x80808080);
}

PackedRGBI OverPacked(PackedRGBI top, PackedRGBI below) {
  const auto split = [](PackedRGBI v) {
    return RGBIWords{static_cast<uint32_t>(v), static_cast<uint32_t>(v >> 32)};
  };
  const RGBIWords w = CompositeWords(split(top), split(below));
  return uint64_t{w.ra} << 32 | w.bg;
}

}  // namespace

RowPainter::~RowPainter() {
  std::free(sources_);
}

// Lanes of the mask in which nothing above the colour hides it.
inline LaneMask RowPainter::Uncovered(int32_t i, LaneMask mask) const {
  return mask & ~TrueLanes(cover_ > SplatLanes(i));
}

void RowPainter::Switch(int32_t i, LaneMask add, LaneMask remove) {
  if (add != 0) on_.Set(i, add);
  if (remove != 0) on_.Clear(i, remove);
  if (!sources_[i].hides) return;
  const Lanes self = SplatLanes(i);
  if (add != 0) cover_ = Select(LanesOf(add) & (self > cover_), self, cover_);
  if (remove == 0) return;
  LaneMask bare = TrueLanes(cover_ == self) & remove;
  for (int32_t next = i; bare != 0;) {
    next = on_.Below(next, bare);
    const LaneMask lanes = next < 0 ? bare : sources_[next].hides ? on_.Get(next) & bare : 0;
    if (lanes == kAllLanes) {
      cover_ = SplatLanes(next);
      return;
    }
    cover_ = Select(LanesOf(lanes), SplatLanes(next), cover_);
    bare &= ~lanes;
  }
}

void RowPainter::Toggle(int32_t i, LaneMask mask, Lanes x) {
  if (i == kNoColor) return;
  const LaneMask seen = Uncovered(i, mask);
  if (seen != 0) EndSpans(seen, x);
  const LaneMask was = on_.Get(i);
  Switch(i, mask & ~was, mask & was);
}

void RowPainter::Count(int32_t i, int8_t dir, LaneMask mask, Lanes x) {
  if (i == kNoColor) return;
  Source& s = sources_[i];
  const LaneMask was = NonZeroLanes(s.counts);
  s.counts = AddLaneBytes(s.counts, LaneBytes(mask) * static_cast<uint8_t>(dir));
  const LaneMask is = NonZeroLanes(s.counts);
  if (was == is) return;
  const LaneMask seen = Uncovered(i, was ^ is);
  if (seen != 0) EndSpans(seen, x);
  Switch(i, is & ~was, was & ~is);
}

void RowPainter::Apply(const RowEvent& e) {
  if (e.rule == ruleWinding) {
    Count(e.color1, e.dir, e.mask, e.x);
    return;
  }
  Toggle(e.color1, e.mask, e.x);
  if (e.rule == ruleEdgeEdge) Toggle(e.color2, e.mask, e.x);
}

// Notes the span ends in lanes where something is on, shown or not.
void RowPainter::NoteBreaks(LaneMask mask, Lanes x1, Lanes x2) {
  const SRECT& clip = raster_->edgeClip;
  for (int32_t l = 0; l < kLanes; l++) {
    if ((mask >> l & 1) == 0 || on_.Top(1u << l) < 0) continue;
    if (x1[l] > clip.xmin && x1[l] < clip.xmax) sums_.Break(x1[l]);
    if (x2[l] > clip.xmin && x2[l] < clip.xmax) sums_.Break(x2[l]);
  }
}

// Ends the spans of the lanes at x, and starts the next ones there.
void RowPainter::EndSpans(LaneMask mask, Lanes x) {
  Lanes x1 = paintX_;
  paintX_ = Select(LanesOf(mask), x, x1);
  if (sums_.TracksBreaks()) NoteBreaks(mask, x1, x);
  x1 = MaxLanes(x1, SplatLanes(raster_->edgeClip.xmin));
  x = MinLanes(x, SplatLanes(raster_->edgeClip.xmax));
  mask &= TrueLanes(x1 < x);
  while (mask != 0) mask &= ~ShowSpans(mask, x1, x);
}

// The lanes in which the mask `clip` and all around it are on.
LaneMask RowPainter::ShownLanes(int32_t clip) const {
  LaneMask lanes = kAllLanes;
  for (; clip != kUnclipped && lanes != 0; clip = sources_[clip].clip) {
    if (clip == kNeverOn) return 0;
    lanes &= on_.Get(clip);
  }
  return lanes;
}

// Shows the spans of those lanes of the mask that have the same colours on as
// its first lane. Returns these lanes.
LaneMask RowPainter::ShowSpans(LaneMask mask, Lanes x1, Lanes x2) {
  int32_t i = on_.Top(mask);
  if (i < 0) return mask;
  // Mostly it is one colour that hides all the rest.
  const Source& top = sources_[i];
  if (top.isSolid && !top.transparent && top.clip == kUnclipped) {
    const LaneMask here = on_.Get(i) & mask;
    if ((here & mask & (0u - mask)) != 0) {
      ShowSolid(top.rgb, true, here, x1, x2);
      return here;
    }
  }
  int32_t stack[kMaxStack];
  int32_t n = 0;
  bool crowded = false;
  for (; i >= 0; i = on_.Below(i, mask)) {
    const Source& s = sources_[i];
    if (s.isClip) continue;
    LaneMask here = on_.Get(i) & mask;
    if (s.clip != kUnclipped) here &= ShownLanes(s.clip);
    if (here == 0) continue;
    if ((here & mask & (0u - mask)) == 0) {
      mask &= ~here;
      continue;
    }
    mask = here;
    // With more colours than places the last place takes whatever comes next.
    if (n == kMaxStack) {
      crowded = true;
      n--;
    }
    stack[n++] = i;
    if (!s.transparent) break;
  }
  if (n > 0) ShowStack(stack, n, crowded, mask, x1, x2);
  return mask;
}

void RowPainter::ShowStack(const int32_t* stack, int32_t n, bool crowded, LaneMask mask, Lanes x1,
                           Lanes x2) {
  const Source& lowest = sources_[stack[n - 1]];
  bool solid = lowest.isSolid;
  if (n == 1 && solid) {
    ShowSolid(lowest.rgb, !lowest.transparent, mask, x1, x2);
    return;
  }
  // Solids over an opaque one are one colour. So are those in a crowded stack,
  // which never is composed onto the background one by one.
  if (solid && (crowded || !lowest.transparent)) {
    PackedRGBI c = lowest.rgb;
    for (int32_t k = n - 2; k >= 0 && solid; k--) {
      solid = sources_[stack[k]].isSolid;
      c = OverPacked(sources_[stack[k]].rgb, c);
    }
    if (solid && (crowded || c >> 48 == 255)) {
      ShowSolid(c, !crowded, mask, x1, x2);
      return;
    }
  }
  RowStack s;
  s.n = n;
  s.transparent = sources_[stack[0]].transparent;
  s.crowded = crowded;
  for (int32_t k = 0; k < n; k++) s.colors[k] = sources_[stack[k]].color;
  // Without memory the spans are dropped.
  static_cast<void>(spans_.Add(s, mask, x1, x2));
}

void RowPainter::ShowSolid(PackedRGBI c, bool opaque, LaneMask mask, Lanes x1, Lanes x2) {
  if (mask != kAllLanes) {
    // The lanes that don't count get a span of no width, in the middle of one.
    const Lanes which = LanesOf(mask);
    const Lanes somewhere = SplatLanes(x1[__builtin_ctz(mask)]);
    sums_.AddSpan(c, Select(which, x1, somewhere), Select(which, x2, somewhere));
    return;
  }
  const int32_t first = (MaxOf(x1) + 3) >> 2;
  const int32_t end = MinOf(x2) >> 2;
  if (first >= end) {
    sums_.AddSpan(c, x1, x2);
    return;
  }
  if (MinOf(x1) < 4 * first) sums_.AddSpan(c, x1, SplatLanes(4 * first));
  FillPixels(c, opaque, first, end);
  if (MaxOf(x2) > 4 * end) sums_.AddSpan(c, SplatLanes(4 * end), x2);
}

// Draws whole pixels of a solid colour.
void RowPainter::FillPixels(PackedRGBI c, bool opaque, int32_t x1, int32_t x2) {
  CRaster* r = raster_;
  if (r->pixelFormat == pix24) {
    RGBI buf[kSlabPixels];
    while (x1 < x2) {
      const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
      if (!opaque) r->getBackground(r, x1, end, buf);
      for (int32_t i = 0; i < end - x1; i++) {
        buf[i] = UnpackRGBI(opaque ? c : OverPacked(c, PackRGBI(buf[i])));
      }
      r->drawRGBSlab(r, x1, end, buf);
      x1 = end;
    }
    return;
  }
  uint8_t* at = r->rowAddr + int64_t{4} * (x1 + r->xOffset);
  const uint32_t pixel = PackPix32(UnpackRGBI(c));
  if (opaque) {
    r->ops32->fill(at, x2 - x1, pixel);
  } else if (r->useBackground) {
    r->ops32->blendColor(at, x2 - x1, pixel);
  } else {
    r->ops32->fill(at, x2 - x1, PackPix32(UnpackRGBI(OverPacked(c, kWhiteBackground))));
  }
}

void RowPainter::PaintRow() {
  cover_ = SplatLanes(-1);
  for (const RowEvent& e : edges_) Apply(e);
}

// Clears what is still on: an unbalanced outline doesn't run on. Behind the last
// row the colours themselves keep it, as they do after a plain paint.
void RowPainter::EndRow(bool isLast) {
  for (int32_t i = on_.Top(kAllLanes); i >= 0; i = on_.Below(i, kAllLanes)) {
    Source& s = sources_[i];
    if (isLast && (on_.Get(i) >> (kLanes - 1)) != 0) {
      s.color->visible = s.counts != 0 ? static_cast<int8_t>(s.counts >> 24) : int8_t{1};
    }
    s.counts = 0;
    on_.Clear(i, kAllLanes);
  }
}

bool RowPainter::Paint(CRaster* raster) {
  raster_ = raster;
  if (!Prepare()) return false;
  const SRECT& clip = raster->edgeClip;
  for (int32_t y = clip.ymin; y < clip.ymax; y += kLanes) {
    if (!edges_.BuildRow(raster, y)) return true;
    if (edges_.Empty()) continue;
    raster->SetYCoord(y >> 2);
    PaintRow();
    if (!spans_.Empty()) spans_.Draw(raster, &sums_);
    sums_.Draw(raster);
    EndRow(y + kLanes >= clip.ymax);
  }
  return true;
}

}  // namespace vexel
