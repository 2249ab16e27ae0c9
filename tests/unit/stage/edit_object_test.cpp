#include <string>
#include <vector>

#include "movie/script_player.h"
#include "support/stage_fixture.h"
#include "text/edit_text.h"

namespace vexel::test {
namespace {

class Fields : public StageFixture {
 protected:
  SCharacter* DefineField(uint16_t id, const std::string& variable,
                          const std::optional<std::string>& initial = {}) {
    author::EditTextField field;
    field.variable = variable;
    field.initialText = initial;
    author::BitWriter record;
    author::WriteEditText(record, field);
    SCharacter* character = Define(id, charEditText);
    character->data = CopyBytes(record.bytes());
    return character;
  }
  SObject* PlaceField(uint16_t depth, const std::string& variable,
                      const std::optional<std::string>& initial = {}) {
    return Place(layer, depth, DefineField(static_cast<uint16_t>(depth + 100), variable, initial));
  }
  SObject* Move(uint16_t depth, SCharacter* character) {
    PlaceInfo info = Info(depth, character);
    info.flags |= kPlaceMove;
    return stage.MoveObject(layer, &info);
  }
  static std::string Text(const SObject* object) {
    if (!object->editText) return "(no field)";
    char* bytes = object->editText->GetBuffer();
    const std::string text = bytes ? bytes : "(none)";
    delete[] bytes;
    return text;
  }
  // As if `count` lines were drawn of which `shown` fit.
  static void SetLines(SObject* object, int32_t count, int32_t shown) {
    EditText* text = object->editText;
    text->lineCount = count;
    text->lineHeight = 100;
    text->textRect = {0, 100, 0, 100 * (shown - 1)};
  }

  SObject* MakeLayer() {
    SObject* root = Place(0, Define(90, charRoot));
    root->thread = &player;
    player.rootObject = root;
    return root;
  }
  SObject* layer = MakeLayer();
};

TEST_F(Fields, APlacedFieldReadsItsVariableAtOnce) {
  player.SetVariable("v", "value");
  EXPECT_EQ(Text(PlaceField(1, "v")), "value");
}

TEST_F(Fields, AFieldGoesWithItsObject) {
  SObject* field = PlaceField(1, "v", "text");
  EXPECT_EQ(stage.texts, field->editText);
  SObject* second = PlaceField(2, "v");
  player.focus.Set(second);
  stage.RemoveObject(layer, 1);
  EXPECT_EQ(stage.texts, second->editText);
  EXPECT_EQ(player.focus.Get(), second);
  stage.RemoveObject(layer, 2);
  EXPECT_EQ(stage.texts, nullptr);
  EXPECT_EQ(player.focus.Get(), nullptr);
}

TEST_F(Fields, InsideAHoldTheVariableIsReadAtItsEnd) {
  PlaceField(1, "first");
  stage.BeginHold(layer);
  SObject* early = Place(layer, 1, player.FindCharacter(101));
  SObject* later = PlaceField(2, "v", "text");
  EXPECT_EQ(Text(later), "");
  EXPECT_EQ(player.FindVariable("v"), nullptr);
  player.SetVariable("first", "1");
  stage.FinishHold();
  EXPECT_NE(stage.FindObject(layer, 1), early) << "the held one stays";
  EXPECT_EQ(Text(stage.FindObject(layer, 1)), "1");
  EXPECT_EQ(Text(later), "text");
}

TEST_F(Fields, InASpriteThatIsPlacedDuringAHoldTheyReadTheirVariableAtOnce) {
  DefineField(5, "/:v");
  player.SetVariable("v", "value");
  author::TagStream tags;
  tags.Place(5, 1).FrameEnd();
  SCharacter* sprite = DefineSprite(6, tags);
  stage.BeginHold(layer);
  SObject* object = Place(layer, 3, sprite);
  EXPECT_EQ(Text(object->firstChild), "value");
  stage.FinishHold();
}

TEST_F(Fields, ATextThatBecomesAShapeLosesItsFieldAndTheFocus) {
  SObject* object = PlaceField(1, "v", "text");
  player.focus.Set(object);
  ASSERT_EQ(Move(1, Define(7, charShape)), object);
  EXPECT_EQ(object->character->type, charShape);
  EXPECT_EQ(object->editText, nullptr);
  EXPECT_EQ(player.focus.Get(), nullptr);
  EXPECT_EQ(stage.texts, nullptr);
}

TEST_F(Fields, AShapeThatBecomesATextGetsAField) {
  SObject* object = Place(layer, 1, Define(7, charShape));
  EXPECT_EQ(object->editText, nullptr);
  Move(1, DefineField(8, "v", "text"));
  EXPECT_EQ(Text(object), "text");
}

TEST_F(Fields, AnotherTextIsAnotherFieldAndTheSameOneStays) {
  SObject* object = PlaceField(1, "v", "text");
  EditText* before = object->editText;
  before->selectionCursor = 2;
  Move(1, object->character);
  EXPECT_EQ(object->editText, before);
  EXPECT_EQ(before->selectionCursor, 2);
  Move(1, DefineField(8, "w", "other"));
  EXPECT_EQ(Text(object), "other");
  EXPECT_EQ(object->editText->selectionCursor, 0);
  EXPECT_EQ(object->editText->character, object->character);
}

TEST_F(Fields, ATextNeverBecomesAButtonOrASprite) {
  SObject* object = PlaceField(1, "v", "text");
  const author::TagStream empty;
  Move(1, DefineSprite(6, empty));
  Move(1, Define(7, charButton));
  EXPECT_EQ(Text(object), "text");
}

// What a text shows when the variable of its timeline changes.
class Showing : public Fields {
 protected:
  void Update(const char* name, const char* value, bool force = true) {
    stage.root.UpdateEditText(&player, name, value, force);
  }
};

TEST_F(Showing, EveryFieldOfTheVariableTakesTheValueAndIsModified) {
  SObject* a = PlaceField(1, "Score");
  SObject* b = PlaceField(2, "/:score");
  SObject* other = PlaceField(3, "scores");
  SObject* nameless = PlaceField(4, "");
  a->dirty = b->dirty = other->dirty = false;
  Update("sCORE", "12");
  EXPECT_EQ(Text(a), "12");
  EXPECT_EQ(Text(b), "12");
  EXPECT_EQ(Text(other), "");
  EXPECT_EQ(Text(nameless), "");
  EXPECT_TRUE(a->dirty);
  EXPECT_TRUE(b->dirty);
  EXPECT_FALSE(other->dirty);
}

TEST_F(Showing, WithoutForceTheFocusedFieldIsLeftAlone) {
  SObject* focused = PlaceField(1, "v");
  SObject* other = PlaceField(2, "v");
  player.focus.Set(focused);
  focused->editText->SetBuffer("typing");
  focused->dirty = false;
  Update("v", "written", false);
  EXPECT_EQ(Text(focused), "typing");
  EXPECT_FALSE(focused->dirty);
  EXPECT_EQ(Text(other), "written");
  Update("v", "forced");
  EXPECT_EQ(Text(focused), "forced");
}

TEST_F(Showing, AVariableOfAnotherTimelineIsAnotherOne) {
  author::TagStream tags;
  tags.Place(5, 1).FrameEnd();
  DefineField(5, "v");
  SObject* sprite = Place(layer, 2, DefineSprite(6, tags));
  SObject* field = PlaceField(1, "v");
  Update("v", "outer");
  EXPECT_EQ(Text(field), "outer");
  EXPECT_EQ(Text(sprite->firstChild), "");
  stage.root.UpdateEditText(sprite->thread, "v", "inner", true);
  EXPECT_EQ(Text(field), "outer");
  EXPECT_EQ(Text(sprite->firstChild), "inner");
}

TEST_F(Showing, OnlyFieldsBelowTheObjectTakeIt) {
  SObject* field = PlaceField(1, "v");
  SObject* beside = PlaceField(2, "v");
  beside->UpdateEditText(&player, "v", "one", true);
  EXPECT_EQ(Text(field), "");
  EXPECT_EQ(Text(beside), "one");
}

TEST_F(Showing, FieldsOnHoldDoNot) {
  SObject* held = PlaceField(1, "v");
  stage.BeginHold(layer);
  SObject* placed = PlaceField(2, "v");
  Update("v", "value");
  EXPECT_EQ(Text(held), "");
  EXPECT_EQ(Text(placed), "value");
  stage.FinishHold();
}

TEST_F(Showing, AChangedVariableIsShownAtOnce) {
  SObject* field = PlaceField(1, "v");
  player.SetVariable("v", "value");
  EXPECT_EQ(Text(field), "value");
  player.focus.Set(field);
  player.SetVariable("v", "own", false);
  EXPECT_EQ(Text(field), "value");
}

TEST_F(Showing, OnceTheTagBudgetIsSpentFieldsAreNotLookedUp) {
  SObject* field = PlaceField(1, "v");
  stage.tagsLeft = 0;
  Update("v", "value");
  EXPECT_EQ(Text(field), "");
  int32_t value = 0;
  EXPECT_FALSE(stage.root.ScrollEditText(&player, "v", kScrollGet, value));
  stage.ResetTagBudget();
}

class Scrolling : public Fields {
 protected:
  // The value after a ScrollEditText, "no" without a field.
  std::string Scroll(const char* name, int32_t mode, int32_t value = -77) {
    if (!stage.root.ScrollEditText(&player, name, mode, value)) return "no";
    return std::to_string(value);
  }
};

TEST_F(Scrolling, TheFirstLineIsOne) {
  SObject* field = PlaceField(1, "v");
  SetLines(field, 10, 4);
  EXPECT_EQ(Scroll("v", kScrollGet), "1");
  EXPECT_EQ(Scroll("v", kScrollGetMax), "7");
  field->editText->vscroll = 3;
  EXPECT_EQ(Scroll("v", kScrollGet), "4");
}

TEST_F(Scrolling, WhatIsSetIsLimitedAndReadBackFromZero) {
  SObject* field = PlaceField(1, "v");
  SetLines(field, 10, 4);
  field->dirty = false;
  EXPECT_EQ(Scroll("v", kScrollSet, 5), "4");
  EXPECT_EQ(field->editText->vscroll, 4);
  EXPECT_TRUE(field->dirty);
  EXPECT_EQ(Scroll("v", kScrollSet, 99), "6");
  EXPECT_EQ(field->editText->vscroll, 6);
}

TEST_F(Scrolling, ScrollSetToZeroGivesZero) {
  SObject* field = PlaceField(1, "v");
  SetLines(field, 10, 4);
  EXPECT_EQ(Scroll("v", kScrollSet, 0), "0");
  EXPECT_EQ(field->editText->vscroll, 0);
  EXPECT_EQ(Scroll("v", kScrollSet, -0x7FFFFFFF - 1), "0");
}

TEST_F(Scrolling, AnyOtherModeFindsTheFieldAndDoesNothing) {
  PlaceField(1, "v");
  EXPECT_EQ(Scroll("v", 3), "-77");
}

TEST_F(Scrolling, TheFirstFieldOfExactlyThatNameIsMeant) {
  SObject* upper = PlaceField(5, "v");
  SObject* lower = PlaceField(3, "v");
  SetLines(upper, 10, 4);
  SetLines(lower, 10, 4);
  EXPECT_EQ(Scroll("V", kScrollGet), "no") << "the case counts";
  EXPECT_EQ(Scroll("v", kScrollSet, 2), "1");
  EXPECT_EQ(lower->editText->vscroll, 1);
  EXPECT_EQ(upper->editText->vscroll, 0);
}

TEST_F(Scrolling, FieldsOfOtherTimelinesAreNotMeant) {
  author::TagStream tags;
  tags.Place(5, 1).FrameEnd();
  DefineField(5, "v");
  Place(layer, 2, DefineSprite(6, tags));
  EXPECT_EQ(Scroll("v", kScrollGet), "no");
}

}  // namespace
}  // namespace vexel::test
