#include "host/vexel_renderer.h"

#include <new>

#include "base/ref.h"
#include "host/host_log.h"
#include "host/performance.h"
#include "host/vexel_engine.h"

namespace vexel {
namespace {

// While it is being destroyed the object counts as held, so that whoever still
// takes and gives back a reference does not destroy it again.
constexpr INT32 kDestroying = 0x40000000;

using ulong = unsigned long;

}  // namespace

// Keeps the renderer alive inside a call, and known to be in one.
class CVexelRenderer::Hold {
 public:
  explicit Hold(CVexelRenderer* renderer) : m_reference(renderer), m_nCalls(renderer->m_nCalls) {
    ++m_nCalls;
  }
  ~Hold() { --m_nCalls; }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  ScopedRef<IZEMPlugin> m_reference;
  INT32& m_nCalls;
};

CVexelRenderer::CVexelRenderer() {
  m_DamageManager.m_pOwner = static_cast<IZEMPlugin*>(this);
}

CVexelRenderer::~CVexelRenderer() {
  m_lRefCount = kDestroying;
  EndAll();
  ReleaseAndClear(m_pContext);
  ReleaseAndClear(m_pErrorMessages);
  ReleaseAndClear(m_pClassFactory);
  DropEngine();
}

bool CVexelRenderer::IsInside() const {
  return m_nCalls > 0 || (m_pThreadManager && m_pThreadManager->IsInWork()) ||
         (m_pEngine && m_pEngine->IsInTimeSync()) ||
         (m_pDeScatterizer && m_pDeScatterizer->IsBusy());
}

// What the client left undone.
void CVexelRenderer::EndAll() {
  if (!m_bStreamEnded) EndStream();
  if (m_pAdviseSink || m_pSite || m_pSiteUserSupplier) DetachSite();
}

void CVexelRenderer::DropEngine() {
  // The engine may outlive us for as long as a service holds it, and knows the
  // others without a reference.
  if (m_pEngine) m_pEngine->Shutdown();
  if (m_pDeScatterizer) m_pDeScatterizer->Retire();
  m_pDeScatterizer = nullptr;
  if (m_pThreadManager) m_pThreadManager->Retire();
  m_pThreadManager = nullptr;
  ReleaseAndClear(m_pEngine);
}

INT32 CVexelRenderer::QueryInterface(const ZEMID& id, void** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  *out = nullptr;
  if (ZEMIsEqualID(id, IID_IZEMSiteUserSupplier)) {
    return m_pSiteUserSupplier ? m_pSiteUserSupplier->QueryInterface(id, out) : ZEM_UNEXPECTED;
  }
  if (ZEMIsEqualID(id, IID_IUnknown) || ZEMIsEqualID(id, IID_IZEMPlugin)) {
    *out = static_cast<IZEMPlugin*>(this);
  } else if (ZEMIsEqualID(id, IID_IZEMRenderer)) {
    *out = static_cast<IZEMRenderer*>(this);
  } else if (ZEMIsEqualID(id, IID_IZEMSiteUser)) {
    *out = static_cast<IZEMSiteUser*>(this);
  } else {
    return ZEM_NO_INTERFACE;
  }
  AddRef();
  return ZEM_OK;
}

UINT32 CVexelRenderer::AddRef() {
  return static_cast<UINT32>(++m_lRefCount);
}

UINT32 CVexelRenderer::Release() {
  const INT32 left = --m_lRefCount;
  if (left <= 0) {
    delete this;
    return 0;
  }
  if (left != m_lSupplierRefs) return static_cast<UINT32>(left);
  m_lSupplierRefs = 0;
  ++m_lRefCount;
  EndAll();
  return Release();
}

INT32 CVexelRenderer::GetPluginInfo(INT32& loadMultiple, const char*& description,
                                    const char*& copyright, const char*& moreInfo,
                                    UINT32& version) {
  return CVexelEngine::GetPluginInfo(loadMultiple, description, copyright, moreInfo, version);
}

INT32 CVexelRenderer::InitPlugin(IUnknown* context) {
  if (!context) return ZEM_BAD_ARGUMENT;
  if (IsInside()) return ZEM_UNEXPECTED;
  const Hold hold(this);
  EndAll();
  DropEngine();
  ReplaceRef(m_pContext, context);
  ReleaseAndClear(m_pErrorMessages);
  ReleaseAndClear(m_pClassFactory);
  // The log is optional.
  static_cast<void>(QueryAndReplace(context, IID_IZEMErrorMessages, m_pErrorMessages));
  const INT32 result = QueryAndReplace(context, IID_IZEMCommonClassFactory, m_pClassFactory);
  if (result < 0) return result;

  CVexelEngine* engine = new (std::nothrow) CVexelEngine;
  if (!engine) return ZEM_OUT_OF_MEMORY;
  ReplaceRef(m_pEngine, engine);
  engine->SetDamageManager(&m_DamageManager);
  const UINT32 percent = GetPerformancePercentage(context);
  m_pThreadManager =
      new (std::nothrow) CRenderThreadManager(static_cast<IZEMRenderer*>(engine), engine, percent);
  if (!m_pThreadManager) return ZEM_OUT_OF_MEMORY;
  engine->SetThreadManager(m_pThreadManager);
  m_pDeScatterizer = new (std::nothrow) CDeScatterizer(m_pClassFactory, m_pThreadManager);
  if (!m_pDeScatterizer) return ZEM_OUT_OF_MEMORY;
  engine->SetDeScatterizer(m_pDeScatterizer);
  return engine->InitPlugin(context);
}

INT32 CVexelRenderer::GetRendererInfo(const char**& mimeTypes, UINT32& granularity) {
  return m_pThreadManager ? m_pThreadManager->GetRendererInfo(mimeTypes, granularity)
                          : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::MakeSupplier() {
  DropSupplier();
  void* made = nullptr;
  INT32 result = m_pClassFactory->CreateInstance(IID_IZEMMultiInstanceSiteUserSupplier, &made);
  if (result < 0) return result;
  auto* supplier = static_cast<IZEMMultiInstanceSiteUserSupplier*>(made);
  if (!supplier) return ZEM_OUT_OF_MEMORY;
  m_pSiteUserSupplier = supplier;
  const ScopedRef<IZEMMultiInstanceSiteUserSupplier> hold(supplier);
  const INT32 before = m_lRefCount;
  result = supplier->SetSingleSiteUser(this);
  // The client may have detached from inside.
  if (m_pSiteUserSupplier != supplier) return ZEM_UNEXPECTED;
  m_lSupplierRefs = m_lRefCount - before;
  return result;
}

void CVexelRenderer::DropSupplier() {
  m_lSupplierRefs = 0;
  IZEMMultiInstanceSiteUserSupplier* supplier = m_pSiteUserSupplier;
  m_pSiteUserSupplier = nullptr;
  if (supplier) supplier->ReleaseSingleSiteUser();
  ReleaseAndClear(supplier);
}

void CVexelRenderer::DropSink() {
  CVexelClientAdviseSink* sink = m_pAdviseSink;
  m_pAdviseSink = nullptr;
  // The player holds it too.
  if (sink) sink->Remove();
  ReleaseAndClear(sink);
}

INT32 CVexelRenderer::StartStream(IZEMStream* stream, IZEMPlayer* player) {
  const bool inside = IsInside();
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "StartStream()");
  if (!m_pClassFactory || !m_pThreadManager || inside) return ZEM_UNEXPECTED;
  INT32 result = MakeSupplier();
  if (result < 0) return result;
  result = m_pThreadManager->StartStream(stream, player);
  if (result < 0) return result;
  m_bStreamEnded = false;
  DropSink();
  auto* sink = new (std::nothrow) CVexelClientAdviseSink;
  if (!sink) return ZEM_OUT_OF_MEMORY;
  ReplaceRef(m_pAdviseSink, sink);
  return sink->Add(m_pContext, player, m_pThreadManager);
}

INT32 CVexelRenderer::EndStream() {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "EndStream()");
  m_bStreamEnded = true;
  return m_pThreadManager ? m_pThreadManager->EndStream() : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnHeader(IZEMValues* header) {
  const bool inside = IsInside();
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnHeader()");
  if (inside) return ZEM_UNEXPECTED;
  m_bStreamEnded = false;
  return m_pThreadManager ? m_pThreadManager->OnHeader(header) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnPacket(IZEMPacket* packet, INT32 timeOffset) {
  const Hold hold(this);
  if (packet) {
    LogReport(m_pErrorMessages, kLogRate, "OnPacket(,%ld) pPacket->GetTime()=%lu", long{timeOffset},
              ulong{packet->GetTime()});
  }
  return m_pDeScatterizer ? m_pDeScatterizer->OnPacket(packet, timeOffset) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnTimeSync(UINT32 time) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogRate, "OnTimeSync(%lu)", ulong{time});
  return m_pThreadManager ? m_pThreadManager->OnTimeSync(time) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnPreSeek(UINT32 oldTime, UINT32 newTime) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnPreSeek(%lu,%lu)", ulong{oldTime}, ulong{newTime});
  return m_pThreadManager ? m_pThreadManager->OnPreSeek(oldTime, newTime) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnPostSeek(UINT32 oldTime, UINT32 newTime) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnPostSeek(%lu,%lu)", ulong{oldTime}, ulong{newTime});
  return m_pThreadManager ? m_pThreadManager->OnPostSeek(oldTime, newTime) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnPause(UINT32 time) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnPause(%lu)", ulong{time});
  return m_pThreadManager ? m_pThreadManager->OnPause(time) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnBegin(UINT32 time) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnBegin(%lu)", ulong{time});
  return m_pThreadManager ? m_pThreadManager->OnBegin(time) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnBuffering(UINT32 reason, UINT16 percent) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnBuffering(%lu,%u)", ulong{reason}, unsigned{percent});
  return m_pThreadManager ? m_pThreadManager->OnBuffering(reason, percent) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::GetDisplayType(UINT32& type, IZEMBuffer*& info) {
  return m_pThreadManager ? m_pThreadManager->GetDisplayType(type, info) : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::OnEndofPackets() {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "OnEndofPackets()");
  return m_pThreadManager ? m_pThreadManager->OnEndofPackets() : ZEM_UNEXPECTED;
}

INT32 CVexelRenderer::AttachSite(IZEMSite* site) {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "AttachSite()");
  if (m_pSite || !m_pEngine) return ZEM_UNEXPECTED;
  if (!site) return ZEM_BAD_ARGUMENT;
  ReplaceRef(m_pSite, site);
  const _QKxSize wish = m_pEngine->GetMediaSize();
  const _QKxSize size = LimitPictureSize(wish);
  m_lWidth = size.width;
  m_lHeight = size.height;
  m_DamageManager.SetupDoubleBuffer(size);
  m_pEngine->SetBufferSize(size);
  m_DamageManager.m_pSite = site;
  m_pEngine->AttachSite(site);
  // A wish for the movie's own size; the site may refuse, and tells at each
  // drawing how big it is.
  site->SetSize(wish);
  return ZEM_OK;
}

INT32 CVexelRenderer::DetachSite() {
  const Hold hold(this);
  LogReport(m_pErrorMessages, kLogState, "DetachSite()");
  DropSink();
  INT32 result = m_pThreadManager ? m_pThreadManager->DetachSite() : ZEM_UNEXPECTED;
  m_DamageManager.m_pSite = nullptr;
  if (m_pEngine) m_pEngine->DetachSite();
  ReleaseAndClear(m_pSite);
  DropSupplier();
  return result;
}

INT32 CVexelRenderer::HandleEvent(_QKxEvent* event) {
  if (!event) return ZEM_OK;
  event->result = 0;
  event->handled = 0;
  const Hold hold(this);
  if (event->event == ZEM_EVENT_X_EXPOSE) return ZEM_OK;
  if (event->event == ZEM_EVENT_DRAW) return Draw(event);
  return m_pThreadManager ? m_pThreadManager->HandleEvent(event) : ZEM_UNEXPECTED;
}

// The site's size is what counts, whatever it was asked for; the picture follows
// it up to a limit, and the surface scales the rest.
void CVexelRenderer::CheckSize() {
  const ScopedRef<IZEMSite> site(m_pSite);
  _QKxSize size = {0, 0};
  if (m_pSite->GetSize(size) < 0) return;
  size = LimitPictureSize(size);
  if (size.width == m_lWidth && size.height == m_lHeight) return;
  m_lWidth = size.width;
  m_lHeight = size.height;
  m_DamageManager.SetupDoubleBuffer(size);
  m_pEngine->SetBufferSize(size);
  m_pEngine->UpdateDoubleBuffer();
}

INT32 CVexelRenderer::Draw(_QKxEvent* event) {
  IZEMVideoSurface* surface = static_cast<IZEMVideoSurface*>(event->param1);
  if (!m_DamageManager.m_bReadyToDraw || !surface || !m_pSite || !m_pEngine) return ZEM_OK;
  CheckSize();
  // A new size asks for a redraw of its own, in which the site may have gone.
  if (m_DamageManager.UseDoubleBuffer() && m_pSite) {
    const ScopedRef<IZEMVideoSurface> surfaceHold(surface);
    const ScopedRef<IZEMSite> site(m_pSite);
    _QKxSize size = {0, 0};
    m_pSite->GetSize(size);
    // Whatever the client does inside, the pixels stay until they are copied.
    const DataRef pixels = m_DamageManager.Pixels();
    const _QKxSize picture = m_pEngine->GetMediaSize();
    const QKBitmapInfo info = m_DamageManager.m_Bitmap;
    if (pixels) {
      surface->CopyBitmap(pixels.Bytes(), &info, {0, 0, size.width, size.height},
                          {0, 0, picture.width, picture.height});
    }
  }
  if (m_DamageManager.m_nForcing > 0) m_DamageManager.m_rcDirty = {0, 0, 0, 0};
  m_DamageManager.ReleaseDoubleBuffer();
  event->handled = 1;
  return ZEM_OK;
}

}  // namespace vexel
