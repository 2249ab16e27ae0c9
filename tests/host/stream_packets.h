// Packets of both stream layouts, as a source would make them.
#pragma once

#include <algorithm>

#include "host/cdescatterizer.h"
#include "host/fake_host.h"

namespace vexel::test {

inline void PutBig(Bytes& out, uint64_t value, int bytes) {
  while (bytes-- > 0) out.push_back(static_cast<UINT8>(value >> (8 * bytes)));
}

inline void Append(Bytes& out, const Bytes& more) {
  out.insert(out.end(), more.begin(), more.end());
}

inline Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes whole;
  for (const Bytes& part : parts) Append(whole, part);
  return whole;
}

// Linear: a record with a whole message.
inline Bytes WholeRecord(UINT32 time, const Bytes& payload) {
  Bytes out;
  PutBig(out, payload.size(), 2);
  PutBig(out, 0, 2);
  PutBig(out, time, 4);
  Append(out, payload);
  return out;
}

// Linear: a record with a part of the message `id`, from `offset` on.
inline Bytes FragmentRecord(UINT16 id, UINT32 offset, const Bytes& payload, bool isLast) {
  Bytes out;
  const unsigned flags = 0x40 | (offset == 0 ? 0x80 : 0) | (isLast ? 0x20 : 0);
  PutBig(out, flags << 8 | payload.size(), 2);
  PutBig(out, id, 2);
  PutBig(out, offset, 4);
  Append(out, payload);
  return out;
}

// Non-linear: the head of a packet.
struct CutHead {
  UINT32 position = 0;
  UINT32 first = 0, last = 0;
  UINT32 flags = 0;
  UINT32 headOffset = 0, headLength = 0, tailStart = 0;

  Bytes With(const Bytes& payload) const {
    Bytes out;
    PutBig(out, position, 4);
    PutBig(out, first, 2);
    PutBig(out, last, 2);
    PutBig(out, flags, 1);
    PutBig(out, headOffset, 3);
    PutBig(out, headLength, 2);
    PutBig(out, tailStart, 2);
    Append(out, payload);
    return out;
  }
};
constexpr UINT32 kStartsInside = 1, kEndsInside = 2, kResent = 4, kUnknown = 8;

// A movie file by its frames: frame k is the bytes from bounds[k] to
// bounds[k + 1]; bounds[0] is where the header's part ends.
struct FramedFile {
  Bytes bytes;
  std::vector<UINT32> bounds;

  UINT32 FrameOf(UINT32 position) const {
    const auto next = std::upper_bound(bounds.begin(), bounds.end(), position);
    return static_cast<UINT32>(next - bounds.begin()) - 1;
  }

  // The packet with the bytes from `p` to `q`.
  Bytes Cut(UINT32 p, UINT32 q, bool resent = false) const {
    CutHead head;
    head.position = p;
    head.first = FrameOf(p);
    head.last = FrameOf(q - 1);
    const bool startsInside = p > bounds[head.first];
    const bool endsInside = q < bounds[head.last + 1];
    head.flags = startsInside * kStartsInside | endsInside * kEndsInside | resent * kResent;
    if (startsInside) {
      head.headOffset = p - bounds[head.first];
      head.headLength = std::min(q, bounds[head.first + 1]) - p;
    }
    if (endsInside && head.first != head.last) head.tailStart = bounds[head.last] - p;
    return head.With(Bytes(bytes.begin() + p, bytes.begin() + q));
  }
};

// Receives what the reassembler delivers.
class RecordingHandler final : public IOnPacketHandler {
 public:
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) override {
    messages.push_back({BytesOf(packet), packet->GetTime()});
    offsets += timeOffset;
    return result;
  }
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override {
    const Bytes bytes = BytesOf(buffer);
    const UINT32 position = UINT32{bytes[0]} << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
    lateWrites.push_back({position, Bytes(bytes.begin() + 4, bytes.end())});
    return result;
  }

  struct Message {
    Bytes bytes;
    UINT32 time;
  };
  struct LateWrite {
    UINT32 position;
    Bytes bytes;
  };
  std::vector<Message> messages;
  std::vector<LateWrite> lateWrites;
  INT32 offsets = 0;
  INT32 result = ZEM_OK;
};

// A reassembler between a factory and a handler, with a way back.
struct Reassembly {
  explicit Reassembly(bool nonLinear, UINT32 start = 0, UINT32 length = 0) {
    reassembler.SetStream(stream.get(), backChannel.get());
    reassembler.StartHeader(nonLinear, 0);
    reassembler.SetFileStart(start, length);
  }

  INT32 Put(const Bytes& bytes, UINT32 time = 0, INT32 offset = 0) {
    return reassembler.OnPacket(MakePacket(bytes, time).get(), offset);
  }
  // The bytes of the requests that were sent.
  std::vector<Bytes> Requests() const {
    std::vector<Bytes> requests;
    for (const auto& packet : backChannel->sent) requests.push_back(BytesOf(packet.get()));
    return requests;
  }

  Ptr<FakeFactory> factory = New<FakeFactory>();
  Ptr<FakeStream> stream = New<FakeStream>();
  Ptr<FakeBackChannel> backChannel = New<FakeBackChannel>();
  RecordingHandler handler;
  CDeScatterizer reassembler{factory.get(), &handler};
};

}  // namespace vexel::test
