// The client's player, which owns the presentation's clock, and those who
// listen to it.
#pragma once

#include "zem_unknown.h"

// Listens to a player. Implemented by the plug-in, held by the player with a
// reference from AddAdviseSink to RemoveAdviseSink.
class IZEMClientAdviseSink : public IUnknown {
 public:
  // Where the presentation stands and how long it is, milliseconds. Goes on
  // coming while the clock stands still; it then drives a movie that is paused.
  virtual INT32 OnPosLength(UINT32 pos, UINT32 len) = 0;
  virtual INT32 OnPresentationOpened() = 0;
  virtual INT32 OnPresentationClosed() = 0;
  virtual INT32 OnStatisticsChanged() = 0;
  virtual INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime) = 0;
  virtual INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime) = 0;
  virtual INT32 OnStop() = 0;
  virtual INT32 OnPause(UINT32 time) = 0;
  virtual INT32 OnBegin(UINT32 time) = 0;
  virtual INT32 OnBuffering(UINT32 reason, UINT16 percent) = 0;
  virtual INT32 OnContacting(const char* host) = 0;
};

// The client's player. It answers a query for IZEMHyperNavigate, too.
class IZEMPlayer : public IUnknown {
 public:
  // The context that InitPlugin got, with a reference.
  virtual INT32 GetContext(IUnknown*& context) = 0;
  virtual UINT32 GetPosition() = 0;  // milliseconds
  virtual UINT32 GetLength() = 0;    // milliseconds
  virtual INT32 IsRunning() = 0;
  // Replaces the presentation, at Begin. Called by the plug-in from within its
  // own calls: the renderer may not be destroyed before those have returned.
  virtual INT32 OpenURL(const char* url) = 0;
  virtual INT32 Begin() = 0;
  virtual INT32 Stop() = 0;
  // The clock stands. May call OnPause of the renderer before it returns, as
  // Begin may call OnBegin, and Seek OnPreSeek and OnPostSeek.
  virtual INT32 Pause() = 0;
  virtual INT32 Seek(UINT32 ms) = 0;
  // Takes a reference; ZEM_UNEXPECTED for a sink that is there already.
  virtual INT32 AddAdviseSink(IZEMClientAdviseSink* sink) = 0;
  virtual INT32 RemoveAdviseSink(IZEMClientAdviseSink* sink) = 0;
};
