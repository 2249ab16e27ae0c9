// Reading of single pixels of a bitmap, of each format, at whole positions and
// in between.
#include "raster/bitmap_core.h"
#include "raster/color_table.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"
#include "raster/render_tables.h"

namespace vexel {

namespace {

// How the packed formats find a pixel, by bmFormat.
constexpr int32_t rbShifts[] = {3, 2, 1, 0};     // from x to its byte
constexpr uint32_t pxMasks[] = {1, 3, 15, 255};  // of a pixel's value
constexpr int32_t stMasks[] = {7, 3, 1, 0};      // from x to the place in its byte
constexpr uint8_t shiftTab1[] = {7, 6, 5, 4, 3, 2, 1, 0};
constexpr uint8_t shiftTab2[] = {6, 4, 2, 0};
constexpr uint8_t shiftTab4[] = {4, 0};
constexpr uint8_t shiftTab8[] = {0};
constexpr const uint8_t* shiftTabs[] = {shiftTab1, shiftTab2, shiftTab4, shiftTab8};

constexpr int32_t Clamp(int32_t v, int32_t last) {
  return v < 0 ? 0 : v > last ? last : v;
}

// The pixel at (x, y), which lies in the bitmap, of a known format.
RGBI PixelAt(const SBitmapCore& bits, int32_t x, int32_t y) {
  const uint8_t* row = bits.baseAddr + y * bits.rowBytes;
  if (bits.bmFormat == bm32Bit) return UnpackPix32(Load32(row + 4 * x));
  if (bits.bmFormat == bm16Bit) return UnpackPix16(Load16(row + 2 * x));
  const int32_t f = bits.bmFormat;
  const uint32_t byte = row[x >> rbShifts[f]];
  return UnpackPix32(bits.cTab->colors[byte >> shiftTabs[f][x & stMasks[f]] & pxMasks[f]]);
}

bool HasKnownFormat(const SBitmapCore& bits) {
  return bits.bmFormat >= 0 && bits.bmFormat < kBitmapFormatCount;
}

// Moves the weight of the line outside, `from`, to the line that is read.
void Fold(int32_t* to, int32_t* from) {
  *to += *from;
  *from = 0;
}

}  // namespace

void SBitmapCore::GetRGBPixel(int32_t x, int32_t y, RGBI* out) const {
  if (!HasKnownFormat(*this)) return;
  *out = PixelAt(*this, Clamp(x, width - 1), Clamp(y, height - 1));
}

void SBitmapCore::GetSSRGBPixel(SFIXED x, SFIXED y, RGBI* out) const {
  if (!HasKnownFormat(*this)) return;
  int32_t px = Asr(x, 16);
  int32_t py = Asr(y, 16);
  const int32_t* coverage = PixCoverage[Asr(x, 13) & 7][Asr(y, 13) & 7];
  int32_t w[4] = {coverage[0], coverage[1], coverage[2], coverage[3]};

  if (px < 0) {
    px = 0;
    Fold(&w[0], &w[1]);
    Fold(&w[2], &w[3]);
  }
  if (px >= width - 1) {
    px = width - 2;
    Fold(&w[1], &w[0]);
    Fold(&w[3], &w[2]);
  }
  if (py < 0) {
    py = 0;
    Fold(&w[0], &w[2]);
    Fold(&w[1], &w[3]);
  }
  if (py >= height - 1) {
    py = height - 2;
    Fold(&w[2], &w[0]);
    Fold(&w[3], &w[1]);
  }

  // Of a side of one pixel, px or py is -1 here, and its line has no weight.
  const int32_t x0 = Clamp(px, width - 1), y0 = Clamp(py, height - 1);
  const RGBI p[4] = {PixelAt(*this, x0, y0), PixelAt(*this, px + 1, y0), PixelAt(*this, x0, py + 1),
                     PixelAt(*this, px + 1, py + 1)};
  uint32_t blueGreen = 0, redAlpha = 0;  // two channels a word, sums up to 8 * 255
  for (int i = 0; i < 4; i++) {
    const auto weight = static_cast<uint32_t>(w[i]);
    blueGreen += weight * (p[i].blue | uint32_t{p[i].green} << 16);
    redAlpha += weight * (p[i].red | uint32_t{p[i].alpha} << 16);
  }
  blueGreen = blueGreen >> 3 & 0xFF00FF;
  redAlpha = redAlpha >> 3 & 0xFF00FF;
  *out = {static_cast<uint16_t>(blueGreen), static_cast<uint16_t>(blueGreen >> 16),
          static_cast<uint16_t>(redAlpha), static_cast<uint16_t>(redAlpha >> 16)};
}

}  // namespace vexel
