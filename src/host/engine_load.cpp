// Loads of movies and variables, one at a time, through the client's file
// system: a manager is started, which makes a file object; that is opened, read
// piece by piece into a movie, and closed. Each step is answered later, and each
// answer leads to the next step.
#include <stdio.h>

#include "base/cqk_string.h"
#include "base/ref.h"
#include "host/held.h"
#include "host/host_log.h"
#include "host/vexel_engine.h"
#include "player/text.h"
#include "player/variable_loader.h"

namespace vexel {

namespace {

// Bytes of one read; less than that is the end.
constexpr UINT32 kReadSize = 2048;

}  // namespace

// --- Starting ---

// False if no address can be made of `url`; a load is in progress either way.
bool CVexelEngine::BeginLoad(const char* url) {
  m_bLoading = true;
  FreeStr(m_pszLoadURL);
  m_pszLoadURL = nullptr;
  CreateURL(m_pszURL, url, m_pszLoadURL);
  return m_pszLoadURL != nullptr;
}

void CVexelEngine::DropLoad(const char* url, LoadInfo* info) {
  LogReport(m_pErrorMessages, kLogState, "Dropped the load of %s: another one is running", url);
  delete info;
}

void CVexelEngine::StartFileSystem(LoadState state) {
  Held<IZEMFileSystemManager> manager;
  if (CreateObject(IID_IZEMFileSystemManager, manager.Out()) < 0) {
    FailLoad();
    return;
  }
  // The client may have shut us down from inside.
  if (m_bShutDown) return;
  ReplaceRef(m_pFileSystem, manager.Get());
  m_nFileState = state;
  if (manager->Init(this) < 0 && m_nFileState == state) FailLoad();
}

// --- Ending ---

// Whatever the load has got so far goes; the next one may start.
void CVexelEngine::FailLoad() {
  m_nFileState = kNoLoad;
  ReleaseAndClear(m_pFileSystem);
  ReleaseAndClear(m_pFileObject);
  ReleaseAndClear(m_pPostBuffer);
  delete m_pLoadInfo;
  m_pLoadInfo = nullptr;
  FreeStr(m_pszLoadURL);
  m_pszLoadURL = nullptr;
  m_bLoading = false;
}

// At the end of the engine: the services let go of it once they are cancelled
// or closed. A variable loader stands on no list; nobody else deletes it.
void CVexelEngine::StopLoad() {
  IZEMFileSystemManager* manager = m_pFileSystem;
  IZEMFileObject* file = m_pFileObject;
  const bool closing = m_nFileState == kGetClosing || m_nFileState == kPostClosing;
  m_pFileSystem = nullptr;
  m_pFileObject = nullptr;
  m_nFileState = kNoLoad;
  if (manager) manager->Cancel();
  if (file && !closing) file->Close();
  ReleaseAndClear(manager);
  ReleaseAndClear(file);
  ScriptPlayer* reader = m_LoadStream.Reader();
  m_LoadStream.Link(nullptr);
  if (reader && reader->variableLoader) delete reader;
  FailLoad();
}

// --- The steps ---

INT32 CVexelEngine::InitDone(INT32 status) {
  const ScopedRef<IZEMRenderer> self(this);
  INT32 result = status;
  switch (m_nFileState) {
    case kGetManager:
    case kPostManager:
      if (status >= 0) result = RequestFile();
      break;
    case kGetOpening:
    case kPostOpening:
      if (status >= 0) result = FileOpened();
      break;
    default:
      return ZEM_UNEXPECTED;
  }
  if (result < 0) FailLoad();
  return result;
}

// The manager is up. Here and below the state moves on first, so that no answer
// is taken twice; and a client that ends the load from inside a call is noticed
// by the state.
INT32 CVexelEngine::RequestFile() {
  const bool post = m_nFileState == kPostManager;
  const INT32 coming = post ? kPostObject : kGetObject;
  m_nFileState = coming;
  IZEMFileSystemManager* manager = m_pFileSystem;
  const ScopedRef<IZEMFileSystemManager> hold(manager);
  const CQKString url = m_pszLoadURL;
  Held<IZEMRequest> request;
  INT32 result = CreateObject(IID_IZEMRequest, request.Out());
  if (result >= 0) result = request->SetURL(url);
  if (result >= 0 && post) result = SetContentLength(request.Get());
  if (result < 0 || m_nFileState != coming) return result;
  return manager->GetFileObject(request.Get(), nullptr);
}

// Required: the header is all that goes out of a POST load. The body is not
// written; how much of it reaches a server is the client's affair.
INT32 CVexelEngine::SetContentLength(IZEMRequest* request) {
  Held<IZEMValues> headers;
  INT32 result = CreateObject(IID_IZEMValues, headers.Out());
  if (result < 0) return result;
  Held<IZEMBuffer> value;
  result = CreateObject(IID_IZEMBuffer, value.Out());
  if (result < 0) return result;
  char text[16];
  const int length =
      snprintf(text, sizeof text, "%lu",
               static_cast<unsigned long>(m_pPostBuffer ? m_pPostBuffer->GetSize() : 0));
  result = value->Set(reinterpret_cast<const UINT8*>(text), static_cast<UINT32>(length) + 1);
  if (result < 0) return result;
  result = headers->SetPropertyCString("Content-length", value.Get());
  if (result < 0) return result;
  return request->SetRequestHeaders(headers.Get());
}

INT32 CVexelEngine::FileObjectReady(INT32 status, IUnknown* object) {
  if (m_nFileState != kGetObject && m_nFileState != kPostObject) return ZEM_UNEXPECTED;
  const ScopedRef<IZEMRenderer> self(this);
  INT32 result = status;
  if (result >= 0) {
    const INT32 opening = m_nFileState == kGetObject ? kGetOpening : kPostOpening;
    m_nFileState = opening;
    Held<IZEMFileObject> file;
    result = QueryAndReplace(object, IID_IZEMFileObject, file.Out());
    if (result >= 0 && m_nFileState == opening) {
      ReplaceRef(m_pFileObject, file.Get());
      result = file->Init(ZEM_FILE_READ | ZEM_FILE_BINARY, this);
    }
    // An answer from inside the call has gone its own way.
    if (m_nFileState != opening) return ZEM_OK;
  }
  if (result < 0) FailLoad();
  return result;
}

INT32 CVexelEngine::FileOpened() {
  const INT32 reading = m_nFileState == kGetOpening ? kGetReading : kPostReading;
  m_nFileState = reading;
  ReleaseAndClear(m_pFileSystem);
  if (m_nFileState != reading) return ZEM_OK;
  LoadInfo* info = m_pLoadInfo;
  m_pLoadInfo = nullptr;
  StreamInNew(&m_LoadStream, m_pszLoadURL, info);
  m_bReadMore = true;
  ReadOn();
  return ZEM_OK;
}

// A file that answers inside of Read would nest once for each piece, so the
// answer is only noted then.
void CVexelEngine::ReadOn() {
  m_bAskingToRead = true;
  bool answered = true;
  while (answered && m_bReadMore && m_pFileObject) {
    const ScopedRef<IZEMFileObject> file(m_pFileObject);
    m_bReadAnswered = false;
    if (m_pFileObject->Read(kReadSize) < 0 && !m_bReadAnswered) {
      m_bReadAnswered = true;
      m_bReadMore = false;
    }
    answered = m_bReadAnswered;
  }
  m_bAskingToRead = false;
  if (answered && m_pFileObject) CloseFile();
}

INT32 CVexelEngine::ReadDone(INT32 status, IZEMBuffer* buffer) {
  if (m_nFileState != kGetReading && m_nFileState != kPostReading) return ZEM_UNEXPECTED;
  const ScopedRef<IZEMRenderer> self(this);
  UINT8* data = nullptr;
  UINT32 size = 0;
  if (status < 0 || !buffer || buffer->Get(data, size) < 0 || size > INT32_MAX) size = 0;
  if (data && size > 0) StreamInWrite(&m_LoadStream, data, static_cast<INT32>(size));
  m_bReadAnswered = true;
  m_bReadMore = size >= kReadSize;
  if (!m_bAskingToRead) ReadOn();
  return ZEM_OK;
}

void CVexelEngine::CloseFile() {
  const INT32 closing = m_nFileState == kGetReading ? kGetClosing : kPostClosing;
  m_nFileState = closing;
  const ScopedRef<IZEMFileObject> file(m_pFileObject);
  if (m_pFileObject->Close() < 0 && m_nFileState == closing) CloseDone(ZEM_OK);
}

INT32 CVexelEngine::CloseDone(INT32) {
  if (m_nFileState != kGetClosing && m_nFileState != kPostClosing) return ZEM_UNEXPECTED;
  const ScopedRef<IZEMRenderer> self(this);
  m_nFileState = kNoLoad;
  StreamInDestroy(&m_LoadStream);
  FailLoad();
  return ZEM_OK;
}

// Nothing is ever written, so no state waits for this.
INT32 CVexelEngine::WriteDone(INT32) {
  return ZEM_UNEXPECTED;
}

INT32 CVexelEngine::SeekDone(INT32) {
  return ZEM_OK;
}

INT32 CVexelEngine::DirObjectReady(INT32, IUnknown*) {
  return ZEM_NOT_IMPLEMENTED;
}

// --- Bytes into a movie ---

// Null if the sprite is not there (any more), or without memory.
ScriptPlayer* CVexelEngine::OpenTarget(const LoadInfo* info) {
  if (!info) return OpenLayer(0, false);
  if (info->loadVars) return OpenVariableLoader(info->layer, info->target);
  if (!info->target) return OpenLayer(info->layer, false);
  ScriptThread* sprite = FindTarget(rootObject, info->target);
  return sprite ? OpenSprite(sprite) : nullptr;
}

void CVexelEngine::StreamInNew(StreamData* data, const char* url, LoadInfo* info) {
  data->SetURL(url);
  ScriptPlayer* movie = OpenTarget(m_bFirstStream ? nullptr : info);
  delete info;
  data->Link(movie);
  if (movie) {
    if (!movie->variableLoader) ExtractVariables(movie, data->url);
    FreeStr(movie->url);
    movie->url = CreateStr(data->url);
  }
  if (!m_bFirstStream) return;
  m_bFirstStream = false;
  FreeStr(m_pszURL);
  m_pszURL = CreateStr(data->url);
}

INT32 CVexelEngine::StreamInWrite(StreamData* data, const UINT8* bytes, INT32 length) {
  ScriptPlayer* movie = data->Reader();
  if (!movie) return -1;
  movie->PushDataBuf(bytes, length);
  movie->PushDataComplete();
  return length;
}

// The link stays: packets that waited for a time sync still bring bytes in.
void CVexelEngine::StreamInDestroy(StreamData* data) {
  if (ScriptPlayer* movie = data->Reader()) movie->SetDataComplete();
  data->SetURL(nullptr);
}

}  // namespace vexel
