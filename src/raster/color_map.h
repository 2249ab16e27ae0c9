// Colour transforms as tables, for the pixels of bitmaps.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

struct RColorMap;

// Fills out[256] with i * mul / 256 + add, held to 0..255.
void BuildMapChannel(int32_t mul, int32_t add, uint8_t* out);

// Sends premultiplied pixels through the map.
void ApplyColorMap(const RColorMap* map, RGBI* pixel);
void ApplyColorMap(const RColorMap* map, RGBI* pixels, int32_t n);

}  // namespace vexel
