#include "edit_fixture.h"
#include "geometry/intmath.h"
#include "player/key_codes.h"

namespace vexel::test {
namespace {

class Lines : public EditFixture {
 protected:
  // A field with tables as a Draw would have left them.
  void SetLines(const std::vector<int32_t>& starts) {
    text->lineStarts.Reset(static_cast<int32_t>(starts.size()));
    std::copy(starts.begin(), starts.end(), text->lineStarts.Entries());
    text->lineCount = static_cast<int32_t>(starts.size()) - 1;
  }
  void SetRows(SCOORD height, int32_t ascent, int32_t lineHeight) {
    text->textRect = {0, 1000, 0, height};
    text->ascent = ascent;
    text->lineHeight = lineHeight;
  }
  // `hscroll` and `vscroll` after the cursor was looked for in a field 1000
  // wide, all characters 100.
  std::string FindFrom(int32_t hscroll, int32_t vscroll) {
    text->hscroll = hscroll;
    text->vscroll = vscroll;
    const std::vector<int32_t> widths(static_cast<size_t>(text->length) + 1, 100);
    const SRECT rect = {0, 1000, 0, 5000};
    text->FindCursor(&rect, widths.data());
    return std::to_string(text->hscroll) + " " + std::to_string(text->vscroll);
  }
};

TEST_F(Lines, VisibleAreTheRowsBelowTheFirstAndThatOne) {
  Place(Field());
  SetRows(5000, 700, 1000);
  EXPECT_EQ(text->CalcVisibleLines(), 5);
  SetRows(5700, 700, 1000);
  EXPECT_EQ(text->CalcVisibleLines(), 6);
  SetRows(5699, 700, 1000);
  EXPECT_EQ(text->CalcVisibleLines(), 5);
  SetRows(100, 700, 1000);
  EXPECT_EQ(text->CalcVisibleLines(), 1);
  SetRows(100, 5700, 1000);
  EXPECT_EQ(text->CalcVisibleLines(), 1);
}

TEST_F(Lines, WithoutALineHeightNoneAreVisible) {
  Place(Field());
  SetRows(5000, 700, 0);
  EXPECT_EQ(text->CalcVisibleLines(), 0);
  SetRows(kInt32Min, 0, -1);
  EXPECT_EQ(text->CalcVisibleLines(), kInt32Max);
}

TEST_F(Lines, TheLastLineThatCanBeTheFirstShownLeavesNoEmptyRows) {
  Make("a\ra\ra\ra\ra\ra\ra");
  EXPECT_EQ(text->CalcMaxVScroll(), 2);
  ASSERT_TRUE(Draw("a\ra"));
  EXPECT_EQ(text->CalcMaxVScroll(), 0);
}

TEST_F(Lines, ALineHoldsFromItsStartToBeforeTheNext) {
  Make("abc\rde\rf");
  for (const auto& [index, line] : std::vector<std::pair<int, int>>{
           {-1, 0}, {0, 0}, {3, 0}, {4, 1}, {6, 1}, {7, 2}, {8, 2}, {99, 2}}) {
    EXPECT_EQ(text->FindLineNumber(index), line) << index;
  }
  for (const auto& [index, end] : std::vector<std::pair<int, int>>{
           {-1, 3}, {0, 3}, {3, 3}, {4, 6}, {6, 6}, {7, 8}, {8, 8}, {99, 8}}) {
    EXPECT_EQ(text->FindLineEnd(index), end) << index;
  }
}

TEST_F(Lines, ATextWithoutLinesHasTheFirst) {
  Place(Field());
  EXPECT_EQ(text->FindLineNumber(5), 0);
  EXPECT_EQ(text->FindLineEnd(0), 0);
}

TEST_F(Lines, OfLinesThatStartAtOneIndexTheLastHoldsIt) {
  Place(Field());
  text->SetBuffer("abc");
  SetLines({0, 0, 2, 3});
  EXPECT_EQ(text->FindLineNumber(0), 1);
  EXPECT_EQ(text->FindLineEnd(0), 1);
}

TEST_F(Lines, StaleTablesAreCutToTheText) {
  Make("abc\rdef\rabc");
  text->SetBuffer("ab");
  EXPECT_EQ(text->FindLineEnd(0), 2);
  EXPECT_EQ(text->FindLineEnd(1), 2);
  EXPECT_EQ(text->FindLineEnd(2), 2);
}

// Keys may come faster than pictures.
TEST_F(Lines, EndGoesToTheEndOfATextThatWasTypedOverAndNotDrawn) {
  Make("abc\rdef");
  text->HandleKeyDown(kKeySelectAll, 0);
  text->HandleKeyDown('a', 0);
  text->HandleKeyDown(kKeyEnd, 0);
  EXPECT_EQ(text->selectionCursor, 1);
}

TEST_F(Lines, TheCursorsLineIsScrolledIntoView) {
  Make("a\ra\ra\ra\ra\ra\ra\ra\ra");
  At(4);
  EXPECT_EQ(FindFrom(0, 0), "0 0");
  EXPECT_EQ(FindFrom(0, 2), "0 2");
  EXPECT_EQ(FindFrom(0, 3), "0 2");
  At(12);
  EXPECT_EQ(FindFrom(0, 1), "0 2") << "the last of five rows";
  EXPECT_EQ(FindFrom(0, 2), "0 2");
}

TEST_F(Lines, WithoutALineHeightTheLineBelowTheCursorsIsTheFirst) {
  Make("a\ra\ra\ra");
  SetRows(5000, 700, 0);
  At(2);
  EXPECT_EQ(FindFrom(0, 0), "0 2");
  EXPECT_EQ(FindFrom(0, 2), "0 2");
}

TEST_F(Lines, TheCursorsColumnIsScrolledIntoView) {
  Make("abcdefghijabcdefghij");
  At(10);
  EXPECT_EQ(FindFrom(0, 0), "0 0") << "at the edge it is seen";
  At(13);
  EXPECT_EQ(FindFrom(0, 0), "3 0");
  EXPECT_EQ(FindFrom(12, 0), "12 0");
}

TEST_F(Lines, AColumnScrolledAwayComesBackWithAQuarterOfTheFieldOnItsLeft) {
  Make("abcdefghijabcdefghij");
  At(8);
  EXPECT_EQ(FindFrom(15, 0), "5 0") << "250 units are three characters";
  EXPECT_EQ(FindFrom(8, 0), "5 0") << "the left edge is too far";
  At(2);
  EXPECT_EQ(FindFrom(15, 0), "0 0");
}

// Widths of 10 at the text's start and 100 behind would differ in both rules.
TEST_F(Lines, TheWidthsAreThoseFromTheTextsStart) {
  Make("abcdefghij\rabcdefghijabcdefghij");
  std::vector<int32_t> widths(32, 100);
  std::fill_n(widths.begin(), 11, 10);
  const SRECT rect = {0, 1000, 0, 5000};
  At(11 + 15);
  text->FindCursor(&rect, widths.data());
  EXPECT_EQ(text->hscroll, 0) << "11 times 10 and 4 times 100";
}

TEST_F(Lines, WrappedTextsHaveNoColumnToFind) {
  Make("abcdefghijabcdefghij", author::kEditWordWrap);
  At(18);
  EXPECT_EQ(FindFrom(3, 0), "3 0");
}

TEST_F(Lines, AFieldWithoutRoomScrollsToTheCursorAndEnds) {
  Make("abcdefghij");
  At(6);
  const std::vector<int32_t> widths(11, 100);
  const SRECT rect = {500, 100, 0, 5000};
  text->FindCursor(&rect, widths.data());
  EXPECT_EQ(text->hscroll, 6);
}

TEST_F(Lines, BlanksAndHyphensEndWords) {
  EXPECT_TRUE(EditText::BreakEnglish(' ', 'a'));
  EXPECT_TRUE(EditText::BreakEnglish('-', 0));
  EXPECT_FALSE(EditText::BreakEnglish('\r', ' '));
  for (uint32_t c = 0; c < 0x10000; c += 5) {
    EXPECT_EQ(EditText::LineBreakOK(static_cast<uint16_t>(c), 0),
              EditText::BreakEnglish(static_cast<uint16_t>(c), 0));
  }
  Make("a b-");
  std::string breaks;
  for (int32_t i = -1; i <= 5; ++i) breaks += text->LineBreakOK_Index(i) ? '1' : '0';
  EXPECT_EQ(breaks, "0010100");
}

TEST_F(Lines, ADrawBringsTheCursorIntoViewAfterAKey) {
  Make("abcdefghijabcdefghijabcdefghij");
  Key(kKeyEnd);
  ASSERT_TRUE(Draw());
  EXPECT_EQ(text->hscroll, 10);
  EXPECT_FALSE(text->scrollToCursor);
}

}  // namespace
}  // namespace vexel::test
