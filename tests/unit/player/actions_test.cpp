// The loop of the interpreter: blocks, jumps, calls, limits, and blocks that
// are broken.
#include <vector>

#include "action_fixture.h"
#include "movie/tags.h"
#include "player/action_run.h"
#include "player/action_trace.h"

namespace vexel::test {
namespace {

using Actions = ActionTest;

ActionBuilder Set(const char* name, const char* value) {
  return ActionBuilder().SetVariable(name, value);
}

// name = name + 1
ActionBuilder& Count(ActionBuilder& block, const char* name) {
  return block.Push(name).GetVariable(name).Push("1").Op(kActionAdd).Op(kActionSetVariable);
}

TEST_F(Actions, WaitUntilTheFirstFrameHasBeenShown) {
  player.loaded = false;
  Run(Set("x", "1"));
  EXPECT_EQ(Variable("x"), "(none)");
  player.loaded = true;
  player.DoActions();
  EXPECT_EQ(Variable("x"), "1");
  EXPECT_TRUE(player.display.actionList.IsEmpty());
}

TEST_F(Actions, DoNotNest) {
  Queue(Set("x", "1"));
  player.actionDepth = 1;
  player.DoActions();
  EXPECT_EQ(Variable("x"), "(none)");
  player.actionDepth = 0;
  player.DoActions();
  EXPECT_EQ(Variable("x"), "1");
  EXPECT_EQ(player.actionDepth, 0);
}

TEST_F(Actions, LeaveTheirValuesToTheNextRun) {
  Run(ActionBuilder().Push("left"));
  Run(ActionBuilder().Push("x").Op(kActionConcat));
  EXPECT_EQ(Pop(), "leftx");
}

TEST_F(Actions, UnknownCodesAreSteppedOver) {
  const uint8_t some[] = {1, 2, 3};
  Run(ActionBuilder().Raw(0x01, {}).Raw(0x7F, {}).Raw(0xFF, some).Raw(0x80, {}).Push("x"));
  EXPECT_EQ(Pop(), "x");
}

TEST_F(Actions, ABlockWhoseTimelineIsGoneIsAHole) {
  Queue(Set("x", "1"), b->thread);
  Queue(Set("y", "1"));
  player.display.actionList.RemoveThread(b->thread);
  player.DoActions();
  EXPECT_EQ(Variable("x"), "(none)");
  EXPECT_EQ(Variable("y"), "1");
}

TEST_F(Actions, RunWhatActionsQueueThemselves) {
  author::TagStream sprite;
  sprite.FrameActions(Set("/:born", "yes")).FrameEnd().End();
  author::MovieWriter movie(100, 100);
  movie.DefineSprite(1, sprite).FrameEnd().Place(1, 1).FrameEnd().End();
  TestPlayer other;
  other.Push(movie.Finish());
  other.display.actionList.PushAction(CopyBytes(ActionBuilder().GotoFrame(1).Finish()), &other);
  other.DoActions();
  ASSERT_NE(other.FindVariable("born"), nullptr);
}

TEST_F(Actions, ALoopEndsAtTheTwoHundredThousandAndFirstActionForEver) {
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start).Jump(start);
  Queue(loop);
  Queue(Set("later", "1"));
  player.DoActions();
  EXPECT_TRUE(player.actionsHalted);
  EXPECT_EQ(player.actionDepth, 0);
  EXPECT_EQ(Variable("later"), "(none)");
  EXPECT_FALSE(player.display.actionList.IsEmpty());
  player.DoActions();
  EXPECT_TRUE(player.display.actionList.IsEmpty());
  Run(Set("later", "1"));
  EXPECT_EQ(Variable("later"), "(none)");
  EXPECT_TRUE(player.display.actionList.IsEmpty());
  player.ClearScript();
  EXPECT_TRUE(player.actionsHalted);
}

TEST_F(Actions, TheLimitCountsTheActionsOfAllBlocks) {
  const auto fill = [](int actions) {
    ActionBuilder block;
    for (int i = 0; i < actions; ++i) block.Op(kActionPop);
    return block;
  };
  for (int i = 0; i < 4; ++i) Queue(fill(50000));
  player.DoActions();
  EXPECT_FALSE(player.actionsHalted);
  for (int i = 0; i < 4; ++i) Queue(fill(50000));
  Queue(ActionBuilder().Push("last one that runs").Push("never"));
  player.DoActions();
  EXPECT_TRUE(player.actionsHalted);
  EXPECT_EQ(Pop(), "last one that runs");
}

TEST_F(Actions, JumpsCountFromTheirOwnEnd) {
  ActionBuilder block;
  const auto behind = block.NewLabel();
  block.Jump(behind).Push("skipped").Bind(behind).Push("reached");
  Run(block);
  EXPECT_EQ(Pop(), "reached");
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Actions, JumpsBackwardLoop) {
  ActionBuilder block;
  const auto start = block.NewLabel();
  block.Bind(start);
  Count(block, "i").GetVariable("i").Push("10").Op(kActionLess).If(start);
  Run(block);
  EXPECT_EQ(Variable("i"), "10");
}

TEST_F(Actions, AJumpOutOfTheBlockEndsIt) {
  for (const int16_t offset : {int16_t{-32768}, int16_t{-6}, int16_t{32767}, int16_t{2000}}) {
    Queue(ActionBuilder().JumpBy(offset).Push("not reached"));
    Queue(ActionBuilder().Push("1").IfBy(offset).Push("not reached"));
    Queue(Set("next", "1"));
    player.DoActions();
    EXPECT_EQ(player.stack.Count(), 0) << offset;
    EXPECT_EQ(Variable("next"), "1") << offset;
  }
}

TEST_F(Actions, AJumpInsideAnActionRunsWhatIsThere) {
  // Into the text of the push behind it, whose bytes are a push themselves.
  const author::Bytes inner = ActionBuilder().Push("in").Finish();
  author::Bytes text = {0};
  text.insert(text.end(), inner.begin(), inner.end());
  Run(ActionBuilder().JumpBy(4).Raw(kActionPush, text));
  EXPECT_EQ(Pop(), "in");
}

TEST_F(Actions, ABlockWithoutAnEndEndsWithItsBytes) {
  for (author::Bytes bytes :
       {author::Bytes{}, author::Bytes{kActionPop}, author::Bytes{0x96}, author::Bytes{0x96, 2},
        author::Bytes{0x9D, 2, 0}, author::Bytes{0x99, 2, 0, 9}, author::Bytes{0x83, 1, 0, 'u'},
        author::Bytes{0x8A, 3, 0, 9}, author::Bytes{0x81}, author::Bytes{0x9F, 1, 0},
        author::Bytes{0x9A}}) {
    QueueBytes(bytes);
  }
  player.DoActions();
  EXPECT_TRUE(player.display.actionList.IsEmpty());
  EXPECT_FALSE(player.actionsHalted);
}

TEST_F(Actions, OperandsBehindTheEndAreZerosAndTextsStopThere) {
  RunBytes({0x96, 5, 0, 1, 0, 0});  // a float cut short
  EXPECT_EQ(Pop(), "0");
  RunBytes({0x96, 3, 0, 0, 'a', 'b'});  // a text without its end
  EXPECT_EQ(Pop(), "ab");
  RunBytes({0x96, 1, 0});  // no type
  EXPECT_EQ(Pop(), "");
  RunBytes({0x83, 3, 0, 'a', 0, 'b'});
  EXPECT_EQ(player.requests, std::vector<std::string>{"a > b"});
}

TEST_F(Actions, AMillionValuesKeepTheFirst65536) {
  ActionBuilder block;
  for (int i = 0; i < 20000; ++i) block.Push("v");
  for (int i = 0; i < 5; ++i) Run(block);
  EXPECT_EQ(player.stack.Count(), 65536);
  for (int i = 0; i < 900000; ++i) player.Push("w");
  EXPECT_EQ(player.stack.Count(), 65536);
  EXPECT_EQ(Pop(), "v");
}

// Skips.

TEST_F(Actions, WaitingForAFrameThatIsNotThereSkipsAndCounts) {
  player.numFramesComplete = 4;
  ActionBuilder block;
  block.WaitForFrame(5, 2).Push("a").Push("b").Push("c");
  for (int i = 0; i < 99998; ++i) block.Op(kActionPop);
  Queue(block);
  Queue(block);
  player.DoActions();
  EXPECT_TRUE(player.actionsHalted);  // 2 x 100002, the skipped ones included
}

TEST_F(Actions, ASkipPassesOverThatManyActions) {
  player.numFramesComplete = 4;
  Run(ActionBuilder().WaitForFrame(5, 2).Push("a").Push("b").Push("c"));
  EXPECT_EQ(Pop(), "c");
  EXPECT_EQ(player.stack.Count(), 0);
  Run(ActionBuilder().WaitForFrame(4, 2).Push("a").Push("b").Push("c"));
  EXPECT_EQ(player.stack.Count(), 3);
}

TEST_F(Actions, ASkippedJumpDoesNotJump) {
  player.numFramesComplete = 4;
  Run(ActionBuilder().WaitForFrame(5, 1).JumpBy(-10).Push("c"));
  EXPECT_EQ(Pop(), "c");
}

TEST_F(Actions, ASkipEndsWithItsBlock) {
  player.numFramesComplete = 4;
  Queue(ActionBuilder().WaitForFrame(5, 9).Push("a"));
  Queue(ActionBuilder().Push("b"));
  player.DoActions();
  EXPECT_EQ(Pop(), "b");
  EXPECT_EQ(player.stack.Count(), 0);
}

TEST_F(Actions, AFrameByExpressionIsWaitedForAsWell) {
  player.numFramesComplete = 4;
  Run(ActionBuilder().Push("6").WaitForFrameExpr(1).Push("a").Push("b"));
  EXPECT_EQ(Pop(), "b");
  EXPECT_EQ(player.stack.Count(), 0);
  Run(ActionBuilder().Push("5").WaitForFrameExpr(1).Push("a"));
  EXPECT_EQ(Pop(), "a");
  Run(ActionBuilder().Push("no such label").WaitForFrameExpr(1).Push("a"));
  EXPECT_EQ(Pop(), "a");
  // Without a target it is the player's movie.
  Run(ActionBuilder().SetTarget("nowhere").Push("6").WaitForFrameExpr(1).Push("a").Push("b"));
  EXPECT_EQ(Pop(), "b");
  EXPECT_EQ(player.stack.Count(), 0);
}

// Calls of frames.

class Calls : public ActionTest {
 protected:
  // Frame 1 is shown; frame 2 has two blocks, frame 3 is labelled "again" and
  // calls itself, frame 4 has none.
  Calls() {
    ActionBuilder again;
    Count(again, "calls").Push("again").Op(kActionCall);
    Count(again, "returns");
    author::MovieWriter movie(100, 100);
    movie.FrameEnd();
    movie.FrameActions(ActionBuilder().Push("one")).FrameActions(ActionBuilder().Push("two"));
    movie.FrameEnd();
    movie.FrameLabel("again").FrameActions(again).FrameEnd().FrameEnd().End();
    other.Push(movie.Finish());
  }
  void Run(const ActionBuilder& block) {
    other.display.actionList.PushAction(CopyBytes(block.Finish()), &other);
    other.DoActions();
  }
  std::string Stack() {
    std::string out;
    while (other.stack.Count() > 0) out = Take(other.Pop()) + ' ' + out;
    return out;
  }
  std::string Variable(const char* name) { return ActionTest::Variable(other, name); }
  TestPlayer other;
};

TEST_F(Calls, RunAFramesBlocksAndGoOnBehind) {
  Run(ActionBuilder().Push("2").Op(kActionCall).Push("three"));
  EXPECT_EQ(Stack(), "one two three ");
  EXPECT_EQ(other.curFrame, 0);
}

TEST_F(Calls, OfAFrameWithoutActionsJustGoOn) {
  Run(ActionBuilder().Push("4").Op(kActionCall).Push("three"));
  EXPECT_EQ(Stack(), "three ");
}

TEST_F(Calls, OfAFrameBeyondTheEndRunNothing) {
  Run(ActionBuilder().Push("99").Op(kActionCall).Push("three"));
  EXPECT_EQ(Stack(), "three ");
}

TEST_F(Calls, OfNoFrameAreIgnored) {
  Run(ActionBuilder().Push("no label").Op(kActionCall).Push("0").Op(kActionCall).Push("three"));
  EXPECT_EQ(Stack(), "three ");
}

TEST_F(Calls, NestTwoHundredFiftySixDeep) {
  Run(ActionBuilder().Push("again").Op(kActionCall).Push("done"));
  EXPECT_EQ(Variable("calls"), "255");
  EXPECT_EQ(Variable("returns"), "255");
  EXPECT_EQ(Stack(), "done ");
  EXPECT_EQ(other.display.actionCallDepth, 0);
}

TEST_F(Calls, KeepTheTargetOfTheCallingBlock) {
  author::TagStream sprite;
  sprite.FrameEnd().FrameEnd().FrameEnd().End();
  author::MovieWriter movie(100, 100);
  movie.DefineSprite(1, sprite).Place({.depth = 1, .character = 1, .name = "s"});
  movie.FrameEnd().FrameActions(Set("called", "1")).FrameEnd().End();
  TestPlayer third;
  third.Push(movie.Finish());
  third.display.actionList.PushAction(CopyBytes(ActionBuilder()
                                                    .SetTarget("s")
                                                    .Push("/:2")
                                                    .Op(kActionCall)
                                                    .SetVariable("after", "1")
                                                    .Finish()),
                                      &third);
  third.display.actionList.PushAction(CopyBytes(Set("next", "1").Finish()), &third);
  third.DoActions();
  ScriptThread* s = third.rootObject->firstChild->thread;
  EXPECT_EQ(ActionTest::Variable(third, "called"), "1");
  EXPECT_EQ(ActionTest::Variable(*s, "after"), "1");
  EXPECT_EQ(ActionTest::Variable(third, "next"), "1");
}

TEST_F(Calls, ABackwardJumpBehindACallStillReachesTheStart) {
  ActionBuilder block;
  const auto start = block.NewLabel();
  block.Bind(start);
  Count(block, "i").Push("2").Op(kActionCall).GetVariable("i").Push("3").Op(kActionLess).If(start);
  Run(block);
  EXPECT_EQ(Variable("i"), "3");
  EXPECT_EQ(Stack(), "one two one two one two ");
}

TEST_F(Calls, AreCutOffByTheLimit) {
  ActionBuilder block;
  const auto start = block.NewLabel();
  block.Bind(start).Push("again").Op(kActionCall).Jump(start);
  Run(block);
  EXPECT_TRUE(other.actionsHalted);
  EXPECT_EQ(other.display.actionCallDepth, 0);
}

TEST_F(Calls, ATimelineThatEndsInsideACallDropsTheRestOfItsBlock) {
  author::TagStream sprite;
  sprite.FrameEnd().End();
  author::MovieWriter movie(100, 100);
  movie.DefineSprite(1, sprite).Place({.depth = 1, .character = 1, .name = "s"});
  movie.FrameEnd();
  movie.FrameActions(ActionBuilder().Push("/").Op(kActionSetTargetExpr).GotoFrame(2)).FrameEnd();
  movie.RemoveObject(1).FrameEnd().End();
  TestPlayer third;
  third.Push(movie.Finish());
  ScriptThread* s = third.rootObject->firstChild->thread;
  third.display.actionList.PushAction(CopyBytes(ActionBuilder()
                                                    .Push("text in the block")
                                                    .Push("/:2")
                                                    .Op(kActionCall)
                                                    .Push("dropped")
                                                    .Finish()),
                                      s);
  third.DoActions();
  EXPECT_EQ(third.rootObject->firstChild, nullptr);
  EXPECT_EQ(Take(third.Pop()), "text in the block");
  EXPECT_EQ(third.stack.Count(), 0);
}

// The block goes on, and what needs a timeline finds none.
TEST_F(Calls, ATimelineThatEndsInItsOwnBlockLeavesItWithoutATarget) {
  author::TagStream sprite;
  sprite.FrameEnd().FrameEnd().End();
  author::MovieWriter movie(100, 100);
  movie.DefineSprite(1, sprite).Place({.depth = 1, .character = 1, .name = "s"});
  movie.FrameEnd().RemoveObject(1).FrameEnd().End();
  TestPlayer third;
  third.Push(movie.Finish());
  ScriptThread* s = third.rootObject->firstChild->thread;
  third.display.actionList.PushAction(CopyBytes(ActionBuilder()
                                                    .Push("/:2")
                                                    .GotoExpr(0)
                                                    .Op(kActionNextFrame)
                                                    .SetTarget("s")
                                                    .Op(kActionPlay)
                                                    .SetTarget("")
                                                    .SetVariable("x", "the player's")
                                                    .Finish()),
                                      s);
  third.DoActions();
  EXPECT_EQ(third.rootObject->firstChild, nullptr);
  EXPECT_EQ(ActionTest::Variable(third, "x"), "the player's");
}

TEST_F(Calls, OfAFrameFromOutsideRunAtOnceAndShow) {
  other.TakeCalls();
  EXPECT_TRUE(other.CallFrame(&other, 1));
  EXPECT_EQ(Stack(), "one two ");
  EXPECT_EQ(other.TakeCalls(), "UpdateScreen ");
}

TEST_F(Calls, FromOutsideNeedTheFrame) {
  other.TakeCalls();
  EXPECT_FALSE(other.CallFrame(&other, 9));
  EXPECT_FALSE(other.CallFrame(&other, -1));
  EXPECT_FALSE(other.CallFrame(nullptr, 0));
  EXPECT_EQ(other.TakeCalls(), "");
  EXPECT_TRUE(other.CallFrame(&other, 0));
}

// Traces.

struct StepList : ActionTrace {
  void OnAction(const ActionStep& step) override {
    text += std::to_string(step.offset) + ':' + std::to_string(step.code) + '/' +
            std::to_string(step.operandSize) + '@' + std::to_string(step.depth) +
            (step.skipped ? "-" : "") + (step.target ? "" : "?") + '[' +
            std::to_string(step.stack->Count()) + "] ";
  }
  std::string text;
};

TEST_F(Actions, ATraceSeesEachOneBeforeItRuns) {
  StepList trace;
  player.actionTrace = &trace;
  player.numFramesComplete = 4;
  Run(ActionBuilder()
          .Push("ab")
          .Op(kActionPop)
          .WaitForFrame(9, 1)
          .Op(kActionPop)
          .SetTarget("none"));
  EXPECT_EQ(trace.text, "0:150/4@1[0] 7:23/0@1[1] 8:138/3@1[0] 14:23/0@1-[0] 15:139/5@1[0] ");
  player.actionTrace = nullptr;
}

TEST_F(Actions, ATraceCutsOperandsToTheBlock) {
  StepList trace;
  player.actionTrace = &trace;
  RunBytes({0x96, 200, 0, 0});
  RunBytes({0x96});
  EXPECT_EQ(trace.text, "0:150/1@1[0] 0:150/0@1[1] ");
  player.actionTrace = nullptr;
}

}  // namespace
}  // namespace vexel::test
