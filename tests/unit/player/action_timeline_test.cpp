// Actions on timelines: playing, targets, variables, properties, sprites, drags.
#include <string>

#include "action_fixture.h"
#include "stage/object.h"

namespace vexel::test {
namespace {

using Timelines = ActionTest;

TEST_F(Timelines, StepByOneFrameAndStop) {
  player.Seek(4);
  player.playing = true;
  Run(ActionBuilder().Op(kActionNextFrame));
  EXPECT_EQ(player.curFrame, 5);
  EXPECT_FALSE(player.playing);
  Run(ActionBuilder().Op(kActionPrevFrame).Op(kActionPrevFrame));
  EXPECT_EQ(player.curFrame, 3);
}

TEST_F(Timelines, PlayAndStop) {
  Run(ActionBuilder().Op(kActionStop));
  EXPECT_FALSE(player.playing);
  Run(ActionBuilder().Op(kActionPlay));
  EXPECT_TRUE(player.playing);
  EXPECT_EQ(player.TakeCalls(), "");
}

TEST_F(Timelines, GoToFramesAndLabels) {
  Run(ActionBuilder().GotoFrame(6));
  EXPECT_EQ(player.curFrame, 6);
  Run(ActionBuilder().GotoLabel("INTRO"));
  EXPECT_EQ(player.curFrame, 3);
  Run(ActionBuilder().GotoLabel("nowhere"));
  EXPECT_EQ(player.curFrame, 3);
}

TEST_F(Timelines, GoToAFrameByExpressionCountedFromOne) {
  Run(ActionBuilder().Push("6").GotoExpr(0));
  EXPECT_EQ(player.curFrame, 5);
  EXPECT_FALSE(player.playing);
  Run(ActionBuilder().Push("intro").GotoExpr(1));
  EXPECT_EQ(player.curFrame, 3);
  EXPECT_TRUE(player.playing);
  Run(ActionBuilder().Push("/a:4").GotoExpr(0));
  EXPECT_EQ(a->thread->curFrame, 3);
  Run(ActionBuilder().Push("0").GotoExpr(0).Push("nowhere").GotoExpr(1));
  EXPECT_EQ(player.curFrame, 3);
}

class OldMovies : public ActionTest, public ::testing::WithParamInterface<int32_t> {};

TEST_P(OldMovies, AskTheHostsClock) {
  player.version = GetParam();
  player.Seek(2);
  player.TakeCalls();
  Run(ActionBuilder().GotoFrame(6).Op(kActionPlay));
  EXPECT_EQ(player.curFrame, 2);
  EXPECT_EQ(player.TakeCalls(), "XPlay XSeek ");
  Run(ActionBuilder().GotoFrame(6).Op(kActionPlay).Op(kActionStop).GetURL("u", "w"));
  EXPECT_EQ(player.TakeCalls(), "GetURL XSeek XStopPlay ");
  Run(ActionBuilder().GotoFrame(1));
  EXPECT_EQ(player.TakeCalls(), "XSeek ");
}

TEST_P(OldMovies, StepAndGoToLabelsAsOthersDo) {
  player.version = GetParam();
  Run(ActionBuilder().GotoLabel("intro").Op(kActionNextFrame));
  EXPECT_EQ(player.curFrame, 4);
  Run(ActionBuilder().Op(kActionPrevFrame));
  EXPECT_EQ(player.curFrame, 3);
  Run(ActionBuilder().Push("8").GotoExpr(0));
  EXPECT_EQ(player.curFrame, 7);
  EXPECT_EQ(player.TakeCalls(), "");
}

INSTANTIATE_TEST_SUITE_P(Versions, OldMovies, ::testing::Values(1, 2, 129));

TEST_F(Timelines, VersionsBesideTheOldOnesActOnThemselves) {
  for (const int32_t version : {0, 3, 4, 130}) {
    player.version = version;
    Run(ActionBuilder().Op(kActionStop));
    EXPECT_FALSE(player.playing);
    Run(ActionBuilder().Op(kActionPlay));
    EXPECT_TRUE(player.playing);
  }
  EXPECT_EQ(player.TakeCalls(), "");
}

// Targets.

TEST_F(Timelines, ASetTargetChoosesAnother) {
  Run(ActionBuilder().SetTarget("a").Op(kActionNextFrame));
  EXPECT_EQ(a->thread->curFrame, 1);
  EXPECT_EQ(player.curFrame, 0);
  Run(ActionBuilder().SetTarget("a").SetTarget("").Op(kActionNextFrame));
  EXPECT_EQ(player.curFrame, 1);
  Run(ActionBuilder().Push("a").Op(kActionSetTargetExpr).Op(kActionNextFrame));
  EXPECT_EQ(a->thread->curFrame, 2);
}

TEST_F(Timelines, ASetTargetStartsAtTheBlocksOwnTimeline) {
  Run(ActionBuilder().SetTarget("a").SetTarget("b").Op(kActionNextFrame).SetVariable("x", "1"));
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(Variable("x"), "1");  // no target, so the player's
  EXPECT_EQ(Variable(*b->thread, "x"), "(none)");
  Run(ActionBuilder().SetTarget("a").SetTarget("a/b").SetVariable("x", "2"));
  EXPECT_EQ(Variable(*b->thread, "x"), "2");
}

TEST_F(Timelines, ATargetThatNamesNothingSkipsTheActionsOnTimelines) {
  player.Seek(2);
  player.playing = true;
  Run(ActionBuilder()
          .SetTarget("nowhere")
          .Op(kActionStop)
          .Op(kActionNextFrame)
          .Op(kActionPrevFrame)
          .GotoFrame(5)
          .GotoLabel("intro")
          .WaitForFrame(9999, 1)
          .Push("not skipped"));
  EXPECT_EQ(player.curFrame, 2);
  EXPECT_TRUE(player.playing);
  EXPECT_EQ(Pop(), "not skipped");
}

TEST_F(Timelines, EachBlockStartsWithoutATarget) {
  Queue(ActionBuilder().SetTarget("a"));
  Queue(ActionBuilder().SetVariable("x", "1"));
  player.DoActions();
  EXPECT_EQ(Variable("x"), "1");
  EXPECT_EQ(Variable(*a->thread, "x"), "(none)");
}

TEST_F(Timelines, ATargetThatIsRemovedIsNoLongerInForce) {
  Run(ActionBuilder()
          .Push("a")
          .Push("copy")
          .PushFloat(20000)
          .Op(kActionCloneSprite)
          .SetTarget("copy")
          .Push("/copy")
          .Op(kActionRemoveSprite)
          .SetVariable("x", "1"));
  EXPECT_EQ(Variable("x"), "1");
}

// Variables.

TEST_F(Timelines, VariablesBelongToTheTarget) {
  Run(ActionBuilder().SetTarget("a").SetVariable("x", "1").GetVariable("X"));
  EXPECT_EQ(Pop(), "1");
  EXPECT_EQ(Variable(*a->thread, "x"), "1");
}

TEST_F(Timelines, AnUnknownVariableIsTheEmptyText) {
  Run(ActionBuilder().Push("below").GetVariable("unknown"));
  EXPECT_EQ(Pop(), "");
  EXPECT_EQ(Pop(), "below");
  player.SetVariable("null", nullptr);
  Run(ActionBuilder().GetVariable("null"));
  EXPECT_EQ(player.stack.Count(), 1);
  Run(ActionBuilder().GetVariable("nowhere:x").GetVariable("a.b"));
  EXPECT_EQ(player.stack.Count(), 3);
}

TEST_F(Timelines, VariablesAreReachedByPaths) {
  Run(ActionBuilder().SetVariable("/a/b:x", "deep").GetVariable("a/b:x"));
  EXPECT_EQ(Pop(), "deep");
  EXPECT_EQ(Variable(*b->thread, "x"), "deep");
  Run(ActionBuilder().SetVariable("nowhere:x", "1").SetVariable("x.y", "1").SetVariable("", "1"));
  EXPECT_EQ(player.FindVariable("x.y"), nullptr);
}

TEST_F(Timelines, VariablesKeepNumbersAsTheirTexts) {
  Run(ActionBuilder()
          .Push("x")
          .Push("0.1")
          .Push("0.2")
          .Op(kActionAdd)
          .Op(kActionSetVariable)
          .GetVariable("x")
          .Push("0.1")
          .Op(kActionAdd));
  EXPECT_EQ(Pop(), "0.4");
  EXPECT_EQ(Variable("x"), "0.3");
}

// Properties.

TEST_F(Timelines, PropertiesAreReadByPathAndNumber) {
  EXPECT_EQ(Of(kActionGetProperty, {"a", "5"}), "8");
  EXPECT_EQ(Of(kActionGetProperty, {"", "5"}), "10");
  EXPECT_EQ(Of(kActionGetProperty, {"/a/b", "11"}), "/a/b");
  EXPECT_EQ(Of(kActionGetProperty, {"/a/b", "13"}), "b");
  EXPECT_EQ(Of(kActionGetProperty, {"nowhere", "5"}), "");
  EXPECT_EQ(Of(kActionGetProperty, {"a", "19"}), "0");
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Timelines, PropertiesAreWrittenWhenTheValueIsANumber) {
  Of(kActionSetProperty, {"a", "0", "12"});
  EXPECT_EQ(a->mat.tx, 240);
  Of(kActionSetProperty, {"a", "0", "x"});
  EXPECT_EQ(a->mat.tx, 240);
  Of(kActionSetProperty, {"a", "13", "renamed"});
  EXPECT_STREQ(a->name, "renamed");
  Of(kActionSetProperty, {"nowhere", "0", "1"});
  Of(kActionSetProperty, {"nowhere", "13", "1"});
}

TEST_F(Timelines, AMissingTargetFallsBackToThePlayer) {
  Run(ActionBuilder().SetTarget("nowhere").Push("a").PushFloat(5).Op(kActionGetProperty));
  EXPECT_EQ(Pop(), "8");
  Run(ActionBuilder().SetTarget("nowhere").Push("").PushFloat(5).Op(kActionGetProperty));
  EXPECT_EQ(Pop(), "");
}

// Sprites.

TEST_F(Timelines, CloneUnderANewNameAndDepth) {
  Of(kActionCloneSprite, {"a", "copy", "16384"});
  EXPECT_NE(player.FindTarget(player.rootObject, "copy"), nullptr);
  Of(kActionCloneSprite, {"a", "other", "-1"});
  EXPECT_EQ(player.FindTarget(player.rootObject, "other"), nullptr);
  Of(kActionCloneSprite, {"nowhere", "other", "5"});
  EXPECT_EQ(player.FindTarget(player.rootObject, "other"), nullptr);
}

TEST_F(Timelines, ADepthBeyondSixteenBitsKeepsItsLowOnes) {
  Of(kActionCloneSprite, {"a", "copy", "85536"});
  EXPECT_EQ(player.FindTarget(player.rootObject, "copy")->rootObject->depth, 20000);
}

TEST_F(Timelines, OnlySpritesAboveDepth16383AreRemoved) {
  Of(kActionCloneSprite, {"a", "low", "16383"});
  Of(kActionCloneSprite, {"a", "high", "16384"});
  Of(kActionRemoveSprite, {"low"});
  EXPECT_NE(player.FindTarget(player.rootObject, "low"), nullptr);
  Of(kActionRemoveSprite, {"high"});
  EXPECT_EQ(player.FindTarget(player.rootObject, "high"), nullptr);
  Of(kActionRemoveSprite, {"nowhere"});
}

TEST_F(Timelines, ASpriteMayRemoveItself) {
  Of(kActionCloneSprite, {"a", "copy", "20000"});
  ScriptThread* copy = player.FindTarget(player.rootObject, "copy");
  Run(ActionBuilder().Push("").Op(kActionRemoveSprite).Op(kActionNextFrame).SetVariable("x", "1"),
      copy);
  EXPECT_EQ(player.FindTarget(player.rootObject, "copy"), nullptr);
  EXPECT_EQ(Variable("x"), "1");
}

// Drags.

TEST_F(Timelines, ADragTakesItsObject) {
  player.mousePoint = {7, 8};
  Run(ActionBuilder().PushFloat(0).PushFloat(1).Push("a").Op(kActionStartDrag));
  EXPECT_EQ(player.dragObject.Get(), a);
  EXPECT_TRUE(player.dragging);
  EXPECT_EQ(player.dragPoint.x, 7);
  EXPECT_EQ(player.dragPoint.y, 8);
  EXPECT_TRUE(a->scriptControlled);
  EXPECT_TRUE(a->dragCenter);
  EXPECT_TRUE(RectIsEmpty(&a->dragConstraint));
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Timelines, ADragIsKeptInsideARectangleOfPixelsInAnyOrder) {
  Run(ActionBuilder()
          .Push("30")   // x1
          .Push("5")    // y1
          .Push("10")   // x2
          .Push("-20")  // y2
          .Push("1")
          .Push("0")
          .Push("a")
          .Op(kActionStartDrag));
  EXPECT_EQ(a->dragConstraint.xmin, 200);
  EXPECT_EQ(a->dragConstraint.xmax, 600);
  EXPECT_EQ(a->dragConstraint.ymin, -400);
  EXPECT_EQ(a->dragConstraint.ymax, 100);
  EXPECT_FALSE(a->dragCenter);
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Timelines, ADragOfNothingChangesNothing) {
  Run(ActionBuilder().PushFloat(0).PushFloat(0).Push("nowhere").Op(kActionStartDrag));
  EXPECT_EQ(player.dragObject.Get(), nullptr);
  EXPECT_FALSE(player.dragging);
}

TEST_F(Timelines, ADragEndsOnce) {
  Run(ActionBuilder().PushFloat(0).PushFloat(0).Push("a").Op(kActionStartDrag).Op(kActionStopDrag));
  EXPECT_EQ(player.dragObject.Get(), nullptr);
  EXPECT_FALSE(player.dragging);
  player.dragging = true;
  Run(ActionBuilder().Op(kActionStopDrag));
  EXPECT_TRUE(player.dragging);
}

TEST_F(Timelines, QualityToggles) {
  player.autoQuality = true;
  Run(ActionBuilder().Op(kActionToggleQuality));
  EXPECT_FALSE(player.highQuality);
  EXPECT_FALSE(player.autoQuality);
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  Run(ActionBuilder().Op(kActionToggleQuality));
  EXPECT_TRUE(player.highQuality);
}

}  // namespace
}  // namespace vexel::test
