// Queues of what waits for a burst of work: a growing ring of pointers, and its
// forms for packets and for events.
#pragma once

#include "zem/zem_site.h"
#include "zem/zem_values.h"

namespace vexel {

class CPointerQueue {
 public:
  // Places at first, and by how many more a full ring grows.
  static constexpr INT32 kStep = 2048;

  CPointerQueue() = default;
  // Forgets what is left; who owns it must have taken it out.
  ~CPointerQueue();
  CPointerQueue(const CPointerQueue&) = delete;
  CPointerQueue& operator=(const CPointerQueue&) = delete;

  // Puts `entry` behind the others. False without memory: nothing has changed.
  bool Enque(void* entry);
  // Takes out the oldest entry; null if there is none.
  void* Deque();
  bool IsEmpty() const { return m_nCount == 0; }
  INT32 GetCount() const { return m_nCount; }

 private:
  bool Grow();

  INT32 m_nCapacity = kStep;
  void** m_ppEntries = nullptr;  // owned; made with the first entry
  INT32 m_nHead = 0;             // the oldest entry
  INT32 m_nTail = 0;             // where the next one goes
  INT32 m_nCount = 0;
};

// Of packets, each with a reference.
class CPacketQueue : private CPointerQueue {
 public:
  CPacketQueue() = default;
  // Releases what is left.
  ~CPacketQueue();

  // Takes a reference. False without memory.
  bool Enque(IZEMPacket* packet);
  // Hands the oldest packet on with its reference; null if there is none.
  IZEMPacket* Deque() { return static_cast<IZEMPacket*>(CPointerQueue::Deque()); }
  using CPointerQueue::GetCount;
  using CPointerQueue::IsEmpty;
};

// Of events, as copies of their own. An event that happened while the movie was
// at work could wait here; so far, all are answered at once.
class CEventQueue : private CPointerQueue {
 public:
  CEventQueue() = default;
  // Deletes what is left.
  ~CEventQueue();

  // Copies the event. False without memory.
  bool Enque(const _QKxEvent& event);
  // The oldest event, for the caller to delete; null if there is none.
  _QKxEvent* Deque() { return static_cast<_QKxEvent*>(CPointerQueue::Deque()); }
  using CPointerQueue::GetCount;
  using CPointerQueue::IsEmpty;
};

}  // namespace vexel
