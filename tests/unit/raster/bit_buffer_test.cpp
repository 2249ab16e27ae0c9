#include "raster/bit_buffer.h"

#include <gtest/gtest.h>

#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

class BitBuffer : public testing::Test {
 protected:
  void SetUp() override {
    const SColorTable table = test::StandardTable();
    info = CreateColorInfo(&table);
  }
  void TearDown() override { ReleaseColorInfo(info); }
  SColorInfo* info;
  CBitBuffer buffer;
};

TEST_F(BitBuffer, StartsWithoutBits) {
  EXPECT_FALSE(buffer.BitsValid());
  EXPECT_EQ(buffer.cinfo, nullptr);
  EXPECT_FALSE(buffer.bitsAreForeign);
  buffer.FreeBits();
}

TEST_F(BitBuffer, RowsOfOneBitAtWidth33TakeEightBytes) {
  ASSERT_TRUE(buffer.CreateBits(pix1, info, 33, 1));
  EXPECT_EQ(buffer.rowBytes, 8);
}

TEST_F(BitBuffer, RowsOf24BitsAtWidth3TakeTwelveBytes) {
  ASSERT_TRUE(buffer.CreateBits(pix24, nullptr, 3, 1));
  EXPECT_EQ(buffer.rowBytes, 12);
}

TEST_F(BitBuffer, DepthsAndZeroedRowsOfEachFormat) {
  const int32_t depths[] = {1, 2, 4, 8, 16, 16, 24, 32, 32};
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    ASSERT_TRUE(buffer.CreateBits(format, info, 5, 3));
    EXPECT_EQ(buffer.depth, depths[format]);
    EXPECT_EQ(buffer.pixelFormat, format);
    EXPECT_EQ(buffer.rowBytes % 4, 0);
    EXPECT_GE(buffer.rowBytes * 8, 5 * depths[format]);
    for (int32_t i = 0; i < 3 * buffer.rowBytes; i++) ASSERT_EQ(buffer.baseAddr[i], 0);
  }
}

TEST_F(BitBuffer, HoldsOneReferenceToItsPalette) {
  ASSERT_TRUE(buffer.CreateBits(pix8, info, 1, 1));
  EXPECT_EQ(info->refCount, 2);
  ASSERT_TRUE(buffer.CreateBits(pix8, info, 2, 2));
  EXPECT_EQ(info->refCount, 2);
  buffer.FreeBits();
  EXPECT_EQ(info->refCount, 1);
  EXPECT_FALSE(buffer.BitsValid());
}

TEST_F(BitBuffer, KeepsTheEarlierPaletteIfNoneIsGiven) {
  ASSERT_TRUE(buffer.CreateBits(pix8, info, 1, 1));
  ASSERT_TRUE(buffer.CreateBits(pix8, nullptr, 2, 2));
  EXPECT_EQ(buffer.cinfo, info);
  EXPECT_EQ(info->refCount, 2);
}

TEST_F(BitBuffer, PaletteFormatsNeedAPalette) {
  for (const int32_t format : {pix1, pix2, pix4, pix8}) {
    EXPECT_FALSE(buffer.CreateBits(format, nullptr, 1, 1));
    EXPECT_FALSE(buffer.BitsValid());
  }
  EXPECT_TRUE(buffer.CreateBits(pix16, nullptr, 1, 1));
}

TEST_F(BitBuffer, RefusesSidesAndFormatsOutOfRange) {
  EXPECT_FALSE(buffer.CreateBits(pix32, info, 0, 1));
  EXPECT_FALSE(buffer.CreateBits(pix32, info, 1, 0));
  EXPECT_FALSE(buffer.CreateBits(pix32, info, 8192, 1));
  EXPECT_FALSE(buffer.CreateBits(pix32, info, 1, -5));
  EXPECT_FALSE(buffer.CreateBits(9, info, 1, 1));
  EXPECT_FALSE(buffer.CreateBits(-1, info, 1, 1));
  EXPECT_EQ(info->refCount, 1);
  EXPECT_TRUE(buffer.CreateBits(pix1, info, 8191, 1));
  EXPECT_FALSE(buffer.CreateBits(pix1, info, 8192, 1));
  EXPECT_FALSE(buffer.BitsValid());
}

TEST_F(BitBuffer, AllowPurgeIsKept) {
  buffer.AllowPurge(1);
  EXPECT_TRUE(buffer.allowPurge);
  buffer.AllowPurge(0);
  EXPECT_FALSE(buffer.allowPurge);
}

TEST_F(BitBuffer, ForeignBitsAreNotFreed) {
  uint8_t bits[4] = {};
  buffer.baseAddr = bits;
  buffer.bitsAreForeign = true;
  buffer.FreeBits();
  EXPECT_FALSE(buffer.BitsValid());
  EXPECT_FALSE(buffer.bitsAreForeign);
}

}  // namespace
}  // namespace vexel
