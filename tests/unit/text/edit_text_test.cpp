#include "edit_fixture.h"
#include "movie/budget.h"

namespace vexel::test {
namespace {

class Texts : public EditFixture {
 protected:
  // A field bound to `variable`, placed in a movie whose variable "given" has
  // the value "42".
  void PlaceBound(const std::string& variable, const std::optional<std::string>& initial) {
    player->SetVariable("given", "42");
    author::EditTextField field = Field();
    field.variable = variable;
    field.initialText = initial;
    Place(field);
  }
  std::string Variable(const char* name) {
    char* value = player->GetVariable(player.get(), name);
    const std::string result = value ? value : "(none)";
    FreeStr(value);
    return result;
  }
};

TEST_F(Texts, ANewFieldIsEmptyAndReadsItsRecord) {
  author::EditTextField field = Field(author::kEditMultiline);
  field.color = author::Color{1, 2, 3, 4};
  field.maxLength = 0xFFFE;
  field.layout = author::EditTextLayout{kAlignCenter, 1, 2, 3, -4};
  field.variable = "score";
  Place(field);
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(text->flags, author::kEditFont | author::kEditColor | author::kEditMaxLength |
                             author::kEditLayout | author::kEditMultiline | author::kEditOutlines);
  EXPECT_EQ(text->maxLength, 0xFFFE);
  EXPECT_EQ(text->align, kAlignCenter);
  EXPECT_STREQ(text->variableName, "score");
  EXPECT_EQ(text->initialText, nullptr);
  EXPECT_EQ(text->object, object);
  EXPECT_EQ(text->character, object->character);
  EXPECT_TRUE(RectIsEmpty(&text->textRect));
  EXPECT_FALSE(text->drawn);
  EXPECT_EQ(text->CalcVisibleLines(), 0);
}

TEST_F(Texts, ARecordThatIsCutShortReadsAsZeros) {
  author::EditTextField field = Field();
  field.maxLength = 5;
  field.variable = "name";
  field.initialText = "text";
  Place(field);
  SCharacter* character = object->character;
  const int32_t whole = character->data.length;
  for (int32_t length = 0; length <= whole; ++length) {
    character->data.length = length;
    EditText part(object);
    EXPECT_EQ(part.length, 0);
    EXPECT_LE(part.maxLength, 5);
    EXPECT_EQ(std::string("name").find(part.variableName), 0u) << length;
  }
}

TEST_F(Texts, TheNamesAreCopiesBecauseTheMovieCanStillBeWritten) {
  PlaceBound("name", "text");
  memset(object->character->data.bytes, 'x', static_cast<size_t>(object->character->data.length));
  EXPECT_STREQ(text->variableName, "name");
  EXPECT_STREQ(text->initialText, "text");
}

TEST_F(Texts, TakingATextClampsTheSelectionAndLeavesTheScrollPositions) {
  Make("abcdef");
  Select(5, 2);
  text->hscroll = 4;
  text->vscroll = 3;
  text->SetBuffer("xyz");
  EXPECT_EQ(State(), "xy|z<");
  EXPECT_EQ(text->length, 3);
  EXPECT_EQ(text->hscroll, 4);
  EXPECT_EQ(text->vscroll, 3);
}

TEST_F(Texts, NoTextIsTheEmptyText) {
  Make("abc");
  text->SetBuffer(nullptr);
  EXPECT_EQ(State(), "|");
}

TEST_F(Texts, BytesAndCharactersAreConvertedFromAnOffset) {
  uint16_t* wide = EditText::MBCSToWide("ab\xFF\xE4", 1, 3);
  EXPECT_EQ(EditText::WideStrLen(wide), 3);
  EXPECT_EQ(wide[0], 'b');
  EXPECT_EQ(wide[1], 0xFF);
  EXPECT_EQ(wide[2], 0xE4);
  char* bytes = EditText::WideToMBCS(wide, 1, 2);
  EXPECT_STREQ(bytes, "\xFF\xE4");
  delete[] bytes;
  delete[] wide;
  EXPECT_FALSE(EditText::IsMultiByte());
  EXPECT_FALSE(EditText::IsLeadByte(0x81));
}

TEST_F(Texts, ACharacterAbove255IsTwoBytesTheHighOneFirst) {
  const uint16_t wide[] = {0x8140, 'a', 0x100, 0xFF, 0};
  char* bytes = EditText::WideToMBCS(wide, 0, 3);
  EXPECT_EQ(std::string(bytes, 5), std::string("\x81@a\x01\0", 5));
  delete[] bytes;
  uint16_t copy[5];
  EditText::WideStrCopy(copy, wide);
  EXPECT_EQ(memcmp(copy, wide, sizeof wide), 0);
}

TEST_F(Texts, ExpandingKeepsTheTextAndGrowsExactly) {
  Make("abc");
  const uint16_t* before = text->buffer;
  EXPECT_TRUE(text->Expand(3));
  EXPECT_EQ(text->buffer, before);
  EXPECT_TRUE(text->Expand(4));
  EXPECT_NE(text->buffer, before);
  EXPECT_EQ(Text(), "abc");
  EXPECT_EQ(text->length, 3);
  EXPECT_EQ(text->buffer[3], 0);
  EXPECT_EQ(text->buffer[4], 0);
}

TEST_F(Texts, WhatDoesNotFitTheBudgetLeavesTheOldText) {
  Make("abc");
  constexpr int64_t kTaken = kMaxScriptText - 100000;
  ASSERT_TRUE(ChargeScriptText(kTaken));
  text->SetBuffer(std::string(60000, 'a').c_str());
  EXPECT_EQ(Text(), "abc");
  EXPECT_FALSE(text->Expand(60000));
  EXPECT_EQ(Text(), "abc");
  text->SetBuffer("de");
  EXPECT_EQ(Text(), "de");
  ChargeScriptText(-kTaken);
}

// Required: fields are counted in the budget for as long as they are there.
TEST_F(Texts, FieldsGiveBackWhatTheyTookOfTheBudget) {
  for (int i = 0; i < 40; ++i) {
    Reset();
    PlaceBound("v", std::string(1 << 20, 'a'));
    ASSERT_EQ(text->length, 1 << 20) << i;
    text->Expand((1 << 20) + 50);
    text->SetBuffer("a");
  }
}

TEST_F(Texts, LongTextsArePaidForOutOfTheTagBudget) {
  Make("");
  const std::string long_text(1 << 20, 'a');
  const int32_t before = player->display.tagsLeft;
  text->SetBuffer(long_text.c_str());
  EXPECT_LE(player->display.tagsLeft, before - (1 << 14));
}

TEST_F(Texts, AFieldShowsItsVariable) {
  PlaceBound("given", "text");
  EXPECT_EQ(Text(), "42");
  EXPECT_EQ(Variable("given"), "42");
}

TEST_F(Texts, AVariableThatIsNotThereTakesTheInitialText) {
  PlaceBound("score", "none yet");
  EXPECT_EQ(Text(), "none yet");
  EXPECT_EQ(Variable("score"), "none yet");
}

TEST_F(Texts, WithoutAnInitialTextTheVariableStaysAway) {
  PlaceBound("score", std::nullopt);
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(Variable("score"), "(none)");
}

TEST_F(Texts, AFieldWithoutANameShowsItsInitialText) {
  PlaceBound("", "text");
  EXPECT_EQ(Text(), "text");
  Reset();
  PlaceBound("/:", "text");
  EXPECT_EQ(Text(), "text");
}

TEST_F(Texts, APathLeadsToTheTimelineOfTheVariable) {
  PlaceBound("/:given", std::nullopt);
  EXPECT_EQ(Text(), "42");
}

TEST_F(Texts, APathThatLeadsNowhereShowsNothing) {
  PlaceBound("/nothing:given", "text");
  EXPECT_EQ(Text(), "");
}

TEST_F(Texts, ASavedFocusIsTakenUpByTheFieldOfItsNameAndDepth) {
  PlaceBound("given", std::nullopt);
  Select(1, 2);
  text->selecting = true;
  player->saveFocus.Save(object);
  Select(0, 0);
  text->selecting = false;
  object->depth = 2;
  text->UpdateFromVariable();
  EXPECT_EQ(player->focus.Get(), nullptr);
  object->depth = 1;
  text->UpdateFromVariable();
  EXPECT_EQ(player->focus.Get(), object);
  EXPECT_EQ(State(), "4<2|");
  EXPECT_TRUE(text->selecting);
}

TEST_F(Texts, ASelectionThatIsTakenUpStaysInsideAShorterText) {
  PlaceBound("given", std::nullopt);
  Select(2, 1);
  player->saveFocus.Save(object);
  player->SetVariable("given", "");
  text->UpdateFromVariable();
  EXPECT_EQ(State(), "|");
  EXPECT_EQ(player->focus.Get(), object);
}

TEST_F(Texts, AMovieOnItsOwnHasNoVariablesToShow) {
  PlaceBound("given", "text");
  text->SetBuffer("abc");
  player->splayer = nullptr;
  text->UpdateFromVariable();
  EXPECT_EQ(Text(), "abc");
  player->splayer = player.get();
}

}  // namespace
}  // namespace vexel::test
