// A movie file as a source of streams sees it: where its tags and frames begin.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vexel::client {

struct MovieTag {
  int32_t code;
  size_t begin;  // of the header, bytes from the file's start
  size_t body;
  size_t end;
};

// The bytes are copied. What follows the declared length is cut off.
class MovieIndex {
 public:
  // Throws std::runtime_error for bytes that are no movie, or hold no tag.
  explicit MovieIndex(std::span<const uint8_t> file);

  std::span<const uint8_t> bytes() const { return bytes_; }
  std::span<const uint8_t> Slice(size_t begin, size_t end) const {
    return bytes().subspan(begin, end - begin);
  }
  // Up to the first tag: signature, rectangle, rate and frame count.
  std::span<const uint8_t> head() const { return Slice(0, bounds_[0]); }

  // The root timeline's tags, up to and including the end tag. A tag that
  // overruns the file is left out.
  const std::vector<MovieTag>& tags() const { return tags_; }

  // Frame k lies in [bounds[k], bounds[k + 1]): it ends behind its end-of-frame
  // tag, the last one with the file.
  const std::vector<size_t>& bounds() const { return bounds_; }
  size_t frames() const { return bounds_.size() - 1; }
  // The frame that a position lies in; the last one for the file's end.
  size_t FrameAt(size_t position) const;

  // The file holds less than it declares, or no end tag.
  bool endsEarly() const { return endsEarly_; }

  // When a frame is due, and how long the movie is, milliseconds.
  uint32_t DueTime(size_t frame) const;
  uint32_t duration() const { return DueTime(frames()); }
  // The frame that is due at a time.
  size_t FrameDueAt(uint32_t time) const;

 private:
  std::vector<uint8_t> bytes_;
  std::vector<MovieTag> tags_;
  std::vector<size_t> bounds_;
  bool endsEarly_ = false;
  uint32_t rate_ = 0;  // frames a second, 8.8 fixed point, not 0
};

}  // namespace vexel::client
