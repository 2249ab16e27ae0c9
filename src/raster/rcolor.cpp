// The life of a colour's cache.
#include "raster/rcolor.h"

#include "raster/color_map.h"
#include "raster/format_table.h"
#include "raster/raster.h"
#include "raster/slabs.h"
#include "raster/solid_pattern.h"

namespace vexel {
namespace {

// A pixel that no buffer has, so that the first request computes.
constexpr uint32_t kNoPixel = 0x80008000;

void BuildColorMap(RColor* c) {
  const ColorTransform& t = c->bm.cxform;
  c->bm.colorMap = nullptr;
  if (t.flags == 0) return;
  auto* map = static_cast<RColorMap*>(c->raster->mapAlloc.Alloc());
  if (map == nullptr) return;
  map->hasAlpha = t.aa < 256 || t.ab < 0 || c->transparent;
  BuildMapChannel(t.ra, t.rb, map->red);
  BuildMapChannel(t.ga, t.gb, map->green);
  BuildMapChannel(t.ba, t.bb, map->blue);
  BuildMapChannel(t.aa, t.ab, map->alpha);
  map->alpha[0] = 0;  // nothing to divide by there
  c->bm.colorMap = map;
}

void CacheBitmap(RColor* c) {
  SBitmapCore* bitmap = c->bm.bitmap;
  const bool usable = bitmap != nullptr && bitmap->baseAddr != nullptr && bitmap->width > 0 &&
                      bitmap->height > 0 && bitmap->bmFormat >= 0 &&
                      bitmap->bmFormat < kBitmapFormatCount &&
                      (bitmap->bmFormat >= bm16Bit || bitmap->cTab != nullptr);
  if (!usable) {
    c->drawSlabProc = DrawDitherSlab;
    c->compositeSlabProc = CompositeSolidSlab;
    c->colorType = colorSolid;
    return;
  }
  const CRaster* raster = c->raster;
  c->drawSlabProc = DrawBitmapSlab;
  c->compositeSlabProc = c->transparent ? CompositeBitmapSlab : BuildBitmapSlab;
  bitmap->useCount++;
  c->bm.blt = {c,
               c->bm.invMat.a,
               c->bm.invMat.b,
               bitmap->baseAddr,
               bitmap->rowBytes,
               bitmap->cTab != nullptr ? bitmap->cTab->colors : nullptr,
               bitmap->width,
               bitmap->height,
               raster->cinfo != nullptr ? raster->cinfo->itab : nullptr};
  BuildColorMap(c);
  c->bm.directBltProc = nullptr;
  c->bm.smooth = false;
  c->bm.opacity = opacityUnknown;
  c->bm.bltProc = bltProcs[bitmap->bmFormat];
  if (c->pattern != 0 || c->bm.colorMap != nullptr) return;
  // Error diffusion needs the neighbours' errors, which only pixels pass on.
  if (raster->pixelFormat == pix8 && raster->ditherKind > ditherOrdered) return;
  c->bm.directBltProc = pixelFormats[raster->pixelFormat].directBlt[bitmap->bmFormat];
}

int32_t MixChannel(int32_t prev, int32_t next, int32_t w1, int32_t w0) {
  const int32_t sum = w1 + w0;
  if (sum <= 0) return prev;
  const int32_t v = (prev * w1 + next * w0) / sum;
  return v < 0 ? 0 : v > 255 ? 255 : v;  // stops in falling order overshoot
}

void BuildRamp(const GradColorRamp& stops, uint32_t* out) {
  const int32_t nStops = stops.nColors < kMaxGradientStops ? stops.nColors : kMaxGradientStops;
  SRGB prev = stops.color[0];
  SRGB next = prev;
  int32_t prevRatio = 0;
  int32_t nextRatio = stops.colorRatio[0];
  int32_t j = 1;
  for (int32_t i = 0; i < kRampEntries; i++) {
    if (i > nextRatio) {
      prevRatio = nextRatio;
      prev = next;
      if (j < nStops) {
        next = stops.color[j];
        nextRatio = stops.colorRatio[j];
        j++;
      } else {
        nextRatio = 256;
      }
    }
    const int32_t w1 = nextRatio - i;
    const int32_t w0 = i - prevRatio;
    const int32_t alpha = MixChannel(prev.alpha, next.alpha, w1, w0);
    int32_t red = MixChannel(prev.red, next.red, w1, w0);
    int32_t green = MixChannel(prev.green, next.green, w1, w0);
    int32_t blue = MixChannel(prev.blue, next.blue, w1, w0);
    if (alpha == 0) {
      red = green = blue = 0;
    } else if (alpha < 255) {
      red = red * (alpha + 1) >> 8;
      green = green * (alpha + 1) >> 8;
      blue = blue * (alpha + 1) >> 8;
    }
    out[i] = static_cast<uint32_t>(alpha) << 24 | static_cast<uint32_t>(red) << 16 |
             static_cast<uint32_t>(green) << 8 | static_cast<uint32_t>(blue);
  }
}

// False if there is no memory for the ramp.
bool CacheGradient(RColor* c) {
  c->drawSlabProc = DrawGradientSlab;
  c->compositeSlabProc = c->transparent ? CompositeGradientSlab : BuildGradientSlab;
  c->grad.colorRamp = static_cast<uint32_t*>(c->raster->rampAlloc.Alloc());
  if (c->grad.colorRamp == nullptr) {
    c->drawSlabProc = DrawDitherSlab;
    c->compositeSlabProc = CompositeSolidSlab;
    return false;
  }
  BuildRamp(c->grad.ramp, c->grad.colorRamp);
  c->grad.isOpaque = true;
  c->grad.hasClear = false;
  for (int32_t i = 0; i < kRampEntries; i++) {
    const uint32_t alpha = c->grad.colorRamp[i] >> 24;
    c->grad.isOpaque = c->grad.isOpaque && alpha == 255;
    c->grad.hasClear = c->grad.hasClear || alpha == 0;
  }
  return true;
}

// False if the colour goes to the dither pixel by pixel and has no cache.
bool CacheSolid(RColor* c) {
  const CRaster* raster = c->raster;
  c->drawSlabProc = pixelFormats[raster->pixelFormat].drawSolidSlab;
  c->compositeSlabProc = CompositeSolidSlab;
  if (c->pattern == 0 && raster->solidDither == 2) {
    c->drawSlabProc = DrawDitherSlab;
    return false;
  }
  BuildSolidPattern(c);
  return true;
}

}  // namespace

void RColor::SetUp(CRaster* r) {
  raster = r;
  nextActive = nullptr;
  next = nullptr;
  clipColor = nullptr;
  visible = 0;
  transparent = false;
  colorType = colorSolid;
  cacheValid = false;
  pattern = 0;
  rank = 0;
  ruleKinds = 0;
}

void RColor::BuildCache() {
  if (cacheValid) return;
  cacheKey = kNoPixel;
  switch (colorType) {
    case colorClip:
      break;
    case colorBitmap:
      CacheBitmap(this);
      break;
    case colorGradient:
      if (!CacheGradient(this)) return;
      break;
    default:
      if (!CacheSolid(this)) return;
      break;
  }
  cacheValid = true;
}

void RColor::FreeCache() {
  if (!cacheValid) return;
  cacheValid = false;
  if (colorType == colorBitmap) {
    bm.bitmap->useCount--;
    if (bm.colorMap != nullptr) raster->mapAlloc.Free(bm.colorMap);
    bm.colorMap = nullptr;
  } else if (colorType == colorGradient) {
    if (grad.colorRamp != nullptr) raster->rampAlloc.Free(grad.colorRamp);
    grad.colorRamp = nullptr;
  }
}

}  // namespace vexel
