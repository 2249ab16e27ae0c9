// The stream: its header, its packets, and the client's clock.
#include <cstring>
#include <new>

#include "base/ref.h"
#include "base/tick_count.h"
#include "geometry/intmath.h"
#include "host/cdescatterizer.h"
#include "host/damage_manager.h"
#include "host/held.h"
#include "host/host_log.h"
#include "host/render_thread_manager.h"
#include "host/vexel_engine.h"
#include "player/text.h"

namespace vexel {

namespace {

// What the client may stream to this renderer; the second is also the one that
// is offered for an upgrade.
const char* const kMimeTypes[] = {"application/x-brightarc-vexel", "application/x-brightarc-vexel2",
                                  nullptr};

// How often a time sync is wanted, milliseconds.
constexpr UINT32 kGranularity = 100;

// A picture that follows the site's size.
constexpr UINT32 kDisplayType = 7;

// A flag of "RendererFlags".
constexpr UINT32 kFlagNonLinear = 1;

constexpr UINT32 kUnknownDuration = 0xFFFFFFFF;

// Bits 31 to 28 of an encoded version are the major number, 27 to 20 the minor
// one. Both must be those of this engine, which are 0.
constexpr UINT32 kVersionMask = 0xFFF00000;

// The head byte of a linear message: kind, flags, and in the high half the
// frame's number modulo 16.
constexpr UINT8 kKindMask = 3;
constexpr UINT8 kObjectMessage = 0;
constexpr UINT8 kFrameMessage = 1;
constexpr UINT8 kRequestedObject = 4;  // answers a request
constexpr UINT8 kFrameAtOnce = 4;
constexpr UINT8 kKeyFrame = 8;
constexpr int32_t kSequenceMask = 15;

// The text cursor changes its phase this often, milliseconds of stream time.
constexpr UINT32 kBlinkTime = 500;

constexpr int32_t kTwipsPerPixel = 20;
constexpr int32_t kMaxMovieSide = 32767;  // pixels

int32_t SideInPixels(int32_t min, int32_t max) {
  const int64_t side = (int64_t{max} - min) / kTwipsPerPixel;
  if (side < 0) return 0;
  return side > kMaxMovieSide ? kMaxMovieSide : static_cast<int32_t>(side);
}

bool HasSignature(const UINT8* head, INT32 size) {
  return size >= static_cast<INT32>(sizeof kMovieSignature) &&
         memcmp(head, kMovieSignature, sizeof kMovieSignature) == 0;
}

// The length that the movie's head declares, 0 if it can't be told.
UINT32 DeclaredLength(const UINT8* head, INT32 size) {
  if (!HasSignature(head, size) || size < kMovieHeaderBytes) return 0;
  return UINT32{head[4]} | UINT32{head[5]} << 8 | UINT32{head[6]} << 16 | UINT32{head[7]} << 24;
}

// The bytes of a buffer, none where there are none.
INT32 GetBytes(IZEMBuffer* buffer, const UINT8*& data) {
  UINT8* bytes = nullptr;
  UINT32 size = 0;
  if (!buffer || buffer->Get(bytes, size) < 0 || !bytes || size > INT32_MAX) return 0;
  data = bytes;
  return static_cast<INT32>(size);
}

}  // namespace

INT32 CVexelEngine::GetRendererInfo(const char**& mimeTypes, UINT32& granularity) {
  mimeTypes = const_cast<const char**>(kMimeTypes);
  granularity = kGranularity;
  return ZEM_OK;
}

INT32 CVexelEngine::GetDisplayType(UINT32& type, IZEMBuffer*&) {
  type = kDisplayType;
  return ZEM_OK;
}

INT32 CVexelEngine::StartStream(IZEMStream* stream, IZEMPlayer* player) {
  if (!stream || !player) return ZEM_BAD_ARGUMENT;
  const ScopedRef<IZEMRenderer> self(this);
  INT32 result = ZEM_OK;
  StopCallback();
  m_bCallbackStarted = false;
  m_nHoldMode = kHoldAlways;
  ReplaceRef(m_pStream, stream);
  ReplaceRef(m_pPlayer, player);
  ReleaseAndClear(m_pBackChannel);
  Held<IUnknown> source;
  if (stream->GetSource(source.Out()) >= 0 && source) {
    // A source that cannot send again has none.
    static_cast<void>(QueryAndReplace(source.Get(), IID_IZEMBackChannel, m_pBackChannel));
    const char* url = static_cast<IZEMStreamSource*>(source.Get())->GetURL();
    char* copy = CreateStr(url);
    if (url && !copy) result = ZEM_OUT_OF_MEMORY;
    FreeStr(m_pszURL);
    m_pszURL = copy;
  }
  if (!m_pBackChannel) m_nHoldMode = kHoldDefault;
  if (m_pDeScatterizer) m_pDeScatterizer->SetStream(m_pStream, m_pBackChannel);
  return result;
}

INT32 CVexelEngine::EndStream() {
  if (m_pDeScatterizer) m_pDeScatterizer->SetStream(nullptr, nullptr);
  ReleaseAndClear(m_pStream);
  ReleaseAndClear(m_pBackChannel);
  m_nHoldMode = kHoldNever;
  return ZEM_OK;
}

INT32 CVexelEngine::CheckStreamVersions(IZEMValues* header) {
  if (!header) return ZEM_FAILED;
  INT32 result = ZEM_OK;
  UINT32 version = 0;
  if (header->GetPropertyULONG32("StreamVersion", version) >= 0) {
    m_ulStreamVersion = version;
    if (version & kVersionMask) result = ZEM_FAILED;
  }
  if (header->GetPropertyULONG32("ContentVersion", version) >= 0) {
    m_ulContentVersion = version;
    if (version & kVersionMask) result = ZEM_FAILED;
  }
  return result;
}

INT32 CVexelEngine::AddMimeToUpgradeCollection(const char* name) {
  if (!name) return ZEM_BAD_ARGUMENT;
  Held<IZEMUpgradeCollection> collection;
  INT32 result = QueryAndReplace(m_pContext, IID_IZEMUpgradeCollection, collection.Out());
  if (result < 0) return result;
  Held<IZEMBuffer> text;
  result = CreateObject(IID_IZEMBuffer, text.Out());
  if (result < 0) return result;
  result = text->Set(reinterpret_cast<const UINT8*>(name), static_cast<UINT32>(strlen(name)));
  if (result < 0) return result;
  return collection->Add(0, text.Get(), 0, 0);
}

// Both ways, since a second stream may be of the other kind.
void CVexelEngine::SetMode(bool nonLinear, UINT32 numPackets) {
  m_bNonLinear = nonLinear;
  dataInPlace = nonLinear;
  m_ulNumPackets = numPackets;
  m_Ring.Clear();
  m_nLastSequence = 0;
  if (m_pDeScatterizer) m_pDeScatterizer->StartHeader(nonLinear, numPackets);
  if (m_pThreadManager) {
    m_pThreadManager->SetNonLinear(nonLinear);
    m_pThreadManager->SetNumPackets(numPackets);
  }
}

INT32 CVexelEngine::OnHeader(IZEMValues* header) {
  const ScopedRef<IZEMRenderer> self(this);
  const INT32 result = CheckStreamVersions(header);
  if (result < 0) {
    if (header) AddMimeToUpgradeCollection(kMimeTypes[1]);
    return result;
  }
  ReplaceRef(m_pHeader, header);
  if (header->GetPropertyULONG32("Duration", m_ulDuration) < 0) m_ulDuration = kUnknownDuration;
  UINT32 flags = 0;
  if (header->GetPropertyULONG32("RendererFlags", flags) < 0) flags = 0;
  const bool nonLinear = (flags & kFlagNonLinear) != 0;
  UINT32 numPackets = 0;
  if (nonLinear && header->GetPropertyULONG32("NumPackets", numPackets) < 0) numPackets = 0;
  SetMode(nonLinear, numPackets);

  Held<IZEMBuffer> head;
  if (header->GetPropertyBuffer("OpaqueData", head.Out()) < 0 || !head) return result;
  const UINT8* data = nullptr;
  const INT32 size = GetBytes(head.Get(), data);
  StartMovie(data, size);
  return ZEM_OK;
}

void CVexelEngine::StartMovie(const UINT8* head, INT32 size) {
  display.ResetTagBudget();
  if (m_bNonLinear && m_pDeScatterizer) {
    m_pDeScatterizer->SetFileStart(static_cast<UINT32>(size), DeclaredLength(head, size));
  }
  // Of an earlier stream. A linear movie has no script by which opening the
  // layer would notice it.
  if (m_MainStream.linked) ClearScript();
  if (!HasSignature(head, size)) RectSetEmpty(&frame);
  StreamInNew(&m_MainStream, m_pszURL, nullptr);
  if (m_bNonLinear) {
    StreamInWrite(&m_MainStream, head, size);
    // The presentation goes round, the movie doesn't.
    loop = false;
  } else {
    SetHeader(head, size);
    gotHeader = true;
  }
  SetPictureSize({SideInPixels(frame.xmin, frame.xmax), SideInPixels(frame.ymin, frame.ymax)});
  if (m_bSiteAttached && m_pDamageManager) {
    // A site shows another movie already: its picture changes along.
    SetPictureSize(LimitPictureSize(GetMediaSize()));
    m_pDamageManager->SetupDoubleBuffer(GetMediaSize());
  }
  if (!m_bNonLinear) {
    DrawFrame(0, false);
    m_Ring.Create();
  }
  m_ulMovieVersion = static_cast<UINT32>(version);
  LogReport(m_pErrorMessages, kLogState,
            "Header Info:\r\n\tVexel Version:\t%u\r\n\tScript Length:\t%lu\r\n\tWidth:\t\t%ld\r\n\t"
            "Height:\t\t%ld\r\n\tFrameRate:\t%ld\r\n\tNumFrames:\t%d\r\n\tNon-linear:\t%lu",
            static_cast<unsigned>(m_ulMovieVersion),
            static_cast<unsigned long>(static_cast<UINT32>(scriptLen)), static_cast<long>(m_lWidth),
            static_cast<long>(m_lHeight), static_cast<long>(Asr(frameRate, 16)),
            static_cast<int>(numFrames), static_cast<unsigned long>(m_bNonLinear));
}

INT32 CVexelEngine::OnPacket(IZEMPacket* packet, INT32 timeOffset) {
  if (!packet) return ZEM_BAD_ARGUMENT;
  const ScopedRef<IZEMRenderer> self(this);
  if (packet->IsLost()) {
    LogReport(m_pErrorMessages, kLogRate, "OnPacket(): PACKET LOST");
  } else {
    LogReport(m_pErrorMessages, kLogRate, "OnPacket(): pkt_ts=%6lu last_ts=%6lu offset=%ld",
              static_cast<unsigned long>(packet->GetTime()),
              static_cast<unsigned long>(m_ulLastTimeSync), static_cast<long>(timeOffset));
  }
  const Held<IZEMBuffer> buffer(packet->GetBuffer());
  const UINT8* data = nullptr;
  const INT32 size = GetBytes(buffer.Get(), data);
  if (size == 0) return ZEM_OK;
  display.ResetTagBudget();
  if (m_bNonLinear) {
    StreamInWrite(&m_MainStream, data, size);
  } else {
    TakeMessage(packet, data, size);
  }
  return ZEM_OK;
}

// Messages are for the movie that the stream began with: once layer 0 was
// emptied or has another movie, they are dropped.
void CVexelEngine::TakeMessage(IZEMPacket* packet, const UINT8* data, INT32 size) {
  if (!m_MainStream.Reader()) return;
  switch (data[0] & kKindMask) {
    case kObjectMessage:
      SetObject(data + 1, size - 1);
      if (data[0] & kRequestedObject) RecoverLost();
      break;
    case kFrameMessage:
      if ((data[0] & kFrameAtOnce) == 0) {
        TakeFrame(packet, data[0]);
        break;
      }
      m_Ring.Clear();
      m_nLastSequence = data[0] >> 4;
      loaded = true;
      ApplyFrame(data, size);
      CheckUpdate();
      break;
    default:
      break;
  }
}

// Behind a missing frame none is taken until the next key frame, so that the
// movie never draws over what it doesn't know.
void CVexelEngine::TakeFrame(IZEMPacket* packet, UINT8 head) {
  const INT32 sequence = head >> 4;
  const bool inSequence =
      m_nLastSequence >= 0 && sequence == ((m_nLastSequence + 1) & kSequenceMask);
  const bool accepted = inSequence || (head & kKeyFrame) || m_nHoldMode == kHoldNever;
  m_nLastSequence = accepted && m_Ring.Push(packet) ? sequence : -1;
}

void CVexelEngine::ApplyFrame(const UINT8* data, INT32 size) {
  if (!m_MainStream.Reader()) return;
  SetFrame(data + 1, size - 1, false);
  DoActions();
}

void CVexelEngine::PlayDueFrames(UINT32 time) {
  while (IZEMPacket* front = m_Ring.Front()) {
    if (front->GetTime() > time) return;
    // Out of the ring first: its actions may empty it.
    const Held<IZEMPacket> packet(m_Ring.Take());
    const Held<IZEMBuffer> buffer(packet->GetBuffer());
    const UINT8* data = nullptr;
    const INT32 size = GetBytes(buffer.Get(), data);
    if (size > 0) ApplyFrame(data, size);
  }
}

INT32 CVexelEngine::OnTimeSync(UINT32 time) {
  if (m_bInTimeSync) return ZEM_OK;
  const ScopedRef<IZEMRenderer> self(this);
  m_bInTimeSync = true;
  m_ulLastTimeSync = time;
  m_ulLastTimeSyncTicks = GetTickCount();
  if (time - m_ulLastBlink > kBlinkTime) {
    BlinkCursor();
    m_ulLastBlink = time;
  }
  if (m_bNonLinear) {
    DoPlay(time);
  } else {
    display.ResetTagBudget();
    PlayDueFrames(time);
  }
  Update(3);
  if (m_bNonLinear && !m_bCallbackStarted && time >= m_ulDuration) StartCallback(time);
  m_bInTimeSync = false;
  return ZEM_OK;
}

// The stream has ended, and the client will send no more time: the movie goes
// on by itself, to react to the mouse and to its own actions.
void CVexelEngine::StartCallback(UINT32 time) {
  StopCallback();
  if (m_bShutDown) return;
  auto* callback = new (std::nothrow) ZTCallback(0);
  if (!callback) return;
  const ScopedRef<ZTCallback> hold(callback);
  ReplaceRef(m_pCallback, callback);
  const bool ready = callback->Init(m_pContext, this, 1, time) >= 0;
  if (m_pCallback != callback) {
    // The client stopped it from inside.
    callback->Deallocate();
    return;
  }
  m_bCallbackStarted = ready;
  if (ready) ScheduleCallback();
}

// A movie without a header has no rate, and would keep the client's loop busy.
void CVexelEngine::ScheduleCallback() {
  m_pCallback->ScheduleRelativeCallback(frameDelay > 0 ? static_cast<UINT32>(frameDelay)
                                                       : kGranularity);
}

void CVexelEngine::StopCallback() {
  ZTCallback* callback = m_pCallback;
  m_pCallback = nullptr;
  // It holds this object until then.
  if (callback) callback->Deallocate();
  ReleaseAndClear(callback);
}

INT32 CVexelEngine::HandleCallback(UINT32, UINT32) {
  if (!m_bSiteAttached) return ZEM_OK;
  const ScopedRef<IZEMRenderer> self(this);
  // Wraps, as both clocks do.
  const UINT32 elapsed = GetTickCount() - m_ulLastTimeSyncTicks;
  // Required: past the thread manager's throttle.
  OnTimeSync(m_ulLastTimeSync + elapsed);
  if (m_pCallback) ScheduleCallback();
  return ZEM_OK;
}

INT32 CVexelEngine::OnPreSeek(UINT32, UINT32) {
  return ZEM_OK;
}

// A linear stream does nothing on a seek: the server's next frame, which is to
// be applied at once, stands for the new place.
INT32 CVexelEngine::OnPostSeek(UINT32, UINT32 newTime) {
  if (!m_bNonLinear) return ZEM_OK;
  const UINT32 place = newTime * static_cast<UINT32>(Asr(frameRate, 16)) / 1000;
  const UINT32 count = numFrames > 0 ? static_cast<UINT32>(numFrames) : 1;
  seekPending = true;
  seekFrame = static_cast<int32_t>(place < count ? place : count - 1);
  return ZEM_OK;
}

INT32 CVexelEngine::OnPause(UINT32) {
  hostStopped = true;
  return ZEM_OK;
}

INT32 CVexelEngine::OnBegin(UINT32) {
  hostStopped = false;
  return ZEM_OK;
}

INT32 CVexelEngine::OnBuffering(UINT32, UINT16) {
  return ZEM_OK;
}

INT32 CVexelEngine::OnEndofPackets() {
  const ScopedRef<IZEMRenderer> self(this);
  StreamInDestroy(&m_MainStream);
  return ZEM_OK;
}

INT32 CVexelEngine::AddLateWriteBuffer(IZEMBuffer* buffer) {
  if (!buffer) return ZEM_BAD_ARGUMENT;
  const UINT8* data = nullptr;
  const INT32 size = GetBytes(buffer, data);
  if (size < 4) return ZEM_BAD_ARGUMENT;
  // Of a movie that was replaced: nobody waits for them any more.
  if (m_MainStream.linked && !m_MainStream.Reader()) return ZEM_OK;
  const UINT32 position =
      UINT32{data[0]} << 24 | UINT32{data[1]} << 16 | UINT32{data[2]} << 8 | data[3];
  const UINT32 length = static_cast<UINT32>(size) - 4;
  if (!IsScriptRangeWriteable(position, length)) return ZEM_FAILED;
  WriteScriptRange(data + 4, length, position);
  return ZEM_OK;
}

void LostCharacter(void* engine, uint16_t id) {
  static_cast<CVexelEngine*>(engine)->RequestLostCharacter(id);
}

void CVexelEngine::RequestLostCharacter(UINT16 id) {
  if (m_pDeScatterizer) m_pDeScatterizer->RequestLostCharacter(id, m_ulLastTimeSync);
}

// --- The client's clock, as the movie moves it ---

void CVexelEngine::XPlay() {
  const ScopedRef<IZEMPlayer> player(m_pPlayer);
  if (m_pPlayer) m_pPlayer->Begin();
}

void CVexelEngine::XStopPlay() {
  const ScopedRef<IZEMPlayer> player(m_pPlayer);
  if (m_pPlayer) m_pPlayer->Pause();
}

void CVexelEngine::XSeek(int32_t frameIndex) {
  if (!m_pPlayer || frameRate == 0) return;
  const ScopedRef<IZEMPlayer> player(m_pPlayer);
  const int32_t rate = Asr(frameRate, 16);
  // To the nearest millisecond; rates below 1 have no whole part to divide by.
  const int32_t time = rate != 0 ? WrapAdd(Asr(frameRate, 17), WrapMul(frameIndex, 1000)) / rate
                                 : static_cast<int32_t>(int64_t{frameIndex} * 65536000 / frameRate);
  m_pPlayer->Seek(static_cast<UINT32>(time));
}

}  // namespace vexel
