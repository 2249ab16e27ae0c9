#include "input_fixture.h"
#include "movie/edit_text_flags.h"

namespace vexel::test {
namespace {

class Pointer : public InputFixture {
 protected:
  // Button A on the left, button B on the right.
  void LoadPair(bool menu = false) {
    Rectangle(1, 0, 0, 40, 40);
    Rectangle(2, 60, 0, 100, 40);
    LoggingButton(11, 1, "a", menu);
    LoggingButton(12, 2, "b", menu);
    movie.Place(11, 10).Place(12, 20);
    Load();
  }
  void PlaceText(uint16_t flags) {
    author::EditTextField field;
    field.flags = flags;
    movie.DefineEditText(7, author::Rect::Pixels(0, 50, 40, 90), field);
    movie.Place(7, 30);
  }
};

TEST_F(Pointer, EventsBeforeTheFirstFrameAreDropped) {
  LoadPair();
  player.loaded = false;
  Down(10, 10);
  Move(10, 10);
  Up(10, 10);
  EXPECT_FALSE(player.HandleKeyDown(18, 0));
  EXPECT_EQ(player.TakeCalls(), "");
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(player.mouseState, kMouseUnknown);
}

TEST_F(Pointer, AClickEntersPressesAndReleases) {
  LoadPair();
  Move(10, 10);
  EXPECT_EQ(Logged(), "a0 ");
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XReleaseCapture ");
  Down(10, 10);
  EXPECT_EQ(Logged(), "a2 ");
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XSetCapture ");
  Up(11, 11);
  EXPECT_EQ(Logged(), "a3 ");
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XReleaseCapture XReleaseCapture ");
}

TEST_F(Pointer, APressWithoutAMoveBeforeItDoesNotPress) {
  LoadPair();
  Down(10, 10);
  EXPECT_EQ(Logged(), "") << "it begins outside of every button";
  EXPECT_EQ(player.TakeCalls(), "XReleaseCapture ");
  Up(10, 10);
  EXPECT_EQ(Logged(), "a0 ");
}

TEST_F(Pointer, AMoveThatChangesNothingAsksForNothing) {
  LoadPair();
  Move(10, 10);
  player.TakeCalls();
  Move(12, 12);
  Move(50, 50);
  Move(51, 50);
  EXPECT_EQ(Logged(), "a0 a1 ");
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XReleaseCapture ");
}

TEST_F(Pointer, APressedButtonKeepsTheCaptureOutside) {
  LoadPair();
  Move(10, 10);
  Down(10, 10);
  player.TakeCalls();
  Move(70, 10, true);
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XSetCapture ");
  Up(70, 10);
  EXPECT_EQ(Logged(), "a0 a2 a4 a6 b0 ");
}

TEST_F(Pointer, MenuButtonsHandAPressOn) {
  LoadPair(true);
  Move(50, 50, true);
  Move(10, 10, true);
  Move(70, 10, true);
  Up(70, 10);
  EXPECT_EQ(Logged(), "a7 a8 b7 b3 ");
}

TEST_F(Pointer, TheStateIsKnownInsideTheStageOnly) {
  LoadPair();
  Move(50, 60, true);
  EXPECT_EQ(player.mouseState, kMouseDown);
  EXPECT_EQ(player.mousePoint.x, 50);
  EXPECT_EQ(player.mousePoint.y, 60);
  Move(100, 100);
  EXPECT_EQ(player.mouseState, kMouseUp) << "the last sides are inside";
  Move(101, 60);
  EXPECT_EQ(player.mouseState, kMouseUnknown);
  EXPECT_EQ(player.mousePoint.x, 100) << "stays";
}

TEST_F(Pointer, ButtonsThatMoveUnderAStillPointerReact) {
  Rectangle(1, 0, 0, 40, 40);
  LoggingButton(11, 1, "a");
  movie.Place(11, 10, author::Matrix::Translate(1200, 0)).FrameEnd();
  movie.Move(10, author::Matrix{});
  Load();
  Move(10, 10);
  EXPECT_EQ(Logged(), "");
  player.TakeCalls();
  player.DoPlay(0);
  EXPECT_EQ(Logged(), "a0 ");
  EXPECT_EQ(player.TakeCalls(), "UpdateCursor XReleaseCapture ") << "the loop draws later";
}

TEST_F(Pointer, TheLoopDoesNotAskAPointerThatIsAwayOrBusy) {
  LoadPair();
  stage.CalcUpdate();
  player.mousePoint = {10, 10};
  player.DoPlay(0);
  EXPECT_EQ(Logged(), "") << "not known";
  player.mouseState = kMouseUp;
  player.panning = true;
  player.DoPlay(200);
  EXPECT_EQ(Logged(), "") << "panning";
  player.panning = false;
  stage.mouseOverEditText = true;
  player.DoPlay(400);
  EXPECT_EQ(Logged(), "") << "over a text";
  stage.mouseOverEditText = false;
  player.DoPlay(600);
  EXPECT_EQ(Logged(), "a0 ");
}

TEST_F(Pointer, TheCaptureMayBeTakenAway) {
  LoadPair();
  Move(10, 10);
  Down(10, 10);
  Logged();
  player.TakeCalls();
  player.CancelCapture(false);
  EXPECT_EQ(player.mouseState, kMouseUp);
  EXPECT_EQ(stage.buttonState, buttonPressed);
  EXPECT_EQ(player.TakeCalls(), "UpdateCursor ");
  player.panning = true;
  player.CancelCapture(true);
  EXPECT_FALSE(player.panning);
  EXPECT_EQ(player.mouseState, kMouseUnknown);
  EXPECT_EQ(stage.buttonState, buttonPressedOutside);
  EXPECT_EQ(Logged(), "a4 ") << "one event: the release follows with the next";
}

TEST_F(Pointer, TheKeyboardsFrameGoesWithTheNextChange) {
  LoadPair();
  stage.tabFocusRect = {4, 160, 4, 160};
  Move(50, 50);
  EXPECT_FALSE(RectIsEmpty(&stage.tabFocusRect));
  stage.dirtyCount = 0;
  Move(10, 10);
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
  EXPECT_GT(stage.dirtyCount, 0);
}

TEST_F(Pointer, ActionsThatRemoveTheButtonEndTheEvent) {
  Rectangle(1, 0, 0, 40, 40);
  author::ActionBuilder leave = Log("x");
  leave.GotoFrame(1);
  movie.DefineButton2(11, false, Records(1), {On(1 << buttonPress, leave)});
  movie.Place(11, 10).FrameEnd().RemoveObject(10);
  Load();
  Move(10, 10);
  Down(10, 10);
  EXPECT_EQ(Logged(), "x");
  EXPECT_EQ(At(10), nullptr);
  EXPECT_EQ(stage.button, nullptr);
  Up(10, 10);
  EXPECT_EQ(Logged(), "");
}

// Edit text.

TEST_F(Pointer, OverAnEditTextIsSeenOnceAndDrivesNoButton) {
  Rectangle(1, 0, 50, 40, 90);
  LoggingButton(11, 1, "a");
  movie.Place(11, 10);
  PlaceText(0);
  Load();
  Move(10, 60);
  EXPECT_TRUE(stage.mouseOverEditText);
  EXPECT_EQ(player.TakeCalls(), "XReleaseCapture UpdateScreen UpdateCursor XReleaseCapture ");
  Move(11, 60);
  EXPECT_EQ(player.TakeCalls(), "XReleaseCapture ");
  Move(60, 60);
  EXPECT_FALSE(stage.mouseOverEditText);
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor XReleaseCapture ");
  EXPECT_EQ(Logged(), "");
}

TEST_F(Pointer, AnEditTextThatCannotBeSelectedIsNotThere) {
  PlaceText(kEditTextNoSelect);
  Load();
  Move(10, 60);
  EXPECT_FALSE(stage.mouseOverEditText);
}

TEST_F(Pointer, LeavingAButtonForATextLeavesTheButton) {
  Rectangle(1, 0, 0, 40, 40);
  LoggingButton(11, 1, "a");
  movie.Place(11, 10);
  PlaceText(0);
  Load();
  Move(10, 10);
  Move(10, 60);
  EXPECT_EQ(Logged(), "a0 a1 ");
}

// Panning.

class Panning : public InputFixture {
 protected:
  // The upper left quarter of the movie fills the client area.
  Panning() {
    Rectangle(1, 0, 0, 10, 10);
    Load();
    player.SetZoomRect(0, 0, 1000, 1000);
    player.TakeCalls();
  }
  bool Shows(const SRECT& wanted) const { return RectEqual(&player.zoomRect, &wanted, 0); }
};

TEST_F(Panning, APressOnAZoomedViewMovesIt) {
  Down(50, 50);
  EXPECT_TRUE(player.panning);
  EXPECT_EQ(player.TakeCalls(), "XSetCapture ");
  Move(40, 30, true);
  EXPECT_TRUE(Shows({100, 1100, 200, 1200}));
  EXPECT_EQ(player.panPoint.x, 40);
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateScreen ");
  Up(40, 30);
  EXPECT_FALSE(player.panning);
  EXPECT_EQ(player.TakeCalls(), "XReleaseCapture ");
}

TEST_F(Panning, AMoveUpdatesTheScreenEvenIfTheViewCannotMove) {
  Down(50, 50);
  player.TakeCalls();
  Move(70, 80, true);
  EXPECT_TRUE(Shows({0, 1000, 0, 1000}));
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateScreen ");
  EXPECT_EQ(player.panPoint.x, 70);
}

TEST_F(Panning, TheViewEndsWithTheMovie) {
  Down(50, 50);
  Move(-500, -500, true);
  EXPECT_TRUE(Shows({1000, 2000, 1000, 2000}));
}

TEST_F(Panning, AWholeViewDoesNotMove) {
  player.Home();
  player.TakeCalls();
  Down(50, 50);
  EXPECT_FALSE(player.panning);
  EXPECT_EQ(player.TakeCalls(), "XReleaseCapture ");
}

TEST_F(Panning, AnyPointsWillDo) {
  Down(kInt32Max, kInt32Min);
  Move(kInt32Min, kInt32Max, true);
  Move(kInt32Max, 0, true);
  Up(0, 0);
}

TEST_F(Panning, APressOnAButtonDoesNotPan) {
  movie = author::MovieWriter(100, 100);
  player.ClearScript();
  Rectangle(1, 0, 0, 40, 40);
  LoggingButton(11, 1, "a");
  movie.Place(11, 10);
  Load();
  player.SetZoomRect(0, 0, 1000, 1000);
  stage.CalcUpdate();
  Move(10, 10);
  Down(10, 10);
  EXPECT_FALSE(player.panning);
  EXPECT_EQ(Logged(), "a0 a2 ");
}

}  // namespace
}  // namespace vexel::test
