#include "edit_fixture.h"

namespace vexel::test {
namespace {

using author::kEditMultiline;
using author::kEditPassword;
using author::kEditReadOnly;
using author::kEditWordWrap;

constexpr int32_t kBoth = kModifierShift | kModifierControl;

class Keys : public EditFixture {};

// Rows of 20: the first ends with the blank at 19, the second at 39.
constexpr char kWrapped[] = "abcdefghijabcdefghi abcdefghijabcdefghi abc";

TEST_F(Keys, NothingHappensBeforeTheFirstDraw) {
  Place(Field());
  text->SetBuffer("abc");
  Type("d");
  Key(kKeyEnd);
  EXPECT_EQ(State(), "|abc");
  EXPECT_FALSE(text->scrollToCursor);
  EXPECT_EQ(Calls(), "");
}

TEST_F(Keys, EveryKeyBringsTheCursorIntoViewAndOwnsTheSelection) {
  Make("abc", kEditReadOnly);
  for (const int32_t key : {int32_t{kKeyLeft}, int32_t{kKeyDelete}, int32_t{'a'}}) {
    text->scrollToCursor = false;
    Key(key);
    EXPECT_TRUE(text->scrollToCursor);
    EXPECT_EQ(Calls(), "own ");
  }
}

TEST_F(Keys, LeftAndRightStepAndStopAtTheEnds) {
  Make("ab");
  EXPECT_EQ(AfterKey(kKeyLeft), "|ab");
  EXPECT_EQ(AfterKey(kKeyRight), "a|b");
  EXPECT_EQ(AfterKey(kKeyRight), "ab|");
  EXPECT_EQ(AfterKey(kKeyRight), "ab|");
  EXPECT_EQ(AfterKey(kKeyLeft), "a|b");
}

TEST_F(Keys, ShiftLeavesTheAnchor) {
  Make("abc");
  EXPECT_EQ(AfterKey(kKeyRight, kModifierShift), "<a|bc");
  EXPECT_EQ(AfterKey(kKeyEnd, kModifierShift), "<abc|");
  EXPECT_EQ(AfterKey(kKeyHome, kModifierShift), "|abc");
  EXPECT_EQ(AfterKey(kKeyPageDown, kModifierShift), "<abc|");
  EXPECT_EQ(AfterKey(kKeyLeft), "ab|c");
  EXPECT_EQ(AfterKey(kKeyPageUp, kModifierShift), "|ab<c");
}

TEST_F(Keys, ControlStepsByWords) {
  Make("ab cd");
  EXPECT_EQ(AfterKey(kKeyRight, kModifierControl), "ab| cd");
  EXPECT_EQ(AfterKey(kKeyRight, kBoth), "ab< cd|");
  EXPECT_EQ(AfterKey(kKeyLeft, kModifierControl), "ab |cd");
}

TEST_F(Keys, HomeGoesToTheLinesStartAndWithControlToTheTexts) {
  Make("ab\rcd");
  At(4);
  EXPECT_EQ(AfterKey(kKeyHome), "ab\r|cd");
  At(4);
  EXPECT_EQ(AfterKey(kKeyHome, kModifierControl), "|ab\rcd");
}

TEST_F(Keys, HomeBehindAWrappedLineStaysInThatLine) {
  Make(kWrapped, kEditWordWrap);
  At(20);
  text->atLineEnd = true;
  Key(kKeyHome);
  EXPECT_EQ(text->selectionCursor, 0);
  EXPECT_FALSE(text->atLineEnd);
  At(20);
  Key(kKeyHome);
  EXPECT_EQ(text->selectionCursor, 20);
}

TEST_F(Keys, EndGoesInFrontOfALineEnd) {
  Make("ab\rcd");
  EXPECT_EQ(AfterKey(kKeyEnd), "ab|\rcd");
  EXPECT_FALSE(text->atLineEnd);
  At(3);
  EXPECT_EQ(AfterKey(kKeyEnd), "ab\rcd|");
  At(0);
  EXPECT_EQ(AfterKey(kKeyEnd, kModifierControl), "ab\rcd|");
}

TEST_F(Keys, EndGoesBehindTheBlankThatWrapsALineAndStaysThere) {
  Make(kWrapped, kEditWordWrap);
  Key(kKeyEnd);
  EXPECT_EQ(text->selectionCursor, 20);
  EXPECT_TRUE(text->atLineEnd);
  Key(kKeyEnd);
  EXPECT_EQ(text->selectionCursor, 20);
  Key(kKeyEnd, kModifierControl);
  EXPECT_EQ(text->selectionCursor, 20);
  EXPECT_TRUE(text->atLineEnd);
}

TEST_F(Keys, InsertSwitchesTheMode) {
  Make("abc", kEditReadOnly);
  Key(kKeyInsert);
  EXPECT_FALSE(EditText::m_insertMode);
  Key(kKeyInsert);
  EXPECT_TRUE(EditText::m_insertMode);
}

TEST_F(Keys, DeleteTakesTheCharacterBehindTheCursorOrTheSelection) {
  Make("abcdef");
  At(1);
  EXPECT_EQ(AfterKey(kKeyDelete), "a|cdef");
  Select(1, 3);
  EXPECT_EQ(AfterKey(kKeyDelete), "a|ef");
  At(3);
  EXPECT_EQ(AfterKey(kKeyDelete), "aef|");
}

TEST_F(Keys, ControlDeleteAtAWordsStartTakesTheWordAndLeavesTheBlank) {
  Make("ab cd ef");
  At(3);
  EXPECT_EQ(AfterKey(kKeyDelete, kModifierControl), "ab | ef");
  EXPECT_EQ(AfterKey(kKeyDelete, kModifierControl), "ab |") << "from a blank: blanks and a word";
}

TEST_F(Keys, ControlDeleteTakesASelectionAlone) {
  Make("ab cd ef");
  Select(3, 4);
  EXPECT_EQ(AfterKey(kKeyDelete, kModifierControl), "ab |d ef");
}

TEST_F(Keys, ControlDeleteWithShiftOnlyTakesTheCursorToItsLine) {
  Make("ab cd");
  At(3);
  text->atLineEnd = true;
  EXPECT_EQ(AfterKey(kKeyDelete, kBoth), "ab |cd");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Keys, ClearTakesTheSelectionAlone) {
  Make("abcd");
  At(1);
  text->atLineEnd = true;
  EXPECT_EQ(AfterKey(kKeyClear), "a|bcd");
  EXPECT_FALSE(text->atLineEnd);
  Select(3, 1);
  EXPECT_EQ(AfterKey(kKeyClear), "a|d");
}

TEST_F(Keys, BackspaceTakesTheCharacterInFrontOrTheSelection) {
  Make("abcd");
  At(2);
  EXPECT_EQ(AfterKey(kKeyBackspace), "a|cd");
  EXPECT_EQ(AfterKey(kKeyBackspace), "|cd");
  EXPECT_EQ(AfterKey(kKeyBackspace), "|cd");
  Select(0, 1);
  EXPECT_EQ(AfterKey(kKeyBackspace), "|d");
}

TEST_F(Keys, CutCopiesAndTakesTheSelection) {
  Make("abcd");
  Select(3, 1);
  EXPECT_EQ(AfterKey(kKeyCut), "a|d");
  EXPECT_EQ(Calls(), "set 'bc' own ");
}

TEST_F(Keys, CopyNeedsASelection) {
  Make("abcd", kEditReadOnly);
  At(1);
  Key(kKeyCopy);
  EXPECT_EQ(Calls(), "own ");
  Select(1, 3);
  EXPECT_EQ(AfterKey(kKeyCopy), "a<bc|d");
  EXPECT_EQ(Calls(), "set 'bc' own ");
}

TEST_F(Keys, CopyIsObeyedInAPasswordAlthoughNoMenuOffersIt) {
  Make("abc", kEditPassword);
  Select(0, 3);
  int32_t commands = 0;
  text->GetEnabledCommands(commands);
  EXPECT_EQ(commands & (kEditCopy | kEditCut), 0);
  Key(kKeyCopy);
  EXPECT_EQ(Calls(), "set 'abc' own ");
}

TEST_F(Keys, PasteTakesTheSelectionAndAsksForTheClipboard) {
  Make("abcd");
  Select(1, 3);
  text->atLineEnd = true;
  EXPECT_EQ(AfterKey(kKeyPaste), "a|d");
  EXPECT_EQ(Calls(), "paste own ");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Keys, SelectingAllPutsTheCursorAtZeroAndTheAnchorAtTheEnd) {
  Make("abc");
  At(2);
  text->hscroll = 1;
  EXPECT_EQ(AfterKey(kKeySelectAll), "|abc<");
  EXPECT_EQ(text->selectionCursor, 0);
  EXPECT_EQ(text->selectionAnchor, text->length);
  EXPECT_EQ(text->hscroll, 0);
}

TEST_F(Keys, EnterMakesALineOnlyInAFieldOfSeveral) {
  Make("ab");
  At(1);
  EXPECT_EQ(AfterKey(kKeyReturn), "a|b");
  Reset();
  Make("ab", kEditMultiline);
  At(1);
  EXPECT_EQ(AfterKey(kKeyReturn), "a\r|b");
}

TEST_F(Keys, UpAndDownKeepTheColumnAsFarAsTheLineReaches) {
  Make("abcd\rb\rabcd");
  At(3);
  EXPECT_EQ(AfterKey(kKeyDown), "abcd\rb|\rabcd");
  EXPECT_EQ(AfterKey(kKeyDown), "abcd\rb\ra|bcd");
  At(10);
  EXPECT_EQ(AfterKey(kKeyUp), "abcd\rb|\rabcd");
  EXPECT_EQ(AfterKey(kKeyUp, kModifierShift), "a|bcd\rb<\rabcd");
}

// An indent that leaves no room makes an empty line in front of the characters,
// which starts where they do.
TEST_F(Keys, UpAndDownAreHeldToTheEndOfTheLineThatTheTargetsStartIsOn) {
  Place(WithLayout(kEditWordWrap, {.indent = 2500}));
  ASSERT_TRUE(Draw("ab\rcd"));
  ASSERT_EQ(LineStarts(), (std::vector<int32_t>{0, 0, 3, 3, 5}));
  At(1);
  EXPECT_EQ(AfterKey(kKeyDown), "ab\rc|d");
  EXPECT_EQ(AfterKey(kKeyUp), "ab\rc|d");
}

TEST_F(Keys, UpOnTheFirstAndDownOnTheLastLineStay) {
  Make("abc\rabc");
  At(2);
  EXPECT_EQ(AfterKey(kKeyUp), "ab|c\rabc");
  At(6);
  EXPECT_EQ(AfterKey(kKeyDown), "abc\rab|c");
}

TEST_F(Keys, DownReachesAnEmptyLastLine) {
  Make("ab\r");
  At(1);
  EXPECT_EQ(AfterKey(kKeyDown), "ab\r|");
  EXPECT_EQ(AfterKey(kKeyDown), "ab\r|");
  EXPECT_EQ(AfterKey(kKeyUp), "|ab\r");
}

TEST_F(Keys, UpAndDownBehindAWrappedLineStartFromThatLine) {
  Make(kWrapped, kEditWordWrap);
  At(20);
  text->atLineEnd = true;
  Key(kKeyDown);
  EXPECT_EQ(text->selectionCursor, 39);
  EXPECT_FALSE(text->atLineEnd);
  At(40);
  text->atLineEnd = true;
  Key(kKeyUp);
  EXPECT_EQ(text->selectionCursor, 19);
}

TEST_F(Keys, DocumentStartAndEnd) {
  Make("ab\rcd");
  At(1);
  text->atLineEnd = true;
  EXPECT_EQ(AfterKey(kKeyPageDown), "ab\rcd|");
  EXPECT_FALSE(text->atLineEnd);
  text->atLineEnd = true;
  EXPECT_EQ(AfterKey(kKeyPageUp), "|ab\rcd");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Keys, AReadOnlyFieldMovesButDoesNotChange) {
  Make("abcd", kEditReadOnly | kEditMultiline);
  Select(1, 2);
  for (const int32_t key :
       {int32_t{kKeyDelete}, int32_t{kKeyClear}, int32_t{kKeyBackspace}, int32_t{kKeyCut},
        int32_t{kKeyPaste}, int32_t{kKeyReturn}, int32_t{'b'}}) {
    EXPECT_EQ(AfterKey(key), "a<b|cd") << key;
  }
  EXPECT_EQ(Calls(), "own own own own own own own ");
  EXPECT_EQ(AfterKey(kKeyEnd), "abcd|");
}

TEST_F(Keys, ANegativeCodeIsTheByteThatItEndsWith) {
  author::Font font = BoxFont();
  font.glyphs.push_back(BoxGlyph(0xE4));
  author::TagStream fonts;
  fonts.DefineFont2(kBoxFont, font);
  Place(Field(), {0, 2080, 0, 5080}, fonts);
  ASSERT_TRUE(Draw("a"));
  Key(static_cast<int8_t>(0xE4));
  EXPECT_EQ(Text(),
            "\xE4"
            "a");
}

TEST_F(Keys, KeysAfterAnEditAndBeforeTheNextDrawStayInsideTheText) {
  Make("abcd\rabcd\rabcd\rabcd");
  for (const int32_t shown : {0, 1, 3, 7}) {
    for (int32_t key = 1; key < 40; ++key) {
      if (key == kKeySelectAll || key == kKeyInsert) continue;
      for (const int32_t modifiers : {0, 1, 2, 3}) {
        text->SetBuffer(std::string(static_cast<size_t>(shown), 'b').c_str());
        At(shown);
        text->hscroll = text->vscroll = 4;
        Key(key, modifiers);
        ASSERT_GE(text->selectionCursor, 0) << key;
        ASSERT_LE(text->selectionCursor, text->length) << key;
        ASSERT_GE(text->selectionAnchor, 0) << key;
        ASSERT_LE(text->selectionAnchor, text->length) << key;
        ASSERT_EQ(text->length, EditText::WideStrLen(text->buffer));
      }
    }
  }
}

}  // namespace
}  // namespace vexel::test
