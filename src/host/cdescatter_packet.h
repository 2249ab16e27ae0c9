// One unfinished message: its bytes at their own offsets, and the holes that are
// still open. Fragments may come in any order; what a fragment does to the holes
// is a fixed, simple rule that can leave a phantom hole behind (see SetFragment),
// which the next answered request closes.
#pragma once

#include "zem/zem.h"

namespace vexel {

class CDeScatterPacket {
 public:
  // A hole: `length` bytes from `start` are missing.
  struct Hole {
    UINT32 start, length;
  };
  // Length of a hole that runs to an end which is not known yet.
  static constexpr UINT32 kOpenEnd = 0xFFFFFFFF;
  static constexpr int kMaxMissing = 16;
  // The longest message: a frame at the highest offset that its head can tell,
  // and the longest piece there.
  static constexpr UINT32 kMaxLength = (1u << 24) + 65535;
  // The array grows by this much, as often as needed.
  static constexpr UINT32 kGrowth = 32767;

  // `factory` is borrowed as long as the packet lives; it makes requests.
  CDeScatterPacket(IZEMCommonClassFactory* factory, UINT16 id);
  ~CDeScatterPacket();
  CDeScatterPacket(const CDeScatterPacket&) = delete;
  CDeScatterPacket& operator=(const CDeScatterPacket&) = delete;

  // Takes a copy of `size` bytes for the message's offset `offset`; `isLast`
  // says that they end the message. False, with nothing changed, if the message
  // would get too long, has no place for another hole, or memory is out.
  //
  // One hole only is touched, even by a fragment that is wider than the hole.
  bool SetFragment(const UINT8* data, UINT32 offset, UINT32 size, bool isLast);

  // No hole is open; m_ulTotal is then the message's length.
  bool IsComplete() const { return m_nMissing == 0; }

  // Makes the request for what is missing, with a reference for the caller; on
  // failure `out` is null. The message will be marked as an answer when it
  // completes.
  INT32 GetResendRequest(IZEMBuffer*& out);

  // By how many bytes the array would grow to take a fragment that ends at
  // `end`, at most kMaxLength.
  UINT32 GrowthFor(UINT32 end) const;

  IZEMCommonClassFactory* m_pClassFactory;  // not owned
  UINT16 m_unId;
  UINT32 m_ulTime = 0;        // stays 0: such messages are due at once
  UINT8* m_pData = nullptr;   // owned; bytes not received yet are 0
  bool m_bLastSeen = false;   // the end is known
  bool m_bRequested = false;  // a request went out while bytes were held
  UINT32 m_ulCapacity = 0;
  UINT32 m_ulReceived = 0;  // sum of all sizes, doubles counted again
  UINT32 m_ulTotal = 0;     // message length, once the end is known
  Hole m_Missing[kMaxMissing];
  INT32 m_nMissing = 1;
  UINT32 m_ulFilePosition = 0;  // of the first byte; streams of a file only
  // What all messages of a map hold together: m_ulCapacity counts in it. Borrowed;
  // null for a message outside of a map.
  UINT32* m_pulBytesHeld = nullptr;

 private:
  Hole* FindHole(UINT32 offset);
  bool Grow(UINT32 end);
  void MarkAsAnswer();
  void CleanupMissingChunks();
};

}  // namespace vexel
