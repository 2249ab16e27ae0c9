// Palettes: comparison, copying, and the standard colours.
#include "raster/color_table.h"

#include <cstring>

namespace vexel {

namespace {

constexpr uint32_t kRgbMask = 0xFFFFFF;
constexpr uint32_t kLevels = 6;      // of each channel of the standard colours
constexpr uint32_t kLevelStep = 51;  // 255 / 5

}  // namespace

bool ColorTableEqual(const SColorTable* a, const SColorTable* b) {
  if (a->n != b->n) return false;
  for (int32_t i = 0; i < a->n; i++) {
    if (((a->colors[i] ^ b->colors[i]) & kRgbMask) != 0) return false;
  }
  return true;
}

void ColorTableCopy(const SColorTable* src, SColorTable* dst) {
  dst->n = src->n;
  std::memcpy(dst->colors, src->colors, static_cast<size_t>(src->n) * sizeof(RGB8));
}

void SetStandardColors(SColorTable* table) {
  RGB8* entry = table->colors;
  for (uint32_t b = 0; b < kLevels; b++) {
    for (uint32_t g = 0; g < kLevels; g++) {
      for (uint32_t r = 0; r < kLevels; r++, entry++) {
        const uint32_t rgb = (r << 16 | g << 8 | b) * kLevelStep;
        *entry = (*entry & ~kRgbMask) | rgb;
      }
    }
  }
  table->n = kLevels * kLevels * kLevels;
}

}  // namespace vexel
