#include "client/stream/resend_gate.h"

#include <algorithm>
#include <utility>

#include "client/stream/nonlinear_packetizer.h"

namespace vexel::client {

void ResendGate::PassedInOrder(std::span<const uint8_t> packet) {
  if (packet.size() < kNonLinearHead) return;
  const uint64_t position = BigAt(packet, 0, 4);
  const bool single = BigAt(packet, 4, 2) == BigAt(packet, 6, 2);
  const bool endsInside = packet[kNonLinearFlagsAt] & kEndsInside;
  uint64_t end = position + packet.size() - kNonLinearHead;
  // Of the frame that goes on nothing is out yet.
  if (endsInside) end = single ? 0 : position + BigAt(packet, 14, 2);
  filled_ = std::max(filled_, end);
}

std::vector<NetworkPacket> ResendGate::Take() {
  std::vector<NetworkPacket> out, kept;
  for (NetworkPacket& packet : waiting_) {
    const bool known = packet.bytes.size() >= kNonLinearHead;
    const uint64_t end =
        known ? uint64_t{BigAt(packet.bytes, 0, 4)} + packet.bytes.size() - kNonLinearHead : 0;
    (end <= filled_ ? out : kept).push_back(std::move(packet));
  }
  waiting_ = std::move(kept);
  return out;
}

}  // namespace vexel::client
