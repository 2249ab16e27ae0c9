// The reader of movie bytes.
#include "movie/sparser.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "author/writer.h"
#include "player/text.h"

namespace vexel {
namespace {

using author::BitWriter;
using author::Bytes;

SParser Over(const Bytes& bytes, int32_t start = 0) {
  return SParser(bytes.data(), static_cast<int32_t>(bytes.size()), start);
}

// The bit reader as one would write it down first, held against the fast one.
struct PlainBits {
  const Bytes& bytes;
  size_t pos = 0;
  uint32_t bitBuf = 0;
  int32_t bitPos = 0;

  uint32_t Get(int32_t n) {
    uint64_t result = 0;
    int32_t s = n - bitPos;
    while (s > 0) {
      result |= s < 32 ? uint64_t{bitBuf} << s : 0;
      n = s;
      bitBuf = pos < bytes.size() ? bytes[pos++] : 0;
      bitPos = 8;
      s = n - bitPos;
    }
    result |= bitBuf >> (bitPos - n);
    bitPos -= n;
    bitBuf &= (1u << bitPos) - 1;
    return static_cast<uint32_t>(result);
  }
};

TEST(SParser, BitsComeMostSignificantFirst) {
  const Bytes bytes = {0b10110010, 0b01000000};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetBits(1), 1u);
  EXPECT_EQ(parser.GetBits(3), 0b011u);
  EXPECT_EQ(parser.GetBits(6), 0b001001u);
  EXPECT_EQ(parser.pos, 2);
}

TEST(SParser, NoBitsReadNothing) {
  const Bytes bytes = {0xFF, 0xFF};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetBits(0), 0u);
  EXPECT_EQ(parser.GetSBits(0), 0);
  EXPECT_EQ(parser.pos, 0);
  parser.GetBits(3);
  EXPECT_EQ(parser.GetBits(0), 0u);
  EXPECT_EQ(parser.bitPos, 5);
}

TEST(SParser, SignedBitsCopyTheTopBitUpward) {
  const Bytes bytes = {0b10001111, 0xFF, 0xFF, 0xFF, 0xFF};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetSBits(4), -8);
  EXPECT_EQ(parser.GetSBits(1), -1);
  EXPECT_EQ(parser.GetSBits(32), -1);
}

TEST(SParser, ByteReadsDropTheRestOfABitByte) {
  const Bytes bytes = {0b10000000, 7};
  SParser parser = Over(bytes);
  parser.GetBits(1);
  EXPECT_EQ(parser.GetByte(), 7);
  parser.InitBits();
  EXPECT_EQ(parser.GetBits(8), 0u);
}

TEST(SParser, NumbersAreLittleEndian) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetByte(), 1);
  EXPECT_EQ(parser.GetWord(), 0x0302);
  EXPECT_EQ(parser.GetDWord(), 0x07060504u);
}

TEST(SParser, MoreThan32BitsKeepTheLowOnes) {
  const Bytes bytes = {0xAB, 0x12, 0x34, 0x56, 0x78, 0x9A};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetBits(40), 0x12345678u);
  EXPECT_EQ(parser.GetBits(8), 0x9Au);
}

TEST(SParser, FastBitsEqualPlainBits) {
  std::mt19937 random(20);
  for (int round = 0; round < 400; ++round) {
    Bytes bytes(random() % 40);
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
    PlainBits plain{bytes};
    SParser fast = Over(bytes);
    for (int read = 0; read < 60; ++read) {
      const int32_t n = static_cast<int32_t>(random() % (round % 8 == 0 ? 64 : 33));
      ASSERT_EQ(fast.GetBits(n), plain.Get(n)) << "round " << round << " read " << read;
      ASSERT_EQ(fast.bitPos, plain.bitPos);
      ASSERT_EQ(fast.bitBuf, plain.bitBuf);
      ASSERT_EQ(fast.pos, static_cast<int32_t>(plain.pos));
      if (random() % 16 == 0) {
        fast.InitBits();
        plain.bitPos = 0;
        plain.bitBuf = 0;
      }
    }
  }
}

TEST(SParser, ReadsPastTheEndGiveZerosAndStayThere) {
  const Bytes bytes = {0xFF, 0xEE, 0xDD};
  SParser parser = Over(bytes, 2);
  EXPECT_EQ(parser.GetWord(), 0xDD);
  EXPECT_EQ(parser.pos, 3);
  EXPECT_EQ(parser.GetDWord(), 0u);
  EXPECT_EQ(parser.GetByte(), 0);
  EXPECT_EQ(parser.GetBits(31), 0u);
  EXPECT_EQ(parser.GetSBits(17), 0);
  EXPECT_EQ(parser.pos, 3);
  SParser none;
  EXPECT_EQ(none.GetDWord(), 0u);
  EXPECT_EQ(none.GetTag(100), -1);
  EXPECT_STREQ(none.GetStringP(), "");
}

TEST(SParser, DataIsCutAtTheTagAndAtTheEnd) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6};
  uint8_t out[8] = {};
  SParser parser = Over(bytes);
  parser.tagEnd = 4;
  EXPECT_EQ(parser.GetData(out, 3), 3);
  EXPECT_EQ(parser.GetData(out, 8), 1);
  EXPECT_EQ(out[0], 4);
  EXPECT_EQ(parser.GetData(out, 8), 0);
  parser.tagEnd = kNoTagEnd;
  EXPECT_EQ(parser.GetData(out, 8), 2);
  parser.pos = 5;
  parser.tagEnd = 1;
  EXPECT_EQ(parser.GetData(out, 8), 0);
  EXPECT_EQ(parser.GetData(out, -1), 0);
  EXPECT_EQ(parser.pos, 5);
}

TEST(SParser, TextsEndAtTheirNul) {
  const Bytes bytes = {'a', 'b', 0, 0, 'c', 'd'};
  SParser parser = Over(bytes);
  EXPECT_STREQ(parser.GetStringP(), "ab");
  EXPECT_EQ(parser.pos, 3);
  EXPECT_STREQ(parser.GetStringP(), "");
  EXPECT_EQ(parser.pos, 4);
  // No NUL before the end of the data.
  EXPECT_STREQ(parser.GetStringP(), "");
  EXPECT_EQ(parser.pos, 6);
}

TEST(SParser, CopiedTextsAreCutAtTheEndOfTheData) {
  const Bytes bytes = {'a', 0, 0, 'c', 'd'};
  SParser parser = Over(bytes);
  for (const char* expected : {"a", "", "cd", ""}) {
    char* text = parser.GetString();
    EXPECT_STREQ(text, expected);
    FreeStr(text);
  }
}

TEST(SParser, ColorsWithoutAlphaAreOpaque) {
  const Bytes bytes = {10, 20, 30, 40, 50, 60, 70};
  SParser parser = Over(bytes);
  RGBI rgb;
  parser.GetColor(&rgb, false);
  EXPECT_EQ(rgb.red, 10);
  EXPECT_EQ(rgb.green, 20);
  EXPECT_EQ(rgb.blue, 30);
  EXPECT_EQ(rgb.alpha, 255);
  const SRGB color = parser.GetColor(true);
  EXPECT_EQ(color.red, 40);
  EXPECT_EQ(color.green, 50);
  EXPECT_EQ(color.blue, 60);
  EXPECT_EQ(color.alpha, 70);
}

TEST(SParser, RectanglesComeLeftRightTopBottom) {
  BitWriter out;
  author::WriteRect(out, {-5, 100, 7, -200}, 12);
  SParser parser = Over(out.bytes());
  SRECT rect;
  parser.GetRect(&rect);
  EXPECT_EQ(rect.xmin, -5);
  EXPECT_EQ(rect.xmax, 100);
  EXPECT_EQ(rect.ymin, 7);
  EXPECT_EQ(rect.ymax, -200);
  EXPECT_EQ(parser.pos, static_cast<int32_t>(out.size()));
}

TEST(SParser, MatrixPairsAreOptional) {
  const author::Matrix full = {0x18000, -300, 500, -0x9000, 40, -60};
  for (int scale = 0; scale < 2; ++scale) {
    for (int rotate = 0; rotate < 2; ++rotate) {
      author::Matrix expected = full;
      if (!scale) expected.a = expected.d = 0x10000;
      if (!rotate) expected.b = expected.c = 0;
      BitWriter out;
      author::WriteMatrix(out, expected, {.scale = scale, .rotate = rotate});
      SParser parser = Over(out.bytes());
      MATRIX m;
      parser.GetMatrix(&m);
      EXPECT_EQ(m.a, expected.a);
      EXPECT_EQ(m.b, expected.b);
      EXPECT_EQ(m.c, expected.c);
      EXPECT_EQ(m.d, expected.d);
      EXPECT_EQ(m.tx, expected.tx);
      EXPECT_EQ(m.ty, expected.ty);
    }
  }
}

TEST(SParser, MatrixWithBothFlagsClearStillReadsItsTranslation) {
  BitWriter out;
  out.Bits(0, 2);
  out.Bits(9, 5);
  out.SBits(-200, 9);
  out.SBits(255, 9);
  out.Align();
  out.Bits(0, 2);
  out.Bits(0, 5);
  out.Align();
  SParser parser = Over(out.bytes());
  MATRIX m;
  parser.GetMatrix(&m);
  EXPECT_EQ(m.a, 0x10000);
  EXPECT_EQ(m.tx, -200);
  EXPECT_EQ(m.ty, 255);
  EXPECT_EQ(parser.pos, 4);
  parser.GetMatrix(&m);
  EXPECT_EQ(m.tx, 0);
  EXPECT_EQ(m.ty, 0);
  EXPECT_EQ(parser.pos, 5);
}

TEST(SParser, ColorTransformWithoutAlphaLeavesAlphaAlone) {
  author::Cxform cxform;
  cxform.redMul = 100;
  cxform.greenMul = -3;
  cxform.blueMul = 256;
  cxform.redAdd = -255;
  cxform.blueAdd = 12;
  BitWriter out;
  author::WriteCxform(out, cxform, false, {.flags = 3});
  SParser parser = Over(out.bytes());
  ColorTransform read;
  parser.GetColorTransform(&read, false);
  EXPECT_EQ(read.flags, 3);
  EXPECT_EQ(read.aa, 256);
  EXPECT_EQ(read.ab, 0);
  EXPECT_EQ(read.ra, 100);
  EXPECT_EQ(read.ga, -3);
  EXPECT_EQ(read.ba, 256);
  EXPECT_EQ(read.rb, -255);
  EXPECT_EQ(read.gb, 0);
  EXPECT_EQ(read.bb, 12);
}

TEST(SParser, ColorTransformTermsAreOptional) {
  author::Cxform cxform;
  cxform.alphaMul = 128;
  cxform.alphaAdd = 7;
  for (int flags = 0; flags < 4; ++flags) {
    BitWriter out;
    author::Cxform given = cxform;
    if (!(flags & 1)) given.alphaMul = 256;
    if (!(flags & 2)) given.alphaAdd = 0;
    author::WriteCxform(out, given, true, {.flags = flags});
    SParser parser = Over(out.bytes());
    ColorTransform read;
    parser.GetColorTransform(&read, true);
    EXPECT_EQ(read.flags, flags);
    EXPECT_EQ(read.aa, flags & 1 ? 128 : 256);
    EXPECT_EQ(read.ab, flags & 2 ? 7 : 0);
    EXPECT_EQ(read.ga, 256);
    EXPECT_EQ(read.gb, 0);
  }
}

TEST(SParser, ShortLength62IsAPlainLength) {
  Bytes bytes = {62 | (9 & 3) << 6, 9 >> 2};
  bytes.resize(2 + 62);
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetTag(64), 9);
  EXPECT_EQ(parser.pos, 2);
  EXPECT_EQ(parser.tagEnd, 64);
  EXPECT_EQ(parser.tagPos, 0);
}

TEST(SParser, ShortLength63SelectsTheLongForm) {
  Bytes bytes = {63 | (9 & 3) << 6, 9 >> 2, 3, 0, 0, 0, 1, 2, 3};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetTag(9), 9);
  EXPECT_EQ(parser.pos, 6);
  EXPECT_EQ(parser.tagEnd, 9);
}

TEST(SParser, IncompleteTagsAreNotConsumed) {
  const Bytes bytes = {63 | (9 & 3) << 6, 9 >> 2, 3, 0, 0, 0, 1, 2, 3};
  SParser parser = Over(bytes);
  for (int32_t limit = 0; limit < 9; ++limit) {
    EXPECT_EQ(parser.GetTag(limit), -1);
    EXPECT_EQ(parser.pos, 0);
    EXPECT_EQ(parser.tagPos, 0);
  }
  EXPECT_EQ(parser.GetTag(9), 9);
}

TEST(SParser, TagsEndWithTheDataWhateverTheLimitSays) {
  const Bytes bytes = {5, 0, 1, 2, 3, 4};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetTag(kNoTagLimit), -1);
}

TEST(SParser, LengthWithTheTopBitSetHasNotArrived) {
  const Bytes bytes = {63, 0, 0xFA, 0xFF, 0xFF, 0xFF, 0, 0};
  SParser parser = Over(bytes);
  EXPECT_EQ(parser.GetTag(8), -1);
  EXPECT_EQ(parser.pos, 0);
}

}  // namespace
}  // namespace vexel
