// A movie whose frames are handed over as its file comes in.
#pragma once

#include <functional>

#include "client/feed/feed.h"
#include "client/stream/growing_movie.h"

namespace vexel::client {

class ProgressiveFeed final : public Feed {
 public:
  using HandOver = std::function<void(const StreamPacket&)>;
  // The packets of the movie are this feed's to take.
  ProgressiveFeed(GrowingMovie* movie, HandOver handOver)
      : Feed(movie), growing_(movie), handOver_(std::move(handOver)) {}

  StreamHeader Header() const override;
  void Run() override;
  bool Waits(uint32_t position) const override;
  int percent() const override { return movie().percent(); }
  bool ended() const override { return movie().finished(); }
  bool goesRound() const override { return goesRound_; }

 private:
  GrowingMovie* growing_;
  HandOver handOver_;
  bool looked_ = false;  // through all of it, for scripts
  bool goesRound_ = false;
};

}  // namespace vexel::client
