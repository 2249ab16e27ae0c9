// Whether a picture can be painted by rows, and its colours in order.
#include <algorithm>
#include <cstdlib>

#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/row_painter.h"

namespace vexel {
namespace {

// Whether no pixel of a bitmap of 32 bits, or of an opaque palette's 8, is see-
// through. A pixel that names a colour behind the palette's last is clear.
bool HasOnlyOpaquePixels(const SBitmapCore* b) {
  for (int32_t y = 0; y < b->height; y++) {
    const uint8_t* row = b->baseAddr + int64_t{y} * b->rowBytes;
    for (int32_t x = 0; x < b->width; x++) {
      if (b->bmFormat == bm8Bit ? row[x] >= b->cTab->n : row[4 * x + 3] != 255) return false;
    }
  }
  return true;
}

bool IsOpaqueBitmap(RColor* c) {
  const SBitmapCore* b = c->bm.bitmap;
  const RColorMap* map = c->bm.colorMap;
  if (map != nullptr && map->alpha[255] != 255) return false;
  if (b->bmFormat == bm16Bit) return true;
  if (b->bmFormat == bm8Bit && HasTransparent(b->cTab)) return false;
  if (c->bm.opacity == opacityUnknown) {
    c->bm.opacity = HasOnlyOpaquePixels(b) ? opacityFull : opacityPartial;
  }
  return c->bm.opacity == opacityFull;
}

// Whether the colour's pixels are the same whenever and with whatever others
// they are asked for. An opaque colour with see-through pixels is not: its
// kept value changes in some runs.
bool IsRegular(RColor* c) {
  if (c->visible != 0 || c->pattern != 0) return false;
  // Switches of both kinds on one colour depend on their order.
  if (c->ruleKinds != ruleKindToggle && c->ruleKinds != ruleKindCount) return false;
  switch (c->colorType) {
    case colorClip:
      return true;
    case colorGradient:
      return c->cacheValid && c->grad.colorRamp != nullptr && (c->transparent || c->grad.isOpaque);
    case colorBitmap:
      return c->cacheValid && c->bm.bltProc != BltXtoI && (c->transparent || IsOpaqueBitmap(c));
    default: {
      const RGBI& v = c->rgb;
      if ((v.red | v.green | v.blue | v.alpha) > 255) return false;
      return c->transparent || v.alpha == 255;
    }
  }
}

// Whether it shows if a pixel that the colour covers, and whose alpha adds up
// to nothing, is drawn or not. Drawing nothing over it changes it where the
// background reads as white and clear; and a channel brighter than its alpha
// shows in any case, and may carry into the alpha.
bool ShowsWhenClear(const RColor* c, bool useBackground) {
  if (!c->transparent) return false;
  switch (c->colorType) {
    case colorClip:
      return false;
    case colorGradient:
      return c->grad.hasClear && !useBackground;
    case colorBitmap:
      return true;
    default: {
      const RGBI& v = c->rgb;
      if (v.red > v.alpha || v.green > v.alpha || v.blue > v.alpha) return true;
      return v.alpha == 0 && !useBackground;
    }
  }
}

}  // namespace

int32_t RowPainter::ClipNumber(const RColor* clip) const {
  for (; IsClipColor(clip); clip = clip->clipColor) {
    const int32_t i = clip->rank;
    if (i >= 0 && i < nSources_ && sources_[i].color == clip) return i;
    // Required: a mask without an edge in this picture is as the last one left
    // it, which is on behind an outline that is not closed.
    if (clip->visible == 0) return kNeverOn;
  }
  return kUnclipped;
}

bool RowPainter::NumberColors() {
  RColor** colors = raster_->pictureColors;
  const int32_t n = raster_->nPictureColors;
  if (n > sourceRoom_) {
    std::free(sources_);
    sources_ = static_cast<Source*>(std::malloc(static_cast<size_t>(n) * sizeof(Source)));
    sourceRoom_ = sources_ != nullptr ? n : 0;
    if (sources_ == nullptr) return false;
  }
  std::sort(colors, colors + n,
            [](const RColor* a, const RColor* b) { return a->order < b->order; });
  for (int32_t i = 0; i < n; i++) colors[i]->rank = i;
  for (int32_t i = 0; i < n; i++) {
    RColor* c = colors[i];
    // Between colours of one order the one that is on first lies on top.
    if (i > 0 && colors[i - 1]->order == c->order) return false;
    if (!IsRegular(c)) return false;
    sources_[i] = {PackRGBI(c->rgb),
                   c,
                   0,
                   kUnclipped,
                   !c->transparent && c->clipColor == nullptr,
                   c->transparent,
                   c->colorType == colorSolid,
                   c->colorType == colorClip};
  }
  nSources_ = n;
  for (int32_t i = 0; i < n; i++) sources_[i].clip = ClipNumber(colors[i]->clipColor);
  return true;
}

bool RowPainter::Prepare() {
  if (!raster_->antialias || raster_->pixelFormat < pix24) return false;
  if (!raster_->pictureColorsKnown || !NumberColors()) return false;
  bool trackBreaks = false;
  for (int32_t i = 0; i < nSources_ && !trackBreaks; i++) {
    trackBreaks = ShowsWhenClear(sources_[i].color, raster_->useBackground);
  }
  // Only counts feel the order of edges that meet: at a meeting an outline that
  // is left open can go on as it was, or end a span and start anew, and what is
  // still on behind the last edge shows nothing.
  bool counts = false;
  for (int32_t i = 0; i < nSources_ && !counts; i++) {
    counts = sources_[i].color->ruleKinds == ruleKindCount;
  }
  edges_.Reset(counts);
  spans_.Clear();
  return on_.Reset(nSources_) && sums_.Reset(raster_->bits->width, trackBreaks);
}

}  // namespace vexel
