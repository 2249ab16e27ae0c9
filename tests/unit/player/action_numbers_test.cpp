// Actions on numbers and truth values.
#include "action_fixture.h"
#include "player/random.h"

namespace vexel::test {
namespace {

using Numbers = ActionTest;

TEST_F(Numbers, AreCalculatedWithTheTopOnTheRight) {
  EXPECT_EQ(Of(kActionAdd, {"5", "2"}), "7");
  EXPECT_EQ(Of(kActionSubtract, {"5", "2"}), "3");
  EXPECT_EQ(Of(kActionMultiply, {"5", "2"}), "10");
  EXPECT_EQ(Of(kActionDivide, {"5", "2"}), "2.5");
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Numbers, AreWhatTheirTextsSay) {
  EXPECT_EQ(Of(kActionAdd, {"0.1", "0.2"}), "0.3");
  EXPECT_EQ(Of(kActionAdd, {" 1", "1"}), "1");
  EXPECT_EQ(Of(kActionAdd, {"", "abc"}), "0");
  EXPECT_EQ(Of(kActionMultiply, {"1e200", "1e200"}), "#ERROR#");
  EXPECT_EQ(Of(kActionMultiply, {"-1", "0"}), "0");
}

TEST_F(Numbers, DivisionByZeroIsAnErrorThatCountsAsZero) {
  Run(ActionBuilder().Push("1").Push("0").Op(kActionDivide));
  player.Push("2");
  Run(ActionBuilder().Op(kActionAdd));
  EXPECT_EQ(Pop(), "2");
  EXPECT_EQ(Of(kActionDivide, {"1", "0"}), "#ERROR#");
  EXPECT_EQ(Of(kActionDivide, {"1", "x"}), "#ERROR#");
  EXPECT_EQ(Of(kActionDivide, {"1", "-0"}), "#ERROR#");
}

TEST_F(Numbers, AreComparedAsNumbers) {
  EXPECT_EQ(Of(kActionEquals, {"1.0", "1"}), "1");
  EXPECT_EQ(Of(kActionEquals, {"a", "b"}), "1");
  EXPECT_EQ(Of(kActionEquals, {"1", "2"}), "0");
}

TEST_F(Numbers, OneIsLessThanTwo) {
  EXPECT_EQ(Of(kActionLess, {"1", "2"}), "1");
  EXPECT_EQ(Of(kActionLess, {"2", "1"}), "0");
  EXPECT_EQ(Of(kActionLess, {"1", "1"}), "0");
}

TEST_F(Numbers, AHalfIsFalseToAndOrAndTrueToNotAndIf) {
  EXPECT_EQ(Of(kActionAnd, {"0.5", "1"}), "0");
  EXPECT_EQ(Of(kActionOr, {"0.5", "0"}), "0");
  EXPECT_EQ(Of(kActionNot, {"0.5"}), "0");
  ActionBuilder block;
  const auto end = block.NewLabel();
  block.Push("0.5").If(end).Push("not reached").Bind(end);
  Run(block);
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Numbers, TruthIsOneAndZero) {
  EXPECT_EQ(Of(kActionAnd, {"3", "-1"}), "1");
  EXPECT_EQ(Of(kActionAnd, {"3", "0"}), "0");
  EXPECT_EQ(Of(kActionAnd, {"0", "3"}), "0");
  EXPECT_EQ(Of(kActionOr, {"0", "3"}), "1");
  EXPECT_EQ(Of(kActionOr, {"0", "x"}), "0");
  EXPECT_EQ(Of(kActionNot, {"0"}), "1");
  EXPECT_EQ(Of(kActionNot, {""}), "1");
  EXPECT_EQ(Of(kActionNot, {"2"}), "0");
}

// Both operands are popped, whatever the first one says.
TEST_F(Numbers, AndAndOrAlwaysTakeTwo) {
  Of(kActionAnd, {"left", "1", "0"});
  EXPECT_EQ(Pop(), "left");
  Of(kActionOr, {"left", "0", "1"});
  EXPECT_EQ(Pop(), "left");
}

TEST_F(Numbers, IntegersAreCutTowardZeroAndOutOfRangeIsTheLowest) {
  EXPECT_EQ(Of(kActionToInteger, {"2.9"}), "2");
  EXPECT_EQ(Of(kActionToInteger, {"-2.9"}), "-2");
  EXPECT_EQ(Of(kActionToInteger, {"2147483648"}), "-2147483648");
  EXPECT_EQ(Of(kActionToInteger, {"-1e99"}), "-2147483648");
  EXPECT_EQ(Of(kActionToInteger, {"0e400"}), "-2147483648");
  EXPECT_EQ(Of(kActionToInteger, {"text"}), "0");
}

TEST_F(Numbers, AnEmptyStackGivesZeros) {
  Run(ActionBuilder().Op(kActionPop).Op(kActionDiscard));
  EXPECT_EQ(Of(kActionAdd, {}), "0");
  EXPECT_EQ(Of(kActionEquals, {}), "1");
  EXPECT_EQ(Pop(), "");
}

TEST_F(Numbers, RandomOnesComeFromTheSharedGenerator) {
  gRandomFast = {1, kRandomTaps, 0};
  const int32_t expected = Random(1000);
  gRandomFast = {1, kRandomTaps, 0};
  EXPECT_EQ(Of(kActionRandom, {"1000"}), std::to_string(expected));
  EXPECT_EQ(Of(kActionRandom, {"0"}), "0");
  gRandomFast = {};
}

TEST_F(Numbers, TimeCountsFromTheConstructionOfThePlayer) {
  TestClock::tick = player.startTime + 2500;
  EXPECT_EQ(Of(kActionGetTime, {}), "2500");
  TestClock::tick = player.startTime - 1;
  EXPECT_EQ(Of(kActionGetTime, {}), "4294967295");
}

}  // namespace
}  // namespace vexel::test
