// Keeps resent bytes of a non-linear stream back until their place is taken.
//
// The plug-in fills a gap when the next frame behind it ends; until then bytes
// that are written into the gap are in the way of the filling, and would be lost
// under it. So a resent packet waits until a frame has ended behind it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "client/stream/lossy_network.h"

namespace vexel::client {

class ResendGate {
 public:
  // A packet was handed over in order: its head tells up to where frames ended.
  void PassedInOrder(std::span<const uint8_t> packet);
  // Everything has been handed over, or given up: nothing will be filled any more.
  void Open() { filled_ = UINT64_MAX; }

  void Put(NetworkPacket packet) { waiting_.push_back(std::move(packet)); }
  // Those whose place is taken, in the order in which they came.
  std::vector<NetworkPacket> Take();

 private:
  uint64_t filled_ = 0;  // position in the file up to which all is bytes or filling
  std::vector<NetworkPacket> waiting_;
};

}  // namespace vexel::client
