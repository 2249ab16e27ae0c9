// A one-shot timer of the host's scheduler.
#pragma once

#include "zem/zem_services.h"

namespace vexel {

// Who is told that the time has come.
class ZTCallbackResponse : public IUnknown {
 public:
  // `time`: milliseconds, of the scheduler or counted from the start that Init
  // was told; `arg`: the callback's own.
  virtual INT32 HandleCallback(UINT32 time, UINT32 arg) = 0;
};

// Has at most one call waiting. Starts with a count of 0: the maker takes the
// first reference. Callback and response hold each other as long as a call can
// come; Deallocate ends that.
class ZTCallback : public IZEMCallback {
 public:
  // `arg` goes to the response as it is.
  explicit ZTCallback(UINT32 arg);
  ZTCallback(const ZTCallback&) = delete;
  ZTCallback& operator=(const ZTCallback&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;
  // Called by the scheduler; calls the response, which may schedule again or let
  // go of this object.
  INT32 Func() override;

  virtual ~ZTCallback();

  // Finds the scheduler of `context` and holds `newResponse`, after Deallocate.
  // Not `absolute`: times count so that now is `startTime`.
  INT32 Init(IUnknown* context, ZTCallbackResponse* newResponse, int absolute, UINT32 startTime);
  // Each takes the place of a call that waits. ZEM_UNEXPECTED before Init,
  // ZEM_FAILED if the scheduler refuses.
  INT32 ScheduleRelativeCallback(UINT32 milliseconds);
  INT32 ScheduleAbsoluteCallback(_ZEMTimeval time);
  bool IsCallbackPending() const { return pending; }
  void RemovePendingCallback();
  // Removes what waits, and lets go of scheduler and response.
  void Deallocate();
  // Milliseconds of the scheduler's own time; 0 without one.
  UINT32 GetCurrentSchedulerTime();

 private:
  INT32 Keep(IZEMScheduler* clock, void* newHandle);

  INT32 refCount;
  IZEMScheduler* scheduler;      // one reference
  ZTCallbackResponse* response;  // one reference
  void* handle;                  // the scheduler's, while a call waits
  bool pending;
  bool absoluteTime;  // the response gets the scheduler's own times
  UINT32 timeOffset;  // taken off otherwise, milliseconds
  UINT32 callbackArg;
};

}  // namespace vexel
