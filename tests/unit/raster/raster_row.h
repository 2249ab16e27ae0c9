// A raster that stands on one row of a buffer of its own, for tests of the
// routines that work on a row; and random pixels and palettes, seeded.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "raster/bit_buffer.h"
#include "raster/color_table.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel::test {

using Random = std::mt19937;

inline uint32_t Below(Random& random, uint32_t n) {
  return static_cast<uint32_t>(random() % n);
}

inline std::vector<RGBI> RandomPixels(Random& random, int32_t n) {
  std::vector<RGBI> pixels(static_cast<size_t>(n));
  for (RGBI& p : pixels) {
    p.blue = static_cast<uint16_t>(Below(random, 256));
    p.green = static_cast<uint16_t>(Below(random, 256));
    p.red = static_cast<uint16_t>(Below(random, 256));
    p.alpha = static_cast<uint16_t>(Below(random, 256));
  }
  return pixels;
}

inline SColorTable RandomTable(Random& random, int32_t n) {
  SColorTable table;
  table.n = n;
  for (int32_t i = 0; i < n; i++) table.colors[i] = static_cast<uint32_t>(random());
  return table;
}

inline SColorTable StandardTable() {
  SColorTable table;
  SetStandardColors(&table);
  return table;
}

class RasterRow {
 public:
  CBitBuffer buffer;
  CRaster raster;
  RColor color;

  // A row of `width` pixels, `xOffset` of them left of the buffer's edge.
  RasterRow(int32_t format, int32_t width, const SColorTable& table, int32_t xOffset = 0) {
    SColorInfo* info = CreateColorInfo(&table);
    EXPECT_TRUE(buffer.CreateBits(format, info, width + xOffset, kRows));
    ReleaseColorInfo(info);
    buffer.width = width;
    buffer.xOffset = xOffset;
    raster.Attach(&buffer, nullptr, false);
    color = {};
    color.SetUp(&raster);
    SetRow(0);
  }

  void SetRow(int32_t y) {
    raster.bitY = y;
    raster.rowAddr = buffer.baseAddr + y * buffer.rowBytes;
  }

  void SetDither(int32_t kind) {
    raster.ditherKind = kind;
    raster.ditherRGBSlab = ditherProcs[kind];
  }

  void Randomize(Random& random) {
    for (int32_t i = 0; i < kRows * buffer.rowBytes; i++) {
      buffer.baseAddr[i] = static_cast<uint8_t>(random());
    }
  }

  std::vector<uint8_t> Row() const { return {raster.rowAddr, raster.rowAddr + buffer.rowBytes}; }

  std::vector<uint8_t> All() const {
    return {buffer.baseAddr, buffer.baseAddr + kRows * buffer.rowBytes};
  }

 private:
  static constexpr int32_t kRows = 16;
};

inline bool operator==(const RGBI& a, const RGBI& b) {
  return a.blue == b.blue && a.green == b.green && a.red == b.red && a.alpha == b.alpha;
}

// 0xAARRGGBB, for messages that can be read.
inline uint32_t Word(const RGBI& p) {
  return uint32_t{p.alpha} << 24 | uint32_t{p.red} << 16 | uint32_t{p.green} << 8 | p.blue;
}

// The value of kBits bits at the pixel x of a packed row, the plain way.
inline uint32_t PackedAt(const uint8_t* row, int32_t x, int32_t bits) {
  uint32_t v = 0;
  for (int32_t i = x * bits; i < (x + 1) * bits; i++) {
    v = v << 1 | (static_cast<uint32_t>(row[i / 8]) >> (7 - i % 8) & 1);
  }
  return v;
}

inline void SetPacked(uint8_t* row, int32_t x, int32_t bits, uint32_t v) {
  for (int32_t i = 0; i < bits; i++) {
    const int32_t at = x * bits + i;
    const auto bit = static_cast<uint8_t>(128 >> (at % 8));
    if (v >> (bits - 1 - i) & 1) {
      row[at / 8] = static_cast<uint8_t>(row[at / 8] | bit);
    } else {
      row[at / 8] = static_cast<uint8_t>(row[at / 8] & ~bit);
    }
  }
}

}  // namespace vexel::test
