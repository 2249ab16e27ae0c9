#include "player/arrow_keys.h"

#include "input_fixture.h"
#include "player/key_codes.h"

namespace vexel::test {
namespace {

constexpr SRECT kCurrent = {100, 200, 100, 200};  // left, right, top, bottom

bool Up(SRECT r) {
  return IsButtonUp(&kCurrent, &r);
}
bool Down(SRECT r) {
  return IsButtonDown(&kCurrent, &r);
}
bool Right(SRECT r) {
  return IsButtonRight(&kCurrent, &r);
}
bool Left(SRECT r) {
  return IsButtonLeft(&kCurrent, &r);
}

TEST(ButtonDirections, UpIsWhatEndsAboveTheBottom) {
  EXPECT_TRUE(Up({0, 9, 0, 99}));
  EXPECT_TRUE(Up({0, 9, 150, 199}));
  EXPECT_FALSE(Up({0, 9, 0, 200})) << "though it starts above";
}

TEST(ButtonDirections, DownIsWhatEndsBelowTheBottom) {
  EXPECT_TRUE(Down({0, 9, 201, 300}));
  EXPECT_TRUE(Down({0, 9, 0, 201})) << "though it starts above";
  EXPECT_FALSE(Down({0, 9, 150, 200}));
}

TEST(ButtonDirections, RightIsWhatEndsRightOfTheRightSide) {
  EXPECT_TRUE(Right({201, 300, 0, 9}));
  EXPECT_TRUE(Right({0, 201, 0, 9})) << "though it starts on the left";
  EXPECT_FALSE(Right({150, 200, 0, 9}));
}

TEST(ButtonDirections, LeftIsWhatStartsLeftOfTheLeftSide) {
  EXPECT_TRUE(Left({0, 99, 0, 9}));
  EXPECT_TRUE(Left({99, 300, 0, 9})) << "though it ends on the right";
  EXPECT_FALSE(Left({100, 199, 0, 9}));
}

TEST(ButtonDirections, AlignedButtonsShareColumnsOrRows) {
  const SRECT below = {200, 300, 500, 600};
  const SRECT right = {500, 600, 0, 100};
  for (const int32_t d : {buttonUp, buttonDown}) {
    EXPECT_TRUE(IsButtonAligned(&kCurrent, d, &below));
    EXPECT_FALSE(IsButtonAligned(&kCurrent, d, &right));
  }
  for (const int32_t d : {buttonRight, buttonLeft}) {
    EXPECT_FALSE(IsButtonAligned(&kCurrent, d, &below));
    EXPECT_TRUE(IsButtonAligned(&kCurrent, d, &right));
  }
  EXPECT_FALSE(IsButtonAligned(&kCurrent, kButtonDirections, &kCurrent));
}

TEST(ButtonDirections, OnlyDownKnowsWhatLiesWhollyBelow) {
  const SRECT below = {500, 600, 201, 300};
  const SRECT touching = {500, 600, 200, 300};
  EXPECT_TRUE(IsButtonOverlapped(&kCurrent, buttonDown, &below));
  EXPECT_FALSE(IsButtonOverlapped(&kCurrent, buttonDown, &touching));
  for (const int32_t d : {buttonUp, buttonRight, buttonLeft}) {
    EXPECT_FALSE(IsButtonOverlapped(&kCurrent, d, &below));
  }
}

TEST(ButtonDirections, OfTwoEquallyNearTheFirstStays) {
  const SRECT near = {210, 220, 100, 200};
  const SRECT alsoNear = {80, 90, 100, 200};
  const SRECT far = {300, 310, 100, 200};
  EXPECT_TRUE(ButtonCloser(&kCurrent, &near, &far));
  EXPECT_FALSE(ButtonCloser(&kCurrent, &far, &near));
  EXPECT_FALSE(ButtonCloser(&kCurrent, &near, &alsoNear));
  EXPECT_FALSE(ButtonCloser(&kCurrent, &alsoNear, &near));
}

class ButtonChoice : public ::testing::Test {
 protected:
  char Choose(int32_t direction, SRECT ra, SRECT rb) {
    return ButtonChoose(&kCurrent, direction, &a, &ra, &b, &rb) == &a ? 'a' : 'b';
  }
  SObject a;
  SObject b;
};

TEST_F(ButtonChoice, AnyButtonIsBetterThanNone) {
  const SRECT r = {0, 9, 0, 9};
  EXPECT_EQ(ButtonChoose(&kCurrent, buttonUp, &a, &r, nullptr, &r), &a);
  EXPECT_EQ(ButtonChoose(&kCurrent, buttonUp, nullptr, &r, &b, &r), &b);
  EXPECT_EQ(ButtonChoose(&kCurrent, buttonUp, nullptr, &r, nullptr, &r), nullptr);
}

TEST_F(ButtonChoice, AlignmentBeatsDistance) {
  const SRECT alignedFar = {150, 160, 900, 950};
  const SRECT near = {210, 220, 210, 220};
  EXPECT_EQ(Choose(buttonDown, alignedFar, near), 'a');
  EXPECT_EQ(Choose(buttonDown, near, alignedFar), 'b');
}

TEST_F(ButtonChoice, BelowAndNotAlignedLosesToBesideAndNotAligned) {
  const SRECT below = {210, 220, 210, 220};
  const SRECT beside = {500, 600, 150, 210};
  EXPECT_EQ(Choose(buttonDown, below, beside), 'b');
  EXPECT_EQ(Choose(buttonDown, beside, below), 'a');
  EXPECT_EQ(Choose(buttonUp, below, beside), 'a') << "by distance";
}

TEST_F(ButtonChoice, TheNearerOfEqualsWinsAndATieStays) {
  const SRECT near = {150, 160, 210, 220};
  const SRECT far = {150, 160, 310, 320};
  EXPECT_EQ(Choose(buttonDown, near, far), 'a');
  EXPECT_EQ(Choose(buttonDown, far, near), 'b');
  EXPECT_EQ(Choose(buttonDown, near, near), 'b');
}

// A movie of buttons that lie about. Each is 10 by 10 pixels.
class ArrowKeys : public InputFixture {
 protected:
  void PlaceButtons(const std::vector<SPOINT>& corners) {
    Rectangle(1, 0, 0, 10, 10);
    uint16_t depth = 10;
    for (const SPOINT& p : corners) {
      LoggingButton(depth, 1, std::string(1, static_cast<char>('a' + depth / 10 - 1)));
      movie.Place(depth, depth, author::Matrix::Translate(p.x * 20, p.y * 20));
      depth += 10;
    }
    Load();
  }
  // Tabs to the button at `depth`.
  void Focus(uint16_t depth) {
    for (int i = 0; i < 20; ++i) {
      player.HandleKeyDown(kKeyTab, 0);
      if (player.focusButton.button.Get() == At(depth)) break;
    }
    ASSERT_EQ(player.focusButton.button.Get(), At(depth));
    Logged();
  }
  int Focused() const {
    const SObject* object = player.focusButton.button.Get();
    return object ? object->depth : 0;
  }
};

TEST_F(ArrowKeys, BeforeATabAnArrowIsNotTaken) {
  PlaceButtons({{0, 0}, {20, 0}});
  EXPECT_FALSE(player.HandleKeyDown(kKeyRight, 0));
  EXPECT_EQ(Focused(), 0);
  EXPECT_EQ(Logged(), "");
}

TEST_F(ArrowKeys, GoToTheNearestInTheirDirection) {
  PlaceButtons({{40, 40}, {40, 20}, {40, 60}, {60, 40}, {20, 40}, {40, 0}, {80, 40}});
  Focus(10);
  EXPECT_TRUE(player.HandleKeyDown(kKeyUp, 0));
  EXPECT_EQ(Focused(), 20);
  EXPECT_EQ(Logged(), "a1 b0 ");
  EXPECT_TRUE(FrameIs(40, 50, 20, 30));
  EXPECT_TRUE(player.HandleKeyDown(kKeyDown, 0));
  EXPECT_EQ(Focused(), 10);
  player.HandleKeyDown(kKeyDown, 0);
  EXPECT_EQ(Focused(), 30);
  player.HandleKeyDown(kKeyUp, 0);
  player.HandleKeyDown(kKeyRight, 0);
  EXPECT_EQ(Focused(), 40);
  player.HandleKeyDown(kKeyRight, 0);
  EXPECT_EQ(Focused(), 70);
  player.HandleKeyDown(kKeyLeft, 0);
  player.HandleKeyDown(kKeyLeft, 0);
  player.HandleKeyDown(kKeyLeft, 0);
  EXPECT_EQ(Focused(), 50);
}

TEST_F(ArrowKeys, WithNothingInTheDirectionTheFocusStays) {
  PlaceButtons({{40, 40}});
  Focus(10);
  EXPECT_TRUE(player.HandleKeyDown(kKeyLeft, 0));
  EXPECT_EQ(Focused(), 10);
  EXPECT_EQ(Logged(), "a1 a0 ");
  EXPECT_TRUE(FrameIs(40, 50, 40, 50));
}

TEST_F(ArrowKeys, BelowToTheRightIsDownOnlyWithoutAnAlignedOne) {
  PlaceButtons({{0, 0}, {20, 20}});
  Focus(10);
  player.HandleKeyDown(kKeyDown, 0);
  EXPECT_EQ(Focused(), 20);
}

TEST_F(ArrowKeys, AnAlignedDistantOneBeatsIt) {
  PlaceButtons({{0, 0}, {20, 20}, {5, 90}});
  Focus(10);
  player.HandleKeyDown(kKeyDown, 0);
  EXPECT_EQ(Focused(), 30);
}

TEST_F(ArrowKeys, TheFocusIsRememberedFromBeforeTheKey) {
  PlaceButtons({{0, 0}, {20, 0}});
  Focus(10);
  player.HandleKeyDown(kKeyRight, 0);
  EXPECT_EQ(player.savedButton.button.Get(), At(10));
  EXPECT_EQ(Focused(), 20);
  EXPECT_EQ(player.mouseState, kMouseUnknown);
}

TEST_F(ArrowKeys, WithoutAButtonTheSearchStartsFromAnEmptyRectangle) {
  PlaceButtons({{40, 40}, {10, 70}});
  SPlayer::SButton nowhere;
  SPlayer::ButtonOrder order;
  player.ButtonOrdering(&nowhere, &order);
  EXPECT_EQ(order.button[buttonUp], nullptr);
  EXPECT_EQ(order.button[buttonLeft], nullptr);
  EXPECT_NE(order.button[buttonDown], nullptr);
  EXPECT_NE(order.button[buttonRight], nullptr);
  player.ButtonGoDirection(buttonUp);
  EXPECT_EQ(Focused(), 0);
  player.ButtonGoDirection(buttonRight);
  EXPECT_NE(Focused(), 0);
}

TEST_F(ArrowKeys, AButtonThatGoesWithTheFocusEndsTheKey) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder leave;
  leave.GotoFrame(1);
  movie.DefineButton2(10, false, Records(1), {On(1 << buttonLeave, leave)});
  LoggingButton(20, 1, "b");
  movie.Place(10, 10).Place(20, 20, author::Matrix::Translate(400, 0));
  movie.FrameEnd().RemoveObject(10);
  Load();
  Focus(10);
  EXPECT_FALSE(player.HandleKeyDown(kKeyRight, 0));
  EXPECT_EQ(At(10), nullptr);
  EXPECT_EQ(Focused(), 0);
  EXPECT_EQ(Logged(), "");
}

}  // namespace
}  // namespace vexel::test
