#include "stage/action_list.h"

#include <gtest/gtest.h>

#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

// A timeline's address is all that the queue looks at.
ScriptThread* Thread(uintptr_t number) {
  return reinterpret_cast<ScriptThread*>(number * 16);
}

uint8_t Pop(ActionList* list, ScriptThread** thread) {
  DataSpan action;
  EXPECT_TRUE(list->PopAction(&action, thread));
  return action.bytes ? *action.bytes : 0;
}

TEST(ActionListTest, RunsInTheOrderOfPushing) {
  ActionList list;
  EXPECT_TRUE(list.IsEmpty());
  list.PushAction(CopyBytes({7}), Thread(1));
  list.PushAction(CopyBytes({8}), Thread(2));
  ScriptThread* thread;
  EXPECT_EQ(Pop(&list, &thread), 7);
  EXPECT_EQ(thread, Thread(1));
  EXPECT_EQ(Pop(&list, &thread), 8);
  EXPECT_EQ(thread, Thread(2));
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ActionListTest, AnEntryKeepsItsBytesAlive) {
  ActionList list;
  {
    const DataSpan block = CopyBytes({42, 0});
    list.PushAction(block, Thread(1));
  }
  ScriptThread* thread;
  EXPECT_EQ(Pop(&list, &thread), 42);
}

TEST(ActionListTest, GrowsByDoublingTo4096AndThenDropsWithoutAWord) {
  ActionList list;
  // Off the start, so that growing has to move entries around the end.
  ScriptThread* thread;
  for (int i = 0; i < 20; ++i) {
    list.PushAction(CopyBytes({9}), Thread(9));
    Pop(&list, &thread);
  }
  EXPECT_EQ(list.capacity, 32u);
  const DataSpan block = CopyBytes({1});
  for (uintptr_t i = 1; i <= 33; ++i) list.PushAction(block, Thread(i));
  EXPECT_EQ(list.capacity, 64u);
  EXPECT_EQ(list.mask, 63u);
  for (uintptr_t i = 34; i <= 5000; ++i) list.PushAction(block, Thread(i));
  EXPECT_EQ(list.capacity, 4096u);
  EXPECT_EQ(list.tail - list.head, 4096u);
  for (uintptr_t i = 1; i <= 4096; ++i) {
    Pop(&list, &thread);
    ASSERT_EQ(thread, Thread(i));
  }
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ActionListTest, CountersRunFreelyThroughTheirEnd) {
  ActionList list;
  list.head = list.tail = 0xFFFFFFF0u;
  const DataSpan block = CopyBytes({1});
  for (uintptr_t i = 1; i <= 40; ++i) list.PushAction(block, Thread(i));
  EXPECT_EQ(list.tail, 24u);
  list.RemoveThread(Thread(30));
  ScriptThread* thread;
  for (uintptr_t i = 1; i <= 40; ++i) {
    Pop(&list, &thread);
    ASSERT_EQ(thread, i == 30 ? nullptr : Thread(i));
  }
  EXPECT_TRUE(list.IsEmpty());
}

TEST(ActionListTest, RemovingATimelineLeavesHolesInPlace) {
  ActionList list;
  const DataSpan block = CopyBytes({1});
  for (const uintptr_t i : {1, 2, 1}) list.PushAction(block, Thread(i));
  list.RemoveThread(Thread(1));
  EXPECT_EQ(list.tail - list.head, 3u);
  ScriptThread* thread;
  EXPECT_EQ(Pop(&list, &thread), 0);
  EXPECT_EQ(Pop(&list, &thread), 1);
  EXPECT_EQ(Pop(&list, &thread), 0);
}

}  // namespace
}  // namespace vexel::test
