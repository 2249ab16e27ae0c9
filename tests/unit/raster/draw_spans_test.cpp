#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "raster/dither.h"
#include "raster/format_table.h"
#include "raster/spans.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::RasterRow;
using test::SetPacked;

// Draws a pixel the plain way into the bytes of the row.
void PlainPixel(const RasterRow& row, int32_t format, int32_t x, const RGBI& p,
                std::vector<uint8_t>* bytes) {
  const int32_t at = x + row.raster.xOffset;
  const int32_t y = row.raster.bitY;
  const auto put = [&](int32_t n, uint32_t v) {
    for (int32_t i = 0; i < n; i++) {
      (*bytes)[static_cast<size_t>(at * n + i)] = static_cast<uint8_t>(v >> 8 * i);
    }
  };
  const int d4 = dither4x4[y & 3][x & 3];
  const bool dithers = row.raster.ditherKind != ditherNone;
  switch (format) {
    case pix1:
    case pix2:
    case pix4:
    case pix8: {
      // Packed formats dither by the position in the row, xOffset included.
      const int d = !dithers ? 0 : dither8x8[y & 7][(format == pix8 ? x : at) & 7];
      const int32_t depth = mapPixelFormatToDepth[format];
      const uint8_t index =
          row.raster.cinfo
              ->itab[std::min((p.red + d) >> 4, 15) << 8 | std::min((p.green + d) >> 4, 15) << 4 |
                     std::min((p.blue + d) >> 4, 15)];
      SetPacked(bytes->data(), at, depth, index & ((1u << depth) - 1));
      break;
    }
    case pix16: {
      const int d = dithers ? d4 : 0;
      put(2, static_cast<uint32_t>(std::min((p.red + d) >> 3, 31) << 10 |
                                   std::min((p.green + d) >> 3, 31) << 5 |
                                   std::min((p.blue + d) >> 3, 31)));
      break;
    }
    case pix16A: {
      const int d = dithers ? d4 : 0;
      put(2, static_cast<uint32_t>(std::min((p.red + d) >> 3, 31) << 11 |
                                   std::min((p.green + d / 2) >> 2, 63) << 5 |
                                   std::min((p.blue + d) >> 3, 31)));
      break;
    }
    case pix24:
      put(3, test::Word(p));
      break;
    default:
      put(4, test::Word(p));
  }
}

TEST(DrawSpans, MatchThePlainPixelsInEachFormat) {
  test::Random random(4);
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    for (const int32_t kind : {ditherNone, ditherOrdered}) {
      for (int i = 0; i < 60; i++) {
        const auto offset = static_cast<int32_t>(Below(random, 3) * 5);
        RasterRow row(format, 300, test::RandomTable(random, 256), offset);
        row.SetDither(kind);
        row.Randomize(random);
        row.SetRow(static_cast<int32_t>(Below(random, 16)));
        const auto x1 = static_cast<int32_t>(Below(random, 300));
        const auto x2 = x1 + static_cast<int32_t>(Below(random, static_cast<uint32_t>(301 - x1)));
        auto pixels = test::RandomPixels(random, x2 - x1);
        auto want = row.Row();
        for (int32_t x = x1; x < x2; x++) {
          PlainPixel(row, format, x, pixels[static_cast<size_t>(x - x1)], &want);
        }
        pixelFormats[format].drawRGBSlab(&row.raster, x1, x2, pixels.data());
        ASSERT_EQ(row.Row(), want) << "format " << format << " dither " << kind << " y "
                                   << row.raster.bitY << " from " << x1 << " to " << x2;
      }
    }
  }
}

TEST(DrawSpans, FullChannelsSaturateWhenDithered) {
  RasterRow row(pix16A, 8, test::StandardTable());
  std::vector<RGBI> white(8, RGBI{255, 255, 255, 255});
  DrawRGBSlab16A(&row.raster, 0, 8, white.data());
  for (const uint8_t byte : row.Row()) EXPECT_EQ(byte, 0xFF);
}

TEST(DrawSpans, IndexesTooLargeForAFormatLoseTheirTopBits) {
  SColorTable table;
  table.n = 6;
  for (int i = 0; i < 5; i++) table.colors[i] = 0xFFFFFF;
  table.colors[5] = 0x000000;  // black is index 5, or 1 in two bits
  RasterRow row(pix2, 4, table);
  row.SetDither(ditherNone);
  std::vector<RGBI> black(4, RGBI{0, 0, 0, 255});
  DrawRGBSlab2(&row.raster, 0, 4, black.data());
  EXPECT_EQ(row.Row()[0], 0x55);
}

TEST(DrawSpans, PackedErrorDiffusionGoesOnOverLongSpans) {
  test::Random random(5);
  const SColorTable table = test::RandomTable(random, 16);
  const auto pixels = test::RandomPixels(random, 300);
  RasterRow packed(pix4, 300, table), bytes(pix8, 300, table);
  for (RasterRow* row : {&packed, &bytes}) {
    row->SetDither(ditherErrorDiffusion);
    auto slab = pixels;
    pixelFormats[row->buffer.pixelFormat].drawRGBSlab(&row->raster, 0, 300, slab.data());
  }
  for (int32_t x = 0; x < 300; x++) {
    ASSERT_EQ(test::PackedAt(packed.raster.rowAddr, x, 4), bytes.raster.rowAddr[x]) << x;
  }
}

bool DitherNothing(CRaster*, int32_t, int32_t, const RGBI*, uint8_t*) {
  return false;
}

TEST(DrawSpans, WithoutErrorRowsNothingIsDrawn) {
  test::Random random(6);
  for (int32_t format = pix1; format <= pix8; format++) {
    RasterRow row(format, 40, test::StandardTable());
    row.Randomize(random);
    row.raster.ditherRGBSlab = DitherNothing;
    const auto before = row.All();
    std::vector<RGBI> pixels(40);
    pixelFormats[format].drawRGBSlab(&row.raster, 0, 40, pixels.data());
    EXPECT_EQ(row.All(), before);
  }
}

}  // namespace
}  // namespace vexel
