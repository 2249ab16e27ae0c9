// Non-linear streams: stretches of the movie file.
//
// A packet may start inside a frame and end inside another. Such parts wait in
// the map under the frame's number until the frame is whole; the whole frames
// between them go out as they are. In order, m_ulSentPosition and m_ulNextFrame
// tell what has gone out, and anything missing before the next stretch becomes
// empty frames. What was sent again goes to its place in the file instead.
#include "host/cdescatterizer.h"
#include "host/held.h"
#include "host/message_time.h"
#include "host/wire.h"

namespace vexel {

// A packet, taken apart; all lengths lie within the payload.
struct CutPacket {
  CutPacket(const UINT8* data, UINT32 size, UINT32 dueTime);

  // The part of frame `first`, if startsInside.
  UINT32 HeadSize() const { return Single() ? payloadLength : headLength; }
  bool HeadEndsFrame() const { return !Single() || !endsInside; }
  // The part of frame `last`, if HasTail.
  bool HasTail() const { return endsInside && !(startsInside && Single()); }
  UINT32 TailSize() const { return payloadLength - tailStart; }
  // The whole frames, numbered from...to, as payload bytes start...stop.
  bool HasWholeFrames() const { return To() >= From() && Stop() >= Start(); }
  INT32 From() const { return static_cast<INT32>(first) + startsInside; }
  INT32 To() const { return static_cast<INT32>(last) - endsInside; }
  UINT32 Start() const { return startsInside ? headLength : 0; }
  UINT32 Stop() const { return endsInside ? tailStart : payloadLength; }

  const UINT8* payload;
  UINT32 payloadLength;
  UINT32 position;  // in the file, of the payload
  UINT32 first, last;
  bool startsInside, endsInside, resent, unknown;
  UINT32 headOffset;
  UINT32 headLength;
  UINT32 tailStart;
  UINT32 time;

 private:
  bool Single() const { return first == last; }
};

namespace {

constexpr UINT32 kCutHead = 16;
constexpr UINT8 kStartsInside = 1, kEndsInside = 2, kResent = 4, kUnknown = 8;

// How far ahead a packet may start if nobody knows the file's length.
constexpr UINT32 kMaxLeap = 64u << 20;

UINT32 Least(UINT32 a, UINT32 b) {
  return a < b ? a : b;
}

}  // namespace

CutPacket::CutPacket(const UINT8* data, UINT32 size, UINT32 dueTime)
    : payload(data + kCutHead),
      payloadLength(size - kCutHead),
      position(ReadBig32(data)),
      first(ReadBig16(data + 4)),
      last(ReadBig16(data + 6)),
      startsInside(data[8] & kStartsInside),
      endsInside(data[8] & kEndsInside),
      resent(data[8] & kResent),
      unknown(data[8] & kUnknown),
      headOffset(ReadBig24(data + 9)),
      headLength(Least(ReadBig16(data + 12), payloadLength)),
      tailStart(Least(ReadBig16(data + 14), payloadLength)),
      time(dueTime) {}

INT32 CDeScatterizer::OnPacketNonLinear(IZEMPacket* packet, INT32 timeOffset, Gap& gap) {
  if (packet->IsLost()) {
    ++m_ulLostCount;
    return ZEM_OK;
  }
  m_ulLostCount = 0;
  Held<IZEMBuffer> buffer(packet->GetBuffer());
  const UINT8* data = buffer ? buffer->GetBuffer() : nullptr;
  if (!data || buffer->GetSize() < kCutHead) return ZEM_FAILED;
  const CutPacket cut(data, buffer->GetSize(), MessageTime(packet->GetTime(), timeOffset));
  if (cut.resent) return Late(cut);
  if (cut.unknown || StartsTooFar(cut.position)) return ZEM_OK;

  // Required: a packet from behind asks too, with the difference as it wraps.
  gap = {cut.position != m_ulExpectedPosition, m_ulExpectedPosition,
         cut.position - m_ulExpectedPosition};
  m_ulExpectedPosition = cut.position + cut.payloadLength;
  return InOrder(cut);
}

bool CDeScatterizer::StartsTooFar(UINT32 position) const {
  if (m_ulMovieLength != 0) return position > m_ulMovieLength;
  return position > uint64_t{m_ulExpectedPosition} + kMaxLeap;
}

INT32 CDeScatterizer::InOrder(const CutPacket& cut) {
  INT32 result = ZEM_OK;
  if (cut.startsInside) result = SendHead(cut);
  if (result >= 0 && cut.HasWholeFrames()) result = SendWholeFrames(cut);
  if (result >= 0 && cut.HasTail()) result = KeepTail(cut);
  return result;
}

INT32 CDeScatterizer::SendHead(const CutPacket& cut) {
  CDeScatterPacket* frame =
      FindOrAdd(static_cast<UINT16>(cut.first), cut.position - cut.headOffset);
  if (!frame) return ZEM_OUT_OF_MEMORY;
  const bool held =
      TakeFragment(frame, cut.payload, cut.headOffset, cut.HeadSize(), cut.HeadEndsFrame());
  if (!cut.HeadEndsFrame()) return ZEM_OK;

  const bool complete = held && frame->IsComplete();
  const UINT32 endPosition = cut.position + cut.HeadSize();
  INT32 result;
  if (complete && m_ulSentPosition == frame->m_ulFilePosition) {
    result = SendOnPacket(frame->m_pData, frame->m_ulTotal, cut.time);
    Destroy(frame);
  } else {
    // The frame can't go out in order. Its parts go on waiting; if nothing but
    // what lies before it is missing, its bytes follow the empty frame at once.
    result = SendDummyFrames(endPosition, cut.first + 1, cut.time);
    if (complete) AddLate(*frame);
  }
  m_ulSentPosition = endPosition;
  m_ulNextFrame = cut.first + 1;
  return result;
}

INT32 CDeScatterizer::SendWholeFrames(const CutPacket& cut) {
  const UINT32 position = cut.position + cut.Start();
  if (m_ulSentPosition != position) {
    // A gap that no tags fill, and one that goes backward, are passed over.
    SendDummyFrames(position, static_cast<UINT32>(cut.From()), cut.time);
    m_ulSentPosition = position;
    m_ulNextFrame = static_cast<UINT32>(cut.From());
  }
  const INT32 result = SendOnPacket(cut.payload + cut.Start(), cut.Stop() - cut.Start(), cut.time);
  if (result < 0) return result;
  m_ulSentPosition = cut.position + cut.Stop();
  m_ulNextFrame = static_cast<UINT32>(cut.To()) + 1;
  return result;
}

INT32 CDeScatterizer::KeepTail(const CutPacket& cut) {
  CDeScatterPacket* frame = FindOrAdd(static_cast<UINT16>(cut.last), cut.position + cut.tailStart);
  if (!frame) return ZEM_OUT_OF_MEMORY;
  TakeFragment(frame, cut.payload + cut.tailStart, 0, cut.TailSize(), false);
  return ZEM_OK;
}

INT32 CDeScatterizer::SendDummyFrames(UINT32 toPosition, UINT32 toFrame, UINT32 time) {
  Held<IZEMBuffer> dummy;
  const INT32 result =
      CreateDummyFrames(m_ulSentPosition, toPosition, m_ulNextFrame, toFrame, dummy.Out());
  return result < 0 ? result : SendBuffer(dummy.Get(), time);
}

INT32 CDeScatterizer::Late(const CutPacket& cut) {
  INT32 result = ZEM_OK;
  if (cut.startsInside) {
    result = LatePart(cut.first, cut.payload, cut.headOffset, cut.HeadSize(), cut.HeadEndsFrame());
  }
  if (cut.HasWholeFrames()) {
    result =
        AddLate(cut.position + cut.Start(), cut.payload + cut.Start(), cut.Stop() - cut.Start());
  }
  if (result >= 0 && cut.HasTail()) {
    result = LatePart(cut.last, cut.payload + cut.tailStart, 0, cut.TailSize(), false);
  }
  return result;
}

// A part of a frame that nobody collects is of no use.
INT32 CDeScatterizer::LatePart(UINT32 id, const UINT8* data, UINT32 offset, UINT32 size,
                               bool isLast) {
  CDeScatterPacket* frame = m_Fragments.Find(static_cast<UINT16>(id));
  if (!frame || !TakeFragment(frame, data, offset, size, isLast)) return ZEM_OK;
  return frame->IsComplete() ? AddLate(*frame) : ZEM_OK;
}

INT32 CDeScatterizer::AddLate(const CDeScatterPacket& message) {
  return AddLate(message.m_ulFilePosition, message.m_pData, message.m_ulTotal);
}

INT32 CDeScatterizer::AddLate(UINT32 position, const UINT8* data, UINT32 size) {
  Held<IZEMBuffer> buffer;
  const INT32 result = CreateLateWriteBuffer(position, data, size, buffer.Out());
  return result < 0 ? result : m_pHandler->AddLateWriteBuffer(buffer.Get());
}

}  // namespace vexel
