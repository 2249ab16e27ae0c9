#include "base/ztcallback.h"

#include <gtest/gtest.h>

#include <vector>

#include "counted.h"

namespace vexel {
namespace {

// A scheduler whose callbacks the test fires.
class Scheduler : public Counted<IZEMScheduler> {
 public:
  Scheduler() : Counted(IID_IZEMScheduler) {}
  void* ScheduleRelative(IZEMCallback* callback, UINT32 ms) override {
    lastDelay = ms;
    return Add(callback);
  }
  void* ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) override {
    lastTime = time;
    return Add(callback);
  }
  INT32 Remove(void* handle) override {
    for (IZEMCallback*& entry : entries) {
      if (&entry != handle || !entry) continue;
      IZEMCallback* callback = entry;
      entry = nullptr;
      callback->Release();
    }
    return ZEM_OK;
  }
  INT32 GetTime(_ZEMTimeval& time) override {
    time = now;
    return ZEM_OK;
  }
  int Waiting() const {
    int waiting = 0;
    for (IZEMCallback* entry : entries) waiting += entry != nullptr;
    return waiting;
  }
  void Fire() {
    for (IZEMCallback*& entry : entries) {
      if (!entry) continue;
      IZEMCallback* callback = entry;
      entry = nullptr;
      callback->Func();
      callback->Release();
      return;
    }
  }

  _ZEMTimeval now = {2, 400500};
  UINT32 lastDelay = 0;
  _ZEMTimeval lastTime = {0, 0};
  bool refuse = false;

 private:
  void* Add(IZEMCallback* callback) {
    if (refuse) return nullptr;
    callback->AddRef();
    for (IZEMCallback*& entry : entries) {
      if (!entry) {
        entry = callback;
        return &entry;
      }
    }
    return nullptr;
  }
  std::vector<IZEMCallback*> entries = std::vector<IZEMCallback*>(8);
};

class Response : public Counted<ZTCallbackResponse> {
 public:
  Response() : Counted(IID_IUnknown) {}
  INT32 HandleCallback(UINT32 time, UINT32 arg) override {
    calls++;
    lastTime = time;
    lastArg = arg;
    if (callback) wasPending = callback->IsCallbackPending();
    if (dropIt) {
      callback->Deallocate();
      callback->Release();
      callback = nullptr;
      refsInside = refs;
    }
    return 5;
  }

  ZTCallback* callback = nullptr;
  bool dropIt = false;
  bool wasPending = false;
  int refsInside = 0;
  int calls = 0;
  UINT32 lastTime = 0, lastArg = 0;
};

class ZTCallbackTest : public testing::Test {
 protected:
  ZTCallbackTest() {
    callback->AddRef();
    response.callback = callback;
  }
  ~ZTCallbackTest() override {
    if (response.callback) {
      callback->Deallocate();
      EXPECT_EQ(callback->Release(), 0u);
    }
    EXPECT_EQ(scheduler.refs, 0);
    EXPECT_EQ(response.refs, 0);
    EXPECT_EQ(scheduler.Waiting(), 0);
  }

  Scheduler scheduler;
  Response response;
  ZTCallback* callback = new ZTCallback(42);
};

TEST_F(ZTCallbackTest, TwoSchedulesLeaveOnePending) {
  EXPECT_EQ(callback->Init(&scheduler, &response, 1, 0), ZEM_OK);
  EXPECT_EQ(callback->ScheduleRelativeCallback(10), ZEM_OK);
  EXPECT_EQ(callback->ScheduleRelativeCallback(20), ZEM_OK);
  EXPECT_EQ(scheduler.Waiting(), 1);
  EXPECT_EQ(scheduler.lastDelay, 20u);
  EXPECT_TRUE(callback->IsCallbackPending());
  EXPECT_EQ(callback->ScheduleAbsoluteCallback({7, 8}), ZEM_OK);
  EXPECT_EQ(scheduler.Waiting(), 1);
  EXPECT_EQ(scheduler.lastTime.microseconds, 8u);
}

TEST_F(ZTCallbackTest, IsNotPendingInsideItsCall) {
  callback->Init(&scheduler, &response, 1, 0);
  callback->ScheduleRelativeCallback(10);
  scheduler.Fire();
  EXPECT_EQ(response.calls, 1);
  EXPECT_FALSE(response.wasPending);
  EXPECT_EQ(response.lastArg, 42u);
  EXPECT_EQ(response.lastTime, 2401u);
}

TEST_F(ZTCallbackTest, CountsFromTheStartTime) {
  callback->Init(&scheduler, &response, 0, 100);
  scheduler.now = {5, 900400};
  EXPECT_EQ(callback->Func(), 5);
  EXPECT_EQ(response.lastTime, 5900u - (2401u - 100u));
}

TEST_F(ZTCallbackTest, MillisecondsWrapIn32Bits) {
  callback->Init(&scheduler, &response, 1, 0);
  scheduler.now = {0xFFFFFFFF, 999999};
  EXPECT_EQ(callback->GetCurrentSchedulerTime(), static_cast<UINT32>(0u - 1000u + 1000u));
  scheduler.now = {4294968, 499};
  EXPECT_EQ(callback->GetCurrentSchedulerTime(), 704u);
}

TEST_F(ZTCallbackTest, TheResponseMayLetGoOfIt) {
  callback->Init(&scheduler, &response, 1, 0);
  callback->ScheduleRelativeCallback(10);
  response.dropIt = true;
  scheduler.Fire();
  EXPECT_EQ(response.calls, 1);
  EXPECT_EQ(response.refsInside, 1);
}

TEST_F(ZTCallbackTest, WithoutASchedulerIsUnexpected) {
  EXPECT_EQ(callback->Func(), ZEM_UNEXPECTED);
  EXPECT_EQ(callback->ScheduleRelativeCallback(1), ZEM_UNEXPECTED);
  EXPECT_EQ(callback->ScheduleAbsoluteCallback({1, 1}), ZEM_UNEXPECTED);
  EXPECT_EQ(callback->GetCurrentSchedulerTime(), 0u);
  EXPECT_EQ(callback->Init(nullptr, &response, 1, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(callback->Init(&scheduler, nullptr, 1, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(callback->Init(&response, &response, 1, 0), ZEM_NO_INTERFACE);
}

TEST_F(ZTCallbackTest, ARefusedScheduleIsNotPending) {
  callback->Init(&scheduler, &response, 1, 0);
  scheduler.refuse = true;
  EXPECT_EQ(callback->ScheduleRelativeCallback(1), ZEM_FAILED);
  EXPECT_FALSE(callback->IsCallbackPending());
}

TEST_F(ZTCallbackTest, InitStartsOver) {
  callback->Init(&scheduler, &response, 1, 0);
  callback->ScheduleRelativeCallback(1);
  EXPECT_EQ(callback->Init(&scheduler, &response, 1, 0), ZEM_OK);
  EXPECT_FALSE(callback->IsCallbackPending());
  EXPECT_EQ(scheduler.Waiting(), 0);
  EXPECT_EQ(scheduler.refs, 1);
  EXPECT_EQ(response.refs, 1);
}

TEST_F(ZTCallbackTest, AnswersForItsInterfaces) {
  void* out = nullptr;
  EXPECT_EQ(callback->QueryInterface(IID_IZEMCallback, &out), ZEM_OK);
  EXPECT_EQ(callback->Release(), 1u);
  EXPECT_EQ(callback->QueryInterface(IID_IZEMScheduler, &out), ZEM_NO_INTERFACE);
}

}  // namespace
}  // namespace vexel
