// One-shot timers for the plug-in, on the event loop.
#pragma once

#include <cstdint>
#include <map>

#include "client/core/event_loop.h"
#include "client/core/object.h"

namespace vexel::client {

class Scheduler : public Object<IZEMScheduler> {
 public:
  // The loop must live as long as the scheduler.
  explicit Scheduler(EventLoop* loop) : loop_(loop) {}

  void* ScheduleRelative(IZEMCallback* callback, UINT32 ms) override;
  void* ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) override;
  INT32 Remove(void* handle) override;
  // Seconds since 1970.
  INT32 GetTime(_ZEMTimeval& time) override;

  size_t pending() const { return timers_.size(); }

 private:
  struct Timer {
    Ref<IZEMCallback> callback;
    Watch watch;
  };
  void Fire(uintptr_t handle);

  EventLoop* loop_;
  // Handles are numbers that never come again, so a stale one harms nobody.
  std::map<uintptr_t, Timer> timers_;
  uintptr_t lastHandle_ = 0;
};

}  // namespace vexel::client
