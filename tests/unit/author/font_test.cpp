#include "author/font.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

Font TwoGlyphs() {
  Font font;
  font.name = "Ab";
  Glyph a;
  a.code = 'a';
  a.advance = 500;
  Glyph b;
  b.code = 'b';
  b.advance = -3;
  b.outline = {ShapeRecord::LineBy({7, 7})};
  font.glyphs = {a, b};
  return font;
}

TEST(Font, TheFirstFormIsOffsetsAndOutlines) {
  BitWriter out;
  WriteFont(out, TwoGlyphs());
  Reader in(out.bytes());
  EXPECT_EQ(in.U16(), 4u);
  EXPECT_EQ(in.U16(), 6u);  // an empty outline has two bytes
  EXPECT_EQ(in.U16(), 0x0010u);
  EXPECT_EQ(in.U8(), 0x10u);
}

TEST(Font, TheSecondFormHasCodesAndLayoutBehindTheOutlines) {
  Font font = TwoGlyphs();
  font.flags = kFontAnsi | kFontHasLayout | kFontBold;
  font.ascent = 900;
  font.descent = 200;
  font.leading = -10;
  font.behind = {0xEE};
  BitWriter out;
  WriteFont2(out, font);
  Reader in(out.bytes());
  EXPECT_EQ(in.U16(), 0x91u);
  EXPECT_EQ(in.U8(), 2u);
  EXPECT_EQ(in.U8(), uint32_t('A'));
  EXPECT_EQ(in.U8(), uint32_t('b'));
  EXPECT_EQ(in.U16(), 2u);
  const size_t data = in.pos();
  EXPECT_EQ(in.U16(), 6u);
  EXPECT_EQ(in.U16(), 8u);
  Reader codes(out.bytes(), data + in.U16());
  EXPECT_EQ(codes.U8(), uint32_t('a'));
  EXPECT_EQ(codes.U8(), uint32_t('b'));
  EXPECT_EQ(codes.S16(), 900);
  EXPECT_EQ(codes.S16(), 200);
  EXPECT_EQ(codes.S16(), -10);
  EXPECT_EQ(codes.S16(), 500);
  EXPECT_EQ(codes.S16(), -3);
  EXPECT_EQ(codes.U8(), 0xEEu);
  EXPECT_TRUE(codes.done());
}

TEST(Font, OffsetsAndCodesCanBeWide) {
  Font font = TwoGlyphs();
  font.flags = kFontWideOffsets | kFontWideCodes;
  font.glyphs[1].code = 0x1234;
  BitWriter out;
  WriteFont2(out, font);
  Reader in(out.bytes(), 7);
  EXPECT_EQ(in.U32(), 12u);
  EXPECT_EQ(in.U32(), 14u);
  Reader codes(out.bytes(), 7 + in.U32());
  EXPECT_EQ(codes.U16(), uint32_t('a'));
  EXPECT_EQ(codes.U16(), 0x1234u);
  EXPECT_TRUE(codes.done());
}

TEST(Font, AWideCodeDoesNotFitAByte) {
  Font font = TwoGlyphs();
  font.glyphs[1].code = 0x1234;
  BitWriter out;
  EXPECT_THROW(WriteFont2(out, font), std::range_error);
}

TEST(Font, InfoIsNameFlagsAndCodes) {
  BitWriter out;
  WriteFontInfo(out, TwoGlyphs(), 0x06, false);
  EXPECT_EQ(out.bytes(), (Bytes{2, 'A', 'b', 6, 'a', 'b'}));
}

TEST(Font, BehindTheAdvancesStandBoundsAndPairs) {
  Font font = TwoGlyphs();
  const KerningPair pairs[] = {{'a', 'b', -20}};
  Reader in(BoundsAndKerning(font, pairs));
  EXPECT_EQ(in.U8(), 0u);  // an empty outline: a rectangle of no bits
  in.Align();
  const int bits = static_cast<int>(in.Bits(5));
  EXPECT_EQ(in.SBits(bits), 0);
  EXPECT_EQ(in.SBits(bits), 7);
  EXPECT_EQ(in.SBits(bits), 0);
  EXPECT_EQ(in.SBits(bits), 7);
  EXPECT_EQ(in.U16(), 1u);
  EXPECT_EQ(in.U8(), uint32_t('a'));
  EXPECT_EQ(in.U8(), uint32_t('b'));
  EXPECT_EQ(in.S16(), -20);
  EXPECT_TRUE(in.done());
}

TEST(Font, PairsOfWideCodesAreWide) {
  Font font;
  font.flags = kFontWideCodes;
  const KerningPair pairs[] = {{0x416, 0x410, 3}};
  EXPECT_EQ(BoundsAndKerning(font, pairs), (Bytes{1, 0, 0x16, 4, 0x10, 4, 3, 0}));
}

TEST(Font, TheBlockFontIsSortedAndMeasures) {
  const Font font = BlockFont("Blocks");
  for (size_t i = 1; i < font.glyphs.size(); ++i) {
    EXPECT_LT(font.glyphs[i - 1].code, font.glyphs[i].code);
  }
  EXPECT_EQ(font.Width("Vexel 4"), 7 * 600);
  EXPECT_EQ(font.Find('~'), kAuto);
  BitWriter out;
  EXPECT_NO_THROW(WriteFont2(out, font));
}

}  // namespace
}  // namespace vexel::author
