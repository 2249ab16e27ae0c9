#include "author/bit_writer.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(BitWriter, WritesLittleEndianNumbers) {
  BitWriter out;
  out.U8(0x12);
  out.U16(0x3456);
  out.U32(0x789ABCDE);
  out.S16(-2);
  EXPECT_EQ(out.bytes(), (Bytes{0x12, 0x56, 0x34, 0xDE, 0xBC, 0x9A, 0x78, 0xFE, 0xFF}));
}

TEST(BitWriter, FillsBytesFromTheHighestBit) {
  BitWriter out;
  out.Bits(1, 1);
  out.Bits(0, 1);
  out.Bits(0x15, 5);
  out.SBits(-1, 3);
  EXPECT_EQ(out.bytes(), (Bytes{0b10101011, 0b11000000}));
}

TEST(BitWriter, ABytePadsTheOpenOneWithZeros) {
  BitWriter out;
  out.Bits(1, 1);
  EXPECT_FALSE(out.aligned());
  out.U8(7);
  EXPECT_TRUE(out.aligned());
  EXPECT_EQ(out.bytes(), (Bytes{0x80, 7}));
}

TEST(BitWriter, ATextEndsInAZero) {
  BitWriter out;
  out.Text("ab");
  EXPECT_EQ(out.bytes(), (Bytes{'a', 'b', 0}));
}

TEST(BitWriter, RefusesValuesThatDoNotFitAndStaysAsItWas) {
  BitWriter out;
  EXPECT_THROW(out.U8(256), std::range_error);
  EXPECT_THROW(out.U16(65536), std::range_error);
  EXPECT_THROW(out.S16(32768), std::range_error);
  EXPECT_THROW(out.Bits(4, 2), std::range_error);
  EXPECT_THROW(out.SBits(2, 2), std::range_error);
  EXPECT_THROW(out.SBits(-3, 2), std::range_error);
  EXPECT_THROW(out.Bits(0, 33), std::range_error);
  EXPECT_EQ(out.size(), 0u);
}

TEST(BitWriter, FieldsOfNoBitsHoldZeroOnly) {
  BitWriter out;
  out.Bits(0, 0);
  out.SBits(0, 0);
  EXPECT_EQ(out.size(), 0u);
  EXPECT_THROW(out.Bits(1, 0), std::range_error);
}

TEST(BitWriter, WidthsAreTheSmallestThatHold) {
  EXPECT_EQ(UnsignedWidth(0), 0);
  EXPECT_EQ(UnsignedWidth(1), 1);
  EXPECT_EQ(UnsignedWidth(255), 8);
  EXPECT_EQ(UnsignedWidth(256), 9);
  EXPECT_EQ(SignedWidth(0), 0);
  EXPECT_EQ(SignedWidth(-1), 1);
  EXPECT_EQ(SignedWidth(1), 2);
  EXPECT_EQ(SignedWidth(-2), 2);
  EXPECT_EQ(SignedWidth(127), 8);
  EXPECT_EQ(SignedWidth(-128), 8);
  EXPECT_EQ(SignedWidth(128), 9);
  EXPECT_EQ(SignedWidth(INT32_MIN), 32);
}

TEST(BitWriter, PatchesNumbersInPlace) {
  BitWriter out;
  out.U32(0);
  out.U8(9);
  out.Patch32(0, 0x01020304);
  out.Patch16(2, 0xAABB);
  EXPECT_EQ(out.bytes(), (Bytes{4, 3, 0xBB, 0xAA, 9}));
  EXPECT_THROW(out.Patch16(4, 0), std::range_error);
}

TEST(BitWriter, RandomFieldsReadBack) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    BitWriter out;
    std::vector<std::pair<int32_t, int>> fields;
    for (int i = 0; i < 50; ++i) {
      const int width = static_cast<int>(random() % 33);
      const auto value =
          width == 0 ? 0
                     : static_cast<int32_t>(static_cast<uint32_t>(random()) << (32 - width)) >>
                           (32 - width);
      fields.emplace_back(value, width);
      out.SBits(value, width);
    }
    Reader in(out.bytes());
    for (const auto& [value, width] : fields) ASSERT_EQ(in.SBits(width), value) << width;
  }
}

}  // namespace
}  // namespace vexel::author
