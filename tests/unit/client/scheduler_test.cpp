#include "client/core/scheduler.h"

#include <gtest/gtest.h>

#include <chrono>

#include "unit/client/responses.h"

namespace vexel::client {
namespace {

class Callback : public Object<IZEMCallback> {
 public:
  int calls = 0;
  std::function<void()> onCall;
  INT32 Func() override {
    calls++;
    if (onCall) onCall();
    return ZEM_OK;
  }
};

TEST(Scheduler, CallsOnceAndNeverEarly) {
  EventLoop loop;
  const auto scheduler = Make<Scheduler>(&loop);
  const auto callback = Make<Callback>();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(scheduler->ScheduleRelative(callback.get(), 30), nullptr);
  EXPECT_EQ(callback->calls, 0);
  EXPECT_TRUE(loop.RunUntil([&] { return callback->calls > 0; }, kTestMs));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(callback->calls, 1);
  EXPECT_EQ(scheduler->pending(), 0u);
}

TEST(Scheduler, NothingRunsInsideTheCallThatSchedules) {
  EventLoop loop;
  const auto scheduler = Make<Scheduler>(&loop);
  const auto callback = Make<Callback>();
  scheduler->ScheduleRelative(callback.get(), 0);
  scheduler->ScheduleAbsolute(callback.get(), {0, 0});  // long past
  EXPECT_EQ(callback->calls, 0);
  EXPECT_TRUE(loop.RunUntil([&] { return callback->calls == 2; }, kTestMs));
}

TEST(Scheduler, RemovedTimersDoNotComeAndLetGoOfTheirCallback) {
  EventLoop loop;
  const auto scheduler = Make<Scheduler>(&loop);
  const auto callback = Make<Callback>();
  void* handle = scheduler->ScheduleRelative(callback.get(), 0);
  EXPECT_EQ(callback->AddRef(), 3u);
  EXPECT_EQ(scheduler->Remove(handle), ZEM_OK);
  EXPECT_EQ(callback->Release(), 1u);
  EXPECT_EQ(scheduler->Remove(handle), ZEM_OK);
  EXPECT_EQ(scheduler->Remove(nullptr), ZEM_OK);
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(callback->calls, 0);
}

TEST(Scheduler, ACallbackMayScheduleItselfAgain) {
  EventLoop loop;
  const auto scheduler = Make<Scheduler>(&loop);
  const auto callback = Make<Callback>();
  callback->onCall = [&] {
    if (callback->calls < 3) scheduler->ScheduleRelative(callback.get(), 1);
  };
  scheduler->ScheduleRelative(callback.get(), 1);
  EXPECT_TRUE(loop.RunUntil([&] { return callback->calls == 3; }, kTestMs));
}

TEST(Scheduler, TakesNoNullAndTellsTheTime) {
  EventLoop loop;
  const auto scheduler = Make<Scheduler>(&loop);
  EXPECT_EQ(scheduler->ScheduleRelative(nullptr, 0), nullptr);
  _ZEMTimeval time{};
  EXPECT_EQ(scheduler->GetTime(time), ZEM_OK);
  EXPECT_GT(time.seconds, 1700000000u);
  EXPECT_LT(time.microseconds, 1000000u);
}

}  // namespace
}  // namespace vexel::client
