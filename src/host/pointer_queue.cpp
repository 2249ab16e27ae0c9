#include "host/pointer_queue.h"

#include <new>

namespace vexel {

CPointerQueue::~CPointerQueue() {
  delete[] m_ppEntries;
}

bool CPointerQueue::Grow() {
  if (m_nCapacity > INT32_MAX - kStep) return false;
  const INT32 capacity = m_nCapacity + kStep;
  void** grown = new (std::nothrow) void*[static_cast<size_t>(capacity)];
  if (!grown) return false;
  for (INT32 i = 0; i < m_nCount; ++i) grown[i] = m_ppEntries[(m_nHead + i) % m_nCapacity];
  delete[] m_ppEntries;
  m_ppEntries = grown;
  m_nHead = 0;
  m_nTail = m_nCount;
  m_nCapacity = capacity;
  return true;
}

bool CPointerQueue::Enque(void* entry) {
  if (!m_ppEntries) m_ppEntries = new (std::nothrow) void*[static_cast<size_t>(m_nCapacity)];
  if (!m_ppEntries || (m_nCount == m_nCapacity && !Grow())) return false;
  m_ppEntries[m_nTail] = entry;
  m_nTail = (m_nTail + 1) % m_nCapacity;
  ++m_nCount;
  return true;
}

void* CPointerQueue::Deque() {
  if (m_nCount == 0) return nullptr;
  void* entry = m_ppEntries[m_nHead];
  m_nHead = (m_nHead + 1) % m_nCapacity;
  --m_nCount;
  return entry;
}

CPacketQueue::~CPacketQueue() {
  while (IZEMPacket* packet = Deque()) packet->Release();
}

bool CPacketQueue::Enque(IZEMPacket* packet) {
  if (!CPointerQueue::Enque(packet)) return false;
  packet->AddRef();
  return true;
}

CEventQueue::~CEventQueue() {
  while (_QKxEvent* event = Deque()) delete event;
}

bool CEventQueue::Enque(const _QKxEvent& event) {
  _QKxEvent* copy = new (std::nothrow) _QKxEvent(event);
  if (!copy) return false;
  if (CPointerQueue::Enque(copy)) return true;
  delete copy;
  return false;
}

}  // namespace vexel
