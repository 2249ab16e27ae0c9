#include "client/stream/lossy_network.h"

#include <algorithm>
#include <utility>

namespace vexel::client {

namespace {

constexpr uint64_t kMostOvertaking = 4;  // packets
// With nothing to overtake it, a held packet goes after so long, milliseconds.
constexpr uint64_t kLongestHold = 100;

}  // namespace

// Drawn by hand: the library's distributions differ from one to the next.
bool LossyNetwork::Happens(double share) {
  return share > 0 && static_cast<double>(random_() >> 11) * 0x1p-53 < share;
}

void LossyNetwork::Leave(uint64_t now, NetworkPacket packet) {
  underWay_.emplace(now + setup_.delayMs, std::move(packet));
}

void LossyNetwork::ReleaseHeld(uint64_t now, bool packetPassed) {
  for (size_t i = 0; i < held_.size();) {
    Held& held = held_[i];
    if (packetPassed) held.packetsToWait--;
    if (held.packetsToWait > 0 && held.latest > now) {
      i++;
      continue;
    }
    NetworkPacket packet = std::move(held.packet);
    const uint64_t left = packetPassed ? now : std::min(now, held.latest);
    held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(i));
    Leave(left, std::move(packet));
  }
}

void LossyNetwork::Send(uint64_t now, NetworkPacket packet) {
  if (packet.isAnswer || packet.isRepeat) {
    answers_++;
    if (Happens(setup_.answerLoss)) {
      answersLost_++;
    } else {
      Leave(now, std::move(packet));
    }
    return;
  }
  sent_++;
  // All are drawn for each packet, so that one does not shift the others.
  const bool loses = Happens(setup_.loss);
  const bool doubles = Happens(setup_.duplicate);
  const bool reorders = Happens(setup_.reorder);
  const int wait = reorders ? static_cast<int>(1 + random_() % kMostOvertaking) : 0;
  if (loses || setup_.drop.contains(packet.number)) {
    lost_++;
  } else {
    if (doubles) Leave(now, packet);
    if (reorders) {
      ReleaseHeld(now, true);
      held_.push_back({wait, now + kLongestHold, std::move(packet)});
      return;
    }
    Leave(now, std::move(packet));
  }
  ReleaseHeld(now, true);
}

std::vector<NetworkPacket> LossyNetwork::Receive(uint64_t now) {
  ReleaseHeld(now, false);
  std::vector<NetworkPacket> arrived;
  const auto end = underWay_.upper_bound(now);
  for (auto it = underWay_.begin(); it != end; ++it) arrived.push_back(std::move(it->second));
  underWay_.erase(underWay_.begin(), end);
  return arrived;
}

uint64_t LossyNetwork::NextArrival() const {
  uint64_t next = underWay_.empty() ? kNever : underWay_.begin()->first;
  for (const Held& held : held_) next = std::min(next, held.latest + setup_.delayMs);
  return next;
}

}  // namespace vexel::client
