#include <gtest/gtest.h>

#include <vector>

#include "raster/format_table.h"
#include "raster/spans.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::RasterRow;
using test::Word;

// The pixel as 0xAARRGGBB, the plain way.
uint32_t PlainPixel(const RasterRow& row, int32_t format, int32_t x) {
  const int32_t at = x + row.raster.xOffset;
  const uint8_t* bytes = row.raster.rowAddr;
  const uint32_t v =
      format == pix16 || format == pix16A ? bytes[2 * at] | uint32_t{bytes[2 * at + 1]} << 8 : 0;
  switch (format) {
    case pix16:
      return 0xFF000000u | pix16Expand[v >> 10 & 31] << 16 | pix16Expand[v >> 5 & 31] << 8 |
             pix16Expand[v & 31];
    case pix16A: {
      const uint32_t g = v >> 5 & 63;
      return 0xFF000000u | pix16Expand[v >> 11] << 16 | (g == 0 ? 0 : 4 * g + 3) << 8 |
             pix16Expand[v & 31];
    }
    case pix24:
      return 0xFF000000u | uint32_t{bytes[3 * at + 2]} << 16 | uint32_t{bytes[3 * at + 1]} << 8 |
             bytes[3 * at];
    case pix32:
    case pix32A:
      return uint32_t{bytes[4 * at + 3]} << 24 | uint32_t{bytes[4 * at + 2]} << 16 |
             uint32_t{bytes[4 * at + 1]} << 8 | bytes[4 * at];
    default:
      return row.raster.cinfo->ctab
          .colors[test::PackedAt(bytes, at, mapPixelFormatToDepth[format])];
  }
}

TEST(BackgroundSpans, MatchThePlainPixelsInEachFormat) {
  test::Random random(8);
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    for (int i = 0; i < 60; i++) {
      const auto offset = static_cast<int32_t>(Below(random, 3) * 5);
      RasterRow row(format, 90, test::RandomTable(random, 256), offset);
      row.Randomize(random);
      row.SetRow(static_cast<int32_t>(Below(random, 16)));
      const auto x1 = static_cast<int32_t>(Below(random, 90));
      const auto x2 = x1 + static_cast<int32_t>(Below(random, static_cast<uint32_t>(91 - x1)));
      std::vector<RGBI> got(static_cast<size_t>(x2 - x1) + 1, RGBI{1, 2, 3, 4});
      pixelFormats[format].getBackground(&row.raster, x1, x2, got.data());
      for (int32_t x = x1; x < x2; x++) {
        ASSERT_EQ(Word(got[static_cast<size_t>(x - x1)]), PlainPixel(row, format, x))
            << "format " << format << " x " << x << " offset " << offset;
      }
      ASSERT_EQ(Word(got.back()), 0x04030201u);
    }
  }
}

TEST(BackgroundSpans, WhiteHasAnAlphaOfZero) {
  std::vector<RGBI> pixels(3);
  RasterRow row(pix32, 8, test::StandardTable());
  GetBackgroundWhite(&row.raster, 2, 4, pixels.data());
  EXPECT_EQ(Word(pixels[0]), 0x00FFFFFFu);
  EXPECT_EQ(Word(pixels[1]), 0x00FFFFFFu);
  EXPECT_EQ(Word(pixels[2]), 0u);
}

}  // namespace
}  // namespace vexel
