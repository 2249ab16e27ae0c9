#include "host/cdescatter_packet.h"

#include <stdlib.h>
#include <string.h>

#include "host/held.h"
#include "host/wire.h"

namespace vexel {
namespace {

// The head of a request: a code, and the identifier.
constexpr UINT8 kResendCode = 3;
constexpr UINT32 kRequestHead = 3;
constexpr UINT32 kRequestHole = 8;

// In the first byte of a message: it answers a request.
constexpr UINT8 kAnswerMark = 0x04;

UINT32 TakeOff(UINT32 length, UINT32 size) {
  return length > size ? length - size : 0;
}

}  // namespace

CDeScatterPacket::CDeScatterPacket(IZEMCommonClassFactory* factory, UINT16 id)
    : m_pClassFactory(factory), m_unId(id) {
  m_Missing[0] = {0, kOpenEnd};
}

CDeScatterPacket::~CDeScatterPacket() {
  if (m_pulBytesHeld) *m_pulBytesHeld -= m_ulCapacity;
  free(m_pData);
}

CDeScatterPacket::Hole* CDeScatterPacket::FindHole(UINT32 offset) {
  for (INT32 i = 0; i < m_nMissing; ++i) {
    Hole& hole = m_Missing[i];
    if (offset < hole.start) continue;
    if (hole.length == kOpenEnd || offset - hole.start < hole.length) return &hole;
  }
  return nullptr;
}

UINT32 CDeScatterPacket::GrowthFor(UINT32 end) const {
  if (end < m_ulCapacity) return 0;
  return ((end - m_ulCapacity) / kGrowth + 1) * kGrowth;
}

bool CDeScatterPacket::Grow(UINT32 end) {
  const UINT32 growth = GrowthFor(end);
  if (growth == 0) return true;
  void* grown = realloc(m_pData, size_t{m_ulCapacity} + growth);
  if (!grown) return false;
  m_pData = static_cast<UINT8*>(grown);
  // A message may complete with bytes that never came.
  memset(m_pData + m_ulCapacity, 0, growth);
  m_ulCapacity += growth;
  if (m_pulBytesHeld) *m_pulBytesHeld += growth;
  return true;
}

bool CDeScatterPacket::SetFragment(const UINT8* data, UINT32 offset, UINT32 size, bool isLast) {
  if (uint64_t{offset} + size > kMaxLength) return false;
  const UINT32 end = offset + size;
  Hole* hole = FindHole(offset);
  // What the hole has left behind the fragment. Required: a known length loses
  // the size, wherever the fragment lies; the exact tail is not computed.
  UINT32 rest = 0;
  bool reachesEnd = false, splits = false;
  if (hole) {
    const bool open = hole->length == kOpenEnd;
    rest = open ? (isLast ? 0 : kOpenEnd) : TakeOff(hole->length, size);
    reachesEnd = !open && end == hole->start + hole->length;
    splits = !reachesEnd && offset != hole->start;
  }
  if (splits && rest != 0 && m_nMissing == kMaxMissing) return false;
  if (!Grow(end)) return false;

  if (size != 0) memcpy(m_pData + offset, data, size);
  m_ulReceived += size;
  if (isLast) {
    m_bLastSeen = true;
    m_ulTotal = end;
  }
  if (splits) {
    hole->length = offset - hole->start;
    if (rest != 0) m_Missing[m_nMissing++] = {end, rest};
  } else if (hole) {
    if (!reachesEnd) hole->start = end;
    hole->length = rest;
  }
  CleanupMissingChunks();
  MarkAsAnswer();
  return true;
}

void CDeScatterPacket::MarkAsAnswer() {
  if (m_bRequested && m_nMissing == 0 && m_ulTotal != 0) m_pData[0] |= kAnswerMark;
}

void CDeScatterPacket::CleanupMissingChunks() {
  INT32 kept = 0;
  for (INT32 i = 0; i < m_nMissing; ++i) {
    const Hole& hole = m_Missing[i];
    // Behind the end nothing can come that would close a hole.
    if (hole.length == 0 || (m_bLastSeen && hole.start >= m_ulTotal)) continue;
    m_Missing[kept++] = hole;
  }
  m_nMissing = kept;
}

INT32 CDeScatterPacket::GetResendRequest(IZEMBuffer*& out) {
  out = nullptr;
  if (m_pData) {
    m_pData[0] |= kAnswerMark;
    m_bRequested = true;  // the first byte may still come, without the mark
  }
  void* made = nullptr;
  INT32 result = m_pClassFactory->CreateInstance(IID_IZEMBuffer, &made);
  if (result < 0) return result;
  Held<IZEMBuffer> buffer(static_cast<IZEMBuffer*>(made));
  if (!buffer) return ZEM_OUT_OF_MEMORY;
  result = buffer->SetSize(kRequestHead + kRequestHole * static_cast<UINT32>(m_nMissing));
  if (result < 0) return result;
  UINT8* at = buffer->GetBuffer();
  if (!at) return ZEM_OUT_OF_MEMORY;
  *at++ = kResendCode;
  // Required: low byte first, unlike all other numbers of a stream.
  *at++ = static_cast<UINT8>(m_unId);
  *at++ = static_cast<UINT8>(m_unId >> 8);
  for (INT32 i = 0; i < m_nMissing; ++i) {
    at = WriteBig32(at, m_Missing[i].start);
    at = WriteBig32(at, m_Missing[i].length);
  }
  out = buffer.Detach();
  return ZEM_OK;
}

}  // namespace vexel
