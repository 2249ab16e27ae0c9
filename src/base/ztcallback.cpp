#include "base/ztcallback.h"

#include "base/ref.h"

namespace vexel {

ZTCallback::ZTCallback(UINT32 arg)
    : refCount(0),
      scheduler(nullptr),
      response(nullptr),
      handle(nullptr),
      pending(false),
      absoluteTime(true),
      timeOffset(0),
      callbackArg(arg) {}

ZTCallback::~ZTCallback() {
  Deallocate();
}

INT32 ZTCallback::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMCallback>(this, IID_IZEMCallback, id, out);
}

UINT32 ZTCallback::AddRef() {
  return static_cast<UINT32>(++refCount);
}

UINT32 ZTCallback::Release() {
  INT32 left = --refCount;
  if (left <= 0) delete this;
  return static_cast<UINT32>(left);
}

INT32 ZTCallback::Init(IUnknown* context, ZTCallbackResponse* newResponse, int absolute,
                       UINT32 startTime) {
  if (!context || !newResponse) return ZEM_BAD_ARGUMENT;
  Deallocate();
  INT32 result = QueryAndReplace(context, IID_IZEMScheduler, scheduler);
  if (result < 0) return result;
  ReplaceRef(response, newResponse);
  absoluteTime = absolute != 0;
  timeOffset = absoluteTime ? 0 : GetCurrentSchedulerTime() - startTime;
  return ZEM_OK;
}

UINT32 ZTCallback::GetCurrentSchedulerTime() {
  _ZEMTimeval now = {0, 0};
  if (!scheduler || scheduler->GetTime(now) < 0) return 0;
  return now.seconds * 125 * 8 + (now.microseconds + 500) / 1000;
}

// What `clock` has given a handle for. If it called back and all was let go
// meanwhile, nobody waits for the call any more.
INT32 ZTCallback::Keep(IZEMScheduler* clock, void* newHandle) {
  if (clock != scheduler) {
    clock->Remove(newHandle);
    return ZEM_UNEXPECTED;
  }
  handle = newHandle;
  pending = handle != nullptr;
  return pending ? ZEM_OK : ZEM_FAILED;
}

INT32 ZTCallback::ScheduleRelativeCallback(UINT32 milliseconds) {
  const ScopedRef<ZTCallback> self(this);
  RemovePendingCallback();
  IZEMScheduler* clock = scheduler;
  const ScopedRef<IZEMScheduler> hold(clock);
  return clock ? Keep(clock, clock->ScheduleRelative(this, milliseconds)) : ZEM_UNEXPECTED;
}

INT32 ZTCallback::ScheduleAbsoluteCallback(_ZEMTimeval time) {
  const ScopedRef<ZTCallback> self(this);
  RemovePendingCallback();
  IZEMScheduler* clock = scheduler;
  const ScopedRef<IZEMScheduler> hold(clock);
  return clock ? Keep(clock, clock->ScheduleAbsolute(this, time)) : ZEM_UNEXPECTED;
}

INT32 ZTCallback::Func() {
  if (!scheduler || !response) return ZEM_UNEXPECTED;
  // The response may call Deallocate, and may be the last to hold either.
  ScopedRef<ZTCallback> self(this);
  ZTCallbackResponse* called = response;
  ScopedRef<ZTCallbackResponse> hold(called);
  handle = nullptr;
  pending = false;
  UINT32 time = GetCurrentSchedulerTime();
  if (!absoluteTime) time -= timeOffset;
  return called->HandleCallback(time, callbackArg);
}

void ZTCallback::RemovePendingCallback() {
  if (!pending) return;
  void* old = handle;
  handle = nullptr;
  pending = false;
  // The scheduler lets go of us; whoever removes still holds us.
  scheduler->Remove(old);
}

void ZTCallback::Deallocate() {
  RemovePendingCallback();
  ReleaseAndClear(scheduler);
  ReleaseAndClear(response);
}

}  // namespace vexel
