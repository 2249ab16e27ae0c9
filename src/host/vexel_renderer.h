// The shell of the plug-in: what the client talks to. It logs each call and
// passes it on: packets to the reassembler, the drawing event to the surface, and
// all else through the thread manager to the engine.
//
// Every call that passes something on holds this object, since the client may let
// go of its last reference inside (a redraw leads back to it).
#pragma once

#include "host/advise_sink.h"
#include "host/cdescatterizer.h"
#include "host/damage_manager.h"
#include "host/render_thread_manager.h"
#include "zem/zem.h"

namespace vexel {

class CVexelEngine;

class CVexelRenderer final : public IZEMPlugin, public IZEMRenderer, public IZEMSiteUser {
 public:
  // Starts with a count of 0.
  CVexelRenderer();
  CVexelRenderer(const CVexelRenderer&) = delete;
  CVexelRenderer& operator=(const CVexelRenderer&) = delete;

  // The three bases, and IZEMSiteUserSupplier of the client's own supplier while
  // a stream is there (ZEM_UNEXPECTED otherwise).
  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  // Ends a stream and detaches a site before the object goes. The supplier holds
  // a reference for as long as this object holds the supplier: when only that is
  // left, the client has let go.
  UINT32 Release() override;

  INT32 GetPluginInfo(INT32& loadMultiple, const char*& description, const char*& copyright,
                      const char*& moreInfo, UINT32& version) override;
  // May come again: all that an earlier call made goes first.
  INT32 InitPlugin(IUnknown* context) override;

  // ZEM_UNEXPECTED before InitPlugin, here and for all that follow.
  INT32 GetRendererInfo(const char**& mimeTypes, UINT32& granularity) override;
  INT32 StartStream(IZEMStream* stream, IZEMPlayer* player) override;
  INT32 EndStream() override;
  INT32 OnHeader(IZEMValues* header) override;
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) override;
  INT32 OnTimeSync(UINT32 time) override;
  INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnPause(UINT32 time) override;
  INT32 OnBegin(UINT32 time) override;
  INT32 OnBuffering(UINT32 reason, UINT16 percent) override;
  INT32 GetDisplayType(UINT32& type, IZEMBuffer*& info) override;
  INT32 OnEndofPackets() override;

  INT32 AttachSite(IZEMSite* site) override;
  // Lets go of the player, the site and the supplier.
  INT32 DetachSite() override;
  // ZEM_EVENT_DRAW is answered here; a null event is passed over.
  INT32 HandleEvent(_QKxEvent* event) override;
  INT32 NeedsWindowedSites() override { return 0; }

 private:
  class Hold;

  // Inside a call that is still running, the stream and all that is made for it
  // can't be replaced.
  bool IsInside() const;
  ~CVexelRenderer();
  void EndAll();
  void DropEngine();
  void DropSink();
  void DropSupplier();
  INT32 MakeSupplier();
  INT32 Draw(_QKxEvent* event);
  void CheckSize();

  INT32 m_lRefCount = 0;
  INT32 m_nCalls = 0;              // of the client's that are running, one inside the other
  IUnknown* m_pContext = nullptr;  // reference held
  IZEMErrorMessages* m_pErrorMessages = nullptr;  // reference held; may be null
  INT32 m_lWidth = 0, m_lHeight = 0;              // of the picture, pixels
  bool m_bStreamEnded = true;
  IZEMMultiInstanceSiteUserSupplier* m_pSiteUserSupplier = nullptr;  // reference held
  INT32 m_lSupplierRefs = 0;    // the references that the supplier holds on this
  IZEMSite* m_pSite = nullptr;  // reference held
  IZEMCommonClassFactory* m_pClassFactory = nullptr;  // reference held
  CDamageManager m_DamageManager;
  CVexelEngine* m_pEngine = nullptr;                 // reference held
  CDeScatterizer* m_pDeScatterizer = nullptr;        // owned
  CRenderThreadManager* m_pThreadManager = nullptr;  // owned
  CVexelClientAdviseSink* m_pAdviseSink = nullptr;   // reference held
};

}  // namespace vexel
