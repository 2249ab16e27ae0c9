#include "movie/script_thread.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

class Threads : public StageFixture {};

TEST_F(Threads, JoinAtTheHeadAndLeaveFromAnywhere) {
  ScriptThread a, b, c;
  for (ScriptThread* t : {&a, &b, &c}) {
    t->display = &stage;
    stage.AddThread(t);
  }
  EXPECT_EQ(stage.threads, &c);
  EXPECT_EQ(c.next, &b);
  stage.RemoveThread(&b);
  EXPECT_EQ(c.next, &a);
  stage.RemoveThread(&b);
  EXPECT_EQ(a.next, &player) << "an unlisted one is ignored";
  EXPECT_EQ(CheckStage(stage), "");
}

TEST_F(Threads, AListedTimelineIsNotListedAgain) {
  ScriptThread a, b;
  a.display = b.display = &stage;
  stage.AddThread(&a);
  stage.AddThread(&b);
  stage.AddThread(&a);
  EXPECT_EQ(stage.threads, &b);
  EXPECT_EQ(b.next, &a);
  EXPECT_EQ(a.next, &player);
}

TEST_F(Threads, LeavingCancelsQueuedActions) {
  ScriptThread a, b;
  a.display = b.display = &stage;
  const DataSpan block = CopyBytes({1, 2, 0});
  stage.actionList.PushAction(block, &a);
  stage.actionList.PushAction(block, &b);
  stage.RemoveThread(&a);
  DataSpan action;
  ScriptThread* thread = &a;
  ASSERT_TRUE(stage.actionList.PopAction(&action, &thread));
  EXPECT_EQ(thread, nullptr);
  EXPECT_EQ(action.bytes, nullptr);
  ASSERT_TRUE(stage.actionList.PopAction(&action, &thread));
  EXPECT_EQ(thread, &b);
}

TEST_F(Threads, LookingThroughALongQueueIsPaidForInTags) {
  ScriptThread a, b;
  a.display = b.display = &stage;
  const DataSpan block = CopyBytes({0});
  const int32_t before = stage.tagsLeft;
  stage.RemoveThread(&b);
  EXPECT_EQ(stage.tagsLeft, before);
  for (int i = 0; i < 4096; ++i) stage.actionList.PushAction(block, &a);
  stage.RemoveThread(&b);
  EXPECT_EQ(stage.tagsLeft, before - 64);
}

TEST_F(Threads, TheRoundsCursorMovesOnWhenItsTimelineLeaves) {
  ScriptThread a, b;
  a.display = b.display = &stage;
  stage.AddThread(&a);
  stage.AddThread(&b);
  stage.threadCursor = &a;
  stage.RemoveThread(&b);
  EXPECT_EQ(stage.threadCursor, &a);
  stage.RemoveThread(&a);
  EXPECT_EQ(stage.threadCursor, &player);
  stage.threadCursor = nullptr;
}

TEST(ThreadsOfAStage, OutliveItWithoutPointingAtIt) {
  ScriptThread thread;
  {
    DisplayList stage;
    thread.display = &stage;
    stage.AddThread(&thread);
  }
  EXPECT_EQ(thread.display, nullptr);
}

}  // namespace
}  // namespace vexel::test
