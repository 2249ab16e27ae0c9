#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "raster/bitmap_core.h"
#include "raster/pixel_format.h"
#include "raster/render_tables.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::PackedAt;
using test::Word;

class Bitmap {
 public:
  SBitmapCore bits;
  Bitmap(test::Random& random, int32_t format, int32_t width, int32_t height) {
    BuildRenderTables();
    const SColorTable table = test::RandomTable(random, 256);
    EXPECT_TRUE(bits.PICreate(format, width, height, &table, 0));
    for (int32_t i = 0; i < bits.rowBytes * height; i++) {
      bits.baseAddr[i] = static_cast<uint8_t>(random());
    }
  }
  ~Bitmap() { bits.PIFree(); }

  // The pixel as 0xAARRGGBB, the plain way; the position is clamped.
  uint32_t Plain(int32_t x, int32_t y) const {
    x = std::clamp(x, 0, bits.width - 1);
    y = std::clamp(y, 0, bits.height - 1);
    const uint8_t* row = bits.baseAddr + y * bits.rowBytes;
    const int32_t depth = SBitmapBitsPerPixel(bits.bmFormat);
    if (depth <= 8) return bits.cTab->colors[PackedAt(row, x, depth)];
    if (depth == 32) {
      return row[4 * x] | row[4 * x + 1] << 8 | row[4 * x + 2] << 16 |
             uint32_t{row[4 * x + 3]} << 24;
    }
    const uint32_t v = row[2 * x] | uint32_t{row[2 * x + 1]} << 8;
    return 0xFF000000u | pix16Expand[v >> 10 & 31] << 16 | pix16Expand[v >> 5 & 31] << 8 |
           pix16Expand[v & 31];
  }

  uint32_t At(int32_t x, int32_t y) const {
    RGBI out = {};
    bits.GetRGBPixel(x, y, &out);
    return Word(out);
  }

  uint32_t Sample(SFIXED x, SFIXED y) const {
    RGBI out = {};
    bits.GetSSRGBPixel(x, y, &out);
    return Word(out);
  }
};

TEST(BitmapSampling, OutsideCoordinatesGiveTheNearestEdgePixel) {
  test::Random random(1);
  const Bitmap bitmap(random, bm32Bit, 3, 2);
  EXPECT_EQ(bitmap.At(-1, 0), bitmap.Plain(0, 0));
  EXPECT_EQ(bitmap.At(3, 1), bitmap.Plain(2, 1));
  EXPECT_EQ(bitmap.At(1, -2000000000), bitmap.Plain(1, 0));
  EXPECT_EQ(bitmap.At(kInt32Max, kInt32Max), bitmap.Plain(2, 1));
  EXPECT_EQ(bitmap.At(kInt32Min, kInt32Min), bitmap.Plain(0, 0));
}

TEST(BitmapSampling, ReadsEachFormat) {
  test::Random random(2);
  for (int32_t format = 0; format < kBitmapFormatCount; format++) {
    const Bitmap bitmap(random, format, 37, 5);
    for (int32_t y = -1; y < 6; y++) {
      for (int32_t x = -1; x < 38; x++) {
        ASSERT_EQ(bitmap.At(x, y), bitmap.Plain(x, y)) << format << " " << x << " " << y;
      }
    }
  }
}

TEST(BitmapSampling, AnUnknownFormatLeavesThePixelAlone) {
  test::Random random(3);
  Bitmap bitmap(random, bm8Bit, 2, 2);
  for (const int32_t format : {-1, 6}) {
    bitmap.bits.bmFormat = format;
    RGBI out = {1, 2, 3, 4};
    bitmap.bits.GetRGBPixel(0, 0, &out);
    bitmap.bits.GetSSRGBPixel(0, 0, &out);
    EXPECT_EQ(Word(out), 0x04030201u);
  }
}

TEST(BitmapSampling, AWholePositionGivesThatPixelExactly) {
  test::Random random(4);
  for (int32_t format = 0; format < kBitmapFormatCount; format++) {
    const Bitmap bitmap(random, format, 6, 5);
    for (int32_t y = 0; y < 5; y++) {
      for (int32_t x = 0; x < 6; x++) {
        ASSERT_EQ(bitmap.Sample(x << 16, y << 16), bitmap.Plain(x, y)) << format;
      }
    }
  }
  EXPECT_EQ(PixCoverage[0][0][0], 8);
  EXPECT_EQ(PixCoverage[0][0][1] | PixCoverage[0][0][2] | PixCoverage[0][0][3], 0);
}

TEST(BitmapSampling, WeightsAreEighths) {
  BuildRenderTables();
  const int32_t middle[4] = {2, 2, 2, 2}, corner[4] = {6, 1, 1, 0};
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(PixCoverage[4][4][i], middle[i]);
    EXPECT_EQ(PixCoverage[1][1][i], corner[i]);
  }
}

TEST(BitmapSampling, InterpolatesWithClampedNeighbours) {
  test::Random random(5);
  for (int i = 0; i < 4000; i++) {
    const auto format = static_cast<int32_t>(Below(random, kBitmapFormatCount));
    const auto width = static_cast<int32_t>(1 + Below(random, 4));
    const auto height = static_cast<int32_t>(1 + Below(random, 4));
    const Bitmap bitmap(random, format, width, height);
    const auto x = static_cast<int32_t>(Below(random, 7 << 16)) - (1 << 16);
    const auto y = static_cast<int32_t>(Below(random, 7 << 16)) - (1 << 16);
    const int32_t* w = PixCoverage[x >> 13 & 7][y >> 13 & 7];
    uint32_t want = 0;
    for (int shift = 0; shift < 32; shift += 8) {
      uint32_t sum = 0;
      for (int k = 0; k < 4; k++) {
        const uint32_t p = bitmap.Plain((x >> 16) + (k & 1), (y >> 16) + (k >> 1));
        sum += static_cast<uint32_t>(w[k]) * (p >> shift & 255);
      }
      want |= (sum >> 3) << shift;
    }
    ASSERT_EQ(bitmap.Sample(x, y), want)
        << format << " " << width << "x" << height << " at " << x << " " << y;
  }
}

}  // namespace
}  // namespace vexel
