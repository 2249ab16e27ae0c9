#include "raster/bitmap_core.h"

#include <gtest/gtest.h>

#include <cstring>

#include "raster/color_table.h"

namespace vexel {
namespace {

TEST(BitmapCore, BitsPerPixelByFormat) {
  const int32_t want[] = {1, 2, 4, 8, 16, 32};
  for (int32_t f = 0; f < 6; f++) EXPECT_EQ(SBitmapBitsPerPixel(f), want[f]);
  EXPECT_EQ(SBitmapBitsPerPixel(6), 0);
  EXPECT_EQ(SBitmapBitsPerPixel(-1), 0);
}

TEST(BitmapCore, RowsAreFourByteAligned) {
  const struct {
    int32_t format, width, rowBytes;
  } cases[] = {
      {0, 1, 4}, {0, 32, 4}, {0, 33, 8}, {1, 16, 4}, {1, 17, 8}, {2, 8, 4},  {2, 9, 8}, {3, 4, 4},
      {3, 5, 8}, {4, 1, 4},  {4, 2, 4},  {4, 3, 8},  {5, 1, 4},  {5, 3, 12}, {6, 9, 0}, {-1, 9, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(SBitmapCalcRowbytes(c.format, c.width), c.rowBytes) << c.format << " " << c.width;
  }
}

TEST(BitmapCore, TransparencyLooksAtCountedEntriesOnly) {
  SColorTable table;
  EXPECT_FALSE(HasTransparent(nullptr));
  EXPECT_FALSE(HasTransparent(&table));
  table.n = 2;
  table.colors[0] = table.colors[1] = 0xFF000000;
  EXPECT_FALSE(HasTransparent(&table));  // entry 2 has alpha 0, and does not count
  table.colors[1] = 0xFE000000;
  EXPECT_TRUE(HasTransparent(&table));
}

TEST(BitmapCore, SwapsWholeGroupsOfFourBytesOnly) {
  uint8_t data[6] = {1, 2, 3, 4, 5, 6};
  SBitmapSwapBits(data, 6, bm16Bit);
  const uint8_t want[6] = {2, 1, 4, 3, 5, 6};
  EXPECT_EQ(std::memcmp(data, want, 6), 0);
}

TEST(BitmapCore, SwapsWordsAndLeavesOtherFormatsAlone) {
  uint8_t data[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  SBitmapSwapBits(data, 8, bm8Bit);
  EXPECT_EQ(data[0], 1);
  SBitmapSwapBits(data, 8, bm32Bit);
  const uint8_t want[8] = {4, 3, 2, 1, 8, 7, 6, 5};
  EXPECT_EQ(std::memcmp(data, want, 8), 0);
  SBitmapSwapBits(data, 8, 6);
  SBitmapSwapBits(data, -4, bm32Bit);
  EXPECT_EQ(std::memcmp(data, want, 8), 0);
}

TEST(BitmapCore, CreateCopiesThePaletteAndZeroesPixels) {
  SColorTable table;
  table.n = 3;
  table.colors[2] = 0x80112233;
  SBitmapCore bits;
  bits.PIInit();
  ASSERT_TRUE(bits.PICreate(bm4Bit, 9, 2, &table, 0));
  EXPECT_EQ(bits.rowBytes, 8);
  EXPECT_EQ(bits.cTab->n, 3);
  EXPECT_EQ(bits.cTab->colors[2], 0x80112233u);
  EXPECT_EQ(bits.cTab->colors[3], 0u);
  EXPECT_TRUE(bits.transparent);
  EXPECT_EQ(bits.useCount, 0);
  for (int i = 0; i < 16; i++) EXPECT_EQ(bits.baseAddr[i], 0);
  bits.PIFree();
  EXPECT_EQ(bits.baseAddr, nullptr);
  EXPECT_EQ(bits.cTab, nullptr);
  bits.PIFree();
}

TEST(BitmapCore, TheTransparencyArgumentIsNotRead) {
  SBitmapCore bits;
  ASSERT_TRUE(bits.PICreate(bm32Bit, 1, 1, nullptr, 1));
  EXPECT_FALSE(bits.transparent);
  EXPECT_EQ(bits.cTab, nullptr);
  bits.PIFree();
}

TEST(BitmapCore, AMissingPaletteIsAnEmptyOne) {
  SBitmapCore bits;
  ASSERT_TRUE(bits.PICreate(bm8Bit, 1, 1, nullptr, 0));
  EXPECT_EQ(bits.cTab->n, 0);
  bits.PIFree();
}

TEST(BitmapCore, RefusesImpossibleSizes) {
  const struct {
    int32_t format, width, height;
  } cases[] = {{5, 0, 1},     {5, 1, 0}, {5, -1, 1}, {5, 1, -7},      {5, 32768, 1},
               {3, 1, 32768}, {6, 1, 1}, {-1, 1, 1}, {5, 1 << 30, 1}, {5, 32767, 32767}};
  for (const auto& c : cases) {
    SBitmapCore bits;
    EXPECT_FALSE(bits.PICreate(c.format, c.width, c.height, nullptr, 0))
        << c.format << " " << c.width << " " << c.height;
    bits.PIFree();
  }
}

}  // namespace
}  // namespace vexel
