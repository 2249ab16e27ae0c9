#include "stage/button.h"

#include "movie/budget.h"
#include "support/button_fixture.h"

namespace vexel::test {
namespace {

using author::ButtonRecord;
using author::TagStream;

// Two buttons side by side: 1 at depth 10 on the left, 2 at depth 20 on the
// right.
class Buttons : public ButtonFixture {
 protected:
  void LoadPair(bool menu) {
    Rectangle(1, 0, 0, 40, 40);
    Rectangle(2, 60, 0, 100, 40);
    Button(11, 1, menu);
    Button(12, 2, menu);
    movie.Place(11, 10).Place(12, 20);
    Load();
    a = At(10);
    b = At(20);
  }
  SObject* a = nullptr;
  SObject* b = nullptr;
};

TEST_F(Buttons, APlacedButtonIsIdleAndShowsItsIdleRecords) {
  LoadPair(false);
  EXPECT_EQ(a->buttonState, buttonIdle);
  EXPECT_EQ(Children(*a), "11");
  EXPECT_EQ(Children(*b), "21");
  EXPECT_EQ(stage.button, nullptr);
}

TEST_F(Buttons, EachStateShowsItsRecords) {
  LoadPair(false);
  stage.UpdateButton(a, buttonOver);
  EXPECT_EQ(Children(*a), "12");
  stage.UpdateButton(a, buttonPressed);
  EXPECT_EQ(Children(*a), "13");
  stage.UpdateButton(a, buttonPressedOutside);
  EXPECT_EQ(Children(*a), "12") << "what the pointer over it shows";
  EXPECT_EQ(a->buttonState, buttonPressedOutside);
  stage.UpdateButton(a, buttonNone);
  EXPECT_EQ(Children(*a), "");
  EXPECT_EQ(a->buttonState, buttonNone);
}

TEST_F(Buttons, NoStateShowsTheHitAreaAndUnknownStatesShowNothing) {
  constexpr uint8_t wanted[] = {0, 1, 2, 4, 2};
  for (int state = 0; state < 5; ++state) EXPECT_EQ(ButtonRecordMask(state), wanted[state]);
  EXPECT_EQ(ButtonRecordMask(-1), 0);
  EXPECT_EQ(ButtonRecordMask(5), 0);
  EXPECT_EQ(ButtonRecordMask(1 << 20), 0);
}

TEST_F(Buttons, ARecordThatBothStatesShowKeepsItsObject) {
  Rectangle(1, 0, 0, 40, 40);
  TagStream frames;
  frames.Place(1, 1).FrameEnd().FrameEnd().FrameEnd();
  movie.DefineSprite(5, frames);
  movie.DefineButton2(11, false,
                      {{author::kButtonUp | author::kButtonOver, 5, 2, {}, {}},
                       {author::kButtonOver, 1, 1, {}, {}},
                       {author::kButtonUp, 1, 3, {}, {}}},
                      {});
  movie.Place(11, 10);
  Load();
  SObject* button = At(10);
  SObject* sprite = stage.FindObject(button, 12);
  ASSERT_NE(sprite, nullptr);
  sprite->thread->DoFrame(1);
  EXPECT_EQ(sprite->thread->curFrame, 1);
  stage.UpdateButton(button, buttonOver);
  EXPECT_EQ(stage.FindObject(button, 12), sprite);
  EXPECT_EQ(sprite->thread->curFrame, 1);
  EXPECT_EQ(Children(*button), "11 12:instance1");
}

TEST_F(Buttons, RemovalsComeBeforePlacements) {
  Rectangle(1, 0, 0, 40, 40);
  // The record to be placed stands before the one to be removed, at its depth:
  // placed first, it would be what the removal finds.
  movie.DefineButton2(11, false,
                      {{author::kButtonOver, 1, 1, author::Matrix::Translate(7, 0), {}},
                       {author::kButtonUp, 1, 1, {}, {}}},
                      {});
  movie.Place(11, 10);
  Load();
  stage.UpdateButton(At(10), buttonOver);
  EXPECT_EQ(Children(*At(10)), "11");
  EXPECT_EQ(At(10)->firstChild->mat.tx, 7);
}

TEST_F(Buttons, AChildTakesMatrixColourAndDepthOfItsRecord) {
  Rectangle(1, 0, 0, 40, 40);
  author::Cxform half;
  half.redMul = 128;
  half.alphaMul = 100;
  movie.DefineButton2(
      11, false, {{author::kButtonUp, 1, 65530, author::Matrix::Scale(2, 1, 30, 40), half}}, {});
  movie.Place(11, 10);
  Load();
  const SObject* child = At(10)->firstChild;
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(child->depth, 4) << "the sum of 65530 and 10 in 16 bits";
  EXPECT_EQ(child->mat.a, 2 * kFixedOne);
  EXPECT_EQ(child->mat.ty, 40);
  EXPECT_EQ(child->cxform.ra, 128);
  EXPECT_EQ(child->cxform.aa, 100);
  EXPECT_EQ(child->thread, At(10)->thread);
  EXPECT_FALSE(child->scriptControlled);
}

TEST_F(Buttons, TheFirstFormTakesItsColoursFromTheExtraTag) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton(11, {{author::kButtonUp, 1, 1, {}, {}}, {author::kButtonUp, 1, 2, {}, {}}},
                     Block('x'));
  movie.DefineButton(12, {{author::kButtonUp, 1, 1, {}, {}}}, Block('x'));
  author::Cxform first, second;
  first.redMul = 10;
  second.redMul = 20;
  movie.DefineButtonExtra(11, {first, second});
  movie.Place(11, 10).Place(12, 20);
  Load();
  EXPECT_EQ(At(10)->firstChild->cxform.ra, 10);
  EXPECT_EQ(At(10)->firstChild->next->cxform.ra, 20);
  EXPECT_EQ(At(20)->firstChild->cxform.flags, 0);
}

TEST_F(Buttons, ARecordWhoseCharacterIsMissingIsSkipped) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton2(11, false,
                      {{author::kButtonUp, 99, 1, {}, {}},
                       {author::kButtonUp, kRootId, 2, {}, {}},
                       {author::kButtonUp, 1, 3, {}, {}}},
                      {});
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(Children(*At(10)), "13");
}

TEST_F(Buttons, ARecordThatNoStateSelectsIsReadAndIgnored) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton2(11, false, {{0xF0, 1, 1, {}, {}}, {0xF1, 1, 2, {}, {}}}, {});
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(Children(*At(10)), "12");
}

TEST_F(Buttons, APressHeldFromOutsideDoesNothingToANormalButton) {
  LoadPair(false);
  EXPECT_FALSE(stage.SetButton(nullptr, true));
  EXPECT_FALSE(stage.SetButton(a, true));
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(stage.buttonState, buttonIdle);
  EXPECT_EQ(Children(*a), "11");
  EXPECT_EQ(Fired(), "");
}

TEST_F(Buttons, APressHeldFromOutsidePressesAMenuButton) {
  LoadPair(true);
  EXPECT_FALSE(stage.SetButton(nullptr, true));
  EXPECT_TRUE(stage.SetButton(a, true));
  EXPECT_EQ(stage.button, a);
  EXPECT_EQ(stage.buttonState, buttonPressed);
  EXPECT_EQ(Children(*a), "13");
  EXPECT_EQ(Fired(), "7");
}

TEST_F(Buttons, LeavingOneForAnotherInOneEventRunsBothTransitions) {
  LoadPair(false);
  EXPECT_TRUE(stage.SetButton(a, false));
  EXPECT_EQ(Fired(), "0");
  EXPECT_TRUE(stage.SetButton(b, false));
  EXPECT_EQ(Fired(), "10") << "left, then entered";
  EXPECT_EQ(stage.button, b);
  EXPECT_EQ(Children(*a), "11");
  EXPECT_EQ(Children(*b), "22");
}

TEST_F(Buttons, LeavingAPressedNormalButtonShowsItsOverRecordsAndReleasesOutside) {
  LoadPair(false);
  stage.SetButton(a, false);
  EXPECT_TRUE(stage.SetButton(a, true));
  EXPECT_EQ(Fired(), "02");
  EXPECT_TRUE(stage.SetButton(nullptr, true));
  EXPECT_EQ(stage.buttonState, buttonPressedOutside);
  EXPECT_EQ(stage.button, a);
  EXPECT_EQ(Children(*a), "12");
  EXPECT_FALSE(stage.SetButton(b, true)) << "the press belongs to the first";
  EXPECT_TRUE(stage.SetButton(nullptr, false));
  EXPECT_EQ(Fired(), "46") << "no release";
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(stage.buttonState, buttonIdle);
  EXPECT_EQ(Children(*a), "11");
}

TEST_F(Buttons, ComingBackToThePressedButtonPressesItAgain) {
  LoadPair(false);
  stage.SetButton(a, false);
  stage.SetButton(a, true);
  stage.SetButton(b, true);
  EXPECT_TRUE(stage.SetButton(a, true));
  EXPECT_EQ(stage.buttonState, buttonPressed);
  EXPECT_EQ(Children(*a), "13");
  EXPECT_TRUE(stage.SetButton(a, false));
  EXPECT_EQ(Fired(), "02453");
}

TEST_F(Buttons, ReleasingThePressedButtonOutsideEntersWhatIsThere) {
  LoadPair(false);
  stage.SetButton(a, false);
  stage.SetButton(a, true);
  stage.SetButton(b, true);
  EXPECT_TRUE(stage.SetButton(b, false));
  EXPECT_EQ(Fired(), "02460");
  EXPECT_EQ(stage.button, b);
}

TEST_F(Buttons, LeavingAPressedMenuButtonIsIdleAtOnceAndTheNextOneIsPressed) {
  LoadPair(true);
  stage.SetButton(a, false);
  stage.SetButton(a, true);
  EXPECT_TRUE(stage.SetButton(nullptr, true));
  EXPECT_EQ(Fired(), "028");
  EXPECT_EQ(stage.buttonState, buttonIdle);
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(Children(*a), "11");
  EXPECT_TRUE(stage.SetButton(b, true));
  EXPECT_EQ(Fired(), "7");
  EXPECT_EQ(Children(*b), "23");
}

TEST_F(Buttons, APressOnTheEnteredButtonRepeatsNothing) {
  LoadPair(false);
  stage.SetButton(a, false);
  EXPECT_FALSE(stage.SetButton(a, false));
  stage.SetButton(a, true);
  EXPECT_FALSE(stage.SetButton(a, true));
  EXPECT_EQ(Fired(), "02");
}

TEST_F(Buttons, AStateOutOfRangeDoesNothing) {
  LoadPair(false);
  stage.SetButton(a, false);
  stage.buttonState = 77;
  EXPECT_FALSE(stage.SetButton(b, false));
}

TEST_F(Buttons, TheTrackedButtonIsRemembered) {
  LoadPair(false);
  a->ratio = 5;
  stage.SetButton(a, false);
  EXPECT_EQ(stage.savedButtonParent, player.rootObject);
  EXPECT_EQ(stage.savedButtonCharacter, a->character);
  EXPECT_EQ(stage.savedButtonDepth, 10);
  EXPECT_EQ(stage.savedButtonRatio, 5);
  stage.SetButton(nullptr, false);
  EXPECT_EQ(stage.savedButtonParent, nullptr);
  EXPECT_EQ(stage.savedButtonCharacter, nullptr);
  EXPECT_EQ(stage.savedButtonDepth, 0);
  EXPECT_EQ(stage.savedButtonRatio, 0);
}

TEST_F(Buttons, ARemovedAndReplacedButtonShowsTheStateThatItLeft) {
  LoadPair(false);
  SCharacter* character = a->character;
  stage.SetButton(a, false);
  stage.SetButton(a, true);
  stage.RemoveObject(a);
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(stage.buttonState, buttonPressed);
  PlaceInfo info;
  MatrixIdentity(&info.mat);
  info.cxform.Clear();
  info.flags = kPlaceCharacter;
  info.character = character;
  info.depth = 10;
  SObject* again = stage.PlaceObject(player.rootObject, &info);
  EXPECT_EQ(stage.button, again);
  EXPECT_EQ(again->buttonState, buttonPressed);
  EXPECT_EQ(Children(*again), "13");
}

TEST_F(Buttons, ARemovedButtonThatDoesNotComeBackRestartsFromIdle) {
  LoadPair(false);
  stage.SetButton(a, false);
  stage.SetButton(a, true);
  Fired();
  stage.RemoveObject(a);
  EXPECT_TRUE(stage.SetButton(b, false));
  EXPECT_EQ(Fired(), "0");
  EXPECT_EQ(stage.button, b);
}

TEST_F(Buttons, ABackwardSeekKeepsTheTrackedButtonAndWhatItShows) {
  Rectangle(1, 0, 0, 40, 40);
  Button(11, 1);
  movie.Place(11, 10).FrameEnd();
  Load();
  SObject* button = At(10);
  stage.SetButton(button, false);
  player.Seek(1);
  player.Seek(0);
  EXPECT_EQ(At(10), button);
  EXPECT_EQ(stage.button, button);
  EXPECT_EQ(button->buttonState, buttonOver);
  EXPECT_EQ(Children(*button), "12");
}

TEST_F(Buttons, TheOneBlockOfTheFirstFormRunsOnReleaseOnly) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton(11, Records(1), Block('r'));
  movie.Place(11, 10);
  Load();
  for (int transition = 0; transition <= buttonMenuDragOut; ++transition) {
    stage.DoButtonAction(At(10), transition);
    EXPECT_EQ(Fired(), transition == buttonRelease ? "r" : "");
  }
}

TEST_F(Buttons, ARecordWithTwoConditionsFiresOnBoth) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton2(11, false, Records(1), {{1 << buttonPress | 1 << buttonRelease, Block('x')}});
  movie.Place(11, 10);
  Load();
  stage.SetButton(At(10), false);
  EXPECT_EQ(Fired(), "");
  stage.SetButton(At(10), true);
  EXPECT_EQ(Fired(), "x");
  stage.SetButton(At(10), false);
  EXPECT_EQ(Fired(), "x");
}

TEST_F(Buttons, SeveralRecordsMayFireOnOneTransitionInTheirOrder) {
  Rectangle(1, 0, 0, 40, 40);
  movie.DefineButton2(
      11, false, Records(1),
      {{1 << buttonPress, Block('a')}, {1 << buttonEnter, Block('b')}, {0xFFFF, Block('c')}});
  movie.Place(11, 10);
  Load();
  stage.DoButtonAction(At(10), buttonPress);
  EXPECT_EQ(Fired(), "ac");
}

TEST_F(Buttons, ActionsRunOnTheTimelineThatTheButtonStandsOn) {
  Rectangle(1, 0, 0, 40, 40);
  Button(11, 1);
  TagStream frames;
  frames.Place(11, 3).FrameEnd();
  movie.DefineSprite(5, frames);
  movie.Place(5, 10);
  Load();
  SObject* sprite = At(10);
  stage.SetButton(sprite->firstChild, false);
  DataSpan action;
  ScriptThread* thread = nullptr;
  ASSERT_TRUE(stage.actionList.PopAction(&action, &thread));
  EXPECT_EQ(thread, sprite->thread);
}

TEST_F(Buttons, AFullQueueDropsTheAction) {
  LoadPair(false);
  for (uint32_t i = 0; i < kActionListMaxCapacity; ++i) stage.DoButtonAction(a, buttonEnter);
  stage.DoButtonAction(a, buttonPress);
  EXPECT_EQ(Fired(), std::string(kActionListMaxCapacity, '0'));
}

// Objects that end inside a transition. The host that is told of a missing
// character stands in for tags that take the stage down.

class DyingButtons : public ButtonFixture {
 protected:
  // Two buttons that miss a character in the states of the mask.
  void LoadPair(uint8_t states, bool menu) {
    Rectangle(1, 0, 0, 40, 40);
    std::vector<ButtonRecord> records = Records(1);
    records.insert(records.begin() + 1, {states, 99, 9, {}, {}});
    movie.DefineButton2(11, menu, records, AllActions());
    Button(12, 1, menu);
    movie.Place(11, 10).Place(12, 20);
    Load();
    player.lostArg = this;
    player.lostCallback = [](void* self, uint16_t) {
      auto* test = static_cast<DyingButtons*>(self);
      if (SObject* object = test->At(test->victim)) test->stage.RemoveObject(object);
    };
  }
  // Drives the button at depth 10 into the state from which `transition` leads.
  bool Drive(int transition) {
    victim = 0;
    switch (transition) {
      case buttonEnter:
      case buttonMenuDragIn:
        break;
      case buttonLeave:
      case buttonPress:
        stage.SetButton(At(10), false);
        break;
      default:
        stage.SetButton(At(10), false);
        stage.SetButton(At(10), true);
        if (transition == buttonDragBack || transition == buttonReleaseOutside) {
          stage.SetButton(nullptr, true);
        }
        break;
    }
    Fired();
    victim = 10;
    switch (transition) {
      case buttonEnter:
        return stage.SetButton(At(10), false);
      case buttonRelease:
        return stage.SetButton(stage.button, false);
      case buttonLeave:
      case buttonReleaseOutside:
        return stage.SetButton(nullptr, false);
      case buttonPress:
      case buttonDragBack:
        return stage.SetButton(stage.button, true);
      case buttonMenuDragIn:
        return stage.SetButton(At(10), true);
      default:
        return stage.SetButton(nullptr, true);
    }
  }
  uint16_t victim = 0;
};

TEST_F(DyingButtons, AButtonMayEndInEachTransition) {
  struct Case {
    int transition;
    uint8_t states;
  };
  constexpr Case kCases[] = {
      {buttonEnter, author::kButtonOver},        {buttonLeave, author::kButtonUp},
      {buttonPress, author::kButtonDown},        {buttonRelease, author::kButtonOver},
      {buttonDragOut, author::kButtonOver},      {buttonDragBack, author::kButtonDown},
      {buttonReleaseOutside, author::kButtonUp}, {buttonMenuDragIn, author::kButtonDown},
      {buttonMenuDragOut, author::kButtonUp},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.transition);
    movie = author::MovieWriter(100, 100);
    player.ClearScript();
    LoadPair(c.states, c.transition >= buttonMenuDragIn);
    EXPECT_TRUE(Drive(c.transition));
    EXPECT_EQ(At(10), nullptr);
    EXPECT_EQ(stage.button, nullptr);
    EXPECT_EQ(Fired(), "") << "its actions are gone with it";
    EXPECT_TRUE(stage.SetButton(At(20), false)) << "the next button starts from idle";
    EXPECT_EQ(Fired(), "0");
    player.lostCallback = nullptr;
  }
}

TEST_F(DyingButtons, TheButtonToEnterMayEndWhileAnotherIsLeft) {
  LoadPair(author::kButtonUp, false);
  stage.SetButton(At(10), false);
  Fired();
  victim = 20;
  EXPECT_TRUE(stage.SetButton(At(20), false));
  EXPECT_EQ(At(20), nullptr);
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(stage.buttonState, buttonIdle);
  EXPECT_EQ(Fired(), "1");
}

TEST_F(DyingButtons, AButtonMayEndWhileItIsPlaced) {
  LoadPair(author::kButtonUp, false);
  victim = 30;
  PlaceInfo info;
  MatrixIdentity(&info.mat);
  info.cxform.Clear();
  info.flags = kPlaceCharacter;
  info.character = player.FindCharacter(11);
  info.depth = 30;
  EXPECT_EQ(stage.PlaceObject(player.rootObject, &info), nullptr);
  EXPECT_EQ(At(30), nullptr);
}

TEST_F(Buttons, AButtonThatShowsItselfEndsAtTheNestingLimit) {
  movie.DefineButton2(11, false, {{author::kButtonUp, 11, 1, {}, {}}}, {});
  movie.Place(11, 10);
  Load();
  int levels = 0;
  for (SObject* o = At(10); o; o = o->firstChild) ++levels;
  EXPECT_GT(levels, 200);
  EXPECT_LE(levels, kMaxNesting);
}

TEST_F(Buttons, ButtonsThatMultiplyEndAtTheBudgets) {
  std::vector<ButtonRecord> records;
  for (uint16_t i = 0; i < 100; ++i) {
    records.push_back({author::kButtonUp, static_cast<uint16_t>(11 + i % 2), i, {}, {}});
  }
  movie.DefineButton2(11, false, records, {});
  movie.DefineButton2(12, false, records, {});
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(stage.objectCount, kMaxObjects);
}

TEST_F(Buttons, OnceTheBudgetIsSpentButtonsStandWithoutChildren) {
  LoadPair(false);
  stage.tagsLeft = 2;
  stage.UpdateButton(a, buttonOver);
  EXPECT_EQ(a->buttonState, buttonOver);
  EXPECT_EQ(Children(*a), "");
  EXPECT_EQ(HitButton(10, 10), nullptr);
  stage.ResetTagBudget();
  stage.UpdateButton(a, buttonPressed);
  EXPECT_EQ(Children(*a), "13");
  EXPECT_EQ(HitButton(10, 10), a);
}

TEST_F(Buttons, ThousandsOfButtonsAreTrackedOneAtATime) {
  Rectangle(1, 0, 0, 2, 2);
  Button(11, 1);
  for (int i = 0; i < 5000; ++i) {
    movie.Place(11, static_cast<uint16_t>(10 * (1 + i)),
                author::Matrix::Translate(20 * (i % 50) * 2, 20 * (i / 50 % 50) * 2));
  }
  Load();
  for (int i = 0; i < 2500; i += 7) {
    SObject* hit = HitButton(2 * (i % 50) + 1, 2 * (i / 50) + 1);
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(hit->depth, static_cast<uint16_t>(10 * (2501 + i))) << "the upper of two";
    EXPECT_TRUE(stage.SetButton(hit, false));
    EXPECT_EQ(stage.button, hit);
    EXPECT_EQ(Fired(), i == 0 ? "0" : "10");
  }
}

// The area for navigation by keys.

TEST_F(Buttons, TheBoundsOfAButtonAreThoseOfItsHitRecords) {
  Rectangle(1, 0, 0, 10, 10);
  Rectangle(2, 0, 0, 90, 90);
  movie.DefineButton2(
      11, false,
      {{author::kButtonHit, 1, 1, author::Matrix::Translate(100, 200), {}},
       {author::kButtonUp | author::kButtonOver, 2, 2, {}, {}},
       {author::kButtonHit, 99, 3, {}, {}},
       {author::kButtonHit | author::kButtonUp, 1, 4, author::Matrix::Scale(2, 1, 400, 0), {}}},
      {});
  TagStream frames;
  frames.Place(11, 3, author::Matrix::Translate(0, 20)).FrameEnd();
  movie.DefineSprite(5, frames);
  movie.Place(5, 10, author::Matrix::Translate(60, 0));
  Load();
  ASSERT_TRUE(stage.antialias);
  SRECT bounds;
  At(10)->firstChild->CalcButtonBounds(&bounds);
  // 5 and 23 pixels from the left to 10 and 43, in quarter-pixels.
  const SRECT wanted = {32, 172, 4, 84};
  EXPECT_TRUE(RectEqual(&bounds, &wanted, 0))
      << bounds.xmin << ' ' << bounds.xmax << ' ' << bounds.ymin << ' ' << bounds.ymax;
  At(10)->CalcButtonBounds(&bounds);
  EXPECT_TRUE(RectIsEmpty(&bounds)) << "not of other kinds";
}

TEST_F(Buttons, AMorphInAHitAreaHasItsStartBoundsThere) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, {{author::kButtonHit, 1, 1, {}, {}}}, {});
  movie.Place(11, 10);
  Load();
  SCharacter* area = player.FindCharacter(1);
  area->type = charMorphShape;
  area->bounds2 = {0, 2000, 0, 2000};
  SRECT bounds;
  At(10)->CalcButtonBounds(&bounds);
  const SRECT wanted = {0, 40, 0, 40};
  EXPECT_TRUE(RectEqual(&bounds, &wanted, 0));
}

TEST_F(Buttons, TheBoundsOfAnEditTextAreItsCharacters) {
  movie.DefineEditText(7, author::Rect::Pixels(10, 20, 30, 40), {});
  movie.Place(7, 10);
  Load();
  SRECT bounds;
  At(10)->CalcButtonBounds(&bounds);
  const SRECT wanted = {40, 120, 80, 160};
  EXPECT_TRUE(RectEqual(&bounds, &wanted, 0));
}

// Frames that are built anew from scattered data.

TEST_F(Buttons, MarkingForRemovalTakesTheChildrenOfButtonsAway) {
  LoadPair(false);
  stage.SetButton(b, false);
  stage.MarkForSyncFrameRemoval();
  EXPECT_EQ(player.rootObject->syncRemovalMark, kSyncUnmarked) << "a layer's root stays";
  EXPECT_EQ(a->syncRemovalMark, kSyncUnconfirmed);
  EXPECT_EQ(b->syncRemovalMark, kSyncUnconfirmed);
  EXPECT_EQ(Children(*a), "");
  EXPECT_EQ(Children(*b), "");
  EXPECT_EQ(a->buttonState, buttonNone);
  EXPECT_EQ(stage.root.syncRemovalMark, kSyncUnmarked);
}

TEST_F(Buttons, MarkingForRemovalGoesThroughTheWholeTree) {
  Rectangle(1, 0, 0, 40, 40);
  Button(11, 1);
  TagStream frames;
  frames.Place(1, 1).Place(11, 3).FrameEnd();
  movie.DefineSprite(5, frames);
  movie.Place(5, 10);
  Load();
  At(10)->MarkForSyncFrameRemoval();
  SObject* shape = At(10)->firstChild;
  EXPECT_EQ(At(10)->syncRemovalMark, kSyncUnconfirmed);
  EXPECT_EQ(shape->syncRemovalMark, kSyncUnconfirmed);
  EXPECT_EQ(shape->next->syncRemovalMark, kSyncUnconfirmed);
  EXPECT_EQ(shape->next->firstChild, nullptr);
}

}  // namespace
}  // namespace vexel::test
