// What a movie asks for by an address: a command to this plug-in, another
// presentation in the client, a page in the browser, or a load into itself.
#include <cstring>
#include <new>

#include "base/ref.h"
#include "host/host_log.h"
#include "host/vexel_engine.h"
#include "http/http_post_server.h"
#include "player/text.h"
#include "player/url_builder.h"

namespace vexel {

namespace {

// Bits of the flags of GetURL.
constexpr INT32 kTargetIsSprite = 64;  // the target is a sprite's path
constexpr INT32 kLoadVariables = 128;

bool IsEmpty(const char* text) {
  return !text || !*text;
}

const char* Shown(const char* text) {
  return text ? text : "NULL";
}

// The low 32 bits, as the log shows pointers.
unsigned ShownPointer(const void* pointer) {
  return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer));
}

char* Joined(const char* head, size_t headLength, const char* tail) {
  URLBuilder text = {};
  for (size_t i = 0; i < headLength; ++i) text.AppendChar(head[i]);
  text.AppendString(tail);
  return text.buffer ? text.buffer : CreateStr("");
}

}  // namespace

void CVexelEngine::GetURL(const char* url, const char* target, const char* postData,
                          int32_t flags) {
  const ScopedRef<IZEMRenderer> self(this);
  if (DoCommand(url) || OpenInPlayer(url, target)) return;
  const INT32 layer = LayerNum(target);
  const bool toSprite = (flags & kTargetIsSprite) != 0;
  if (layer < 0 && !toSprite) {
    NSGetURL(url, target, postData);
  } else {
    LoadLayer(url, layer, postData, toSprite ? target : nullptr, flags);
  }
}

// True for all that is addressed to the plug-in, also for what it doesn't know.
bool CVexelEngine::DoCommand(const char* url) {
  const char* command = StripPrefix(url, "VXCommand:");
  if (!command) return false;
  const char* mode = StripPrefix(command, "Hold=");
  if (!mode) return true;
  if (*mode == 'd') m_nHoldMode = kHoldDefault;
  if (*mode == 'n') m_nHoldMode = kHoldNever;
  if (*mode == 'a') m_nHoldMode = kHoldAlways;
  return true;
}

bool CVexelEngine::OpenInPlayer(const char* url, const char* target) {
  if (!StripPrefix(target, "_kest")) return false;
  const ScopedRef<IZEMPlayer> player(m_pPlayer);
  IZEMPlayer* opener = m_pPlayer;
  if (opener && url) {
    opener->OpenURL(url);
    opener->Begin();
  }
  return true;
}

void CVexelEngine::NSGetURL(const char* url, const char* target, const char* postData) {
  NetscapeDoURL(url, IsEmpty(target) ? "_self" : target, postData, nullptr);
}

void CVexelEngine::NetscapeDoURL(const char* url, const char* target, const char* postData,
                                 LoadInfo* info) {
  if (IsEmpty(postData)) {
    DoGetURLNotify(url, target, info);
    return;
  }
  URLBuilder body = {};
  body.AppendString(postData);
  if (body.buffer) {
    DoPostURLNotify(url, target, static_cast<UINT32>(body.length) + 1, body.buffer, info);
  } else {
    delete info;
  }
  FreeStr(body.buffer);
}

void CVexelEngine::LoadLayer(const char* url, INT32 layer, const char* postData, const char* target,
                             INT32 flags) {
  const bool vars = (flags & kLoadVariables) != 0;
  const bool toSprite = (flags & kTargetIsSprite) != 0;
  if (toSprite) {
    ScriptThread* sprite = FindTarget(rootObject, target);
    if (!sprite) return;
    if (!vars) RemoveSprite(sprite, true);
  } else if (IsEmpty(url) && !vars) {
    ClearLayer(layer);
    return;
  }
  auto* info = new (std::nothrow) LoadInfo;
  if (!info) return;
  info->loadVars = vars;
  if (toSprite) {
    info->target = CreateStr(target);
    if (!info->target) {
      delete info;
      return;
    }
  } else {
    info->layer = layer;
    if (!vars) ClearLayer(layer);
  }
  NetscapeDoURL(url, nullptr, postData, info);
}

void CVexelEngine::DoGetURLNotify(const char* url, const char* target, LoadInfo* notify) {
  LogReport(m_pErrorMessages, kLogState, "DoGetURLNotify(%s,%s,0x%08x)\n", Shown(url),
            Shown(target), ShownPointer(notify));
  if (IsEmpty(url) || m_bShutDown) {
    delete notify;
    return;
  }
  if (!notify) {
    const ScopedRef<IZEMHyperNavigate> navigate(m_pHyperNavigate);
    if (m_pHyperNavigate) m_pHyperNavigate->GoToURL(url, target);
    return;
  }
  if (m_bLoading) {
    DropLoad(url, notify);
    return;
  }
  if (!BeginLoad(url)) {
    m_bLoading = false;
    delete notify;
    return;
  }
  m_pLoadInfo = notify;
  StartFileSystem(kGetManager);
}

void CVexelEngine::DoPostURLNotify(const char* url, const char* target, UINT32 length,
                                   const char* buffer, LoadInfo* notify) {
  LogReport(m_pErrorMessages, kLogState, "DoPostURLNotify(%s,%s,%lu,%s,0x%08x)\n", Shown(url),
            Shown(target), static_cast<unsigned long>(length), Shown(buffer), ShownPointer(notify));
  if (IsEmpty(url) || m_bShutDown) {
    delete notify;
    return;
  }
  if (!notify) {
    PostNavigation(url, target, length, buffer);
    return;
  }
  if (m_bLoading) {
    DropLoad(url, notify);
    return;
  }
  // Required: without an address the flag stays set, and nothing loads any more.
  if (!BeginLoad(url)) {
    delete notify;
    return;
  }
  // A movie may not send data through an encrypted connection and read what
  // comes back; the browser may, so this is not asked of navigations.
  if (StripPrefix(m_pszLoadURL, "https:")) {
    LogReport(m_pErrorMessages, kLogState,
              "Aborted an attempt to do secure POST destined for renderer!!!");
    delete notify;
    FailLoad();
    return;
  }
  m_pLoadInfo = notify;
  ReleaseAndClear(m_pPostBuffer);
  IZEMBuffer* body = nullptr;
  // Required: likewise.
  if (CreateObject(IID_IZEMBuffer, body) < 0) return;
  m_pPostBuffer = body;
  if (body->Set(reinterpret_cast<const UINT8*>(buffer), length) < 0) return;
  StartFileSystem(kPostManager);
}

// The browser takes no data with an address, so it is sent to a page of ours
// that posts them.
void CVexelEngine::PostNavigation(const char* url, const char* target, UINT32 length,
                                  const char* buffer) {
  if (!m_pHyperNavigate) return;
  if (!m_pPostServer) {
    ReplaceRef(m_pPostServer, new (std::nothrow) HTTPPostServer(m_pContext, m_pPlayer));
  }
  const ScopedRef<HTTPPostServer> server(m_pPostServer);
  if (m_pPostServer) m_pPostServer->WritePost(url, buffer, length, target);
}

void CVexelEngine::CreateURL(const char* base, const char* url, char*& out) {
  if (!base || !url) return;
  size_t kept = strstr(url, "://") ? 0 : strlen(base);
  while (kept > 0 && base[kept - 1] != '/' && base[kept - 1] != '\\') --kept;
  char* made = Joined(base, kept, url);
  FreeStr(out);
  out = made;
}

char* CVexelEngine::BuildRelative(const char* base, const char* relative) {
  if (!base || !relative) return nullptr;
  const size_t first = strcspn(relative, ":/");
  if (relative[first] == ':') return CreateStr(relative);

  // Where the path starts, and how much of `base` stays.
  size_t path = 0;
  size_t kept = strlen(base);
  const char* machine = strstr(base, "//");
  bool addSlash = false;
  if (machine) {
    const char* slash = strchr(machine + 2, '/');
    addSlash = !slash;
    path = slash ? static_cast<size_t>(slash - base) + 1 : kept;
  }
  if (*relative == '/') {
    kept = path;
    ++relative;
  } else {
    // Required: a base that ends in a slash loses its last folder even without
    // "../".
    for (;;) {
      if (kept > path && base[kept - 1] == '/') --kept;
      while (kept > path && base[kept - 1] != '/') --kept;
      if (strncmp(relative, "../", 3) != 0) break;
      relative += 3;
    }
  }
  if (!addSlash) return Joined(base, kept, relative);
  char* top = Joined(base, kept, "/");
  char* result = top ? Joined(top, strlen(top), relative) : nullptr;
  FreeStr(top);
  return result;
}

}  // namespace vexel
