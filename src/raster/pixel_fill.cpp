// Fills of 32-bit pixels with one colour.
#include "raster/pixel_fill.h"

#include "raster/composite.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"

namespace vexel {

void FillPix32(uint8_t* at, int32_t n, uint32_t pixel) {
  for (int32_t i = 0; i < n; i++) Store32(at + 4 * i, pixel);
}

void BlendPix32(uint8_t* at, int32_t n, RGBI color) {
  const RGBIWords c = LoadWords(&color);
  for (int32_t i = 0; i < n; i++, at += 4) {
    RGBI pixel = UnpackPix32(Load32(at));
    StoreWords(CompositeWords(c, LoadWords(&pixel)), &pixel);
    Store32(at, PackPix32(pixel));
  }
}

}  // namespace vexel
