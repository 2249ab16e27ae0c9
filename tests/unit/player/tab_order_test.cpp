#include <algorithm>
#include <memory>
#include <random>

#include "input_fixture.h"
#include "movie/edit_text_flags.h"
#include "player/key_codes.h"
#include "text/edit_text.h"

namespace vexel::test {
namespace {

class TabOrder : public InputFixture {
 protected:
  // Logging buttons "a", "b" and so on of 10 by 10 pixels, with their upper
  // left corners in twentieths.
  void PlaceButtons(const std::vector<SPOINT>& corners) {
    Rectangle(1, 0, 0, 10, 10);
    uint16_t depth = 10;
    for (const SPOINT& p : corners) {
      LoggingButton(depth, 1, std::string(1, static_cast<char>('a' + depth / 10 - 1)));
      movie.Place(depth, depth, author::Matrix::Translate(p.x, p.y));
      depth += 10;
    }
  }
  // Depths of the focused buttons over so many keys.
  std::string Keys(int count, int32_t modifiers = 0) {
    std::string depths;
    for (int i = 0; i < count; ++i) {
      player.HandleKeyDown(kKeyTab, modifiers);
      depths += std::to_string(Focused()) + ' ';
    }
    return depths;
  }
  int Focused() const {
    const SObject* object = player.focusButton.button.Get();
    return object ? object->depth : 0;
  }
  void EditText(uint16_t id, uint16_t flags) {
    author::EditTextField field;
    field.flags = flags;
    movie.DefineEditText(id, author::Rect::Pixels(0, 0, 10, 10), field);
  }
};

TEST_F(TabOrder, WithoutButtonsATabIsNotTaken) {
  Rectangle(1, 0, 0, 10, 10);
  movie.Place(1, 1);
  Load();
  EXPECT_FALSE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_FALSE(player.HandleKeyDown(kKeyTab, kModifierShift));
  EXPECT_EQ(Focused(), 0);
}

TEST_F(TabOrder, RunsInRowsAndWraps) {
  PlaceButtons({{1000, 0}, {0, 1000}, {0, 0}});
  Load();
  EXPECT_TRUE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_EQ(Focused(), 30);
  EXPECT_EQ(Keys(4), "10 20 30 10 ") << "the last one wraps to the first";
}

TEST_F(TabOrder, RunsBackwardWithShiftAndWraps) {
  PlaceButtons({{1000, 0}, {0, 1000}, {0, 0}});
  Load();
  EXPECT_EQ(Keys(5, kModifierShift), "20 10 30 20 10 ") << "without a focus from the last";
}

TEST_F(TabOrder, TheFocusEntersTheButtonAndShowsItsFrame) {
  PlaceButtons({{0, 0}, {1000, 0}});
  Load();
  player.HandleKeyDown(kKeyTab, 0);
  EXPECT_EQ(Logged(), "a0 ");
  EXPECT_TRUE(FrameIs(0, 10, 0, 10));
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen UpdateCursor ");
  EXPECT_EQ(player.mouseState, kMouseUnknown) << "the run loop leaves the pointer alone";
  player.HandleKeyDown(kKeyTab, 0);
  EXPECT_EQ(Logged(), "a1 b0 ");
  EXPECT_TRUE(FrameIs(50, 60, 0, 10));
  EXPECT_EQ(player.savedButton.button.Get(), At(10));
}

TEST_F(TabOrder, WeightsAreTwiceTheTopAndAThirdOfTheLeft) {
  const SRECT right = {300, 400, 100, 200};
  const SRECT low = {0, 100, 150, 250};
  EXPECT_EQ(SPlayer::CalcButtonWeight(&right), 300);
  EXPECT_EQ(SPlayer::CalcButtonWeight(&low), 300);
  const SRECT negative = {-5, 0, -3, 0};
  EXPECT_EQ(SPlayer::CalcButtonWeight(&negative), -7) << "divisions truncate";
}

TEST_F(TabOrder, OfTwoEqualWeightsTabVisitsOnlyOne) {
  // 300, 100 and 0, 150 in quarter-pixels.
  PlaceButtons({{1500, 500}, {0, 750}, {0, 0}});
  Load();
  EXPECT_EQ(Keys(4), "30 10 30 10 ");
  EXPECT_EQ(Keys(4, kModifierShift), "30 20 30 20 ");
}

TEST_F(TabOrder, TheFirstTabPassesOverWeightsBelow0) {
  PlaceButtons({{0, -200}, {0, 0}});
  Load();
  EXPECT_EQ(Keys(3), "20 10 20 ");
}

TEST_F(TabOrder, SortsByWeightAndKeepsTheOrderOfEquals) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::vector<SPlayer::ButtonWeight> map(1 + random() % 40);
    std::vector<SObject> objects(map.size());
    for (size_t i = 0; i < map.size(); ++i) {
      map[i] = {&objects[i], {}, static_cast<int32_t>(random() % 8) - 4};
    }
    // Neighbours change places while the left one is heavier.
    std::vector<SPlayer::ButtonWeight> plain = map;
    for (size_t end = plain.size(); end > 1; --end) {
      for (size_t i = 0; i + 1 < end; ++i) {
        if (plain[i].weight > plain[i + 1].weight) std::swap(plain[i], plain[i + 1]);
      }
    }
    SPlayer::ButtonSort(map.data(), static_cast<int32_t>(map.size()) - 1);
    for (size_t i = 0; i < map.size(); ++i) ASSERT_EQ(map[i].button, plain[i].button);
  }
}

TEST_F(TabOrder, TheMapHoldsBoundsAndWeights) {
  PlaceButtons({{500, 0}, {0, 0}});
  Load();
  const std::unique_ptr<SPlayer::ButtonWeight[]> map(player.BuildButtonTabMap());
  ASSERT_EQ(player.buttonCount, 2);
  EXPECT_EQ(map[0].button, At(20));
  EXPECT_EQ(map[1].button, At(10));
  const SRECT wanted = {100, 140, 0, 40};
  EXPECT_TRUE(RectEqual(&map[1].bounds, &wanted, 0));
  EXPECT_EQ(map[1].weight, 33);
}

TEST_F(TabOrder, UnseenObjectsHideTheButtonsBelowThem) {
  Rectangle(1, 0, 0, 10, 10);
  LoggingButton(11, 1, "a");
  author::TagStream inner;
  inner.Place(11, 1).Place(11, 2).FrameEnd();
  movie.DefineSprite(3, inner);
  movie.Place(3, 10).Place(11, 20);
  Load();
  player.RemoveAllButtons();
  EXPECT_EQ(player.NumButtons(&stage.root), 3);
  EXPECT_EQ(player.buttonCount, 3);
  EXPECT_EQ(player.buttons[2], At(20));
  At(10)->visible = false;
  player.RemoveAllButtons();
  EXPECT_EQ(player.NumButtons(&stage.root), 1);
}

TEST_F(TabOrder, ButtonsInsideButtonsAndTextsThatCanBeEditedCount) {
  Rectangle(1, 0, 0, 10, 10);
  LoggingButton(11, 1, "a");
  movie.DefineButton2(12, false, {{author::kButtonUp, 11, 1, {}, {}}}, {});
  EditText(7, 0);
  EditText(8, kEditTextReadOnly);
  EditText(9, kEditTextNoSelect);
  movie.Place(12, 10).Place(7, 20).Place(8, 30).Place(9, 40);
  Load();
  player.RemoveAllButtons();
  EXPECT_EQ(player.NumButtons(&stage.root), 4);
  EXPECT_EQ(player.buttons[0], At(10));
  EXPECT_EQ(player.buttons[1], At(10)->firstChild);
  EXPECT_EQ(player.buttons[2], At(20));
  EXPECT_EQ(player.buttons[3], At(40));
}

TEST_F(TabOrder, TheListGrowsBy50) {
  SObject object;
  for (int i = 1; i <= 120; ++i) {
    player.AddButton(&object);
    EXPECT_EQ(player.buttonCount, i);
    EXPECT_EQ(player.buttonSize, (i + 49) / 50 * 50);
  }
  player.RemoveAllButtons();
  EXPECT_EQ(player.buttonCount, 0);
  Load();
}

TEST_F(TabOrder, AFocusOnATextHasNoFrame) {
  EditText(7, 0);
  movie.Place(7, 20);
  Load();
  EXPECT_TRUE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_EQ(Focused(), 20);
  EXPECT_TRUE(stage.mouseOverEditText);
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
  EXPECT_TRUE(player.HandleKeyDown(kKeyReturn, 0)) << "the text takes the other keys";
}

TEST_F(TabOrder, ButtonsAreFoundByTheirExactBounds) {
  PlaceButtons({{0, 0}, {200, 0}});
  Load();
  SPlayer::SButton wanted;
  SPlayer::SButton found;
  At(20)->CalcButtonBounds(&wanted.bounds);
  EXPECT_TRUE(player.ButtonFind(&wanted, &found));
  EXPECT_EQ(found.button.Get(), At(20));
  ++wanted.bounds.xmax;
  EXPECT_FALSE(player.ButtonFind(&wanted, &found));
}

// Return and space.

TEST_F(TabOrder, ReturnPressesAndReleases) {
  PlaceButtons({{0, 0}, {1000, 0}});
  Load();
  player.HandleKeyDown(kKeyTab, 0);
  Logged();
  EXPECT_TRUE(player.HandleKeyDown(kKeyReturn, 0));
  EXPECT_EQ(Logged(), "a2 a3 ");
  EXPECT_TRUE(player.HandleKeyDown(kKeySpace, 0));
  EXPECT_EQ(Logged(), "a2 a3 ");
  EXPECT_EQ(Focused(), 10);
  EXPECT_TRUE(FrameIs(0, 10, 0, 10));
}

TEST_F(TabOrder, ReturnThatHidesItsButtonMovesTheFocusToTheFirst) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder hide = Log("r ");
  for (const char* operand : {"/cover", "7", "0"}) hide.Push(operand);
  hide.Op(kActionSetProperty);
  movie.DefineButton2(11, false, Records(1),
                      {On(1 << buttonPress, Log("p ")), On(1 << buttonRelease, hide)});
  author::TagStream cover;
  cover.Place(11, 1).FrameEnd();
  movie.DefineSprite(3, cover);
  movie.Place(
      {.depth = 5, .character = 3, .matrix = author::Matrix::Translate(500, 0), .name = "cover"});
  LoggingButton(12, 1, "first");
  LoggingButton(13, 1, "next");
  movie.Place(12, 10).Place(13, 20, author::Matrix::Translate(1000, 0));
  Load();
  Keys(2);
  ASSERT_EQ(player.focusButton.button.Get(), At(5)->firstChild);
  Logged();
  EXPECT_TRUE(player.HandleKeyDown(kKeyReturn, 0));
  EXPECT_FALSE(At(5)->visible);
  EXPECT_EQ(Focused(), 10);
  EXPECT_EQ(Logged(), "first0 ");
}

TEST_F(TabOrder, ReturnThatRemovesItsButtonMovesTheFocusToTheFirst) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder leave;
  leave.GotoFrame(1);
  movie.DefineButton2(11, false, Records(1), {On(1 << buttonPress, leave)});
  LoggingButton(12, 1, "a");
  LoggingButton(13, 1, "b");
  movie.Place(11, 10, author::Matrix::Translate(500, 0)).Place(12, 20);
  movie.Place(13, 30, author::Matrix::Translate(1000, 0));
  movie.FrameEnd().RemoveObject(10);
  Load();
  Keys(2);
  ASSERT_EQ(Focused(), 10);
  Logged();
  EXPECT_TRUE(player.HandleKeyDown(kKeyReturn, 0));
  EXPECT_EQ(At(10), nullptr);
  EXPECT_EQ(Focused(), 20) << "what is gone has no weight";
  EXPECT_EQ(Logged(), "a0 ");
}

TEST_F(TabOrder, AButtonInTheSamePlaceEndsTheSearchForAnother) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder leave;
  leave.GotoFrame(1);
  movie.DefineButton2(11, false, Records(1), {On(1 << buttonPress, leave)});
  LoggingButton(12, 1, "a");
  LoggingButton(13, 1, "b");
  movie.Place(11, 10).Place(12, 20, author::Matrix::Translate(1000, 0));
  movie.FrameEnd().RemoveObject(10).Place(13, 40);
  Load();
  player.HandleKeyDown(kKeyTab, 0);
  EXPECT_TRUE(player.HandleKeyDown(kKeyReturn, 0));
  EXPECT_EQ(Focused(), 0);
  EXPECT_EQ(Logged(), "");
}

TEST_F(TabOrder, OtherKeysAreKeptByTheFocus) {
  PlaceButtons({{0, 0}});
  Load();
  EXPECT_FALSE(player.HandleKeyDown('x', 0));
  EXPECT_FALSE(player.HandleKeyDown(kKeyReturn, 0));
  player.HandleKeyDown(kKeyTab, 0);
  Logged();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(Logged(), "");
  Move(50, 50);
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect)) << "the pointer took the button over";
  EXPECT_FALSE(player.HandleKeyDown('x', 0));
}

// The life of the focus.

TEST_F(TabOrder, AFreedFocusButtonTakesItsFrameAlong) {
  PlaceButtons({{0, 0}, {1000, 0}});
  Load();
  Keys(2);
  const SRECT bounds = player.focusButton.bounds;
  stage.dirtyCount = 0;
  stage.RemoveObject(At(20));
  EXPECT_FALSE(player.focusButton.button);
  EXPECT_TRUE(RectEqual(&player.focusButton.bounds, &bounds, 0)) << "stay";
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
  EXPECT_GT(stage.dirtyCount, 0);
  EXPECT_EQ(player.savedButton.button.Get(), At(10));
}

TEST_F(TabOrder, AFreedFocusGoesOnFromTheButtonBeforeIt) {
  PlaceButtons({{0, 0}, {500, 0}, {1000, 0}});
  Load();
  EXPECT_EQ(Keys(3), "10 20 30 ");
  stage.RemoveObject(At(30));
  EXPECT_EQ(Keys(1), "10 ") << "behind 20, which had it before, comes the first";
}

TEST_F(TabOrder, AFreedSavedButtonIsForgotten) {
  PlaceButtons({{0, 0}, {1000, 0}});
  Load();
  Keys(2);
  stage.RemoveObject(At(10));
  EXPECT_FALSE(player.savedButton.button);
  EXPECT_TRUE(player.focusButton.button);
}

TEST_F(TabOrder, ANewMovieLeavesNoFocus) {
  PlaceButtons({{0, 0}});
  Load();
  Keys(1);
  player.ClearScript();
  EXPECT_FALSE(player.focusButton.button);
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
}

TEST_F(TabOrder, AFocusButtonThatIsRemovedAsItIsEnteredLeavesNone) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder leave;
  leave.GotoFrame(1);
  movie.DefineButton2(11, false, Records(1), {On(1 << buttonEnter, leave)});
  movie.Place(11, 10).FrameEnd().RemoveObject(10);
  Load();
  EXPECT_FALSE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_EQ(Focused(), 0);
  EXPECT_TRUE(RectIsEmpty(&stage.tabFocusRect));
}

TEST_F(TabOrder, ThousandsOfButtonsAreWalkedInOrder) {
  Rectangle(1, 0, 0, 2, 2);
  movie.DefineButton2(11, false, Records(1), {});
  constexpr int kCount = 3000;
  for (int i = 0; i < kCount; ++i) {
    movie.Place(11, static_cast<uint16_t>(10 + 5 * i),
                author::Matrix::Translate(15 * (kCount - i), 0));
  }
  Load();
  const std::unique_ptr<SPlayer::ButtonWeight[]> map(player.BuildButtonTabMap());
  ASSERT_EQ(player.buttonCount, kCount);
  for (int i = 0; i < kCount; ++i) EXPECT_EQ(map[i].weight, i + 1);
  EXPECT_TRUE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_EQ(Focused(), 10 + 5 * (kCount - 1));
}

}  // namespace
}  // namespace vexel::test
