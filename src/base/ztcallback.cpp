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

INT32 ZTCallback::Keep(void* newHandle) {
  handle = newHandle;
  pending = handle != nullptr;
  return pending ? ZEM_OK : ZEM_FAILED;
}

INT32 ZTCallback::ScheduleRelativeCallback(UINT32 milliseconds) {
  if (!scheduler) return ZEM_UNEXPECTED;
  RemovePendingCallback();
  return Keep(scheduler->ScheduleRelative(this, milliseconds));
}

INT32 ZTCallback::ScheduleAbsoluteCallback(_ZEMTimeval time) {
  if (!scheduler) return ZEM_UNEXPECTED;
  RemovePendingCallback();
  return Keep(scheduler->ScheduleAbsolute(this, time));
}

INT32 ZTCallback::Func() {
  if (!scheduler || !response) return ZEM_UNEXPECTED;
  // The response may call Deallocate, and may be the last to hold either.
  ScopedRef<ZTCallback> self(this);
  ScopedRef<ZTCallbackResponse> called(response);
  UINT32 time = GetCurrentSchedulerTime();
  if (!absoluteTime) time -= timeOffset;
  handle = nullptr;
  pending = false;
  return response->HandleCallback(time, callbackArg);
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
