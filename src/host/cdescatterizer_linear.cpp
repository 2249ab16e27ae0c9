// Linear streams: records, each a small message or a fragment of a big one.
#include "host/cdescatterizer.h"
#include "host/held.h"
#include "host/message_time.h"
#include "host/wire.h"

namespace vexel {
namespace {

// The head of a record: flags and length (2 bytes), identifier (2), and the
// time or the offset in the message (4).
constexpr UINT32 kRecordHead = 8;
constexpr UINT8 kFirst = 0x80, kFragment = 0x40, kLast = 0x20, kLengthBits = 0x0F;

// Identifiers above this are used in turn for what comes once, such as frames.
constexpr UINT32 kLastCharacter = 59999;

}  // namespace

INT32 CDeScatterizer::OnPacketLinear(IZEMPacket* packet, INT32 timeOffset) {
  if (packet->IsLost()) return ZEM_OK;
  const Held<IZEMBuffer> buffer(packet->GetBuffer());
  const UINT8* data = buffer ? buffer->GetBuffer() : nullptr;
  const UINT32 size = data ? buffer->GetSize() : 0;
  // A record that overruns the packet ends it.
  for (UINT32 at = 0; size - at >= kRecordHead;) {
    const UINT8* record = data + at;
    const UINT32 length = (record[0] & kLengthBits) * 256u + record[1];
    if (length > size - at - kRecordHead) break;
    if (record[0] & kFragment) {
      OnFragment(record, length, timeOffset);
    } else {
      SendOnPacket(record + kRecordHead, length, MessageTime(ReadBig32(record + 4), timeOffset));
    }
    at += kRecordHead + length;
  }
  return ZEM_OK;
}

void CDeScatterizer::OnFragment(const UINT8* record, UINT32 length, INT32 timeOffset) {
  const UINT16 id = static_cast<UINT16>(ReadBig16(record + 2));
  if (id > kLastCharacter) {
    if (m_unTransientId != 0 && m_unTransientId != id) {
      if (CDeScatterPacket* stale = m_Fragments.Find(m_unTransientId)) Destroy(stale);
    }
    m_unTransientId = id;
  }
  CDeScatterPacket* packet = FindOrAdd(id, 0);
  if (!packet) return;
  const UINT32 offset = record[0] & kFirst ? 0 : ReadBig32(record + 4);
  if (!TakeFragment(packet, record + kRecordHead, offset, length, record[0] & kLast)) return;
  if (!packet->IsComplete()) return;
  // Required: the time of fragments is not kept, such a message is due at once.
  SendOnPacket(packet->m_pData, packet->m_ulTotal, MessageTime(packet->m_ulTime, timeOffset));
  Destroy(packet);
  if (m_unTransientId == id) m_unTransientId = 0;
}

}  // namespace vexel
