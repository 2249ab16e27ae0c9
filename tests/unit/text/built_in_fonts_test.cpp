// The fonts that come along, and the generic names.
#include "text/built_in_fonts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace vexel {
namespace {

std::string Resolved(const char* name) {
  char out[256];
  memset(out, 'x', sizeof out);
  EXPECT_EQ(ResolveFontName(out, name), out);
  return out;
}

TEST(BuiltInFonts, TheFontMovieUnpacks) {
  char* movie = nullptr;
  ASSERT_EQ(GetUnixFontData(&movie), kUnixFontMovieSize);
  ASSERT_NE(movie, nullptr);
  EXPECT_EQ(std::string(movie, 4), std::string("VXF\x04"));
  int32_t size;
  memcpy(&size, movie + 4, sizeof size);
  EXPECT_EQ(size, kUnixFontMovieSize);
  delete[] movie;
}

TEST(BuiltInFonts, GenericNamesHavePlatformNames) {
  EXPECT_EQ(Resolved("_sans"), "Arial");
  EXPECT_EQ(Resolved("_serif"), "Times New Roman");
  EXPECT_EQ(Resolved("_typewriter"), "Courier New");
}

TEST(BuiltInFonts, ANameThatNoRowListsStaysAsItIs) {
  EXPECT_EQ(Resolved("Garamond"), "Garamond");
  EXPECT_EQ(Resolved("_Sans"), "_Sans");
  EXPECT_EQ(Resolved("_sans "), "_sans ");
  EXPECT_EQ(Resolved(""), "");
}

// No font is available here, so the preferred Gothic is not taken.
TEST(BuiltInFonts, TheJapaneseGothicIsTheProportionalOne) {
  EXPECT_FALSE(PlayerIsFontAvailable("MS UI Gothic"));
  EXPECT_EQ(Resolved("\x5F\x83\x53\x83\x56\x83\x62\x83\x4E"),
            "\x82\x6C\x82\x72\x20\x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E");
}

TEST(BuiltInFonts, TheOtherJapaneseNamesHaveTheirRows) {
  EXPECT_EQ(Resolved("\x5F\x93\x99\x95\x9D"),
            "\x82\x6C\x82\x72\x20\x83\x53\x83\x56\x83\x62\x83\x4E");
  EXPECT_EQ(Resolved("\x5F\x96\xBE\x92\xA9"), "\x82\x6C\x82\x72\x20\x82\x6F\x96\xBE\x92\xA9");
}

TEST(BuiltInFonts, ALongNameIsCutToTheRoom) {
  const std::string name(1000, 'n');
  EXPECT_EQ(Resolved(name.c_str()), name.substr(0, 255));
}

}  // namespace
}  // namespace vexel
