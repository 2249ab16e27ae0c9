#include "client/feed/progressive_feed.h"

#include <utility>

#include "client/stream/nonlinear_packetizer.h"
#include "client/stream/scripts.h"

namespace vexel::client {

StreamHeader ProgressiveFeed::Header() const {
  StreamHeader header;
  header.rendererFlags = kNonLinearRenderer;
  header.opaque.assign(movie().head().begin(), movie().head().end());
  return header;
}

void ProgressiveFeed::Run() {
  if (const std::optional<StreamPacket> packet = growing_->TakePacket()) handOver_(*packet);
  if (movie().finished() && !std::exchange(looked_, true))
    goesRound_ = !HasScripts(std::span(movie().bytes()).subspan(movie().head().size()));
}

bool ProgressiveFeed::Waits(uint32_t position) const {
  return !movie().finished() && movie().FrameDueAt(position) >= movie().framesIn();
}

}  // namespace vexel::client
