// Looking glyphs and metrics up in the bytes of a font.
#include "text/font_desc.h"

#include <random>

#include "draw_fixture.h"

namespace vexel::test {
namespace {

class FontDescTest : public DrawFixture {
 protected:
  // The font as its tag defines it, described as a field would.
  FontDesc Describe(const author::Font& font) {
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, font);
    Reset();
    Place(Field(), {0, 2080, 0, 5080}, fonts);
    FontDesc desc;
    text->GetFontDesc(desc);
    return desc;
  }
  static author::Font WithFlags(uint16_t flags) {
    author::Font font = BoxFont();
    font.flags |= flags;
    return font;
  }
};

TEST_F(FontDescTest, FindsGlyphsInEveryFormOfTheTables) {
  for (uint16_t flags : {0x0000, 0x0004, 0x0008, 0x000C}) {
    const author::Font font = WithFlags(flags);
    const FontDesc desc = Describe(font);
    for (uint32_t code = 0; code < 256; ++code) {
      const int expected = font.Find(code);
      EXPECT_EQ(desc.FindGlyph(static_cast<uint16_t>(code)),
                expected == author::kAuto ? kNoGlyph : expected)
          << flags << " " << code;
    }
    EXPECT_EQ(desc.Ascent(), kAscent);
    EXPECT_EQ(desc.Descent(), kLineHeight - kAscent);
    EXPECT_EQ(desc.Advance(3), kAdvance);
  }
}

TEST_F(FontDescTest, CodesOf16BitsAreFoundInAWideTableOnly) {
  author::Font font = WithFlags(author::kFontWideCodes);
  font.glyphs.push_back(BoxGlyph(0x83AB));
  const FontDesc wide = Describe(font);
  EXPECT_EQ(wide.FindGlyph(0x83AB), font.glyphs.size() - 1);
  EXPECT_EQ(wide.FindGlyph(0x8341), kNoGlyph);
  const FontDesc narrow = Describe(BoxFont());
  EXPECT_EQ(narrow.FindGlyph('A' + 0x100), kNoGlyph);
}

TEST_F(FontDescTest, SeveralGlyphsAreFoundAsEachIs) {
  author::Font font = WithFlags(author::kFontWideCodes);
  font.glyphs.push_back(BoxGlyph(0x1234));
  const FontDesc desc = Describe(font);
  std::mt19937 random(3);
  std::vector<uint16_t> codes;
  for (int i = 0; i < 3000; ++i) {
    codes.push_back(static_cast<uint16_t>(i % 7 ? random() % 256 : random() % 0x2000));
  }
  codes.push_back(0x1234);
  uint16_t* glyphs = desc.FindGlyphs(codes.data(), static_cast<int32_t>(codes.size()));
  ASSERT_NE(glyphs, nullptr);
  for (size_t i = 0; i < codes.size(); ++i) EXPECT_EQ(glyphs[i], desc.FindGlyph(codes[i]));
  delete[] glyphs;
}

TEST_F(FontDescTest, NoCharactersGiveNoGlyphs) {
  const FontDesc desc = Describe(BoxFont());
  const uint16_t code = 'a';
  EXPECT_EQ(desc.FindGlyphs(&code, 0), nullptr);
}

TEST_F(FontDescTest, AFontWithoutLayoutHasNoMetrics) {
  author::Font font = BoxFont();
  font.flags = author::kFontAnsi;
  const FontDesc desc = Describe(font);
  EXPECT_EQ(desc.FindGlyph('a'), 6);
  EXPECT_EQ(desc.Ascent(), 0);
  EXPECT_EQ(desc.Descent(), 0);
  EXPECT_EQ(desc.Advance(6), 0);
}

TEST_F(FontDescTest, MetricsAreSigned) {
  author::Font font = BoxFont();
  font.ascent = -5;
  font.descent = -6;
  font.glyphs[2].advance = -7;
  const FontDesc desc = Describe(font);
  EXPECT_EQ(desc.Ascent(), -5);
  EXPECT_EQ(desc.Descent(), -6);
  EXPECT_EQ(desc.Advance(2), -7);
}

TEST_F(FontDescTest, NothingIsFoundInNoFont) {
  const FontDesc none;
  EXPECT_EQ(none.FindGlyph('a'), kNoGlyph);
  EXPECT_EQ(none.Ascent(), 0);
  EXPECT_EQ(none.Advance(0), 0);
}

TEST_F(FontDescTest, AFontWithoutGlyphsHasMetrics) {
  author::Font font = BoxFont();
  font.glyphs.clear();
  const FontDesc desc = Describe(font);
  EXPECT_EQ(desc.FindGlyph(0), kNoGlyph);
  EXPECT_EQ(desc.Ascent(), kAscent);
  EXPECT_EQ(desc.Advance(0), 0);
}

// Nothing is promised of what is found, but it is found by the plain bisection.
TEST_F(FontDescTest, AnUnsortedTableIsSearchedAllTheSame) {
  author::Font font = BoxFont();
  std::swap(font.glyphs[0], font.glyphs[9]);
  const FontDesc desc = Describe(font);
  EXPECT_EQ(desc.FindGlyph(font.glyphs[9].code), 9);  // the middle comes first
  EXPECT_EQ(desc.FindGlyph(font.glyphs[0].code), kNoGlyph);
}

TEST_F(FontDescTest, OffsetsMayPointAnywhere) {
  FontDesc desc = Describe(WithFlags(author::kFontWideOffsets));
  for (int32_t offset : {-1, -40, kInt32Min, kInt32Max, kInt32Max - 40, 1 << 20}) {
    desc.codeTableOffset = offset;
    for (uint32_t code = 0; code < 300; ++code) desc.FindGlyph(static_cast<uint16_t>(code));
    desc.Ascent();
    desc.Descent();
    for (uint32_t glyph = 0; glyph < 300; ++glyph) desc.Advance(static_cast<uint16_t>(glyph));
  }
  desc.codeTableOffset = kInt32Max;
  EXPECT_EQ(desc.Ascent(), 0);
  EXPECT_EQ(desc.FindGlyph('a'), kNoGlyph);
  EXPECT_EQ(desc.FindGlyph(0), 9);  // beyond the data all codes are 0
}

TEST_F(FontDescTest, AGlyphCountThatLiesReadsZeros) {
  FontDesc desc = Describe(BoxFont());
  desc.font->glyphCount = 0xFFFF;
  for (uint32_t code = 0; code < 300; ++code) desc.FindGlyph(static_cast<uint16_t>(code));
  EXPECT_EQ(desc.Ascent(), 0);
  EXPECT_EQ(desc.Advance(0xFFFE), 0);
}

}  // namespace
}  // namespace vexel::test
