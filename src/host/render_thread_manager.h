// Decides when the engine works, and how long at most.
//
// There is no thread: all runs on the client's calls. Packets only queue up. A
// time sync does all that waits in one burst, and the length of a burst tells how
// long the next one has to wait, so that drawing uses no more than its share of
// the processor. A time sync that comes too early is dropped, not queued.
#pragma once

#include "base/simple_list.h"
#include "base/tick_count.h"
#include "host/held.h"
#include "host/on_packet_handler.h"
#include "host/pointer_queue.h"
#include "zem/zem.h"

namespace vexel {

class CRenderThreadManager : public IOnPacketHandler {
 public:
  // What may wait for a burst, in bytes: more than any movie has.
  static constexpr uint64_t kMaxQueuedBytes = uint64_t{1} << 30;
  // Late writes that may wait for the reader to move on; the oldest go first.
  static constexpr INT32 kMaxLateWrites = 4096;
  static constexpr uint64_t kMaxLateBytes = uint64_t{1} << 28;

  // `engine` is asked for IZEMRenderer and IZEMSiteUser, which are held. The
  // same object's `lateWrites` takes late writes, borrowed for as long. Of 100
  // milliseconds, `percent` may be spent in bursts; `ticks` is the clock.
  CRenderThreadManager(IUnknown* engine, IOnPacketHandler* lateWrites, UINT32 percent,
                       UINT32 (*ticks)() = GetTickCount);
  virtual ~CRenderThreadManager();
  // Deletes it, now or at the end of the burst that is running: a client can let
  // go of the renderer inside a redraw.
  void Retire();
  bool IsInWork() const { return m_bInWork; }
  CRenderThreadManager(const CRenderThreadManager&) = delete;
  CRenderThreadManager& operator=(const CRenderThreadManager&) = delete;

  // From the reassembler. Queues the packet with a reference, or a late write.
  // ZEM_BAD_ARGUMENT for null and for a late write without its position;
  // ZEM_OUT_OF_MEMORY.
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) override;
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override;

  // The client's calls, on their way to the engine. ZEM_UNEXPECTED without one.
  // A header drops what still waits for a burst.
  virtual INT32 GetRendererInfo(const char**& mimeTypes, UINT32& granularity);
  virtual INT32 StartStream(IZEMStream* stream, IZEMPlayer* player);
  virtual INT32 EndStream();
  virtual INT32 OnHeader(IZEMValues* header);
  virtual INT32 OnTimeSync(UINT32 time);
  virtual INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime);
  virtual INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime);
  virtual INT32 OnPause(UINT32 time);
  virtual INT32 OnBegin(UINT32 time);
  virtual INT32 OnBuffering(UINT32 reason, UINT16 percent);
  virtual INT32 GetDisplayType(UINT32& type, IZEMBuffer*& info);
  virtual INT32 OnEndofPackets();
  // From the advise sink: where the presentation stands. Drives a non-linear
  // movie whose time has stopped.
  virtual INT32 OnPosLength(UINT32 position, UINT32 length);
  virtual INT32 HandleEvent(_QKxEvent* event);
  virtual INT32 DetachSite();

  // Called by the engine at the stream's header.
  void SetNonLinear(bool nonLinear) { m_bNonLinear = nonLinear; }
  void SetNumPackets(UINT32 numPackets) { m_ulNumPackets = numPackets; }

  // Where the stream stands, in milliseconds.
  UINT32 GetStreamTime() const;
  bool IsStreamTimeRunning() const { return m_bStreamTimeRunning; }
  // What waits for the next burst.
  INT32 GetPacketCount() const { return m_PacketQueue.GetCount(); }
  INT32 GetLateWriteCount() const { return m_pLateWrites ? m_pLateWrites->GetCount() : 0; }

 private:
  INT32 DoOnTimeSyncWork(UINT32 streamTime);
  Held<IZEMPacket> TakePacket();
  void DeliverPackets();
  void DoAnyLateWrites();
  Held<IZEMBuffer> TakeLateWrite();
  void ClearLateWriteList();
  void StreamTimeRunning(UINT32 time);
  void StreamTimeStopped(UINT32 time);

  IZEMRenderer* m_pRenderer = nullptr;  // the engine; reference held
  IZEMSiteUser* m_pSiteUser = nullptr;  // the engine; reference held
  IOnPacketHandler* m_pEngine;          // the same; not counted
  CPacketQueue m_PacketQueue;
  uint64_t m_ulQueuedBytes = 0;
  // Wall times of the last burst, and sums. The wall clock stands still (see
  // GetWallTime), so these rest; the throttle has a clock of its own.
  UINT32 m_ulWorkStart = 0, m_ulWorkEnd = 0;
  bool m_bInWork = false;
  bool m_bRetired = false;
  UINT32 m_ulTotalWork = 0, m_ulTotalIdle = 0;
  UINT32 m_ulLastWork = 33;
  UINT32 m_ulPerformancePercent;  // at least 1
  bool m_bNonLinear = false;
  UINT32 m_ulNumPackets = 0;
  CQKSimpleList* m_pLateWrites = nullptr;  // owned; of IZEMBuffer*, referenced
  uint64_t m_ulLateBytes = 0;
  UINT32 m_ulStreamTime = 0;      // at the last stop or start
  UINT32 m_ulStreamWallTime = 0;  // at that moment
  INT32 m_lTimeOffset = 0;
  UINT32 m_ulDuration = 0;
  bool m_bStreamTimeRunning = false;
  bool m_bGotTimeSync = false;
  UINT32 (*m_pTicks)();
  UINT32 m_ulMinWorkInterval = 0;  // milliseconds from burst to burst
  UINT32 m_ulLastWorkTicks;        // when the last burst began
};

}  // namespace vexel
