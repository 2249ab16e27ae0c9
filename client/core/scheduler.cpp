#include "client/core/scheduler.h"

#include <algorithm>
#include <chrono>

namespace vexel::client {

namespace {

int64_t Microseconds() {
  using namespace std::chrono;
  return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

constexpr int64_t kSecond = 1000000;

}  // namespace

void* Scheduler::ScheduleRelative(IZEMCallback* callback, UINT32 ms) {
  if (!callback) return nullptr;
  const uintptr_t handle = ++lastHandle_;
  timers_[handle] = {callback, loop_->After(ms, [this, handle] { Fire(handle); })};
  return reinterpret_cast<void*>(handle);
}

void* Scheduler::ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) {
  const int64_t us = int64_t{time.seconds} * kSecond + time.microseconds - Microseconds();
  // Rounded up: never early.
  const int64_t ms = std::clamp<int64_t>((us + 999) / 1000, 0, UINT32_MAX);
  return ScheduleRelative(callback, static_cast<UINT32>(ms));
}

INT32 Scheduler::Remove(void* handle) {
  timers_.erase(reinterpret_cast<uintptr_t>(handle));
  return ZEM_OK;
}

INT32 Scheduler::GetTime(_ZEMTimeval& time) {
  const int64_t now = Microseconds();
  time.seconds = static_cast<UINT32>(now / kSecond);
  time.microseconds = static_cast<UINT32>(now % kSecond);
  return ZEM_OK;
}

void Scheduler::Fire(uintptr_t handle) {
  // The callback may schedule itself again, remove itself, or let go of the
  // last reference to this scheduler.
  const Ref<Scheduler> self(this);
  const auto timer = timers_.extract(handle);
  if (!timer.empty()) timer.mapped().callback->Func();
}

}  // namespace vexel::client
