#include "author/records.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

Matrix ReadMatrix(Reader& in) {
  Matrix matrix;
  in.Align();
  if (in.Bits(1)) {
    const int bits = static_cast<int>(in.Bits(5));
    matrix.a = in.SBits(bits);
    matrix.d = in.SBits(bits);
  }
  if (in.Bits(1)) {
    const int bits = static_cast<int>(in.Bits(5));
    matrix.b = in.SBits(bits);
    matrix.c = in.SBits(bits);
  }
  const int bits = static_cast<int>(in.Bits(5));
  matrix.tx = in.SBits(bits);
  matrix.ty = in.SBits(bits);
  in.Align();
  return matrix;
}

TEST(Records, ARectangleStandsLeftRightTopBottom) {
  BitWriter out;
  WriteRect(out, {0, 2, -1, 1});
  // 5 bits of width 3, then 000 010 111 001.
  EXPECT_EQ(out.bytes(), (Bytes{0b00011000, 0b01011100, 0b10000000}));
}

TEST(Records, ARectangleTakesAForcedWidth) {
  BitWriter out;
  WriteRect(out, {0, 1, 0, 1}, 13);
  EXPECT_EQ(out.size(), 8u);  // 5 + 52 bits
  Reader in(out.bytes());
  EXPECT_EQ(in.Bits(5), 13u);
  in.SBits(13);
  EXPECT_EQ(in.SBits(13), 1);
}

TEST(Records, AWidthTooSmallIsRefused) {
  BitWriter out;
  EXPECT_THROW(WriteRect(out, {0, 100, 0, 0}, 3), std::range_error);
}

TEST(Records, TheIdentityIsOneByte) {
  BitWriter out;
  WriteMatrix(out, {});
  EXPECT_EQ(out.bytes(), (Bytes{0}));
}

TEST(Records, AMatrixCanBeWrittenInFull) {
  BitWriter out;
  MatrixForm form;
  form.scale = 1;
  form.rotate = 1;
  form.rotateBits = 4;
  form.translateBits = 7;
  WriteMatrix(out, {}, form);
  Reader in(out.bytes());
  EXPECT_EQ(in.Bits(1), 1u);
  EXPECT_EQ(in.Bits(5), 18u);
  EXPECT_EQ(in.SBits(18), kOne);
  EXPECT_EQ(in.SBits(18), kOne);
  EXPECT_EQ(in.Bits(1), 1u);
  EXPECT_EQ(in.Bits(5), 4u);
  in.Bits(8);
  EXPECT_EQ(in.Bits(5), 7u);
}

TEST(Records, RandomMatricesReadBack) {
  std::mt19937 random(2);
  const auto value = [&] {
    return static_cast<int32_t>(static_cast<uint32_t>(random())) >> (1 + random() % 31);
  };
  for (int i = 0; i < 1000; ++i) {
    Matrix matrix{value(), value(), value(), value(), value(), value()};
    if (i % 3 == 0) matrix.b = matrix.c = 0;
    if (i % 5 == 0) matrix.a = matrix.d = kOne;
    BitWriter out;
    WriteMatrix(out, matrix);
    Reader in(out.bytes());
    ASSERT_EQ(ReadMatrix(in), matrix);
    ASSERT_TRUE(in.done());
  }
}

TEST(Records, AColourTransformWritesWhatDiffers) {
  BitWriter out;
  WriteCxform(out, Cxform::Alpha(0.5), true);
  // 01, width 10, then 256 256 256 128.
  Reader in(out.bytes());
  EXPECT_EQ(in.Bits(2), 1u);
  EXPECT_EQ(in.Bits(4), 10u);
  for (int mul : {256, 256, 256, 128}) EXPECT_EQ(in.SBits(10), mul);
  EXPECT_TRUE(in.done());
}

TEST(Records, AColourTransformWithoutAlphaHasThreeChannels) {
  Cxform cxform;
  cxform.redAdd = -5;
  cxform.alphaAdd = 100;
  BitWriter out;
  WriteCxform(out, cxform, false);
  Reader in(out.bytes());
  EXPECT_EQ(in.Bits(2), 2u);
  EXPECT_EQ(in.Bits(4), 4u);
  for (int add : {-5, 0, 0}) EXPECT_EQ(in.SBits(4), add);
  EXPECT_TRUE(in.done());
}

TEST(Records, AClearColourTransformIsOneByte) {
  BitWriter out;
  WriteCxform(out, {}, true);
  EXPECT_EQ(out.bytes(), (Bytes{0}));
}

TEST(Records, AColourTransformTakesForcedFlagsAndWidth) {
  BitWriter out;
  WriteCxform(out, {}, true, {.flags = 3, .bits = 12});
  EXPECT_EQ(out.size(), 13u);  // 6 + 8 * 12 bits
  EXPECT_THROW(WriteCxform(out, {.redAdd = 20000}, true), std::range_error);
}

TEST(Records, ATintMixesTowardItsColour) {
  const Cxform tint = Cxform::Tint({200, 100, 0}, 0.5);
  EXPECT_EQ(tint.redMul, 128);
  EXPECT_EQ(tint.redAdd, 100);
  EXPECT_EQ(tint.greenAdd, 50);
  EXPECT_EQ(tint.alphaMul, 256);
}

TEST(Records, AGradientBoxMapsTheSquareOntoTheBox) {
  const Matrix matrix = Matrix::GradientBox({0, 32768, 100, 16484});
  EXPECT_EQ(matrix.a, kOne);
  EXPECT_EQ(matrix.d, kOne / 2);
  EXPECT_EQ(matrix.tx, 16384);
  EXPECT_EQ(matrix.ty, 8292);
}

}  // namespace
}  // namespace vexel::author
