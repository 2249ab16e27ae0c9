#include "raster/dither.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "raster/bit_buffer.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::RasterRow;

std::vector<uint8_t> Dither(RasterRow& row, DitherProc proc, int32_t x1,
                            const std::vector<RGBI>& pixels) {
  std::vector<uint8_t> out(pixels.size());
  EXPECT_TRUE(
      proc(&row.raster, x1, x1 + static_cast<int32_t>(pixels.size()), pixels.data(), out.data()));
  return out;
}

uint8_t Lookup(const RasterRow& row, int r, int g, int b) {
  return row.raster.cinfo->itab[r << 8 | g << 4 | b];
}

int Saturate(int v) {
  return std::clamp(v >> 4, 0, 15);
}

TEST(Dither, NoneCutsToFourBits) {
  test::Random random(1);
  RasterRow row(pix8, 64, test::StandardTable());
  const auto pixels = test::RandomPixels(random, 64);
  const auto got = Dither(row, DitherRGBSlabNone, 0, pixels);
  for (size_t i = 0; i < 64; i++) {
    EXPECT_EQ(got[i], Lookup(row, pixels[i].red / 16, pixels[i].green / 16, pixels[i].blue / 16));
  }
}

TEST(Dither, OrderedAddsTheThresholdAndSaturates) {
  test::Random random(2);
  RasterRow row(pix8, 64, test::StandardTable());
  for (int32_t y = 0; y < 16; y++) {
    row.SetRow(y);
    const auto pixels = test::RandomPixels(random, 50);
    const auto got = Dither(row, DitherRGBSlabOrdered, 5, pixels);
    for (size_t i = 0; i < pixels.size(); i++) {
      const int d = dither8x8[y & 7][(i + 5) & 7];
      EXPECT_EQ(got[i], Lookup(row, Saturate(pixels[i].red + d), Saturate(pixels[i].green + d),
                               Saturate(pixels[i].blue + d)));
    }
  }
}

TEST(Dither, MatricesHaveTheirOddEntries) {
  // No permutations: 8 stands twice in the first row and 15 comes late.
  EXPECT_EQ(dither8x8[0][1], 8);
  EXPECT_EQ(dither8x8[0][3], 8);
  EXPECT_EQ(dither8x8[7][7], 8);
  int sum = 0;
  for (const auto& line : dither8x8) {
    for (const uint8_t v : line) sum += v;
  }
  EXPECT_EQ(sum, 480);
  sum = 0;
  for (const auto& line : dither4x4) {
    for (const uint8_t v : line) sum += v;
  }
  EXPECT_EQ(sum, 56);
}

// Error diffusion over a whole picture with maps of errors, the plain way.
class PlainDiffusion {
 public:
  PlainDiffusion(const RasterRow& r, int32_t w)
      : row_(r), width_(w), here_(3 * (static_cast<size_t>(w) + 2)), below_(here_.size()) {}

  std::vector<uint8_t> Line(int32_t y, const std::vector<RGBI>& pixels) {
    std::vector<uint8_t> out;
    for (int32_t x = 0; x < width_; x++) {
      const RGBI p = pixels[static_cast<size_t>(x)];
      const int channels[3] = {p.red, p.green, p.blue};
      int v[3], cell[3];
      for (int c = 0; c < 3; c++) {
        v[c] = channels[c] + At(here_, x, c);
        cell[c] = std::clamp((v[c] + noise8x8[y & 7][x & 7]) >> 4, 0, 15);
      }
      const uint8_t index = Lookup(row_, cell[0], cell[1], cell[2]);
      out.push_back(index);
      const uint32_t color = row_.raster.cinfo->ctab.colors[index];
      for (int c = 0; c < 3; c++) {
        const int e = v[c] - static_cast<int>(color >> (16 - 8 * c) & 255);
        At(here_, x + 1, c) += e >> 1;
        At(below_, x - 1, c) += e >> 2;
        At(below_, x, c) += e >> 2;
      }
    }
    here_.swap(below_);
    std::fill(below_.begin(), below_.end(), 0);
    return out;
  }

 private:
  static int& At(std::vector<int>& errors, int32_t x, int c) {
    return errors[static_cast<size_t>(3 * (x + 1) + c)];
  }
  const RasterRow& row_;
  int32_t width_;
  std::vector<int> here_, below_;
};

TEST(Dither, ErrorDiffusionMatchesThePlainOneOverRows) {
  test::Random random(3);
  for (const int32_t colors : {2, 5, 200}) {
    RasterRow row(pix8, 61, test::RandomTable(random, colors));
    PlainDiffusion plain(row, 61);
    for (int32_t y = 0; y < 16; y++) {
      row.raster.SetYCoord(y);
      const auto pixels = test::RandomPixels(random, 61);
      const auto want = plain.Line(y, pixels);
      EXPECT_EQ(Dither(row, DitherRGBSlabErrorDiffusion, 0, pixels), want) << y;
    }
  }
}

TEST(Dither, ErrorDiffusionRoundsTowardMinusInfinity) {
  // One palette colour, a step brighter than what is drawn: the error of -1
  // never dies out.
  SColorTable table;
  table.n = 1;
  table.colors[0] = 0x010101;
  RasterRow row(pix8, 12, table);
  const std::vector<RGBI> pixels(12, RGBI{0, 0, 0, 255});
  Dither(row, DitherRGBSlabErrorDiffusion, 0, pixels);
  const int32_t* here = row.raster.errorThis + 3;
  const int32_t* below = row.raster.errorNext + 3;
  EXPECT_EQ(here[3 * 1], -1);  // -1 >> 1, not 0
  EXPECT_EQ(here[3 * 2], -1);  // (-1 - 1) >> 1
  EXPECT_EQ(here[3 * 11], -1);
  EXPECT_EQ(below[-3], -1);  // the margin
  EXPECT_EQ(below[0], -2);
}

TEST(Dither, ErrorRowsHaveAMarginAndBelongToOnePaint) {
  RasterRow row(pix8, 10, test::StandardTable());
  ASSERT_EQ(row.raster.errorBuf, nullptr);
  Dither(row, DitherRGBSlabErrorDiffusion, 0, std::vector<RGBI>(10));
  EXPECT_EQ(row.raster.errorRowSize, (3 * 10 + 6) * 4);
  EXPECT_EQ(row.raster.errorSize, 2 * row.raster.errorRowSize);
  EXPECT_EQ(row.raster.errorThis, row.raster.errorBuf);
  EXPECT_EQ(row.raster.errorNext, row.raster.errorBuf + 36);
}

TEST(Dither, TheTableFollowsTheKinds) {
  EXPECT_EQ(ditherProcs[ditherNone], DitherRGBSlabNone);
  EXPECT_EQ(ditherProcs[ditherOrdered], DitherRGBSlabOrdered);
  EXPECT_EQ(ditherProcs[ditherErrorDiffusion], DitherRGBSlabErrorDiffusion);
}

}  // namespace
}  // namespace vexel
