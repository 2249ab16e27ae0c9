#include "client/headless/virtual_scheduler.h"

#include <algorithm>
#include <vector>

#include "client/headless/process_clock.h"

namespace vexel::client {

void* VirtualScheduler::ScheduleRelative(IZEMCallback* callback, UINT32 ms) {
  if (!callback) return nullptr;
  const uintptr_t handle = ++lastHandle_;
  // Never in the same instant: a timer that sets itself again would hold the
  // clock for ever.
  timers_[handle] = {ProcessClock() + std::max<UINT32>(ms, 1), callback};
  return reinterpret_cast<void*>(handle);
}

void* VirtualScheduler::ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) {
  const uint64_t due = uint64_t{time.seconds} * 1000 + (time.microseconds + 999) / 1000;
  const uint64_t wait = due - std::min(due, ProcessClock());
  return ScheduleRelative(callback, static_cast<UINT32>(std::min<uint64_t>(wait, UINT32_MAX)));
}

INT32 VirtualScheduler::Remove(void* handle) {
  timers_.erase(reinterpret_cast<uintptr_t>(handle));
  return ZEM_OK;
}

INT32 VirtualScheduler::GetTime(_ZEMTimeval& time) {
  time.seconds = static_cast<UINT32>(ProcessClock() / 1000);
  time.microseconds = static_cast<UINT32>(ProcessClock() % 1000 * 1000);
  return ZEM_OK;
}

uint64_t VirtualScheduler::NextDue() const {
  uint64_t next = kNever;
  for (const auto& [handle, timer] : timers_) next = std::min(next, timer.due);
  return next;
}

void VirtualScheduler::RunDue() {
  const Ref<VirtualScheduler> self(this);
  std::vector<uintptr_t> due;
  for (const auto& [handle, timer] : timers_) {
    if (timer.due <= ProcessClock()) due.push_back(handle);
  }
  for (const uintptr_t handle : due) {
    const auto timer = timers_.extract(handle);
    if (!timer.empty()) timer.mapped().callback->Func();
  }
}

}  // namespace vexel::client
