#include "client/stream/nonlinear_packetizer.h"

#include <algorithm>
#include <stdexcept>

namespace vexel::client {

namespace {

constexpr size_t kMaxFrames = 65536;
constexpr size_t kMaxFrameBytes = 1 << 24;
constexpr size_t kRequestBytes = 12;  // position, length, 0

}  // namespace

NonLinearPacketizer::NonLinearPacketizer(const MovieIndex* movie, size_t packetBytes)
    : Packetizer(movie, kNonLinearRenderer) {
  if (movie->frames() > kMaxFrames) throw std::runtime_error("has too many frames to be streamed");
  const std::vector<size_t>& bounds = movie->bounds();
  for (size_t k = 0; k < movie->frames(); k++) {
    if (bounds[k + 1] - bounds[k] > kMaxFrameBytes)
      throw std::runtime_error("has too large a frame to be streamed");
  }
  const size_t payload = std::clamp(packetBytes, kMinPacket, kMaxPacket) - kNonLinearHead;
  for (size_t at = bounds[0]; at < bounds.back(); at += payload)
    packets_.push_back(Cut(at, std::min(at + payload, bounds.back()), 0));
}

StreamPacket NonLinearPacketizer::Cut(size_t begin, size_t end, uint32_t extraFlags) const {
  const std::vector<size_t>& bounds = movie().bounds();
  const size_t first = movie().FrameAt(begin);
  const size_t last = movie().FrameAt(end - 1);
  const bool startsInside = begin > bounds[first];
  const bool endsInside = end < bounds[last + 1];
  const uint32_t flags =
      (startsInside ? kStartsInside : 0u) | (endsInside ? kEndsInside : 0u) | extraFlags;
  const size_t headOffset = startsInside ? begin - bounds[first] : 0;
  const size_t headLength = startsInside ? std::min(end, bounds[first + 1]) - begin : 0;
  const size_t tailStart = endsInside && first != last ? bounds[last] - begin : 0;

  StreamPacket packet;
  packet.time = movie().DueTime(first);
  packet.bytes.reserve(kNonLinearHead + end - begin);
  AppendBig(static_cast<uint32_t>(begin), 4, &packet.bytes);
  AppendBig(static_cast<uint32_t>(first), 2, &packet.bytes);
  AppendBig(static_cast<uint32_t>(last), 2, &packet.bytes);
  AppendBig(flags, 1, &packet.bytes);
  AppendBig(static_cast<uint32_t>(headOffset), 3, &packet.bytes);
  AppendBig(static_cast<uint32_t>(headLength), 2, &packet.bytes);
  AppendBig(static_cast<uint32_t>(tailStart), 2, &packet.bytes);
  const auto payload = movie().Slice(begin, end);
  packet.bytes.insert(packet.bytes.end(), payload.begin(), payload.end());
  return packet;
}

std::vector<StreamPacket> NonLinearPacketizer::Answer(std::span<const uint8_t> request) const {
  if (request.size() != kRequestBytes) return {};
  const std::vector<size_t>& bounds = movie().bounds();
  const size_t position = BigAt(request, 0, 4);
  const size_t length = BigAt(request, 4, 4);
  // More than the file holds is asked for by a position that has gone stale.
  if (length == 0 || length > bounds.back() || position >= bounds.back()) return {};
  const size_t end = std::min(position + length, bounds.back());
  std::vector<StreamPacket> answer;
  for (size_t k = movie().FrameAt(std::max(position, bounds[0])); k < movie().frames(); k++) {
    if (bounds[k] >= end) break;
    if (bounds[k + 1] > bounds[k]) answer.push_back(Cut(bounds[k], bounds[k + 1], kResent));
  }
  return answer;
}

Packetizer::Jump NonLinearPacketizer::JumpTo(uint32_t, size_t sent) const {
  return {{}, sent};
}

bool NonLinearPacketizer::MakeLate(std::vector<uint8_t>* bytes) const {
  if (bytes->size() < kNonLinearHead) return false;
  (*bytes)[kNonLinearFlagsAt] |= kResent;
  return true;
}

}  // namespace vexel::client
