// The services that a client's context offers: it answers a query for each of
// them. IZEMCommonClassFactory is required, IZEMScheduler is needed by movies
// that outlive their stream, and the others are optional.
#pragma once

#include "zem_values.h"

// Makes the client's objects: IZEMBuffer, IZEMPacket, IZEMValues,
// IZEMMultiInstanceSiteUserSupplier, IZEMFileSystemManager, IZEMRequest.
class IZEMCommonClassFactory : public IUnknown {
 public:
  // With a reference; ZEM_NO_INTERFACE for what it can't make.
  virtual INT32 CreateInstance(const ZEMID& wanted, void** out) = 0;
};

// Takes reports for a log. Severity 7 is information; user code 14 is a change
// of state, 15 comes at the rate of packets and time syncs.
class IZEMErrorMessages : public IUnknown {
 public:
  virtual INT32 Report(UINT8 severity, UINT32 result, UINT32 userCode, const char* text,
                       const char* moreInfo) = 0;
};

// What the user set. Values are zero-terminated decimal texts:
// "KestVexelDrawingMax" and "KestVexelDrawingMin" (percent of the processor for
// drawing), "Quality" (0 to 4).
class IZEMPreferences : public IUnknown {
 public:
  // A key that is not set is a failure, or success with a null buffer.
  virtual INT32 ReadPref(const char* key, IZEMBuffer*& value) = 0;
  virtual INT32 WritePref(const char* key, IZEMBuffer* value) = 0;
};

// Called by a scheduler. Implemented by the plug-in.
class IZEMCallback : public IUnknown {
 public:
  virtual INT32 Func() = 0;
};

// One-shot timers in the client's event loop: never early, never inside the
// call that schedules. A callback is held with a reference until it has been
// called or removed.
class IZEMScheduler : public IUnknown {
 public:
  // A handle, or null if the callback will not come.
  virtual void* ScheduleRelative(IZEMCallback* callback, UINT32 ms) = 0;
  virtual void* ScheduleAbsolute(IZEMCallback* callback, _ZEMTimeval time) = 0;
  // A handle that was called or is unknown does no harm.
  virtual INT32 Remove(void* handle) = 0;
  virtual INT32 GetTime(_ZEMTimeval& time) = 0;
};

// Learns what was chosen. Implemented by the plug-in.
class IZEMContextMenuResponse : public IUnknown {
 public:
  virtual INT32 OnCommand(UINT16 id) = 0;
  virtual INT32 OnCanceled() = 0;
};

// The menu over a site: filled once, at InitPlugin.
class IZEMContextMenu : public IUnknown {
 public:
  virtual INT32 SetTitle(const char* title) = 0;
  virtual INT32 AddItem(UINT16 id, const char* text, UINT32 zero1, UINT32 zero2, UINT32 zero3) = 0;
  virtual INT32 AddSeparator() = 0;
  // Who is told of a choice; not counted. Null when the plug-in shuts down.
  virtual INT32 SetResponse(IZEMContextMenuResponse* response) = 0;
};

// Opens pages in the user's browser.
class IZEMHyperNavigate : public IUnknown {
 public:
  // `target` is "_self", "_top" or a frame's name. The URL may be one of the
  // plug-in's own on 127.0.0.1, good for one fetch.
  virtual INT32 GoToURL(const char* url, const char* target) = 0;
};

// Collects what a newer plug-in would be needed for.
class IZEMUpgradeCollection : public IUnknown {
 public:
  // `type` 0: `name` holds a MIME type, without a terminating zero.
  virtual INT32 Add(UINT32 type, IZEMBuffer* name, UINT32 zero1, UINT32 zero2) = 0;
};
