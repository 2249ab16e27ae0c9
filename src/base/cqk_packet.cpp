// Packets hold their buffer and hand it out with a reference.
#include "base/cqk_packet.h"

#include <new>

#include "base/ref.h"

namespace vexel {

CQKPacket::CQKPacket()
    : refCount(0),
      buffer(nullptr),
      time(0),
      streamNumber(0),
      qrsFlags(0),
      qrsRuleNumber(0),
      lost(false) {}

CQKPacket::~CQKPacket() {
  ReleaseAndClear(buffer);
}

INT32 CQKPacket::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMPacket>(this, IID_IZEMPacket, id, out);
}

UINT32 CQKPacket::AddRef() {
  return static_cast<UINT32>(++refCount);
}

// The table of operations has no destructor, so each class of packets ends
// itself; this one by hand, since `delete` can't know that nothing derives.
UINT32 CQKPacket::Release() {
  INT32 left = static_cast<INT32>(DropRef());
  if (left <= 0) {
    this->CQKPacket::~CQKPacket();
    ::operator delete(this);
  }
  return static_cast<UINT32>(left);
}

INT32 CQKPacket::Get(IZEMBuffer*& bytes, UINT32& packetTime, UINT16& stream, UINT8& flags,
                     UINT16& rule) {
  bytes = GetBuffer();
  packetTime = time;
  stream = streamNumber;
  flags = qrsFlags;
  rule = qrsRuleNumber;
  return ZEM_OK;
}

IZEMBuffer* CQKPacket::GetBuffer() {
  if (buffer) buffer->AddRef();
  return buffer;
}

INT32 CQKPacket::SetAsLost() {
  if (buffer) return ZEM_UNEXPECTED;
  lost = true;
  return ZEM_OK;
}

INT32 CQKPacket::Set(IZEMBuffer* bytes, UINT32 packetTime, UINT16 stream, UINT8 flags,
                     UINT16 rule) {
  if (refCount > 1) return ZEM_UNEXPECTED;
  ReplaceRef(buffer, bytes);
  time = packetTime;
  streamNumber = stream;
  qrsFlags = flags;
  qrsRuleNumber = rule;
  return ZEM_OK;
}

INT32 CQKPacket::GetRTP(IZEMBuffer*&, UINT32&, UINT32&, UINT16&, UINT8&, UINT16&) {
  return ZEM_UNEXPECTED;
}

INT32 CQKPacket::SetRTP(IZEMBuffer*, UINT32, UINT32, UINT16, UINT8, UINT16) {
  return ZEM_UNEXPECTED;
}

INT32 CQKRTPPacket::QueryInterface(const ZEMID& id, void** out) {
  return ZEMIsEqualID(id, IID_IZEMRTPPacket) ? AnswerQuery<IZEMPacket>(this, id, id, out)
                                             : CQKPacket::QueryInterface(id, out);
}

UINT32 CQKRTPPacket::Release() {
  INT32 left = static_cast<INT32>(DropRef());
  if (left <= 0) delete this;
  return static_cast<UINT32>(left);
}

// Required: a refused Set has changed the stamp nevertheless.
INT32 CQKRTPPacket::Set(IZEMBuffer* bytes, UINT32 packetTime, UINT16 stream, UINT8 flags,
                        UINT16 rule) {
  return SetRTP(bytes, packetTime, packetTime, stream, flags, rule);
}

INT32 CQKRTPPacket::GetRTP(IZEMBuffer*& bytes, UINT32& packetTime, UINT32& stamp, UINT16& stream,
                           UINT8& flags, UINT16& rule) {
  stamp = rtpTime;
  return Get(bytes, packetTime, stream, flags, rule);
}

INT32 CQKRTPPacket::SetRTP(IZEMBuffer* bytes, UINT32 packetTime, UINT32 stamp, UINT16 stream,
                           UINT8 flags, UINT16 rule) {
  rtpTime = stamp;
  return CQKPacket::Set(bytes, packetTime, stream, flags, rule);
}

}  // namespace vexel
