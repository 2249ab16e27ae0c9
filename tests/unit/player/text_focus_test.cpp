#include "field_fixture.h"
#include "player/properties.h"

namespace vexel::test {
namespace {

// The pointer. Field 10 lies on the left and field 20 on the right of the upper
// edge, button 30 in the lower left corner.
class TextPointer : public FieldFixture {
 protected:
  void Begin() {
    Rectangle(1, 0, 0, 20, 20);
    LoggingButton(30, 1, "b");
    PlaceField(10, Field("x"));
    PlaceField(20, Field("y"), 50);
    movie.Place(30, 30, author::Matrix::Translate(0, 20 * 80));
    Start();
    player.SetVariable(&player, "x", "abcdef");
    player.SetVariable(&player, "y", "uvwxyz");
    Show();
  }
};

TEST_F(TextPointer, APressGivesTheFocusAndBeginsASelection) {
  Begin();
  Move(13, 10);
  player.TakeCalls();
  Down(13, 10);
  EXPECT_EQ(Focus(), 10);
  EXPECT_TRUE(player.IsSelecting());
  EXPECT_EQ(State(10), "ab|cdef");
  EXPECT_TRUE(At(10)->dirty);
  EXPECT_EQ(player.TakeCalls(), "XSetCapture ");
  EXPECT_EQ(Clips(), "own ");
  Up(13, 10);
  EXPECT_FALSE(player.IsSelecting());
  EXPECT_EQ(Focus(), 10);
}

TEST_F(TextPointer, APressWithoutAMoveBeforeItIsAlsoTheFirstOnTheText) {
  Begin();
  Down(13, 10);
  EXPECT_TRUE(stage.mouseOverEditText);
  EXPECT_EQ(player.TakeCalls(), "XSetCapture UpdateScreen UpdateCursor XReleaseCapture ");
  EXPECT_TRUE(player.IsSelecting());
}

TEST_F(TextPointer, ADragSelectsWhereverItGoes) {
  Begin();
  Down(13, 10);
  Move(28, 10, true);
  EXPECT_EQ(State(10), "ab<cde|f");
  Clips();
  Move(90, 90, true);
  EXPECT_TRUE(player.IsSelecting());
  EXPECT_EQ(Clips(), "");
  Show();
  Up(23, 10);
  EXPECT_EQ(State(10), "ab<cd|ef");
  EXPECT_FALSE(player.IsSelecting());
  EXPECT_TRUE(At(10)->dirty);
  EXPECT_EQ(Clips(), "own ");
}

TEST_F(TextPointer, ADragPassesOverButtonsAndOtherFields) {
  Begin();
  Down(13, 10);
  Move(10, 90, true);
  Move(60, 10, true);
  EXPECT_EQ(Logged(), "");
  EXPECT_EQ(Focus(), 10);
  EXPECT_EQ(State(20), "|uvwxyz");
  Up(10, 90);
  EXPECT_EQ(Logged(), "");
  Move(10, 90);
  EXPECT_EQ(Logged(), "b0 ");
}

TEST_F(TextPointer, TheSelectionEndsWhenTheMoveSaysThatNothingIsPressed) {
  Begin();
  Down(13, 10);
  Move(28, 10, false);
  EXPECT_TRUE(player.IsSelecting()) << "only a release ends it";
}

TEST_F(TextPointer, APressOnAFieldThatWasNeverDrawnGivesTheFocusAlone) {
  PlaceField(10, Field("x"));
  Load();
  player.TakeCalls();
  Move(13, 10);
  player.TakeCalls();
  Down(13, 10);
  EXPECT_EQ(Focus(), 10);
  EXPECT_FALSE(player.IsSelecting());
  EXPECT_EQ(player.TakeCalls(), "XSetCapture XReleaseCapture ");
  EXPECT_TRUE(Key('a')) << "the key goes to the field, which does not take it";
  EXPECT_EQ(State(10), "|");
}

TEST_F(TextPointer, APressElsewhereTakesTheFocusAndTheSelection) {
  Begin();
  Click(13, 10);
  player.BlinkCursor();
  Show();
  Clips();
  Down(70, 70);
  EXPECT_EQ(Focus(), 0);
  EXPECT_EQ(State(10), "|abcdef");
  EXPECT_FALSE(player.cursorBlink);
  EXPECT_TRUE(At(10)->dirty);
  EXPECT_EQ(Clips(), "disown ");
}

TEST_F(TextPointer, APressOnAButtonTakesTheFocusToo) {
  Begin();
  Click(13, 10);
  Down(10, 90);
  EXPECT_EQ(Focus(), 0);
}

TEST_F(TextPointer, AMoveTakesNothing) {
  Begin();
  Click(13, 10);
  Move(70, 70);
  EXPECT_EQ(Focus(), 10);
  EXPECT_FALSE(stage.mouseOverEditText);
}

TEST_F(TextPointer, APressOnAnotherFieldMovesTheFocus) {
  Begin();
  Down(13, 10);
  Move(28, 10, true);
  Up(28, 10);
  player.BlinkCursor();
  Show();
  Clips();
  Down(63, 10);
  EXPECT_EQ(Focus(), 20);
  EXPECT_EQ(State(10), "|abcdef");
  EXPECT_EQ(State(20), "uv|wxyz");
  EXPECT_FALSE(player.cursorBlink);
  EXPECT_TRUE(At(10)->dirty);
  EXPECT_TRUE(At(20)->dirty);
  EXPECT_EQ(Clips(), "disown own ");
}

TEST_F(TextPointer, APressInTheFieldWithTheFocusKeepsTheCursorsPhase) {
  Begin();
  Click(13, 10);
  player.BlinkCursor();
  Clips();
  TestClock::tick += 10000;
  Down(23, 10);
  EXPECT_TRUE(player.cursorBlink);
  EXPECT_EQ(Clips(), "own ");
  EXPECT_EQ(State(10), "abcd|ef");
}

TEST_F(TextPointer, ASelectionThatRunsKeepsTheFocusFromOtherPresses) {
  Begin();
  Down(13, 10);
  Down(70, 70);
  EXPECT_EQ(Focus(), 10);
  EXPECT_TRUE(player.IsSelecting());
  Down(63, 10);
  EXPECT_EQ(Focus(), 10);
  EXPECT_EQ(State(20), "|uvwxyz");
}

TEST_F(TextPointer, ASecondPressWhileSelectingLeavesTheNoteOfWhereThePointerIs) {
  Begin();
  Down(13, 10);
  Down(70, 70);
  EXPECT_FALSE(stage.mouseOverEditText);
  player.TakeCalls();
  Down(13, 10);
  EXPECT_FALSE(stage.mouseOverEditText);
  EXPECT_EQ(player.TakeCalls(), "");
}

TEST_F(TextPointer, ASelectionInAZoomedViewDoesNotPan) {
  Begin();
  player.SetZoomRect(0, 0, 1000, 1000);
  Show();
  Down(13, 10);
  EXPECT_TRUE(player.IsSelecting());
  EXPECT_FALSE(player.panning);
  Up(13, 10);
  Down(95, 60);
  EXPECT_TRUE(player.panning);
}

TEST_F(TextPointer, AReadOnlyFieldIsSelectedFromButNotTypedInto) {
  PlaceField(10, Field("x", author::kEditReadOnly));
  Start();
  player.SetVariable(&player, "x", "abc");
  Show();
  Click(13, 10);
  EXPECT_EQ(Focus(), 10);
  EXPECT_TRUE(Key('z'));
  EXPECT_EQ(State(10), "ab|c");
}

TEST_F(TextPointer, AFieldWithoutSelectionIsNotThere) {
  PlaceField(10, Field("x", author::kEditNoSelect));
  Start();
  Click(13, 10);
  EXPECT_EQ(Focus(), 0);
  EXPECT_FALSE(Key('a'));
}

TEST_F(TextPointer, TheCursorBlinksInTheFieldWithTheFocus) {
  Begin();
  player.BlinkCursor();
  EXPECT_FALSE(player.cursorBlink) << "without a focus nothing blinks";
  Click(13, 10);
  EXPECT_FALSE(At(10)->dirty);
  player.BlinkCursor();
  EXPECT_TRUE(player.cursorBlink);
  EXPECT_TRUE(At(10)->dirty);
  player.BlinkCursor();
  EXPECT_FALSE(player.cursorBlink);
}

TEST_F(TextPointer, TheCursorIsSeenWhileItsPhaseIsOn) {
  Begin();
  Click(13, 10);
  // Between the second bar and the third.
  EXPECT_EQ(player.Pixel(12, 4), 0xFFFFFFu);
  player.BlinkCursor();
  Show();
  EXPECT_NE(player.Pixel(12, 4), 0xFFFFFFu);
  player.BlinkCursor();
  Show();
  EXPECT_EQ(player.Pixel(12, 4), 0xFFFFFFu);
}

// Tab and what else moves the keyboard's focus.
class TextTab : public FieldFixture {
 protected:
  // From top to bottom: field 10, button 20, field 30, a read-only field 40.
  void Begin() {
    Rectangle(1, 0, 0, 20, 10);
    PlaceField(10, Field("x"), 0, 0, 40, 15);
    LoggingButton(20, 1, "b");
    movie.Place(20, 20, author::Matrix::Translate(0, 20 * 20));
    PlaceField(30, Field("y"), 0, 40, 40, 15);
    PlaceField(40, Field("z", author::kEditReadOnly), 0, 60, 40, 15);
    Start();
    player.SetVariable(&player, "x", "abc");
    player.SetVariable(&player, "y", "uvw");
    Show();
  }
  // The object with the keyboard: of a field its depth, of a button that and a
  // 'b'.
  std::string Keyboard() const {
    if (Focus()) return std::to_string(Focus());
    const SObject* button = player.focusButton.button.Get();
    return button ? std::to_string(button->depth) + 'b' : "none";
  }
  std::string Tabs(int count, int32_t modifiers = 0) {
    std::string depths;
    for (int i = 0; i < count; ++i) {
      EXPECT_TRUE(Key(kKeyTab, modifiers));
      depths += Keyboard() + ' ';
    }
    return depths;
  }
};

TEST_F(TextTab, GoesThroughFieldsAndButtons) {
  Begin();
  EXPECT_EQ(Tabs(4), "10 20b 30 10 ");
}

TEST_F(TextTab, GoesBackWithShift) {
  Begin();
  EXPECT_EQ(Tabs(4, kModifierShift), "30 20b 10 30 ");
}

TEST_F(TextTab, ToAFieldSelectsItWhole) {
  Begin();
  Key(kKeyTab);
  EXPECT_EQ(State(10), "|abc<");
  EXPECT_TRUE(stage.mouseOverEditText);
  EXPECT_EQ(player.mouseState, kMouseUnknown);
  EXPECT_EQ(Clips(), "own ");
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
}

// The button under the frame went idle with the pointer, so tab has none to take
// the frame from.
TEST_F(TextTab, ToAFieldGivesItTheKeysAlthoughAFrameIsLeftOver) {
  Begin();
  Tabs(2);
  player.CancelCapture(true);
  Key(kKeyTab);
  EXPECT_EQ(Keyboard(), "30");
  EXPECT_FALSE(RectIsEmpty(&stage.tabFocusRect));
  Show();
  EXPECT_TRUE(Key(kKeyRight));
  EXPECT_EQ(State(30), "u|vw");
}

TEST_F(TextTab, AwayFromAFieldTakesItsSelection) {
  Begin();
  Key(kKeyTab);
  Clips();
  Key(kKeyTab);
  EXPECT_EQ(State(10), "|abc");
  EXPECT_EQ(Clips(), "disown ");
  EXPECT_TRUE(FrameIs(0, 20, 20, 30));
  EXPECT_FALSE(stage.mouseOverEditText);
}

TEST_F(TextTab, StartsFromTheFieldThatWasClicked) {
  Begin();
  Click(10, 45);
  EXPECT_EQ(Tabs(1, kModifierShift), "20b ");
  Click(10, 45);
  EXPECT_EQ(Tabs(1), "10 ");
}

// Required: the phase of the cursor outlives a focus that the keyboard moves.
TEST_F(TextTab, KeepsTheCursorsPhase) {
  Begin();
  Key(kKeyTab);
  player.BlinkCursor();
  Key(kKeyTab);
  EXPECT_TRUE(player.cursorBlink);
}

TEST_F(TextTab, FieldsTakeTheArrowsAndReturn) {
  Begin();
  Key(kKeyTab);
  EXPECT_TRUE(Key(kKeyDown));
  EXPECT_TRUE(Key(kKeyReturn));
  EXPECT_EQ(Keyboard(), "10");
  EXPECT_TRUE(Key(kKeyRight));
  EXPECT_EQ(State(10), "a|bc");
  EXPECT_EQ(Logged(), "");
}

TEST_F(TextTab, ArrowsFromAButtonComeToAFieldAndEndThere) {
  Begin();
  Tabs(2);
  EXPECT_TRUE(Key(kKeyDown));
  EXPECT_EQ(Keyboard(), "30");
  EXPECT_EQ(State(30), "|uvw<");
  Key(kKeyDown);
  EXPECT_EQ(Keyboard(), "30");
}

TEST_F(TextTab, AloneWithOneFieldSelectsItAgain) {
  PlaceField(10, Field("x"));
  Start();
  player.SetVariable(&player, "x", "abc");
  Show();
  EXPECT_EQ(Tabs(1), "10 ");
  Key(kKeyRight);
  EXPECT_EQ(State(10), "a|bc");
  Clips();
  EXPECT_EQ(Tabs(1), "10 ");
  EXPECT_EQ(State(10), "|abc<");
  EXPECT_EQ(Clips(), "disown own ");
}

TEST_F(TextTab, AFieldFocusedAgainKeepsItsSelection) {
  Begin();
  Click(13, 7);
  Clips();
  player.DoButton(At(10), false, true);
  EXPECT_EQ(State(10), "ab|c");
  EXPECT_EQ(Clips(), "");
}

TEST_F(TextTab, APressedButtonTakesTheFocus) {
  Begin();
  Click(13, 7);
  player.BlinkCursor();
  player.DoButton(At(20), true, true);
  EXPECT_EQ(Focus(), 0);
  EXPECT_FALSE(player.cursorBlink);
  EXPECT_EQ(State(10), "|abc");
}

TEST_F(TextTab, AButtonThatIsOnlyPointedAtLeavesTheFocus) {
  Begin();
  Click(13, 7);
  player.DoButton(At(20), false, true);
  EXPECT_EQ(Focus(), 10);
}

// Ways in which a field goes.
class TextGone : public FieldFixture {
 protected:
  // Sprite 5 with a field at its depth 10; then a frame without it.
  void Begin() {
    author::TagStream tags;
    tags.Place(10, 10).FrameEnd().End();
    movie.DefineEditText(10, author::Rect::Pixels(0, 0, 40, 20), Field("x"));
    movie.DefineSprite(4, tags);
    movie.Place({.depth = 5, .character = 4, .name = "s"})
        .Place(10, 6, author::Matrix::Translate(1000, 0));
    movie.FrameEnd().RemoveObject(5).FrameEnd().End();
    player.Push(movie.Finish());
    stage.CalcUpdate();
    Show();
    Click(10, 10);
    ASSERT_EQ(Focus(), 10);
    Type("abc");
    Clips();
  }
  SObject* Inner() { return At(5)->firstChild; }
};

TEST_F(TextGone, AHiddenSpriteTakesTheFocusOfItsField) {
  Begin();
  Key(kKeySelectAll);
  Clips();
  player.SetProperty(At(5)->thread, kPropVisible, 0);
  EXPECT_EQ(Focus(), 0);
  EXPECT_EQ(Clips(), "disown ");
  EXPECT_EQ(State(Inner()->editText), "|abc<") << "what is selected stays so";
  EXPECT_FALSE(Key('d'));
}

TEST_F(TextGone, HidingSomethingElseLeavesTheFocus) {
  Begin();
  Click(60, 10);
  ASSERT_EQ(Focus(), 6);
  player.SetProperty(At(5)->thread, kPropVisible, 0);
  EXPECT_EQ(Focus(), 6);
}

TEST_F(TextGone, ShowingTakesNothing) {
  Begin();
  At(5)->visible = false;
  player.SetProperty(At(5)->thread, kPropVisible, 1);
  EXPECT_EQ(Focus(), 10);
}

TEST_F(TextGone, ARemovedFieldHasNoFocus) {
  Begin();
  player.GotoFrame(1);
  EXPECT_EQ(Focus(), 0);
  EXPECT_FALSE(player.IsSelecting());
  player.BlinkCursor();
  EXPECT_FALSE(Key('d'));
}

TEST_F(TextGone, AClearedMovieHasNoFocus) {
  Begin();
  player.ClearScript();
  EXPECT_EQ(player.focus.Get(), nullptr);
}

}  // namespace
}  // namespace vexel::test
