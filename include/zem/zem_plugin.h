// The plug-in: a shared library with two functions, which makes renderers.
#pragma once

#include "zem_player.h"
#include "zem_site.h"
#include "zem_stream.h"
#include "zem_values.h"

// What a plug-in object is first asked for.
class IZEMPlugin : public IUnknown {
 public:
  // Static texts, valid before InitPlugin and as long as the library.
  // `loadMultiple` not 0: many instances may live side by side.
  virtual INT32 GetPluginInfo(INT32& loadMultiple, const char*& description, const char*& copyright,
                              const char*& moreInfo, UINT32& version) = 0;
  // `context` answers for the client's services, and is kept with a reference.
  // ZEM_BAD_ARGUMENT for null; fails without a class factory.
  virtual INT32 InitPlugin(IUnknown* context) = 0;
};

// Plays one stream. Called by the client, in this order: StartStream, OnHeader,
// (a site is attached), OnPacket and OnTimeSync again and again,
// OnEndofPackets, EndStream. ZEM_UNEXPECTED before InitPlugin, and for the first
// two from inside another call. Times are milliseconds of the presentation.
class IZEMRenderer : public IUnknown {
 public:
  // MIME types, ended by a null pointer, borrowed for good; and how often, in
  // milliseconds, a time sync is wanted.
  virtual INT32 GetRendererInfo(const char**& mimeTypes, UINT32& granularity) = 0;
  // Both are kept: the stream until EndStream, the player until the end.
  virtual INT32 StartStream(IZEMStream* stream, IZEMPlayer* player) = 0;
  virtual INT32 EndStream() = 0;
  // The stream's header: "StreamVersion", "ContentVersion", "Duration",
  // "RendererFlags", "NumPackets" (numbers) and "OpaqueData" (a buffer).
  virtual INT32 OnHeader(IZEMValues* header) = 0;
  // In order, without doubles; what is missing comes as a lost packet. Draws
  // nothing: the work is done at the next time sync.
  virtual INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) = 0;
  // The clock. Draws, and so may lead to ZEM_EVENT_DRAW before it returns.
  virtual INT32 OnTimeSync(UINT32 time) = 0;
  virtual INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime) = 0;
  virtual INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime) = 0;
  virtual INT32 OnPause(UINT32 time) = 0;
  virtual INT32 OnBegin(UINT32 time) = 0;
  virtual INT32 OnBuffering(UINT32 reason, UINT16 percent) = 0;
  // 7: a picture that follows the site's size; `info` is left alone.
  virtual INT32 GetDisplayType(UINT32& type, IZEMBuffer*& info) = 0;
  // No packet will follow.
  virtual INT32 OnEndofPackets() = 0;
};

extern "C" {
// Makes a plug-in object, with a reference. ZEM_BAD_ARGUMENT for null,
// ZEM_OUT_OF_MEMORY.
INT32 ZEMCreateInstance(IUnknown** out);
// Where libraries lie: entries "name=directory", each zero-terminated, and an
// empty one behind the last. Optional, before anything else.
INT32 SetDLLAccessPath(const char* entries);
}

// The same as types, for dlsym.
typedef INT32 (*ZEMCreateInstanceFunction)(IUnknown** out);
typedef INT32 (*SetDLLAccessPathFunction)(const char* entries);
