// Colour transforms as tables.
#include "raster/color_map.h"

#include "raster/rcolor.h"

namespace vexel {

void BuildMapChannel(int32_t mul, int32_t add, uint8_t* out) {
  // Both numbers come from 16-bit fields, so nothing overflows.
  for (int32_t i = 0; i < 256; i++) {
    const int32_t v = add * 256 + i * mul;
    if (static_cast<uint32_t>(v) < 0x10000) {
      out[i] = static_cast<uint8_t>(v >> 8);
    } else {
      out[i] = v > 0 ? 255 : 0;
    }
  }
}

void ApplyColorMap(const RColorMap* map, RGBI* pixel) {
  if (!map->hasAlpha) {
    *pixel = {map->blue[pixel->blue & 255], map->green[pixel->green & 255],
              map->red[pixel->red & 255], map->alpha[pixel->alpha & 255]};
    return;
  }
  const uint32_t m = map->alpha[pixel->alpha & 255];
  if (m == 0) {  // as it always is for an alpha of 0
    *pixel = {};
    return;
  }
  // Out of the premultiplication, through the table, and back with the new
  // alpha. A channel brighter than its alpha counts as full.
  const uint32_t u = 0xFF00u / pixel->alpha;
  const auto channel = [u, m](const uint8_t* table, uint32_t c) {
    const uint32_t i = c * u >> 8;
    return static_cast<uint16_t>(table[i < 255 ? i : 255] * (m + 1) >> 8);
  };
  *pixel = {channel(map->blue, pixel->blue), channel(map->green, pixel->green),
            channel(map->red, pixel->red), static_cast<uint16_t>(m)};
}

void ApplyColorMap(const RColorMap* map, RGBI* pixels, int32_t n) {
  for (int32_t i = 0; i < n; i++) ApplyColorMap(map, pixels + i);
}

}  // namespace vexel
