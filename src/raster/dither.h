// Dithering of true-colour pixels to a palette, and the matrices it shares
// with the writers of 16-bit pixels.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

class CRaster;

// Values of CRaster::ditherKind, the index of ditherProcs.
enum DitherKind : int32_t { ditherNone = 0, ditherOrdered = 1, ditherErrorDiffusion = 2 };
inline constexpr int32_t kDitherKindCount = 3;

// Row y & 3, column x & 3: 0 to 7, for channels that lose 3 bits.
extern const uint8_t dither4x4[4][4];
// Row y & 7, column x & 7: 0 to 15, for channels that lose 4 bits.
extern const uint8_t dither8x8[8][8];
// Row y & 7, column x & 7: 0 or 7, breaks the patterns of error diffusion.
extern const uint8_t noise8x8[8][8];

// Turns the pixels x1 to x2 - 1 of the row bitY, the first of which is
// pixels[0], into palette indexes in out[0] and up, through the inverse table
// of the raster's palette. False if nothing was written (no memory).
using DitherProc = bool (*)(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels,
                            uint8_t* out);
bool DitherRGBSlabNone(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels, uint8_t* out);
bool DitherRGBSlabOrdered(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels,
                          uint8_t* out);
// Keeps its errors in the raster's error rows, which it allocates on first use
// in a paint.
bool DitherRGBSlabErrorDiffusion(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels,
                                 uint8_t* out);

// By ditherKind.
extern const DitherProc ditherProcs[kDitherKindCount];

}  // namespace vexel
