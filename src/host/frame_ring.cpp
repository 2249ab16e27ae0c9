// The ring of waiting frames.
#include "host/frame_ring.h"

#include <cstdlib>

namespace vexel {

namespace {

IZEMPacket** MakeEntries(uint32_t count) {
  return static_cast<IZEMPacket**>(calloc(count, sizeof(IZEMPacket*)));
}

}  // namespace

FrameRing::~FrameRing() {
  Clear();
  free(m_ppRing);
}

void FrameRing::Create() {
  Clear();
  free(m_ppRing);
  m_ppRing = MakeEntries(m_nRingSize);
  m_nRingWrite = 0;
  m_nRingRead = 0;
}

void FrameRing::Clear() {
  while (IZEMPacket* packet = Take()) packet->Release();
}

IZEMPacket* FrameRing::Take() {
  IZEMPacket* packet = Front();
  if (packet) ++m_nRingRead;
  return packet;
}

bool FrameRing::Push(IZEMPacket* packet) {
  if (!m_ppRing || (Count() >= m_nRingSize && !Grow())) return false;
  packet->AddRef();
  m_ppRing[m_nRingWrite & m_nRingMask] = packet;
  ++m_nRingWrite;
  return true;
}

// The counts go on, so each entry moves to where the new mask looks for it.
bool FrameRing::Grow() {
  if (m_nRingSize >= kMaxSize) return false;
  const uint32_t size = 2 * m_nRingSize;
  IZEMPacket** ring = MakeEntries(size);
  if (!ring) return false;
  for (uint32_t i = m_nRingRead; i != m_nRingWrite; ++i) {
    ring[i & (size - 1)] = m_ppRing[i & m_nRingMask];
  }
  free(m_ppRing);
  m_ppRing = ring;
  m_nRingSize = size;
  m_nRingMask = size - 1;
  return true;
}

}  // namespace vexel
