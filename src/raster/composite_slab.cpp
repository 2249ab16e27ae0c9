// Spans of several colours, or of one that lets the background through.
#include <algorithm>

#include "raster/composite.h"
#include "raster/pix32_slab.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

// Fills the pixels with what lies lowest. Returns how many colours remain to
// be composed onto it.
int32_t FillLowest(CRaster* raster, int32_t x1, int32_t x2, RColor** colors, int32_t n,
                   RGBI* pixels) {
  RColor* lowest = colors[n - 1];
  if (lowest->transparent) {
    raster->getBackground(raster, x1, x2, pixels);
    return n;
  }
  if (lowest->pattern != 0) {
    lowest->compositeSlabProc(lowest, x1, x2, pixels);
    ApplyRGBPattern(lowest->pattern, raster->bitY, x1, x2, pixels);
    return n - 1;
  }
  if (lowest->colorType != colorSolid) return n;  // its slab replaces what it finds
  // Solids over solids are one colour.
  RGBIWords c = LoadWords(&lowest->rgb);
  n--;
  while (n > 0 && colors[n - 1]->colorType == colorSolid && colors[n - 1]->pattern == 0) {
    c = CompositeWords(LoadWords(&colors[n - 1]->rgb), c);
    n--;
  }
  for (int32_t i = 0; i < x2 - x1; i++) StoreWords(c, pixels + i);
  return n;
}

}  // namespace

void CRaster::CompositeSlab(int32_t x1, int32_t x2, RColor** colors, int32_t n) {
  if (pixelFormat >= pix32 && std::all_of(colors, colors + n, HasPix32Slab)) {
    CompositePix32Slab(this, x1, x2, colors, n);
    return;
  }
  // Zeroed for sources that draw nothing.
  RGBI buf[kSlabPixels] = {};
  while (x1 < x2) {
    const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
    for (int32_t i = FillLowest(this, x1, end, colors, n, buf); i > 0; i--) {
      colors[i - 1]->compositeSlabProc(colors[i - 1], x1, end, buf);
    }
    drawRGBSlab(this, x1, end, buf);
    x1 = end;
  }
}

}  // namespace vexel
