#include "author/action_builder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vexel::author {
namespace {

TEST(ActionBuilder, PlainActionsAreOneByteAndTheEndIsZero) {
  EXPECT_EQ(ActionBuilder().Op(kActionPlay).Op(kActionStop).Finish(), (Bytes{6, 7, 0}));
}

TEST(ActionBuilder, ActionsFrom0x80HaveALength) {
  EXPECT_EQ(ActionBuilder().Op(kActionCall).GotoFrame(0x0102).Finish(),
            (Bytes{0x9E, 0, 0, 0x81, 2, 0, 2, 1, 0}));
  EXPECT_EQ(ActionBuilder().WaitForFrame(3, 4).GetURLExpr(1).GotoExpr(1).Finish(),
            (Bytes{0x8A, 3, 0, 3, 0, 4, 0x9A, 1, 0, 1, 0x9F, 1, 0, 1, 0}));
  EXPECT_EQ(ActionBuilder().WaitForFrameExpr(9).Finish(), (Bytes{0x8D, 1, 0, 9, 0}));
}

TEST(ActionBuilder, TextsCloseWithAZero) {
  EXPECT_EQ(ActionBuilder().GetURL("u", "w").Finish(), (Bytes{0x83, 4, 0, 'u', 0, 'w', 0, 0}));
  EXPECT_EQ(ActionBuilder().SetTarget("").GotoLabel("x").Finish(),
            (Bytes{0x8B, 1, 0, 0, 0x8C, 2, 0, 'x', 0, 0}));
}

TEST(ActionBuilder, APushHoldsOneTextOrFloat) {
  EXPECT_EQ(ActionBuilder().Push("a").Finish(), (Bytes{0x96, 3, 0, 0, 'a', 0, 0}));
  EXPECT_EQ(ActionBuilder().PushFloat(1.0f).Finish(), (Bytes{0x96, 5, 0, 1, 0, 0, 0x80, 0x3F, 0}));
}

TEST(ActionBuilder, JumpsCountFromTheEndOfTheAction) {
  ActionBuilder actions;
  const auto top = actions.NewLabel();
  const auto out = actions.NewLabel();
  actions.Bind(top).If(out).Jump(top).Bind(out);
  EXPECT_EQ(actions.Finish(), (Bytes{0x9D, 2, 0, 5, 0, 0x99, 2, 0, 0xF6, 0xFF, 0}));
  EXPECT_EQ(ActionBuilder().JumpBy(-5).IfBy(7).Finish(),
            (Bytes{0x99, 2, 0, 0xFB, 0xFF, 0x9D, 2, 0, 7, 0, 0}));
}

TEST(ActionBuilder, AnUnboundLabelIsRefused) {
  ActionBuilder actions;
  actions.Jump(actions.NewLabel());
  EXPECT_THROW(actions.Finish(), std::range_error);
}

TEST(ActionBuilder, RawActionsTakeAnyCode) {
  const Bytes operands = {1, 2};
  EXPECT_EQ(ActionBuilder().Raw(0xF0, operands).Raw(0x7F, {}).Finish(),
            (Bytes{0xF0, 2, 0, 1, 2, 0x7F, 0}));
  EXPECT_THROW(ActionBuilder().Raw(0x10, operands), std::range_error);
}

TEST(ActionBuilder, VariablesAreNameThenValue) {
  EXPECT_EQ(ActionBuilder().SetVariable("n", "v").Finish(),
            ActionBuilder().Push("n").Push("v").Op(kActionSetVariable).Finish());
  EXPECT_EQ(ActionBuilder().GetVariable("n").Finish(),
            ActionBuilder().Push("n").Op(kActionGetVariable).Finish());
}

TEST(ActionList, EveryCodeHasOneRowInAscendingOrder) {
  int last = 0;
  for (const ActionInfo& info : kActionInfos) {
    EXPECT_GT(info.code, last) << info.name;
    EXPECT_EQ(FindActionInfo(info.code), &info);
    EXPECT_TRUE(info.code >= kFirstActionWithLength || info.operands == ActionOperands::kNone);
    last = info.code;
  }
  EXPECT_EQ(FindActionInfo(0x09), nullptr);
}

}  // namespace
}  // namespace vexel::author
