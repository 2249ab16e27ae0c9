// The engine's life: references, and the end of all that holds it.
#include "host/vexel_engine.h"

#include "base/ref.h"
#include "base/tick_count.h"
#include "http/http_post_server.h"
#include "player/text.h"

namespace vexel {

namespace {

// A player notes the tick of its construction, so the clock is set before any
// engine is made.
const bool s_clockIsSet = (SetTickClock(GetTickCount), true);

}  // namespace

LoadInfo::~LoadInfo() {
  FreeStr(target);
}

StreamData::~StreamData() {
  FreeStr(url);
}

ScriptPlayer* StreamData::Reader() const {
  ScriptThread* thread = reader.Get();
  if (!thread) return nullptr;
  // A movie that is emptied forgets its stream. All that is linked is a movie.
  auto* movie = static_cast<ScriptPlayer*>(thread);
  return movie->streamData == this ? movie : nullptr;
}

void StreamData::Link(ScriptPlayer* movie) {
  reader.Set(movie);
  linked = movie != nullptr;
  if (movie) movie->streamData = this;
}

void StreamData::SetURL(const char* newURL) {
  char* copy = CreateStr(newURL);
  FreeStr(url);
  url = copy;
}

CVexelEngine::CVexelEngine() {
  static_cast<void>(s_clockIsSet);
  lostCallback = LostCharacter;
  lostArg = this;
}

CVexelEngine::~CVexelEngine() {
  m_bDestroying = true;
  Shutdown();
  m_Ring.Clear();
  EndStream();
  ReleaseAndClear(m_pContext);
  ReleaseAndClear(m_pClassFactory);
  ReleaseAndClear(m_pPlayer);
  ReleaseAndClear(m_pHeader);
  ReleaseAndClear(m_pHyperNavigate);
  ReleaseAndClear(m_pErrorMessages);
  FreeStr(m_pszURL);
}

void CVexelEngine::Shutdown() {
  const ScopedRef<IZEMRenderer> self(this);
  m_bShutDown = true;
  m_bSiteAttached = false;
  StopCallback();
  StopLoad();
  HTTPPostServer* server = m_pPostServer;
  m_pPostServer = nullptr;
  if (server) server->Close();
  ReleaseAndClear(server);
  IZEMContextMenu* menu = m_pContextMenu;
  m_pContextMenu = nullptr;
  if (menu) menu->SetResponse(nullptr);
  ReleaseAndClear(menu);
  m_pDamageManager = nullptr;
  m_pDeScatterizer = nullptr;
  m_pThreadManager = nullptr;
}

INT32 CVexelEngine::QueryInterface(const ZEMID& id, void** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  *out = nullptr;
  if (ZEMIsEqualID(id, IID_IUnknown) || ZEMIsEqualID(id, IID_IZEMRenderer)) {
    *out = static_cast<IZEMRenderer*>(this);
  } else if (ZEMIsEqualID(id, IID_IZEMSiteUser)) {
    *out = static_cast<IZEMSiteUser*>(this);
  } else if (ZEMIsEqualID(id, IID_IZEMContextMenuResponse)) {
    *out = static_cast<IZEMContextMenuResponse*>(this);
  } else {
    return ZEM_NO_INTERFACE;
  }
  AddRef();
  return ZEM_OK;
}

UINT32 CVexelEngine::AddRef() {
  return static_cast<UINT32>(++m_lRefCount);
}

UINT32 CVexelEngine::Release() {
  const INT32 left = --m_lRefCount;
  if (left > 0) return static_cast<UINT32>(left);
  // Services that are let go may take and drop a last reference.
  if (!m_bDestroying) delete this;
  return 0;
}

}  // namespace vexel
