// Spans in buffers of 32 bits. A pixel of 32 bits holds all that an RGBI of a
// slab does, so the detour over those is left out.
#include "raster/pix32_slab.h"

#include "raster/blit.h"
#include "raster/composite.h"
#include "raster/pix32_ops.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

// The solid of the stack's lowest colours, and how many of them it takes in.
uint32_t LowestSolid(RColor** colors, int32_t n, int32_t* taken) {
  RGBIWords c = LoadWords(&colors[n - 1]->rgb);
  *taken = 1;
  while (*taken < n && colors[n - 1 - *taken]->colorType == colorSolid) {
    c = CompositeWords(LoadWords(&colors[n - 1 - *taken]->rgb), c);
    ++*taken;
  }
  RGBI pixel;
  StoreWords(c, &pixel);
  return PackPix32(pixel);
}

}  // namespace

bool HasPix32Slab(const RColor* c) {
  if (c->pattern != 0) return false;
  switch (c->colorType) {
    case colorSolid:
      return (c->rgb.red | c->rgb.green | c->rgb.blue | c->rgb.alpha) <= 255;
    case colorBitmap:
      return c->cacheValid && c->bm.bltProc != BltXtoI;
    case colorGradient:
      return c->cacheValid && c->grad.colorRamp != nullptr;
    default:
      return false;
  }
}

void BuildPix32Slab(RColor* c, int32_t x1, int32_t x2, uint8_t* at) {
  if (c->colorType == colorGradient) {
    BuildPix32GradientSlab(c, x1, x2, at);
    return;
  }
  if (c->bm.bltProc == Blt32toI && c->bm.colorMap == nullptr) {
    BuildPix32BitmapSlab(c, x1, x2, at);
    return;
  }
  RGBI buf[kSlabPixels];
  BuildBitmapSlab(c, x1, x2, buf);
  for (int32_t i = 0; i < x2 - x1; i++) Store32(at + 4 * i, PackPix32(buf[i]));
}

void CompositePix32Slab(CRaster* raster, int32_t x1, int32_t x2, RColor** colors, int32_t n) {
  const Pix32Ops& ops = *raster->ops32;
  while (x1 < x2) {
    const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
    const int32_t count = end - x1;
    uint8_t* at = raster->rowAddr + int64_t{4} * (x1 + raster->xOffset);
    int32_t left = n;
    if (colors[n - 1]->transparent) {
      if (!raster->useBackground) ops.fill(at, count, kWhitePixel);
    } else if (colors[n - 1]->colorType == colorSolid) {
      int32_t taken;
      ops.fill(at, count, LowestSolid(colors, n, &taken));
      left -= taken;
    } else {
      BuildPix32Slab(colors[n - 1], x1, end, at);
      left--;
    }
    for (; left > 0; left--) {
      RColor* c = colors[left - 1];
      if (c->colorType == colorSolid) {
        ops.blendColor(at, count, PackPix32(c->rgb));
      } else {
        uint8_t pixels[4 * kSlabPixels];
        BuildPix32Slab(c, x1, end, pixels);
        ops.blend(at, pixels, count);
      }
    }
    x1 = end;
  }
}

}  // namespace vexel
