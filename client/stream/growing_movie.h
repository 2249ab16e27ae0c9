// A movie file whose bytes come one after another: it finds the ends of the
// frames as they arrive, and makes packets of whole frames, so that a movie plays
// while the rest of it is still on its way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "client/stream/packetizer.h"

namespace vexel::client {

class GrowingMovie {
 public:
  // More of the file. Throws std::runtime_error, with a text for people, for
  // bytes that are no movie, and for a movie that packets cannot describe. What
  // follows the declared length is passed over.
  void Append(std::span<const uint8_t> bytes);
  // No more will come. Throws as Append does if there was not even a head.
  void Finish();

  // Whether head() and the numbers below are known.
  bool ready() const { return headSize_ != 0; }
  bool finished() const { return finished_; }
  // Whether all of the declared length is here.
  bool complete() const { return ready() && bytes_.size() == length_; }
  // Everything in front of the first tag.
  std::span<const uint8_t> head() const { return std::span(bytes_).first(headSize_); }
  // Frames in whole, those handed out included.
  size_t framesIn() const { return framesIn_; }
  // All frames: as the head declares until the file is finished.
  size_t frames() const { return finished_ ? framesIn_ : declaredFrames_; }
  // When a frame is due, milliseconds from the beginning, rounded up, so that
  // the frame that is due at this time is this one.
  uint32_t DueTime(size_t frame) const;
  uint32_t duration() const { return DueTime(frames()); }
  size_t FrameDueAt(uint32_t time) const;
  // Of the file, percent.
  int percent() const;

  // All frames that have come in whole since the last call, in one packet: a
  // movie that is here as a whole can call any of its frames from the first on.
  std::optional<StreamPacket> TakePacket();
  // The file as far as it is here.
  const std::vector<uint8_t>& bytes() const { return bytes_; }

 private:
  bool ReadHead();
  void ReadTags();
  void EndFrame(size_t end);

  std::vector<uint8_t> bytes_;
  size_t length_ = 0;    // declared, bytes
  size_t headSize_ = 0;  // 0: not known yet
  uint32_t rate_ = 0;    // whole frames a second, as the player counts
  size_t declaredFrames_ = 0;
  size_t framesIn_ = 0;
  size_t framesOut_ = 0;     // handed out ...
  size_t bytesOut_ = 0;      // ... and where they end
  size_t frameBegin_ = 0;    // of the frame that is being read
  size_t tagAt_ = 0;         // the tag that is looked at next
  bool frameEnded_ = false;  // its end tag is read; what follows may still belong to it
  bool ended_ = false;       // the movie's end tag is read
  bool finished_ = false;
};

}  // namespace vexel::client
