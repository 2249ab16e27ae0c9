#include "author/fonts/wanted.h"

#include <gtest/gtest.h>

#include "support/small_font.h"

namespace vexel::author {
namespace {

using test::SquareContour;

Bytes File() {
  test::SmallFont font;
  font.glyphs = {{' ', 250},
                 {'A', 600, {SquareContour(100, 0, 400, 700)}},
                 {0xE9, 500, {SquareContour(0, 0, 300, 300)}},
                 {0x416, 900, {SquareContour(10, 0, 20, 30)}},
                 {0x20AC, 500, {SquareContour(0, 0, 500, 300)}}};
  return test::TrueTypeFile(font);
}

std::string FileText() {
  const Bytes bytes = File();
  return {bytes.begin(), bytes.end()};
}

std::string Codes(const std::vector<WantedGlyph>& wanted) {
  std::string text;
  for (const WantedGlyph& glyph : wanted)
    text += std::to_string(glyph.character) + ":" + std::to_string(glyph.code) + " ";
  return text;
}

TEST(Wanted, ATextMayBeUtf8OrBytes) {
  std::vector<WantedGlyph> utf8, bytes;
  std::string error;
  EXPECT_TRUE(WantedOfText("\xC3\xA9\xE2\x82\xAC", &utf8, &error));
  EXPECT_TRUE(WantedOfText("\xE9\x80", &bytes, &error));
  EXPECT_EQ(Codes(utf8), "233:233 8364:128 ");
  EXPECT_EQ(Codes(bytes), Codes(utf8));
}

TEST(Wanted, ACharacterWithoutACodeIsNamed) {
  std::vector<WantedGlyph> wanted;
  std::string error;
  EXPECT_FALSE(WantedOfText("a\xF0\x9F\x98\x80", &wanted, &error));
  EXPECT_EQ(error, "U+1F600 has no code in movies");
}

TEST(Wanted, ARangeTakesWhatTheFontHas) {
  const FontFile file(File());
  EXPECT_EQ(Codes(WantedOfRange(file, 'A', 0x416)), "65:65 233:233 1046:1046 ");
  EXPECT_EQ(Codes(WantedOfBytes(file)), "32:32 65:65 8364:128 233:233 ");
}

TEST(Wanted, AFontIsTakenWithWordsOfWhatItLacks) {
  Font font;
  std::vector<std::string> warnings;
  std::string error;
  ASSERT_TRUE(TakeFont(FileText(), "ABBCDEFGHIJK", &font, &warnings, &error));
  EXPECT_EQ(font.glyphs.size(), 1u);
  EXPECT_EQ(warnings, (std::vector<std::string>{"lacks U+0042, U+0043, U+0044, U+0045, U+0046, "
                                                "U+0047, U+0048, U+0049 and 2 more"}));
}

TEST(Wanted, NoTextTakesWhatBytesCanSay) {
  Font font;
  std::vector<std::string> warnings;
  std::string error;
  ASSERT_TRUE(TakeFont(FileText(), "", &font, &warnings, &error));
  EXPECT_EQ(font.glyphs.size(), 4u);
  EXPECT_TRUE(warnings.empty());
  EXPECT_EQ(font.flags, kFontAnsi | kFontHasLayout);
}

TEST(Wanted, AFontWithNothingToTakeIsRefused) {
  Font font;
  std::vector<std::string> warnings;
  std::string error;
  EXPECT_FALSE(TakeFont(FileText(), "xyz", &font, &warnings, &error));
  EXPECT_EQ(error, "has none of the characters");
  EXPECT_FALSE(TakeFont("nothing", "A", &font, &warnings, &error));
  EXPECT_EQ(error, "is no font");
}

}  // namespace
}  // namespace vexel::author
