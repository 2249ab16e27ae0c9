// How well a movie was played, for whoever makes movies or players.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vexel::client {

class PlayStatistics {
 public:
  // Times count from here: real ones, and those that the process computes.
  PlayStatistics();

  // The movie is brought to the frame that is due by the clock; frames since
  // the call before were due, too, and passed over.
  void Show(size_t frame);
  // The clock goes to another place: what lies between is not due.
  void Jump() { last_ = kNone; }

  uint64_t due() const { return due_; }
  uint64_t shown() const { return shown_; }
  // One line: "10.2 s, 245 frames due, 244 shown, 240 pictures, 0.51 s of
  // processor time (5.0 %)". `pictures` went to the screen: a frame that
  // changes nothing needs none, the pointer may cause more.
  std::string Line(uint64_t pictures) const;

 private:
  static constexpr size_t kNone = SIZE_MAX;

  size_t last_ = kNone;
  uint64_t due_ = 0, shown_ = 0;
  int64_t startUs_, startProcessorUs_;
};

}  // namespace vexel::client
