// Spans and single pixels of colours, plainly. The raster stands on the row.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/rcolor.h"

namespace vexel::plain {

// One pixel over another, in two words of two channels each.
RGBI Over(RGBI top, RGBI below);

// The mean of a sum of 2 to the power of n pixels.
RGBI Mean(RGBI sum, int n);

// Draws pixels of one opaque colour into the buffer.
void DrawSlab(RColor* c, int32_t x1, int32_t x2);

// Draws pixels of colours, topmost first, over the background.
void CompositeSlab(CRaster* raster, int32_t x1, int32_t x2, const std::vector<RColor*>& colors);

// Sets c->rgb, if the colour isn't solid, to its value at a pixel.
void CalcPixel(RColor* c, int32_t x);

}  // namespace vexel::plain
