// Puts arriving packets in order before the plug-in sees them. What is missing
// is waited for, for a while, and then reported as lost; doubles are dropped;
// what comes after it was reported is handed over as late.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "client/stream/lossy_network.h"

namespace vexel::client {

class JitterBuffer {
 public:
  // Waits so long, in milliseconds, for a packet that others have overtaken.
  explicit JitterBuffer(uint32_t waitMs) : waitMs_(waitMs) {}

  enum class Kind { kInOrder, kLost, kLate, kAnswer };
  struct Output {
    Kind kind;
    NetworkPacket packet;  // of a lost one, its number only
  };

  // Times are milliseconds of a clock that never goes back.
  void Put(uint64_t now, NetworkPacket packet);
  // What is ready, in order.
  std::vector<Output> Take(uint64_t now);
  // When Take has more to say, if nothing comes before: kNever for never.
  uint64_t NextDeadline() const;
  static constexpr uint64_t kNever = UINT64_MAX;

  // Numbers below `total` that are neither here nor reported: once all others
  // are handed over, the end of the stream that nobody would miss.
  std::vector<uint32_t> MissingTail(uint32_t total) const;
  // Everything below is in the past: the sender has jumped ahead.
  void JumpTo(uint32_t number);

  // Below it all numbers are handed over or reported.
  uint32_t next() const { return next_; }
  uint32_t doubles() const { return doubles_; }
  uint32_t reported() const { return reported_; }  // as lost
  uint32_t late() const { return late_; }

 private:
  struct Waiting {
    uint64_t arrived;
    NetworkPacket packet;
  };
  uint32_t waitMs_;
  uint32_t next_ = 0;
  std::map<uint32_t, Waiting> waiting_;  // by number
  std::set<uint32_t> lost_;              // reported, and not come since
  std::vector<Output> ready_;
  uint32_t doubles_ = 0, reported_ = 0, late_ = 0;
};

}  // namespace vexel::client
