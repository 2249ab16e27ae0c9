#include "input_fixture.h"
#include "player/key_codes.h"

namespace vexel::test {
namespace {

class ButtonKeys : public InputFixture {
 protected:
  static uint16_t Key(int code) { return static_cast<uint16_t>(code << kButtonKeyShift); }
};

TEST_F(ButtonKeys, FireWhereverThePointerIs) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, Records(1), {On(Key('x'), Log("x "))});
  movie.Place(11, 10);
  Load();
  Move(90, 90);
  player.TakeCalls();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(Logged(), "x ");
  EXPECT_EQ(player.TakeCalls(), "UpdateScreen ");
  EXPECT_FALSE(player.HandleKeyDown('y', 0));
}

TEST_F(ButtonKeys, UnseenButtonsDoNotFire) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, Records(1), {On(Key('x'), Log("x "))});
  movie.Place(11, 10);
  Load();
  At(10)->visible = false;
  EXPECT_FALSE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(Logged(), "");
}

TEST_F(ButtonKeys, TheFirstRecordOfTheFirstButtonWins) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(
      11, false, Records(1),
      {On(Key('y') | 1, Log("y ")), On(Key('x'), Log("first ")), On(Key('x'), Log("second "))});
  movie.DefineButton2(12, false, Records(1), {On(Key('x'), Log("other "))});
  movie.Place(12, 20).Place(11, 10);
  Load();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(Logged(), "first ");
}

TEST_F(ButtonKeys, AKeyConditionMayStandBesideOtherConditions) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, Records(1),
                      {On(static_cast<uint16_t>(Key('x') | 1 << buttonEnter), Log("x "))});
  movie.Place(11, 10);
  Load();
  Move(5, 5);
  EXPECT_EQ(Logged(), "x ");
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(Logged(), "x ");
}

TEST_F(ButtonKeys, OnlyPositiveCodesOfSevenBitsCanMatch) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(
      11, false, Records(1),
      {On(1 << buttonEnter, Log("0 ")), On(Key(127), Log("127 ")), On(Key(1), Log("1 "))});
  movie.Place(11, 10);
  Load();
  for (const int32_t key : {0, 128, 129, 255, -1, -127, 256 + 1, kInt32Min, kInt32Max}) {
    EXPECT_FALSE(player.HandleKeyDown(key, 0)) << key;
  }
  EXPECT_EQ(Logged(), "");
  EXPECT_TRUE(player.HandleKeyDown(127, 0));
  EXPECT_TRUE(player.HandleKeyDown(kKeyLeft, 0));
  EXPECT_EQ(Logged(), "127 1 ");
}

TEST_F(ButtonKeys, ComeBeforeTheKeysThatMoveTheFocus) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, Records(1), {On(Key(kKeyTab), Log("tab "))});
  movie.Place(11, 10);
  Load();
  EXPECT_TRUE(player.HandleKeyDown(kKeyTab, 0));
  EXPECT_EQ(Logged(), "tab ");
  EXPECT_FALSE(player.focusButton.button);
}

TEST_F(ButtonKeys, RunOnTheTimelineOfTheButton) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false, Records(1), {On(Key('x'), Log("x"))});
  author::TagStream inner;
  inner.Place(11, 1).FrameEnd();
  movie.DefineSprite(3, inner);
  movie.Place(3, 10);
  Load();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  char* log = player.GetVariable(At(10)->thread, "log");
  EXPECT_STREQ(log, "x");
  FreeStr(log);
}

TEST_F(ButtonKeys, AButtonOfTheFirstFormHasNone) {
  Rectangle(1, 0, 0, 10, 10);
  // Read in the other form, its records would be an offset and a condition.
  movie.DefineButton(11, {{4, 1, 0xF000, {}, {}}}, Log("x").Finish());
  movie.Place(11, 10);
  Load();
  for (int32_t key = 1; key < 128; ++key) {
    if (key == kKeyTab) continue;
    EXPECT_FALSE(player.HandleKeyDown(key, 0)) << key;
  }
  EXPECT_EQ(Logged(), "");
}

TEST_F(ButtonKeys, ARecordCutOffAtTheDataStillTakesItsKey) {
  Rectangle(1, 0, 0, 10, 10);
  movie.Tag(kTagDefineButton2, author::Bytes{11, 0, 0, 3, 0, 0, 0, 0, 0, 'x' << 1});
  movie.Place(11, 10);
  Load();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
}

TEST_F(ButtonKeys, TheButtonMayGoWithItsAction) {
  Rectangle(1, 0, 0, 10, 10);
  author::ActionBuilder leave = Log("x ");
  leave.GotoFrame(1);
  movie.DefineButton2(11, false, Records(1), {On(Key('x'), leave)});
  movie.Place(11, 10).FrameEnd().RemoveObject(10);
  Load();
  EXPECT_TRUE(player.HandleKeyDown('x', 0));
  EXPECT_EQ(At(10), nullptr);
  EXPECT_FALSE(player.HandleKeyDown('x', 0));
}

}  // namespace
}  // namespace vexel::test
