#include "client/stream/jitter_buffer.h"

#include <algorithm>
#include <utility>

namespace vexel::client {

void JitterBuffer::Put(uint64_t now, NetworkPacket packet) {
  const uint32_t number = packet.number;
  if (packet.isAnswer) {
    ready_.push_back({Kind::kAnswer, std::move(packet)});
  } else if (number < next_) {
    if (lost_.erase(number) > 0) {
      late_++;
      ready_.push_back({Kind::kLate, std::move(packet)});
    } else {
      doubles_++;
    }
  } else if (!waiting_.try_emplace(number, Waiting{now, std::move(packet)}).second) {
    doubles_++;
  }
}

// The first to arrive behind the gap starts the wait.
uint64_t JitterBuffer::NextDeadline() const {
  uint64_t first = kNever;
  for (const auto& [number, waiting] : waiting_) first = std::min(first, waiting.arrived);
  return first == kNever ? kNever : first + waitMs_;
}

std::vector<JitterBuffer::Output> JitterBuffer::Take(uint64_t now) {
  std::vector<Output> out = std::exchange(ready_, {});
  while (!waiting_.empty()) {
    const auto first = waiting_.begin();
    if (first->first > next_) {
      if (NextDeadline() > now) break;
      reported_++;
      lost_.insert(next_);
      out.push_back({Kind::kLost, {.number = next_, .bytes = {}}});
    } else {
      out.push_back({Kind::kInOrder, std::move(first->second.packet)});
      waiting_.erase(first);
    }
    next_++;
  }
  return out;
}

std::vector<uint32_t> JitterBuffer::MissingTail(uint32_t total) const {
  std::vector<uint32_t> missing;
  if (!waiting_.empty()) return missing;
  for (uint32_t number = next_; number < total; number++) missing.push_back(number);
  return missing;
}

void JitterBuffer::JumpTo(uint32_t number) {
  waiting_.clear();
  lost_.clear();
  next_ = std::max(next_, number);
}

}  // namespace vexel::client
