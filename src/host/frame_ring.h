// Frames of a linear stream that wait for their time, in the order in which
// they came. A frame waits as a reference to the client's packet.
#pragma once

#include <cstdint>

#include "zem/zem_values.h"

namespace vexel {

class FrameRing {
 public:
  // Powers of two: an entry is found by a mask.
  static constexpr uint32_t kFirstSize = 2048;
  static constexpr uint32_t kMaxSize = 65536;

  FrameRing() = default;
  ~FrameRing();
  FrameRing(const FrameRing&) = delete;
  FrameRing& operator=(const FrameRing&) = delete;

  // Drops what waits and makes a new ring of the size reached so far. Without
  // memory there is none, which takes no frame.
  void Create();
  // Drops what waits.
  void Clear();
  // Takes a reference. A full ring doubles first; false if there is no ring, no
  // memory to grow, or kMaxSize frames wait.
  [[nodiscard]] bool Push(IZEMPacket* packet);
  // The frame that waits longest, borrowed; null if none does.
  IZEMPacket* Front() const {
    return m_nRingRead == m_nRingWrite ? nullptr : m_ppRing[m_nRingRead & m_nRingMask];
  }
  // Takes it out; its reference is the caller's from now on.
  IZEMPacket* Take();

  uint32_t Count() const { return m_nRingWrite - m_nRingRead; }
  uint32_t Size() const { return m_nRingSize; }

 private:
  bool Grow();

  uint32_t m_nRingSize = kFirstSize;
  uint32_t m_nRingMask = kFirstSize - 1;
  IZEMPacket** m_ppRing = nullptr;  // owned; m_nRingSize entries
  // Running counts, not reduced: the entry is at `count & m_nRingMask`.
  uint32_t m_nRingWrite = 0;
  uint32_t m_nRingRead = 0;
};

}  // namespace vexel
