// A movie sent over a network that is made up, in real time.
#pragma once

#include <functional>

#include "client/core/event_loop.h"
#include "client/core/object.h"
#include "client/feed/feed.h"
#include "client/stream/delivery.h"

namespace vexel::client {

class NetworkFeed final : public Feed {
 public:
  struct Ends {
    EventLoop* loop;
    std::function<uint32_t()> position;  // of the presentation, milliseconds
    std::function<void(IZEMPacket*)> handOver;
  };
  // Throws std::runtime_error, with a text for people, for a movie that can't be
  // streamed. All of it is in.
  NetworkFeed(const DeliverySetup& setup, const GrowingMovie* movie, const Ends& ends);

  StreamHeader Header() const override { return delivery_.Header(); }
  bool resends() const override { return resends_; }
  void Request(std::span<const uint8_t> request) override { delivery_.Request(request); }
  void Run() override;
  // While the receiver's buffer fills, at the beginning and behind a jump.
  bool Waits(uint32_t) const override { return filling_; }
  int percent() const override { return delivery_.filledPercent(); }
  bool ended() const override { return delivery_.ended(); }
  void JumpTo(uint32_t time) override;
  bool goesRound() const override { return goesRound_; }
  uint32_t DueTime(size_t frame) const override;
  size_t FrameDueAt(uint32_t time) const override;

 private:
  EventLoop* loop_;
  bool linear_;
  bool resends_;
  bool goesRound_;
  bool filling_ = true;
  Delivery delivery_;
  Watch next_;  // runs what happens of itself
};

}  // namespace vexel::client
