#include "host/render_thread_manager.h"

#include <new>

#include "base/ref.h"

namespace vexel {
namespace {

constexpr UINT32 kMaxWorkInterval = 1000;  // milliseconds
constexpr UINT32 kUnknownDuration = 0xFFFFFFFF;
constexpr UINT16 kBuffered = 100;     // percent
constexpr UINT32 kLateWriteHead = 4;  // the file position

// What a waiting packet costs beside its bytes.
constexpr uint64_t kPacketBytes = 256;

// Required: the wall clock stands still. So the statistics of work rest, and a
// running stream's time moves with its time syncs alone.
UINT32 GetWallTime() {
  return 0;
}

UINT32 Elapsed(UINT32 start, UINT32 end) {
  return end >= start ? end - start : end - start - 1;
}

uint64_t CostOf(IZEMPacket* packet) {
  Held<IZEMBuffer> buffer(packet->GetBuffer());
  return kPacketBytes + (buffer ? buffer->GetSize() : 0);
}

}  // namespace

CRenderThreadManager::CRenderThreadManager(IUnknown* engine, IOnPacketHandler* lateWrites,
                                           UINT32 percent, UINT32 (*ticks)())
    : m_pEngine(lateWrites),
      m_ulPerformancePercent(percent ? percent : 1),
      m_pTicks(ticks),
      m_ulLastWorkTicks(ticks()) {
  // An engine without them is as good as none: each call then says so.
  static_cast<void>(QueryAndReplace(engine, IID_IZEMRenderer, m_pRenderer));
  static_cast<void>(QueryAndReplace(engine, IID_IZEMSiteUser, m_pSiteUser));
}

CRenderThreadManager::~CRenderThreadManager() {
  ReleaseAndClear(m_pRenderer);
  ReleaseAndClear(m_pSiteUser);
  ClearLateWriteList();
  delete m_pLateWrites;
}

INT32 CRenderThreadManager::OnPacket(IZEMPacket* packet, INT32 timeOffset) {
  if (!packet) return ZEM_BAD_ARGUMENT;
  m_lTimeOffset = timeOffset;
  const uint64_t cost = CostOf(packet);
  if (m_ulQueuedBytes + cost > kMaxQueuedBytes) return ZEM_OUT_OF_MEMORY;
  if (!m_PacketQueue.Enque(packet)) return ZEM_OUT_OF_MEMORY;
  m_ulQueuedBytes += cost;
  return ZEM_OK;
}

INT32 CRenderThreadManager::AddLateWriteBuffer(IZEMBuffer* buffer) {
  if (!buffer || buffer->GetSize() < kLateWriteHead) return ZEM_BAD_ARGUMENT;
  if (!m_pLateWrites) m_pLateWrites = new (std::nothrow) CQKSimpleList;
  if (!m_pLateWrites || !m_pLateWrites->AddTail(buffer)) return ZEM_OUT_OF_MEMORY;
  buffer->AddRef();
  m_ulLateBytes += buffer->GetSize();
  while (m_pLateWrites->GetCount() > 1 &&
         (m_pLateWrites->GetCount() > kMaxLateWrites || m_ulLateBytes > kMaxLateBytes)) {
    TakeLateWrite();
  }
  return ZEM_OK;
}

// The oldest late write, for as long as the result lives.
Held<IZEMBuffer> CRenderThreadManager::TakeLateWrite() {
  auto* buffer = static_cast<IZEMBuffer*>(m_pLateWrites->RemoveHead());
  m_ulLateBytes -= buffer->GetSize();
  return Held<IZEMBuffer>(buffer);
}

void CRenderThreadManager::ClearLateWriteList() {
  while (GetLateWriteCount() > 0) TakeLateWrite();
}

INT32 CRenderThreadManager::GetRendererInfo(const char**& mimeTypes, UINT32& granularity) {
  return m_pRenderer ? m_pRenderer->GetRendererInfo(mimeTypes, granularity) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::StartStream(IZEMStream* stream, IZEMPlayer* player) {
  return m_pRenderer ? m_pRenderer->StartStream(stream, player) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::EndStream() {
  if (!m_pRenderer) return ZEM_UNEXPECTED;
  if (!m_bNonLinear) {
    StreamTimeStopped(m_ulDuration);
  } else if (m_ulStreamTime < m_ulDuration) {
    StreamTimeStopped(m_ulStreamTime);
  }
  return m_pRenderer->EndStream();
}

INT32 CRenderThreadManager::OnHeader(IZEMValues* header) {
  if (!m_pRenderer) return ZEM_UNEXPECTED;
  // What still waits belongs to an earlier stream.
  while (!m_PacketQueue.IsEmpty()) TakePacket();
  ClearLateWriteList();
  if (!header || header->GetPropertyULONG32("Duration", m_ulDuration) < 0) {
    m_ulDuration = kUnknownDuration;
  }
  return m_pRenderer->OnHeader(header);
}

INT32 CRenderThreadManager::OnTimeSync(UINT32 time) {
  if (!m_pRenderer) return ZEM_UNEXPECTED;
  m_bGotTimeSync = true;
  const UINT32 back = m_lTimeOffset < 0 ? 0 - static_cast<UINT32>(m_lTimeOffset) : 0;
  const UINT32 streamTime = time < back ? 0 : time + static_cast<UINT32>(m_lTimeOffset);
  StreamTimeRunning(streamTime);
  return DoOnTimeSyncWork(streamTime);
}

INT32 CRenderThreadManager::DoOnTimeSyncWork(UINT32 streamTime) {
  const UINT32 now = m_pTicks();
  if (now - m_ulLastWorkTicks < m_ulMinWorkInterval) return ZEM_OK;
  m_ulLastWorkTicks = now;
  if (m_bInWork) return ZEM_OK;
  m_bInWork = true;
  m_ulWorkStart = GetWallTime();
  m_ulTotalIdle += Elapsed(m_ulWorkEnd, m_ulWorkStart);

  DeliverPackets();
  DoAnyLateWrites();
  const INT32 result = m_pRenderer->OnTimeSync(streamTime);

  m_bInWork = false;
  m_ulWorkEnd = GetWallTime();
  m_ulLastWork = Elapsed(m_ulWorkStart, m_ulWorkEnd);
  m_ulTotalWork += m_ulLastWork;
  const uint64_t interval = uint64_t{m_pTicks() - now} * 100 / m_ulPerformancePercent;
  m_ulMinWorkInterval =
      interval < kMaxWorkInterval ? static_cast<UINT32>(interval) : kMaxWorkInterval;
  if (m_bRetired) delete this;
  return result;
}

void CRenderThreadManager::Retire() {
  if (m_bInWork) {
    m_bRetired = true;
  } else {
    delete this;
  }
}

// The oldest packet, for as long as the result lives.
Held<IZEMPacket> CRenderThreadManager::TakePacket() {
  IZEMPacket* packet = m_PacketQueue.Deque();
  m_ulQueuedBytes -= CostOf(packet);
  return Held<IZEMPacket>(packet);
}

void CRenderThreadManager::DeliverPackets() {
  while (!m_PacketQueue.IsEmpty()) {
    const Held<IZEMPacket> packet = TakePacket();
    m_pRenderer->OnPacket(packet.Get(), 0);
  }
}

void CRenderThreadManager::DoAnyLateWrites() {
  // A write that meets the movie's reader is put off to the next burst: it goes
  // behind the others, which one round leaves in their old order.
  for (INT32 left = GetLateWriteCount(); left > 0 && GetLateWriteCount() > 0; --left) {
    const Held<IZEMBuffer> buffer = TakeLateWrite();
    if (m_pEngine->AddLateWriteBuffer(buffer.Get()) < 0) AddLateWriteBuffer(buffer.Get());
  }
}

void CRenderThreadManager::StreamTimeRunning(UINT32 time) {
  m_ulStreamTime = time;
  m_ulStreamWallTime = GetWallTime();
  m_bStreamTimeRunning = true;
}

void CRenderThreadManager::StreamTimeStopped(UINT32 time) {
  m_ulStreamTime = time;
  m_bStreamTimeRunning = false;
}

UINT32 CRenderThreadManager::GetStreamTime() const {
  if (!m_bStreamTimeRunning) return m_ulStreamTime;
  return m_ulStreamTime + Elapsed(m_ulStreamWallTime, GetWallTime());
}

INT32 CRenderThreadManager::OnPreSeek(UINT32 oldTime, UINT32 newTime) {
  StreamTimeStopped(newTime);
  return m_pRenderer ? m_pRenderer->OnPreSeek(oldTime, newTime) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::OnPostSeek(UINT32 oldTime, UINT32 newTime) {
  StreamTimeStopped(newTime);
  return m_pRenderer ? m_pRenderer->OnPostSeek(oldTime, newTime) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::OnPause(UINT32 time) {
  if (!m_pRenderer) return ZEM_UNEXPECTED;
  StreamTimeStopped(time);
  return m_pRenderer->OnPause(time);
}

INT32 CRenderThreadManager::OnBegin(UINT32 time) {
  return m_pRenderer ? m_pRenderer->OnBegin(time) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::OnBuffering(UINT32 reason, UINT16 percent) {
  if (!m_pRenderer) return ZEM_UNEXPECTED;
  if (percent < kBuffered) StreamTimeStopped(m_ulStreamTime);
  return m_pRenderer->OnBuffering(reason, percent);
}

INT32 CRenderThreadManager::GetDisplayType(UINT32& type, IZEMBuffer*& info) {
  return m_pRenderer ? m_pRenderer->GetDisplayType(type, info) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::OnEndofPackets() {
  return m_pRenderer ? m_pRenderer->OnEndofPackets() : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::OnPosLength(UINT32 position, UINT32) {
  // Required: the time sync below sets the time running, so one report drives
  // one burst, and the next one waits until something stops the time again.
  if (m_bStreamTimeRunning || !m_bNonLinear || !m_bGotTimeSync) return ZEM_OK;
  return OnTimeSync(position);
}

INT32 CRenderThreadManager::HandleEvent(_QKxEvent* event) {
  return m_pSiteUser ? m_pSiteUser->HandleEvent(event) : ZEM_UNEXPECTED;
}

INT32 CRenderThreadManager::DetachSite() {
  if (m_bNonLinear) StreamTimeStopped(m_ulStreamTime);
  return ZEM_OK;
}

}  // namespace vexel
