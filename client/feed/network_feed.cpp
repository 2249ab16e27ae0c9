#include "client/feed/network_feed.h"

#include <glib.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "client/core/values.h"
#include "client/stream/scripts.h"

namespace vexel::client {

namespace {

uint64_t NowMs() {
  return static_cast<uint64_t>(g_get_monotonic_time()) / 1000;
}

DeliveryEnds EndsOf(const NetworkFeed::Ends& ends) {
  DeliveryEnds made;
  made.now = NowMs;
  made.position = ends.position;
  made.packet = [ends](const NetworkPacket& packet) {
    ends.handOver(NewPacket(NewBuffer(packet.bytes).get(), packet.time, 0).get());
  };
  made.lostPacket = [ends] { ends.handOver(NewLostPacket().get()); };
  return made;
}

}  // namespace

NetworkFeed::NetworkFeed(const DeliverySetup& setup, const GrowingMovie* movie, const Ends& ends)
    : Feed(movie),
      loop_(ends.loop),
      linear_(setup.linear),
      resends_(setup.resends),
      // Of a linear movie's actions only the first frame's run.
      goesRound_(setup.linear ||
                 !HasScripts(std::span(movie->bytes()).subspan(movie->head().size()))),
      delivery_(setup, movie->bytes(), EndsOf(ends)) {}

void NetworkFeed::Run() {
  for (bool any = true; any;) {
    any = delivery_.RunDue();
    any = delivery_.EndIfAllIn() || any;
  }
  const uint64_t next = delivery_.NextEvent();
  if (next == Delivery::kNever) {
    filling_ = false;
    next_.Cancel();
    return;
  }
  const uint64_t now = NowMs();
  next_ = loop_->After(static_cast<uint32_t>(next - std::min(next, now)), [this] { Run(); });
}

void NetworkFeed::JumpTo(uint32_t time) {
  delivery_.JumpTo(time);
  filling_ = true;
}

uint32_t NetworkFeed::DueTime(size_t frame) const {
  return linear_ ? delivery_.movie().DueTime(frame) : Feed::DueTime(frame);
}

size_t NetworkFeed::FrameDueAt(uint32_t time) const {
  return linear_ ? delivery_.movie().FrameDueAt(time) : Feed::FrameDueAt(time);
}

}  // namespace vexel::client
