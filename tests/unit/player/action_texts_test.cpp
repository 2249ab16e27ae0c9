// Actions on texts and on values as such.
#include "action_fixture.h"

namespace vexel::test {
namespace {

using Texts = ActionTest;

TEST_F(Texts, ArePushedAsTheyStand) {
  Run(ActionBuilder().Push("007").Push(""));
  EXPECT_EQ(Pop(), "");
  EXPECT_EQ(Pop(), "007");
}

TEST_F(Texts, APushedFloatIsItsDoubleInFifteenDigits) {
  Run(ActionBuilder().PushFloat(0.1F).PushFloat(-0.0F).PushFloat(1e10F));
  EXPECT_EQ(Pop(), "10000000000");
  EXPECT_EQ(Pop(), "0");
  EXPECT_EQ(Pop(), "0.100000001490116");
}

TEST_F(Texts, APushTakesOneValueWhateverItsLengthSays) {
  const uint8_t two[] = {0, 'a', 0, 0, 'b', 0};
  const uint8_t other[] = {2, 'a', 0};
  Run(ActionBuilder().Raw(kActionPush, two).Raw(kActionPush, other));
  EXPECT_EQ(Pop(), "a");
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Texts, AreComparedByBytes) {
  EXPECT_EQ(Of(kActionStringEquals, {"abc", "abc"}), "1");
  EXPECT_EQ(Of(kActionStringEquals, {"abc", "ABC"}), "0");
  EXPECT_EQ(Of(kActionStringEquals, {"1", "1.0"}), "0");
  EXPECT_EQ(Of(kActionStringLess, {"a", "b"}), "1");
  EXPECT_EQ(Of(kActionStringLess, {"b", "a"}), "0");
  EXPECT_EQ(Of(kActionStringLess, {"a", "a"}), "0");
  EXPECT_EQ(Of(kActionStringLess, {"a", "aa"}), "1");
  EXPECT_EQ(Of(kActionStringLess, {"z", "\xE4"}), "1");
  EXPECT_EQ(Of(kActionStringLess, {"10", "9"}), "1");
}

TEST_F(Texts, AreMeasuredInBytes) {
  EXPECT_EQ(Of(kActionStringLength, {"hello"}), "5");
  EXPECT_EQ(Of(kActionStringLengthMB, {"h\xE3\x81"}), "3");
  EXPECT_EQ(Of(kActionStringLength, {}), "0");
  Run(ActionBuilder().PushFloat(0.5F).Op(kActionStringLength));
  EXPECT_EQ(Pop(), "3");
}

TEST_F(Texts, AreJoinedWithTheTopBehind) {
  EXPECT_EQ(Of(kActionConcat, {"ab", "cd"}), "abcd");
  EXPECT_EQ(Of(kActionConcat, {"", "cd"}), "cd");
  Run(ActionBuilder().PushFloat(1).PushFloat(2.5F).Op(kActionConcat));
  EXPECT_EQ(Pop(), "12.5");
}

TEST_F(Texts, PiecesCountFromOneAndAreCut) {
  for (const ActionCode code : {kActionSubstring, kActionSubstringMB}) {
    EXPECT_EQ(Of(code, {"hello", "2", "3"}), "ell");
    EXPECT_EQ(Of(code, {"hello", "2", "-1"}), "ello");
    EXPECT_EQ(Of(code, {"hello", "0", "2"}), "he");
    EXPECT_EQ(Of(code, {"hello", "5", "1"}), "o");
    EXPECT_EQ(Of(code, {"hello", "6", "1"}), "");
    EXPECT_EQ(Of(code, {"hello", "-2147483648", "1"}), "h");
    EXPECT_EQ(Of(code, {"hello", "2", "0"}), "");
    EXPECT_EQ(Of(code, {"hello", "9", "9"}), "");
    EXPECT_EQ(Of(code, {"", "1", "1"}), "");
  }
}

TEST_F(Texts, CharactersAndTheirCodes) {
  for (const ActionCode code : {kActionCharCode, kActionCharCodeMB}) {
    EXPECT_EQ(Of(code, {"A"}), "65");
    EXPECT_EQ(Of(code, {"\xFFz"}), "255");
    EXPECT_EQ(Of(code, {""}), "0");
  }
  for (const ActionCode code : {kActionCharFromCode, kActionCharFromCodeMB}) {
    EXPECT_EQ(Of(code, {"65"}), "A");
    EXPECT_EQ(Of(code, {"0"}), "");
    EXPECT_EQ(Of(code, {"-191"}), "A");
  }
  EXPECT_EQ(Of(kActionCharFromCode, {"321"}), "A");
}

TEST_F(Texts, CodesAboveAByteGiveTwoBytesInTheMultiByteForm) {
  EXPECT_EQ(Of(kActionCharFromCodeMB, {"16706"}), "AB");
  EXPECT_EQ(Of(kActionCharFromCodeMB, {"16640"}), "A");
  EXPECT_EQ(Of(kActionCharFromCodeMB, {"65601"}), "");
}

TEST_F(Texts, StayWhenTheMovieTheyStandInGoes) {
  Run(ActionBuilder().Push("from the block").PushFloat(7));
  EXPECT_EQ(Pop(), "7");
  EXPECT_EQ(Pop(), "from the block");
}

// A text that is appended to elsewhere keeps its own end.
TEST_F(Texts, GrowWithoutChangingTheirOlderCopies) {
  Run(ActionBuilder()
          .SetVariable("s", "start")
          .Push("s")
          .GetVariable("s")
          .Push("-one")
          .Op(kActionConcat)
          .Op(kActionSetVariable)
          .Push("t")
          .GetVariable("s")
          .Push("-two")
          .Op(kActionConcat)
          .Op(kActionSetVariable)
          .Push("u")
          .GetVariable("s")
          .Push("-three")
          .Op(kActionConcat)
          .Op(kActionSetVariable));
  EXPECT_EQ(Variable("s"), "start-one");
  EXPECT_EQ(Variable("t"), "start-one-two");
  EXPECT_EQ(Variable("u"), "start-one-three");
}

TEST_F(Texts, BeyondAMegabyteAreLost) {
  const std::string text(1 << 20, 'x');
  player.Push(text.c_str());
  EXPECT_EQ(player.stack.Count(), 1);
  player.Push((text + "x").c_str());
  EXPECT_EQ(player.stack.Count(), 1);
  Run(ActionBuilder().Push("y").Op(kActionConcat));
  EXPECT_EQ(player.stack.Count(), 0);
}

// Value stack and variables together stay within 64 MiB.
TEST_F(Texts, OfAMegabyteEachAreKeptUpToTheBudget) {
  const std::string text(1 << 20, 'x');
  for (int i = 0; i < 100; ++i) player.Push(text.c_str());
  const int32_t kept = player.stack.Count();
  EXPECT_LT(kept, 64);
  EXPECT_GT(kept, 60);
  player.SetVariable("late", text.c_str());
  EXPECT_EQ(Variable("late"), "(none)");
  for (int i = 0; i < kept; ++i) Pop();
  player.SetVariable("late", text.c_str());
  EXPECT_EQ(Variable("late").size(), text.size());
}

}  // namespace
}  // namespace vexel::test
