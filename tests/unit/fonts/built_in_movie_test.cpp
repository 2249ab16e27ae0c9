// The font movie that the player carries, byte for byte as its readers need it.
#include <gtest/gtest.h>
#include <zlib.h>

#include <vector>

#include "author/codes.h"
#include "author/font_list.h"
#include "author/language/record_reader.h"
#include "text/built_in_fonts.h"

namespace vexel::author {
namespace {

Bytes Movie() {
  Bytes movie(static_cast<size_t>(kUnixFontMovieSize));
  uLongf size = movie.size();
  EXPECT_EQ(uncompress(movie.data(), &size, UnixFontData, kUnixFontDataSize), Z_OK);
  EXPECT_EQ(size, movie.size());
  return movie;
}

std::vector<ListedFont> Fonts() {
  std::vector<ListedFont> fonts;
  EXPECT_TRUE(ListFonts(Movie(), &fonts));
  return fonts;
}

TEST(BuiltInMovie, HasTheHeaderThatThePlayerExpects) {
  const Bytes movie = Movie();
  RecordReader in(movie);
  const auto signature = in.Take(3);
  EXPECT_EQ(std::string(signature.begin(), signature.end()), "VXF");
  EXPECT_EQ(in.U8(), 4);
  EXPECT_EQ(in.U32(), movie.size());
  int bits;
  EXPECT_EQ(in.ReadRect(&bits), (Rect{0, 6000, 0, 10000}));
  EXPECT_EQ(in.U16(), 0x0C00);
  EXPECT_EQ(in.U16(), 1);
}

TEST(BuiltInMovie, HasABackgroundTwelveFontsOneFrameAndAnEnd) {
  const Bytes movie = Movie();
  RecordReader in(movie);
  in.Take(8);
  int bits;
  in.ReadRect(&bits);
  in.Take(4);
  std::vector<int> codes;
  while (in.left() > 0 && in.ok()) {
    const uint16_t word = in.U16();
    uint32_t length = word & 0x3F;
    if (length == 0x3F) length = in.U32();
    const auto body = in.Take(length);
    codes.push_back(word >> 6);
    if (codes.size() == 1) {
      EXPECT_EQ(Bytes(body.begin(), body.end()), (Bytes{255, 255, 255}));
    }
  }
  std::vector<int> expected = {9};
  expected.insert(expected.end(), 12, 48);
  expected.insert(expected.end(), {1, 0});
  EXPECT_EQ(codes, expected);
}

struct Row {
  uint16_t id;
  const char* name;
  uint16_t flags;
  int16_t ascent, descent, leading, blank;
};

constexpr Row kRows[] = {
    {1, "Times New Roman", 0x90, 912, 222, 110, 256},
    {3, "Times New Roman", 0x91, 912, 222, 110, 256},
    {5, "Times New Roman", 0x92, 912, 222, 110, 256},
    {7, "Times New Roman", 0x93, 912, 222, 110, 256},
    {9, "Arial", 0x90, 927, 217, 120, 285},
    {11, "Arial", 0x91, 927, 217, 120, 285},
    {13, "Arial", 0x92, 927, 217, 120, 285},
    {15, "Arial", 0x93, 927, 217, 120, 285},
    {17, "Courier New", 0x90, 852, 308, 136, 615},
    {19, "Courier New", 0x91, 852, 308, 136, 615},
    {21, "Courier New", 0x92, 852, 308, 136, 615},
    {23, "Courier New", 0x93, 852, 308, 136, 615},
};

TEST(BuiltInMovie, FontsHaveTheirIdsNamesFlagsAndMeasures) {
  const std::vector<ListedFont> fonts = Fonts();
  ASSERT_EQ(fonts.size(), std::size(kRows));
  for (size_t i = 0; i < fonts.size(); ++i) {
    const Row& row = kRows[i];
    const Font& font = fonts[i].font;
    EXPECT_EQ(fonts[i].id, row.id);
    EXPECT_EQ(font.name, row.name);
    EXPECT_EQ(font.flags, row.flags);
    EXPECT_EQ(font.ascent, row.ascent);
    EXPECT_EQ(font.descent, row.descent);
    EXPECT_EQ(font.leading, row.leading);
    EXPECT_EQ(fonts[i].BlankAdvance(), row.blank);
    EXPECT_TRUE(fonts[i].exact);
    EXPECT_LT(font.behind.size(), 2100u);
    EXPECT_GT(font.behind.size(), font.glyphs.size());
  }
}

TEST(BuiltInMovie, GlyphsStandForTheCodes32To255InOrder) {
  for (const ListedFont& listed : Fonts()) {
    ASSERT_EQ(listed.font.glyphs.size(), 224u);
    for (size_t i = 0; i < 224; ++i) EXPECT_EQ(listed.font.glyphs[i].code, i + 32);
  }
}

TEST(BuiltInMovie, GlyphsOfTheTypewriterAreAllOfOneWidth) {
  for (const ListedFont& listed : Fonts()) {
    if (listed.id < kTypewriterFontId) continue;
    for (const Glyph& glyph : listed.font.glyphs) EXPECT_EQ(glyph.advance, 615);
  }
}

TEST(BuiltInMovie, BytesWithoutACharacterAreBlank) {
  for (const ListedFont& listed : Fonts()) {
    for (const Glyph& glyph : listed.font.glyphs) {
      const bool blank = glyph.code == ' ' || glyph.code == 0xA0 || glyph.code == 0x7F ||
                         CharacterOfByte(static_cast<uint8_t>(glyph.code)) == kNoCode;
      EXPECT_EQ(glyph.outline.empty(), blank) << listed.id << ": " << glyph.code;
    }
  }
}

TEST(BuiltInMovie, ADigitIsAsWideAsEveryOther) {
  for (const ListedFont& listed : Fonts()) {
    for (char digit = '1'; digit <= '9'; ++digit)
      EXPECT_EQ(listed.font.Width(std::string(1, digit)), listed.font.Width("0")) << listed.id;
  }
}

}  // namespace
}  // namespace vexel::author
