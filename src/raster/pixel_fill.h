// Fills of 32-bit pixels with one colour.
#pragma once

#include <cstdint>

#include "geometry/color.h"
#include "raster/row_sums.h"

namespace vexel {

// The background where it isn't read: white with an alpha of 0.
inline constexpr PackedRGBI kWhiteBackground = 0x000000FF00FF00FF;

// Stores n times the pixel.
void FillPix32(uint8_t* at, int32_t n, uint32_t pixel);

// Composes a premultiplied colour, channels up to 255, onto n pixels.
void BlendPix32(uint8_t* at, int32_t n, RGBI color);

}  // namespace vexel
