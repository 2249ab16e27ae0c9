// How the packets of a movie get to the plug-in, and when the clock has to wait
// for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "client/stream/growing_movie.h"
#include "client/stream/packetizer.h"

namespace vexel::client {

class Feed {
 public:
  // The movie is not owned; more of it may come in.
  explicit Feed(const GrowingMovie* movie) : movie_(movie) {}
  virtual ~Feed() = default;

  // What the plug-in is told before the packets.
  virtual StreamHeader Header() const = 0;
  // Whether the plug-in can ask for what was lost, and what it asks for.
  virtual bool resends() const { return false; }
  virtual void Request(std::span<const uint8_t>) {}

  // Hands over what is there and due. To be called often.
  virtual void Run() = 0;
  // What belongs to this place is still on its way: the clock must not go on.
  virtual bool Waits(uint32_t position) const = 0;
  // Of what is waited for, so much is here.
  virtual int percent() const = 0;
  // All packets are handed over or given up. A jump may begin anew.
  virtual bool ended() const = 0;
  // The clock has jumped.
  virtual void JumpTo(uint32_t) {}

  // At the movie's end the clock is to be set back for another round, which no
  // movie of a stream begins by itself. Not so if it steers itself: it may stand
  // somewhere, and wait for its user.
  virtual bool goesRound() const = 0;

  // Frames that the clock can go to, and all of them.
  size_t framesIn() const { return movie_->framesIn(); }
  size_t frames() const { return movie_->frames(); }
  // When a frame is due, milliseconds, and which one is at a time.
  virtual uint32_t DueTime(size_t frame) const { return movie_->DueTime(frame); }
  virtual size_t FrameDueAt(uint32_t time) const { return movie_->FrameDueAt(time); }

 protected:
  const GrowingMovie& movie() const { return *movie_; }

 private:
  const GrowingMovie* movie_;
};

}  // namespace vexel::client
