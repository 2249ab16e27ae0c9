#include "edit_fixture.h"
#include "movie/budget.h"

namespace vexel::test {
namespace {

class Inserting : public EditFixture {
 protected:
  void Insert(const std::string& bytes) {
    text->Insert(bytes.c_str(), static_cast<int32_t>(bytes.size()));
  }
  // A field whose font has the characters of `codes` only.
  void MakeWithFont(const std::string& codes, const std::string& characters) {
    author::Font font = BoxFont();
    font.glyphs.clear();
    for (const char c : codes) font.glyphs.push_back(BoxGlyph(static_cast<uint8_t>(c)));
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, font);
    Place(Field(), {0, 2080, 0, 5080}, fonts);
    ASSERT_TRUE(Draw(characters.c_str()));
  }
};

TEST_F(Inserting, TypingPutsCharactersAtTheCursorAndMovesIt) {
  Make("ad");
  At(1);
  Type("bc");
  EXPECT_EQ(State(), "abc|d");
}

TEST_F(Inserting, TypingAtTheLimitInInsertModeChangesNothing) {
  MakeLimited("abc", 3);
  At(1);
  Type("n");
  EXPECT_EQ(State(), "a|bc");
}

TEST_F(Inserting, FiveCharactersWithRoomForTwoInsertTheFirstTwo) {
  MakeLimited("abc", 5);
  At(1);
  Insert("ghijk");
  EXPECT_EQ(State(), "agh|bc");
}

TEST_F(Inserting, ATextBeyondItsLimitTakesNothing) {
  MakeLimited("abcdef", 3);
  At(2);
  Insert("gh");
  EXPECT_EQ(State(), "ab|cdef");
}

TEST_F(Inserting, ALimitOfZeroIsNone) {
  MakeLimited("", 0);
  Insert(std::string(5000, 'a'));
  EXPECT_EQ(text->length, 5000);
}

TEST_F(Inserting, OverwritingInsideDoesNotLengthenTheText) {
  Make("abcdef");
  EditText::m_insertMode = false;
  At(1);
  Insert("gh");
  EXPECT_EQ(State(), "agh|def");
}

TEST_F(Inserting, OverwritingAtTheEndLengthensTheTextUpToItsLimit) {
  MakeLimited("abc", 5);
  EditText::m_insertMode = false;
  At(2);
  Insert("ghijk");
  EXPECT_EQ(State(), "abghi|");
  Insert("j");
  EXPECT_EQ(State(), "abghi|");
}

TEST_F(Inserting, OverwritingTheEndOfATextBeyondItsLimitCutsIt) {
  MakeLimited("abcdef", 4);
  EditText::m_insertMode = false;
  At(3);
  Insert("ghijk");
  EXPECT_EQ(State(), "abcg|");
}

TEST_F(Inserting, OverwritingBehindTheLimitDoesNothing) {
  MakeLimited("abcdef", 4);
  EditText::m_insertMode = false;
  At(6);
  Insert("g");
  EXPECT_EQ(State(), "abcdef|");
}

TEST_F(Inserting, AFontOfCapitalsTakesLowerCaseLettersAsCapitals) {
  MakeWithFont("ABC", "");
  Type("aBc");
  EXPECT_EQ(State(), "ABC|");
}

TEST_F(Inserting, AFontOfLowerCaseLettersTakesCapitalsAsThose) {
  MakeWithFont("abc", "");
  Type("aBC");
  EXPECT_EQ(State(), "abc|");
}

TEST_F(Inserting, WhatTheFontLacksIsDropped) {
  Make("a");
  At(1);
  Insert("1b2\xE4g");
  EXPECT_EQ(State(), "abg|");
  Key('7');
  EXPECT_EQ(State(), "abg|");
}

TEST_F(Inserting, LineEndsNeedNoGlyph) {
  Make("");
  Insert("a\rb\nc");
  EXPECT_EQ(State(), "a\rb\nc|");
}

TEST_F(Inserting, ASelectionIsReplaced) {
  Make("abcdef");
  Select(4, 1);
  text->atLineEnd = true;
  Insert("g");
  EXPECT_EQ(State(), "ag|ef");
  EXPECT_FALSE(text->atLineEnd);
}

TEST_F(Inserting, ASelectionGoesEvenIfNothingCanBeShown) {
  Make("abcdef");
  Select(1, 4);
  Insert("7");
  EXPECT_EQ(State(), "a|ef");
}

TEST_F(Inserting, ACountOfNothingKeepsTheSelection) {
  Make("abc");
  Select(0, 2);
  Insert("");
  EXPECT_EQ(State(), "<ab|c");
}

TEST_F(Inserting, TheModeIsSharedByAllFields) {
  Make("abc");
  Key(kKeyInsert);
  Reset();
  Make("abc");
  Type("n");
  EXPECT_EQ(State(), "n|bc");
}

TEST_F(Inserting, WithoutMemoryTheTextStays) {
  Make("abc");
  At(1);
  ASSERT_TRUE(ChargeScriptText(kMaxScriptText - 1000 - 4096));
  Insert(std::string(3000, 'a'));
  EXPECT_EQ(State(), "a|bc");
  Insert("b");
  EXPECT_EQ(State(), "ab|bc");
  ChargeScriptText(-(kMaxScriptText - 1000 - 4096));
}

TEST_F(Inserting, AMegabyteIsTypedIntoLikeAnyText) {
  const std::string long_text(1 << 20, 'a');
  Make("");
  Insert(long_text);
  EXPECT_EQ(text->length, 1 << 20);
  Type("bcd");
  EXPECT_EQ(Text(), long_text + "bcd");
  At(5);
  Type("b");
  Key(kKeyBackspace);
  Key(kKeyDelete);
  EXPECT_EQ(text->length, (1 << 20) + 2);
  EXPECT_EQ(text->selectionCursor, 5);
}

}  // namespace
}  // namespace vexel::test
