// What a field looks like: rows, cut lines, alignment, selection, cursor, and
// the order of its colours and edges.
#include "draw_fixture.h"

namespace vexel::test {
namespace {

using author::EditTextLayout;

class EditDraw : public DrawFixture {};

TEST_F(EditDraw, CharactersStandSideBySideOnTheirBaseline) {
  Place(Field());
  ASSERT_TRUE(Draw("ab"));
  EXPECT_EQ(Boxes(),
            (std::vector<Box>{{1, 50, 130, 740 - 'a', 740}, {1, 150, 230, 740 - 'b', 740}}));
  EXPECT_EQ(text->ascent, kAscent);
  EXPECT_EQ(text->lineHeight, kLineHeight);
  EXPECT_EQ(text->fontHeight, kHeight);
  EXPECT_EQ(text->lineX.At(0), 40);
  const SRECT inner = {40, 2040, 40, 5040};
  EXPECT_TRUE(RectEqual(&text->textRect, &inner, 0));
}

TEST_F(EditDraw, AFieldWithLineHeightZeroDrawsNothing) {
  author::TagStream fonts;
  author::Font flat = BoxFont();
  flat.ascent = flat.descent = 0;
  fonts.DefineFont2(kBoxFont, flat);
  Place(Field(), {0, 2080, 0, 5080}, fonts);
  Focus();
  EXPECT_TRUE(Draw("ab\rc"));
  EXPECT_EQ(text->CalcVisibleLines(), 0);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(EditDraw, ALeadingCanTakeTheLineHeightAway) {
  Place(WithLayout(0, {.leading = -kLineHeight}));
  EXPECT_TRUE(Draw("ab"));
  EXPECT_EQ(text->lineHeight, 0);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(EditDraw, TheLeadingOfTheRecordCountsAndThatOfTheFontDoesNot) {
  Place(WithLayout(0, {.leading = 25}));
  ASSERT_TRUE(Draw("a\rb"));
  EXPECT_EQ(text->lineHeight, kLineHeight + 25);
  EXPECT_EQ(Boxes(1)[1].ymax, 40 + kAscent + kLineHeight + 25);
}

TEST_F(EditDraw, AnEmptyFieldWithTheFocusShowsTheCursorAtTheLeftOfTheFirstRow) {
  Place(Field());
  Focus();
  ASSERT_TRUE(Draw(""));
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 40, 41, 40, 40 + kHeight}}));
}

TEST_F(EditDraw, BehindAReturnAtTheEndTheCursorStandsOnTheSecondRow) {
  Place(Field());
  Focus();
  text->SetBuffer("ab\r");
  Select(3, 3);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(LineStarts(), (std::vector<int32_t>{0, 3, 3}));
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 40, 41, 1040, 1040 + kHeight}}));
}

TEST_F(EditDraw, BeforeAReturnTheCursorStandsAtTheEndOfItsRow) {
  Place(Field());
  Focus();
  text->SetBuffer("ab\rcd");
  Select(2, 2);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 240, 241, 40, 40 + kHeight}}));
}

// A line feed is not a return: the row that it ends doesn't show the cursor.
TEST_F(EditDraw, BeforeALineFeedTheCursorIsNotSeen) {
  Place(Field());
  Focus();
  text->SetBuffer("ab\ncdef");
  Select(2, 2);
  ASSERT_TRUE(Draw());
  EXPECT_TRUE(Cursors().empty());
  // Unless it stands as far as the end of the text.
  text->SetBuffer("ab\n");
  Select(2, 2);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 240, 241, 40, 40 + kHeight}}));
}

TEST_F(EditDraw, WhereALineWrapsTheCursorStandsOnTheNextUnlessItIsAtTheLinesEnd) {
  Place(Field(author::kEditWordWrap), {0, 580, 0, 5080});
  Focus();
  text->SetBuffer("abc def");
  Select(4, 4);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 40, 41, 1040, 1040 + kHeight}}));
  text->atLineEnd = true;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 440, 441, 40, 40 + kHeight}}));
}

TEST_F(EditDraw, TheCursorIsSeenInEveryFieldOfTheFocusedCharacterThatCanBeEdited) {
  Place(Field());
  EXPECT_TRUE(Draw("a"));
  EXPECT_TRUE(Cursors().empty());
  Focus();
  EXPECT_TRUE(Draw());
  EXPECT_EQ(Cursors().size(), 1u);
  player->cursorBlink = false;
  EXPECT_TRUE(Draw());
  EXPECT_TRUE(Cursors().empty());

  player->cursorBlink = true;
  PlaceInfo info;
  MatrixIdentity(&info.mat);
  info.cxform.Clear();
  info.depth = 2;
  info.character = object->character;
  info.flags = kPlaceCharacter | kPlaceMatrix;
  player->focus.Set(player->display.PlaceObject(object->parent, &info));
  EXPECT_TRUE(Draw());
  EXPECT_EQ(Cursors().size(), 1u);

  Reset();
  Place(Field(author::kEditReadOnly));
  Focus();
  EXPECT_TRUE(Draw("a"));
  EXPECT_TRUE(Cursors().empty());
}

// In a cut line the cursor falls off the end of the text's last row, and is seen
// in the empty row behind it.
TEST_F(EditDraw, TheCursorBehindACutLastLineStandsInTheRowBelow) {
  Place(Field(), {0, 480, 0, 5080});
  Focus();
  text->SetBuffer("abcdef");
  Select(6, 6);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "abcd");
  EXPECT_EQ(Cursors(), (std::vector<Box>{{1, 40, 41, 1040, 1040 + kHeight}}));
}

TEST_F(EditDraw, TheIndentIsForTheFirstRowAndThoseBehindAReturn) {
  Place(WithLayout(author::kEditWordWrap, {.indent = 100}), {0, 580, 0, 9080});
  ASSERT_TRUE(Draw("abc def\rab\nc"));
  EXPECT_EQ(Shown(), "abc/def/ab/c");
  EXPECT_EQ(Starts(), (std::vector<SCOORD>{140, 240, 340, 40, 140, 240, 140, 240, 40}));
  EXPECT_EQ(text->lineX.At(0), 140);
  EXPECT_EQ(text->lineX.At(1), 40);
  EXPECT_EQ(text->lineX.At(2), 140);
  EXPECT_EQ(text->lineX.At(3), 40);
}

// The row that is first in view is indented, whichever line it shows.
TEST_F(EditDraw, TheFirstRowShownHasTheIndent) {
  Place(WithLayout(author::kEditWordWrap, {.indent = 100}), {0, 580, 0, 9080});
  text->vscroll = 1;
  ASSERT_TRUE(Draw("abc def"));
  EXPECT_EQ(Starts(), (std::vector<SCOORD>{140, 240, 340}));
}

TEST_F(EditDraw, ALongLineIsCutAtTheRightEdgeAndScrolls) {
  Place(Field(), {0, 580, 0, 5080});
  ASSERT_TRUE(Draw("abcdefgh"));
  EXPECT_EQ(Shown(), "abcde");
  text->hscroll = 2;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "cdefg");
  EXPECT_EQ(Starts()[0], 40);
  text->hscroll = 8;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "");
}

TEST_F(EditDraw, TheRightMarginCutsALine) {
  Place(WithLayout(0, {.rightMargin = 101}), {0, 580, 0, 5080});
  ASSERT_TRUE(Draw("abcdefgh"));
  EXPECT_EQ(Shown(), "abc");
}

TEST_F(EditDraw, ALineShorterThanTheScrollIsEmptyAndTheOthersGoOn) {
  Place(Field());
  text->hscroll = 2;
  ASSERT_TRUE(Draw("abcd\re\rfghi"));
  EXPECT_EQ(Shown(), "cd//hi");
}

TEST_F(EditDraw, APasswordIsAnAsteriskForEachCharacter) {
  Place(Field(author::kEditPassword));
  text->SetBuffer("abc");
  Select(1, 2);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "***");
  // The selected one is white on black.
  EXPECT_EQ(Boxes(3), (std::vector<Box>{{3, 150, 230, 740 - '*', 740}}));
  EXPECT_EQ(Boxes(2), (std::vector<Box>{{2, 140, 240, 40, 40 + kHeight}}));
  EXPECT_EQ(Color(3)->rgb.red, 255);
  EXPECT_EQ(Color(2)->rgb.red, 0);
}

TEST_F(EditDraw, APasswordOfSeveralLinesKeepsItsReturns) {
  Place(Field(author::kEditPassword | author::kEditMultiline));
  ASSERT_TRUE(Draw("ab\rc"));
  EXPECT_EQ(Shown(), "**/*");
}

TEST_F(EditDraw, CentredTextStandsInTheMiddleOfTheWholeRectangle) {
  // The right margin is not seen; the left one shifts, as the positions have it.
  for (uint16_t right : {0, 300}) {
    Reset();
    Place(WithLayout(0, {.align = 2, .rightMargin = right}));
    ASSERT_TRUE(Draw("abc"));
    EXPECT_EQ(Starts()[0], 40 + (2000 - 300) / 2);
    EXPECT_EQ(text->lineX.At(0), 40 + (2000 - 300) / 2);
  }
  Reset();
  Place(WithLayout(0, {.align = 2, .leftMargin = 60}));
  ASSERT_TRUE(Draw("abc"));
  EXPECT_EQ(Starts()[0], 40 + 60 + (2000 - 300) / 2);
}

TEST_F(EditDraw, AnOddShiftOfCentredTextIsRoundedDown) {
  Place(WithLayout(author::kEditWordWrap, {.align = 2}), {0, 2081, 0, 5080});
  ASSERT_TRUE(Draw("a"));
  EXPECT_EQ(Starts()[0], 40 + 950);
}

// A row wider than the field: only with wrapping off it is cut, and a break
// character that no room was left for hangs over.
TEST_F(EditDraw, TextAlignedRightKeepsTheLeftMarginAndEndsBeyondTheRectangle) {
  Place(WithLayout(0, {.align = 1, .leftMargin = 70, .rightMargin = 500}));
  ASSERT_TRUE(Draw("abc"));
  EXPECT_EQ(Starts()[0], 2040 - 300 + 70);
  Reset();
  Place(WithLayout(0, {.align = 1}));
  ASSERT_TRUE(Draw("abc"));
  EXPECT_EQ(Starts()[0], 2040 - 300);
}

TEST_F(EditDraw, OtherAlignmentsAreLeft) {
  Place(WithLayout(0, {.align = 3, .leftMargin = 70}));
  ASSERT_TRUE(Draw("abc"));
  EXPECT_EQ(Starts()[0], 110);
}

TEST_F(EditDraw, ASelectionOverSeveralRowsLeavesNoGap) {
  // The line height is less than the height here, and more with a leading.
  Place(WithLayout(0, {.leading = 124}));
  text->SetBuffer("abc\rdef\rghi");
  Select(9, 1);
  ASSERT_TRUE(Draw());
  const int32_t height = kLineHeight + 124;
  EXPECT_EQ(Boxes(2), (std::vector<Box>{{2, 140, 340, 40, 40 + height},
                                        {2, 40, 340, 40 + height, 40 + 2 * height},
                                        {2, 40, 140, 40 + 2 * height, 40 + 2 * height + kHeight}}));
  EXPECT_EQ(Boxes(3).size(), 6u);
  EXPECT_EQ(Boxes(1).size(), 3u);
}

TEST_F(EditDraw, ASelectionToTheEndOfARowEndsThere) {
  Place(WithLayout(0, {.leading = 500}));
  text->SetBuffer("abc\rdef");
  Select(0, 3);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Boxes(2), (std::vector<Box>{{2, 40, 340, 40, 40 + kHeight}}));
  Select(0, 4);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Boxes(2), (std::vector<Box>{{2, 40, 340, 40, 40 + kLineHeight + 500}}));
}

TEST_F(EditDraw, ASelectedEmptyLineHasNoRectangle) {
  Place(Field());
  text->SetBuffer("a\r\rb");
  Select(0, 4);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Boxes(2).size(), 2u);
}

TEST_F(EditDraw, OnlyVisibleRowsAreDrawn) {
  // Two more rows fit behind the first: (3000 - 700) / 1000.
  Place(Field(), {0, 2080, 0, 3080});
  ASSERT_TRUE(Draw("a\rb\rc\rd\re"));
  EXPECT_EQ(Shown(), "a/b/c");
  text->vscroll = 3;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "d/e");
  text->vscroll = 5;  // the row behind the last
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "");
  text->vscroll = 6;  // beyond: the last
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "e");
}

TEST_F(EditDraw, TheCursorScrollsIntoViewOnce) {
  Place(Field(), {0, 2080, 0, 3080});
  text->SetBuffer("a\rb\rc\rd\re");
  Select(8, 8);
  text->scrollToCursor = true;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(Shown(), "c/d/e");
  EXPECT_FALSE(text->scrollToCursor);
}

TEST_F(EditDraw, AGlyphThatTheFontLacksHasNoWidthAndNoShape) {
  Place(Field());
  ASSERT_TRUE(Draw("aZ~b"));
  EXPECT_EQ(Shown(), "ab");
  EXPECT_EQ(Starts(), (std::vector<SCOORD>{40, 140}));
  EXPECT_EQ(text->charWidths.Count(), 5);
  EXPECT_EQ(text->charWidths.At(0), kAdvance);
  EXPECT_EQ(text->charWidths.At(1), 0);
}

TEST_F(EditDraw, WidthsAndMetricsAreCutTowardZero) {
  author::EditTextField field = Field();
  field.height = 300;
  author::TagStream fonts;
  author::Font font = BoxFont();
  font.ascent = 700;
  font.descent = -301;
  for (author::Glyph& glyph : font.glyphs) glyph.advance = glyph.code == 'a' ? -99 : 99;
  fonts.DefineFont2(kBoxFont, font);
  Place(field, {0, 2080, 0, 5080}, fonts);
  ASSERT_TRUE(Draw("ab"));
  EXPECT_EQ(text->charWidths.At(0), -29);  // -29.004
  EXPECT_EQ(text->charWidths.At(1), 29);
  EXPECT_EQ(text->ascent, 205);           // 205.08
  EXPECT_EQ(text->lineHeight, 205 - 88);  // -88.18
}

TEST_F(EditDraw, AnAdvanceIsKeptIn16Bits) {
  author::EditTextField field = Field();
  field.height = 65535;
  author::TagStream fonts;
  author::Font font = BoxFont();
  font.glyphs[6].advance = 1000;  // a
  fonts.DefineFont2(kBoxFont, font);
  Place(field, {0, 2080, 0, 5080}, fonts);
  ASSERT_TRUE(Draw("a"));
  EXPECT_EQ(text->charWidths.At(0), 63999 - 65536);
}

TEST_F(EditDraw, ColoursAreMadeInTheirOrder) {
  Place(Field());
  ASSERT_TRUE(Draw("a"));
  std::vector<uint32_t> orders;
  for (RColor* color = object->colors; color; color = color->next) orders.push_back(color->order);
  EXPECT_EQ(orders, (std::vector<uint32_t>{3, 2, 0, 1}));
  const auto rgb = [&](uint32_t order) {
    const RGBI& c = Color(order)->rgb;
    return std::vector<int>{c.red, c.green, c.blue, c.alpha};
  };
  EXPECT_EQ(rgb(0), (std::vector<int>{255, 255, 255, 255}));
  EXPECT_EQ(rgb(1), (std::vector<int>{0, 0, 0, 255}));
  EXPECT_EQ(rgb(2), (std::vector<int>{0, 0, 0, 255}));
  EXPECT_EQ(rgb(3), (std::vector<int>{255, 255, 255, 255}));
}

TEST_F(EditDraw, TheRecordsColourIsTransformedAndPremultiplied) {
  author::EditTextField field = Field();
  field.color = author::Color{200, 100, 50, 127};
  Place(field);
  STransform t;
  MatrixIdentity(&t.mat);
  t.cxform.Clear();
  t.cxform.flags = 1;
  t.cxform.ra = 128;
  object->FreeCache();
  object->BuildEdges(&t);
  const RGBI& rgb = Color(1)->rgb;
  EXPECT_EQ(rgb.red, 200 * 128 / 256 * 128 >> 8);
  EXPECT_EQ(rgb.green, 100 * 128 >> 8);
  EXPECT_EQ(rgb.alpha, 127);
  EXPECT_TRUE(Color(1)->transparent);
  EXPECT_FALSE(Color(2)->transparent);
  EXPECT_EQ(Color(3)->rgb.red, 127);
}

TEST_F(EditDraw, ABorderIsALineInBlackAndAFillInWhite) {
  Place(Field(author::kEditBorder), {0, 2000, 0, 3000});
  ASSERT_TRUE(Draw(""));
  // The line first, then the fill.
  const std::vector<Box> fill = Boxes(0);
  EXPECT_EQ(fill, (std::vector<Box>{{0, 0, 2000, 0, 3000}}));
  ASSERT_TRUE(object->edges);
  EXPECT_EQ(object->edges->color1, Color(0));
  int lines = 0;
  for (const REdge* e = object->edges; e; e = e->next) lines += e->color1 == Color(2);
  EXPECT_GT(lines, 4);
}

TEST_F(EditDraw, EdgesOfAMaskHaveNoColour) {
  Place(Field(author::kEditBorder), {0, 2000, 0, 3000});
  object->clipDepth = 5;
  Focus();
  text->SetBuffer("ab");
  Select(0, 2);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(object->colors, nullptr);
  ASSERT_NE(object->edges, nullptr);
  for (const REdge* e = object->edges; e; e = e->next) EXPECT_EQ(e->color1, nullptr);
  // And are neither painted nor hit.
  player->display.ModifyCamera();
  player->display.Update();
  EXPECT_EQ(player->Pixel(3, 3), 0xFFFFFFu);
}

TEST_F(EditDraw, AFieldIsLaidOutOnlyWhenItsEdgesWereFreed) {
  Place(Field());
  ASSERT_TRUE(Draw("ab"));
  STransform t;
  MatrixIdentity(&t.mat);
  t.cxform.Clear();
  text->SetBuffer("abc");
  object->BuildEdges(&t);
  EXPECT_EQ(Shown(), "ab");
  object->FreeCache();
  object->BuildEdges(&t);
  EXPECT_EQ(Shown(), "abc");
}

TEST_F(EditDraw, WithoutTheBuiltInFontsAFieldStaysBlank) {
  Place(Field());
  player->fontState = FontState::kFailed;
  EXPECT_FALSE(Draw("ab"));
  EXPECT_EQ(object->edges, nullptr);
  EXPECT_EQ(object->colors, nullptr);
}

TEST_F(EditDraw, AMovieWithoutAPlayerNeedsNoBuiltInFonts) {
  Place(Field());
  player->fontState = FontState::kFailed;
  ScriptPlayer* movie = object->character->player;
  SPlayer* splayer = movie->splayer;
  movie->splayer = nullptr;
  EXPECT_TRUE(Draw("ab"));
  EXPECT_EQ(Shown(), "ab");
  movie->splayer = splayer;
}

TEST_F(EditDraw, AFontThatIsNotThereDrawsNothing) {
  author::EditTextField field = Field(author::kEditBorder);
  field.font = 99;
  Place(field);
  text->drawn = true;
  EXPECT_FALSE(Draw("ab"));
  EXPECT_EQ(object->edges, nullptr);
  EXPECT_EQ(object->colors, nullptr);
}

TEST_F(EditDraw, AFontOfTheFirstFormDrawsNothing) {
  author::TagStream fonts;
  fonts.DefineFont(kBoxFont, BoxFont()).DefineFontInfo(kBoxFont, BoxFont(), 0, false);
  Place(Field(author::kEditBorder), {0, 2080, 0, 5080}, fonts);
  EXPECT_FALSE(Draw("ab"));
  EXPECT_EQ(object->edges, nullptr);
}

TEST_F(EditDraw, AFieldTooNarrowForACharacterIsAbandoned) {
  Place(Field(author::kEditWordWrap | author::kEditBorder), {0, 179, 0, 5080});
  EXPECT_FALSE(Draw("a"));
  EXPECT_EQ(Boxes(1).size(), 0u);
  EXPECT_EQ(Boxes(0).size(), 1u);  // what was drawn before stays
  EXPECT_TRUE(Draw(""));
}

TEST_F(EditDraw, WidthsMayBeNegative) {
  author::TagStream fonts;
  author::Font font = BoxFont();
  font.glyphs[6].advance = -150;  // a
  fonts.DefineFont2(kBoxFont, font);
  Place(Field(), {0, 2080, 0, 5080}, fonts);
  ASSERT_TRUE(Draw("bab"));
  EXPECT_EQ(Starts(), (std::vector<SCOORD>{40, 140, -10}));
}

TEST_F(EditDraw, TheDeviceVariantLaysOutWithoutPainting) {
  Place(WithLayout(author::kEditWordWrap, {.align = 0, .leftMargin = 40}));
  text->SetBuffer("ab\rc");
  player->display.antialias = false;
  STransform t;
  MatrixScale(kFixedOne / 2, kFixedOne / 2, &t.mat);
  t.cxform.Clear();
  object->FreeCache();
  EXPECT_TRUE(object->DrawEditText(&t));
  EXPECT_TRUE(text->drawn);
  EXPECT_EQ(object->edges, nullptr);
  EXPECT_EQ(text->lineCount, 2);
  EXPECT_EQ(text->charWidths.At(0), 0);
  const SRECT pixels = {20, 1020, 20, 2520};
  EXPECT_TRUE(RectEqual(&text->textRect, &pixels, 0));
  MatrixRotate(45 << 16, &t.mat);
  EXPECT_TRUE(object->DrawEditText(&t));
  EXPECT_FALSE(text->drawn);
}

TEST_F(EditDraw, TheDeviceVariantCountsPixelsUnderAntiAliasing) {
  Place(Field());
  player->display.antialias = true;
  STransform t;
  MatrixIdentity(&t.mat);
  t.cxform.Clear();
  text->Draw(&t, false);
  EXPECT_EQ(text->textRect.xmax, 510);
  EXPECT_EQ(text->devMatrix.a, kFixedOne);
  MatrixScale(8, 8, &t.mat);  // the height vanishes
  text->Draw(&t, false);
  EXPECT_FALSE(text->drawn);
}

TEST_F(EditDraw, TheHeldPointerScrollsOnEachDraw) {
  for (bool noSelect : {false, true}) {
    Reset();
    Place(Field(noSelect ? author::kEditNoSelect : 0), {0, 2080, 0, 1080});
    ASSERT_TRUE(Draw("a\rb\rc"));
    text->mouseDown = true;
    text->clickPoint = {50, 4000};
    ASSERT_TRUE(Draw());
    EXPECT_EQ(text->vscroll, noSelect ? 0 : 1);
  }
}

}  // namespace
}  // namespace vexel::test
