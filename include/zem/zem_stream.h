// Where the bytes come from: a source with its streams, and the way back.
#pragma once

#include "zem_values.h"

// One stream of a source. Implemented by the client, handed to StartStream.
class IZEMStream : public IUnknown {
 public:
  // The source, an IZEMStreamSource, with a reference.
  virtual INT32 GetSource(IUnknown*& source) = 0;
  // Goes on all requests for this stream; the low 16 bits count.
  virtual UINT32 GetStreamNumber() = 0;
};

// What a presentation is played from. It answers a query for IZEMBackChannel
// if it can send again what was lost.
class IZEMStreamSource : public IUnknown {
 public:
  virtual UINT16 GetStreamCount() = 0;
  // With a reference; ZEM_BAD_ARGUMENT for a number that is none.
  virtual INT32 GetStream(UINT16 number, IZEMStream*& stream) = 0;
  // The base of relative URLs; lives as long as the source.
  virtual const char* GetURL() = 0;
};

// The way back to the server.
class IZEMBackChannel : public IUnknown {
 public:
  // Takes a request of the plug-in on its way. Called inside OnPacket, or while
  // a movie runs: nothing may be delivered to the plug-in before this returns.
  virtual INT32 Send(IZEMPacket* packet) = 0;
};
