#include "raster/solid_slab.h"

#include <gtest/gtest.h>

#include "raster/format_table.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::RasterRow;

TEST(SolidSlab, OneBitSpanInsideAWordChangesOnlyItsBits) {
  RasterRow row(pix1, 64, test::StandardTable());
  std::memset(row.color.solid.pat, 0xFF, sizeof row.color.solid.pat);
  DrawSolidSlab1(&row.color, 35, 45);
  const std::vector<uint8_t> want = {0, 0, 0, 0, 0x1F, 0xF8, 0, 0};
  EXPECT_EQ(row.Row(), want);
  std::memset(row.color.solid.pat, 0, sizeof row.color.solid.pat);
  DrawSolidSlab1(&row.color, 36, 37);
  EXPECT_EQ(row.Row()[4], 0x17);
}

TEST(SolidSlab, EmptySpansDrawNothing) {
  test::Random random(30);
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    RasterRow row(format, 64, test::StandardTable());
    std::memset(row.color.solid.pat, 0xFF, sizeof row.color.solid.pat);
    pixelFormats[format].drawSolidSlab(&row.color, 7, 7);
    pixelFormats[format].drawSolidSlab(&row.color, 64, 64);
    for (const uint8_t byte : row.All()) ASSERT_EQ(byte, 0);
  }
}

TEST(SolidSlab, MatchesThePlainPatternInEachFormat) {
  test::Random random(31);
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    const int32_t depth = mapPixelFormatToDepth[format];
    for (int i = 0; i < 400; i++) {
      const auto offset = static_cast<int32_t>(Below(random, 4));
      RasterRow row(format, 140, test::StandardTable(), offset);
      row.Randomize(random);
      row.SetRow(static_cast<int32_t>(Below(random, 16)));
      row.raster.patYOrg = static_cast<int32_t>(Below(random, 9)) - 4;
      row.color.pattern = Below(random, 2);
      auto& pat = row.color.solid.pat;
      for (auto& line : pat) {
        for (uint8_t& b : line) b = static_cast<uint8_t>(random());
        // Without a pattern the colour has one value in the row.
        const int32_t bytes = depth / 8;
        if (row.color.pattern == 0 && depth > 8) {
          for (int32_t k = bytes; k < 4 * bytes; k++) line[k] = line[k - bytes];
        }
      }
      const auto x1 = static_cast<int32_t>(Below(random, 140));
      const auto x2 = x1 + static_cast<int32_t>(Below(random, static_cast<uint32_t>(141 - x1)));

      const uint8_t* line = pat[(row.raster.patYOrg + row.raster.bitY) & 3];
      auto want = row.Row();
      for (int32_t x = x1 + offset; x < x2 + offset; x++) {
        if (depth <= 8) {
          const int32_t perWord = 32 / depth;
          test::SetPacked(want.data(), x, depth, test::PackedAt(line, x % perWord, depth));
        } else {
          for (int32_t k = 0; k < depth / 8; k++) {
            want[static_cast<size_t>(x * depth / 8 + k)] = line[(x & 3) * depth / 8 + k];
          }
        }
      }
      const auto before = row.All();
      pixelFormats[format].drawSolidSlab(&row.color, x1, x2);
      ASSERT_EQ(row.Row(), want) << "format " << format << " from " << x1 << " to " << x2
                                 << " offset " << offset << " pattern " << row.color.pattern;
      // The rows around it stay.
      auto after = row.All();
      std::copy(before.begin() + row.raster.bitY * row.buffer.rowBytes,
                before.begin() + (row.raster.bitY + 1) * row.buffer.rowBytes,
                after.begin() + row.raster.bitY * row.buffer.rowBytes);
      ASSERT_EQ(after, before);
    }
  }
}

}  // namespace
}  // namespace vexel
