// Packets of both stream layouts, as a source would make them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace vexel::test {

using Bytes = std::vector<uint8_t>;

inline void PutBig(Bytes& out, uint64_t value, int bytes) {
  while (bytes-- > 0) out.push_back(static_cast<uint8_t>(value >> (8 * bytes)));
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
inline Bytes WholeRecord(uint32_t time, const Bytes& payload) {
  Bytes out;
  PutBig(out, payload.size(), 2);
  PutBig(out, 0, 2);
  PutBig(out, time, 4);
  Append(out, payload);
  return out;
}

// Linear: a record with a part of the message `id`, from `offset` on.
inline Bytes FragmentRecord(uint16_t id, uint32_t offset, const Bytes& payload, bool isLast) {
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
  uint32_t position = 0;
  uint32_t first = 0, last = 0;
  uint32_t flags = 0;
  uint32_t headOffset = 0, headLength = 0, tailStart = 0;

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
constexpr uint32_t kStartsInside = 1, kEndsInside = 2, kResent = 4, kUnknown = 8;

// A movie file by its frames: frame k is the bytes from bounds[k] to
// bounds[k + 1]; bounds[0] is where the header's part ends.
struct FramedFile {
  Bytes bytes;
  std::vector<uint32_t> bounds;

  uint32_t FrameOf(uint32_t position) const {
    const auto next = std::upper_bound(bounds.begin(), bounds.end(), position);
    return static_cast<uint32_t>(next - bounds.begin()) - 1;
  }

  // The packet with the bytes from `p` to `q`.
  Bytes Cut(uint32_t p, uint32_t q, bool resent = false) const {
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

}  // namespace vexel::test
