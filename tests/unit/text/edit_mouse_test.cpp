#include "edit_fixture.h"

namespace vexel::test {
namespace {

using author::kEditMultiline;
using author::kEditNoSelect;
using author::kEditWordWrap;

// Row and column of the layout in units: the middle of the left half of a
// character lies before it, that of the right half behind it.
constexpr int Column(int column) {
  return 40 + 100 * column + 20;
}
constexpr int Row(int row) {
  return 40 + 1000 * row + 500;
}

class Pointer : public EditFixture {
 protected:
  int32_t CursorAfterClick(int x, int y) {
    Click(x, y);
    return text->selectionCursor;
  }
  // A press at a place where the cursor is already, `wait` milliseconds after a
  // click there.
  std::string AfterSecondPress(int x, uint32_t wait) {
    Click(x, Row(0));
    TestClock::tick += wait;
    Mouse(x, Row(0), true);
    return State();
  }
};

TEST_F(Pointer, NothingHappensBeforeTheFirstDrawAndWithoutSelection) {
  Place(Field());
  text->SetBuffer("abc");
  Click(Column(2), Row(0));
  EXPECT_EQ(State(), "|abc");
  EXPECT_FALSE(text->selecting);
  Reset();
  Make("abc", kEditNoSelect);
  Mouse(Column(2), Row(0), true);
  EXPECT_EQ(State(), "|abc");
  EXPECT_FALSE(text->selecting);
}

TEST_F(Pointer, AnObjectWithoutAFieldTakesNoMouse) {
  Make("abc");
  const SPOINT pixel = {1, 1};
  player->rootObject->EditTextMouse(&pixel, true);
  EXPECT_FALSE(text->selecting);
}

TEST_F(Pointer, AClickGoesBetweenTheCharactersThatItIsNearest) {
  Make("abcd");
  EXPECT_EQ(CursorAfterClick(40 + 149, Row(0)), 1);
  EXPECT_EQ(CursorAfterClick(40 + 150, Row(0)), 2);
  EXPECT_EQ(CursorAfterClick(0, Row(0)), 0);
  EXPECT_EQ(CursorAfterClick(1900, Row(0)), 4);
}

TEST_F(Pointer, AClickTakesTheRowThatItIsIn) {
  Make("abcd\rab\rabcd");
  EXPECT_EQ(CursorAfterClick(Column(1), Row(0)), 1);
  EXPECT_EQ(CursorAfterClick(Column(1), Row(1)), 6);
  EXPECT_EQ(CursorAfterClick(Column(3), Row(1)), 7) << "a line's end is in front of its 13";
  EXPECT_EQ(CursorAfterClick(Column(2), Row(2)), 10);
  EXPECT_EQ(CursorAfterClick(Column(2), 39), 2) << "above";
  EXPECT_EQ(CursorAfterClick(Column(2), 40 + 999), 2);
  EXPECT_EQ(CursorAfterClick(Column(2), 40 + 1000), 7);
}

// An indent that leaves no room makes an empty line in front of the characters.
TEST_F(Pointer, AClickOnAnEmptyLineTakesItsStart) {
  Place(WithLayout(kEditWordWrap, {.indent = 2500}));
  ASSERT_TRUE(Draw("ab\rcd"));
  EXPECT_EQ(CursorAfterClick(Column(1), Row(2)), 3);
  EXPECT_EQ(CursorAfterClick(Column(1), Row(3)), 4);
}

TEST_F(Pointer, BelowTheLastLineIsTheEndOfTheText) {
  Make("abcd\rab");
  EXPECT_EQ(CursorAfterClick(Column(0), Row(4)), 7);
  EXPECT_EQ(CursorAfterClick(Column(0), 9000), 7);
}

TEST_F(Pointer, ScrolledRowsAndColumnsAreThoseThatShow) {
  Make("abcdefgh\rabcdefgh\rabcdefgh\ra\ra\ra\ra\ra");
  text->vscroll = 1;
  text->hscroll = 3;
  ASSERT_TRUE(Draw());
  EXPECT_EQ(CursorAfterClick(Column(2), Row(0)), 9 + 5);
  EXPECT_EQ(CursorAfterClick(Column(2), Row(2)), 28) << "a line shorter than what is scrolled away";
}

TEST_F(Pointer, BehindTheLastCharacterThatFitsTheCursorStops) {
  Make("abcdefghijabcdefghijabcdefghij");
  EXPECT_EQ(CursorAfterClick(2070, Row(0)), 20);
}

TEST_F(Pointer, BehindABlankThatWrapsTheCursorStandsAtThatLinesEnd) {
  Make("abcdefghijabcdefghi abcdef", kEditWordWrap);
  EXPECT_EQ(CursorAfterClick(2035, Row(0)), 20);
  EXPECT_TRUE(text->atLineEnd);
  EXPECT_EQ(CursorAfterClick(Column(0), Row(1)), 20);
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Pointer, BehindALineThatWasWrappedInsideAWordItStandsInFrontOfTheLastCharacter) {
  Make("abcdefghijabcdefghijabc", kEditWordWrap);
  EXPECT_EQ(CursorAfterClick(2035, Row(0)), 19);
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Pointer, APressOnTheSamePixelWithin500MillisecondsTakesTheWord) {
  Make("abc defg hi");
  EXPECT_EQ(AfterSecondPress(Column(5), 499), "abc <defg| hi");
}

TEST_F(Pointer, At500MillisecondsItDoesNot) {
  Make("abc defg hi");
  EXPECT_EQ(AfterSecondPress(Column(5), 500), "abc d|efg hi");
}

TEST_F(Pointer, OnAnotherPixelItDoesNot) {
  Make("abc defg hi");
  Click(Column(5), Row(0));
  Mouse(Column(5) + 1, Row(0), true);
  EXPECT_EQ(State(), "abc d|efg hi");
}

TEST_F(Pointer, TheWordEndsAtLineEndsAndAtTheEndsOfTheText) {
  Make("ab\rcde");
  Click(Column(1), Row(0));
  Mouse(Column(1), Row(0), true);
  EXPECT_EQ(State(), "<ab|\rcde");
  Click(Column(1), Row(1));
  Mouse(Column(1), Row(1), true);
  EXPECT_EQ(State(), "ab\r<cde|");
}

TEST_F(Pointer, OnABreakTheWordIsTheOneInFront) {
  Make("abc defg");
  EXPECT_EQ(AfterSecondPress(Column(3), 0), "<abc| defg");
}

TEST_F(Pointer, ADoubleClickLeavesWhatThePressNoted) {
  Make("abc defg hi");
  Click(Column(5), Row(0));
  const uint32_t time = TestClock::tick;
  EXPECT_EQ(text->clickTime, time);
  TestClock::tick += 300;
  Mouse(Column(5), Row(0), true);
  EXPECT_EQ(text->clickTime, time);
  EXPECT_FALSE(text->mouseDown);
  EXPECT_FALSE(text->selecting);
}

TEST_F(Pointer, ADragThatRestsTakesTheWord) {
  Make("abc defg hi");
  TestClock::tick += 1000;
  Mouse(Column(5), Row(0), true);
  Mouse(Column(6), Row(0), true);
  EXPECT_EQ(State(), "abc d<e|fg hi");
  Mouse(Column(6), Row(0), true);
  EXPECT_EQ(State(), "abc <defg| hi");
  EXPECT_TRUE(text->selecting);
}

TEST_F(Pointer, ADragSelectsFromThePressToWhereItIs) {
  Make("abcdef\rabcdef");
  Mouse(Column(2), Row(0), true);
  EXPECT_TRUE(text->selecting);
  EXPECT_TRUE(text->mouseDown);
  EXPECT_EQ(State(), "ab|cdef\rabcdef");
  Mouse(Column(4), Row(0), true);
  EXPECT_EQ(State(), "ab<cd|ef\rabcdef");
  Mouse(Column(1), Row(1), true);
  EXPECT_EQ(State(), "ab<cdef\ra|bcdef");
  EXPECT_EQ(Calls(), "");
  Mouse(Column(1), Row(0), false);
  EXPECT_EQ(State(), "a|b<cdef\rabcdef");
  EXPECT_FALSE(text->selecting);
  EXPECT_FALSE(text->mouseDown);
  EXPECT_EQ(Calls(), "own ");
}

TEST_F(Pointer, AReleaseWithoutAPressStartsASelection) {
  Make("abc");
  Mouse(Column(2), Row(0), false);
  EXPECT_TRUE(text->selecting);
  EXPECT_EQ(text->selectionAnchor, 2);
}

TEST_F(Pointer, PixelsGoThroughTheInverseOfTheLastDraw) {
  Make("abcdef");
  MATRIX mat;
  MatrixIdentity(&mat);
  mat.a = mat.d = kFixedOne / 2;
  mat.tx = 70;
  ASSERT_TRUE(Draw(&mat));
  EXPECT_EQ(CursorAfterClick(70 + Column(3) / 2, Row(0) / 2), 3);
  player->display.antialias = true;
  EXPECT_EQ(CursorAfterClick((70 + Column(4) / 2) / 4, Row(0) / 8), 4);
}

TEST_F(Pointer, WithoutALineHeightOnlyThePressIsNoted) {
  Make("abc");
  text->lineHeight = 0;
  Mouse(Column(2), Row(0), true);
  EXPECT_EQ(text->selectionCursor, 0);
  EXPECT_FALSE(text->selecting);
  EXPECT_TRUE(text->mouseDown);
  EXPECT_EQ(text->clickPoint.x, Column(2));
}

TEST_F(Pointer, AClickAfterAnEditAndBeforeTheNextDrawStaysInsideTheText) {
  Make("abcdef abc\rabcdef\rabcdef-abcdef", kEditWordWrap);
  for (const char* shown : {"", "a", "a b c", "abcdef\rabc"}) {
    text->SetBuffer(shown);
    for (int y = -500; y < 6000; y += 500) {
      for (int x = -100; x < 2200; x += 100) {
        text->hscroll = x / 50 + 3;
        Click(x, y);
        Mouse(x, y, true);
        Mouse(x, y, false);
        ASSERT_GE(text->selectionCursor, 0);
        ASSERT_LE(text->selectionCursor, text->length);
        ASSERT_GE(text->selectionAnchor, 0);
        ASSERT_LE(text->selectionAnchor, text->length);
      }
    }
  }
}

class AutoScrolling : public Pointer {
 protected:
  // Eight lines of eight characters, of which five show, the second on top and
  // the third character on the left.
  void MakeScrolled(uint16_t flags = 0) {
    Make("abcdefgh\rabcdefgh\rabcdefgh\rabcdefgh\rabcdefgh\rabcdefgh\rabcdefgh\rabcdefgh", flags);
    text->vscroll = 1;
    text->hscroll = 2;
    At(22);
    text->mouseDown = true;
  }
  std::string ScrolledBy(int x, int y) {
    text->vscroll = 1;
    text->hscroll = 2;
    text->clickPoint = {x, y};
    text->AutoScroll();
    return std::to_string(text->vscroll - 1) + " " + std::to_string(text->hscroll - 2);
  }
};

TEST_F(AutoScrolling, OneStepTowardThePointer) {
  MakeScrolled();
  EXPECT_EQ(ScrolledBy(Column(3), Row(0)), "0 0");
  EXPECT_EQ(ScrolledBy(Column(3), 40), "0 0") << "the edge is inside";
  EXPECT_EQ(ScrolledBy(Column(3), 39), "-1 0");
  EXPECT_EQ(ScrolledBy(Column(3), 5040), "0 0");
  EXPECT_EQ(ScrolledBy(Column(3), 5041), "1 0");
  EXPECT_EQ(ScrolledBy(39, Row(0)), "0 -1");
  EXPECT_EQ(ScrolledBy(40, Row(0)), "0 0");
  EXPECT_EQ(ScrolledBy(2040, Row(0)), "0 0");
  EXPECT_EQ(ScrolledBy(2041, Row(0)), "0 1");
}

TEST_F(AutoScrolling, OnlyWhileTheButtonIsHeld) {
  MakeScrolled();
  text->mouseDown = false;
  EXPECT_EQ(ScrolledBy(0, 0), "0 0");
}

TEST_F(AutoScrolling, NotBeyondTheTextNorWhereTheCursorIsAtItsEnd) {
  MakeScrolled();
  At(0);
  EXPECT_EQ(ScrolledBy(0, 0), "0 0") << "nothing lies before the cursor";
  At(text->length);
  EXPECT_EQ(ScrolledBy(3000, 9000), "0 0") << "nothing lies behind it";
  At(22);
  text->vscroll = 3;
  text->hscroll = 8;
  text->clickPoint = {3000, 9000};
  text->AutoScroll();
  EXPECT_EQ(text->vscroll, 3) << "the last line shows already";
  EXPECT_EQ(text->hscroll, 8);
}

TEST_F(AutoScrolling, RowsAreLimitedByWhatIsThere) {
  MakeScrolled();
  text->vscroll = 7;
  text->clickPoint = {Column(3), Row(0)};
  text->AutoScroll();
  EXPECT_EQ(text->vscroll, 3);
}

TEST_F(AutoScrolling, WrappedAndAlignedTextsDoNotScrollSideways) {
  MakeScrolled(kEditWordWrap);
  EXPECT_EQ(ScrolledBy(3000, 9000), "1 0");
  text->flags = 0;
  text->align = kAlignCenter;
  EXPECT_EQ(ScrolledBy(3000, 9000), "1 0");
}

TEST_F(AutoScrolling, ADrawWhileThePointerIsHeldOutsideScrolls) {
  MakeScrolled();
  text->clickPoint = {Column(3), 9000};
  ASSERT_TRUE(Draw());
  EXPECT_EQ(text->vscroll, 2);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(text->vscroll, 3);
}

}  // namespace
}  // namespace vexel::test
