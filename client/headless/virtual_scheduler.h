// Timers for the plug-in on the process's own clock.
#pragma once

#include <cstdint>
#include <map>

#include "client/core/object.h"

namespace vexel::client {

class VirtualScheduler : public Object<IZEMScheduler> {
 public:
  void* ScheduleRelative(IZEMCallback* callback, UINT32 ms) override;
  void* ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) override;
  INT32 Remove(void* handle) override;
  INT32 GetTime(_ZEMTimeval& time) override;

  // When the next timer is due, kNever for none.
  uint64_t NextDue() const;
  static constexpr uint64_t kNever = UINT64_MAX;
  // Calls those that are due by the process's clock, but none that is set while
  // they run.
  void RunDue();

 private:
  struct Timer {
    uint64_t due;
    Ref<IZEMCallback> callback;
  };
  // By handle, which grows: equal times run in the order in which they were set.
  std::map<uintptr_t, Timer> timers_;
  uintptr_t lastHandle_ = 0;
};

}  // namespace vexel::client
