#include "author/font_list.h"

#include <gtest/gtest.h>

#include "author/movie_writer.h"

namespace vexel::author {
namespace {

Bytes TwoFonts() {
  MovieWriter movie(10, 10);
  Font wide = BlockFont("Wide");
  wide.flags |= kFontWideCodes | kFontWideOffsets;
  wide.behind = {1, 2, 3};
  movie.BackgroundColor({}).DefineFont2(7, BlockFont("Blocks")).FrameEnd().DefineFont2(9, wide);
  movie.FrameEnd().End();
  return movie.Finish();
}

TEST(FontList, HasTheFontsOfAMovieInItsOrder) {
  std::vector<ListedFont> fonts;
  ASSERT_TRUE(ListFonts(TwoFonts(), &fonts));
  ASSERT_EQ(fonts.size(), 2u);
  EXPECT_EQ(fonts[0].id, 7);
  EXPECT_EQ(fonts[0].font.name, "Blocks");
  EXPECT_TRUE(fonts[0].exact);
  EXPECT_EQ(fonts[0].BlankAdvance(), 600);
  EXPECT_EQ(fonts[1].id, 9);
  EXPECT_TRUE(fonts[1].exact);
  EXPECT_EQ(fonts[1].font.behind, (Bytes{1, 2, 3}));
}

TEST(FontList, AMovieThatEndsEarlyKeepsTheFontsBefore) {
  Bytes movie = TwoFonts();
  movie.resize(movie.size() - 20);
  std::vector<ListedFont> fonts;
  EXPECT_FALSE(ListFonts(movie, &fonts));
  EXPECT_EQ(fonts.size(), 1u);
  fonts.clear();
  EXPECT_FALSE(ListFonts({}, &fonts));
  EXPECT_TRUE(fonts.empty());
}

TEST(FontList, OffsetsThatLieAreNoticed) {
  MovieWriter movie(10, 10);
  BitWriter body;
  body.U16(3);
  WriteFont2(body, BlockFont("x"));
  Bytes bytes = body.bytes();
  ++bytes[8];  // the first offset: behind id, flags, name and count
  movie.Tag(48, bytes).End();
  std::vector<ListedFont> fonts;
  ASSERT_TRUE(ListFonts(movie.Finish(), &fonts));
  EXPECT_FALSE(fonts[0].exact);
}

}  // namespace
}  // namespace vexel::author
