// Spans in buffers of 32 bits, put together in the buffer itself.
#pragma once

#include <cstdint>

namespace vexel {

class CRaster;
struct RColor;

// Whether spans of the colour can be built as 32-bit pixels.
bool HasPix32Slab(const RColor* c);

// Writes the colour's pixels x1 to x2 - 1, at most kSlabPixels, as 32-bit
// pixels to `at`. For bitmaps and gradients that HasPix32Slab.
void BuildPix32Slab(RColor* c, int32_t x1, int32_t x2, uint8_t* at);

// What CRaster::CompositeSlab does, for a 32-bit buffer and colours that all
// HasPix32Slab.
void CompositePix32Slab(CRaster* raster, int32_t x1, int32_t x2, RColor** colors, int32_t n);

}  // namespace vexel
