#include "client/stream/movie_index.h"

#include <algorithm>
#include <stdexcept>

#include "author/check/tag_reader.h"
#include "movie/tags.h"

namespace vexel::client {

namespace {

constexpr size_t kFileHead = 8;
constexpr uint32_t kLongForm = 63;  // in the length field of a tag's header
constexpr uint32_t kRateOne = 256;  // one frame a second
// Movies that say 0 frames a second are given this many, 8.8.
constexpr uint32_t kRateForNone = 12 * kRateOne;

}  // namespace

MovieIndex::MovieIndex(std::span<const uint8_t> file) {
  size_t declared = 0;
  try {
    author::TagReader head(file, 0);
    const auto signature = head.Take(3);
    if (!std::equal(signature.begin(), signature.end(), "VXF"))
      throw std::runtime_error("is no movie");
    head.U8();
    const uint32_t length = head.U32();
    if (length < kFileHead) throw std::runtime_error("is no movie: its length is too small");
    declared = length;
    bytes_.assign(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(
                                                   std::min<size_t>(file.size(), length)));
    author::TagReader reader(bytes_, 0);
    reader.Take(kFileHead);
    reader.Rect();
    rate_ = reader.U16();
    reader.U16();
    bounds_.push_back(reader.pos());
    if (rate_ == 0) rate_ = kRateForNone;

    for (int32_t code = kTagFrameEnd; code != kTagEnd && reader.left() >= 2;) {
      const size_t begin = reader.pos();
      const uint32_t word = reader.U16();
      code = static_cast<int32_t>(word >> 6);
      uint32_t size = word & kLongForm;
      if (size == kLongForm) size = reader.U32();
      if (size > reader.left()) break;
      const size_t body = reader.pos();
      reader.Take(size);
      tags_.push_back({code, begin, body, reader.pos()});
      if (code == kTagFrameEnd) bounds_.push_back(reader.pos());
    }
  } catch (const author::CutShort&) {
    if (bounds_.empty()) throw std::runtime_error("is no movie: it ends in its head");
    // Otherwise the last tag's header is cut short.
  }
  const bool ended = !tags_.empty() && tags_.back().code == kTagEnd;
  endsEarly_ = !ended || bytes_.size() < declared;
  if (bytes_.size() == bounds_[0]) throw std::runtime_error("holds no tags");
  // The last frame takes what follows it; a movie without a frame's end is one.
  if (bounds_.size() == 1) bounds_.push_back(0);
  bounds_.back() = bytes_.size();
}

size_t MovieIndex::FrameAt(size_t position) const {
  const auto next = std::upper_bound(bounds_.begin(), bounds_.end(), position);
  const size_t frame = static_cast<size_t>(std::max<std::ptrdiff_t>(next - bounds_.begin() - 1, 0));
  return std::min(frame, frames() - 1);
}

uint32_t MovieIndex::DueTime(size_t frame) const {
  const uint64_t time = uint64_t{frame} * 1000 * kRateOne / rate_;
  return static_cast<uint32_t>(std::min<uint64_t>(time, UINT32_MAX - 1));
}

size_t MovieIndex::FrameDueAt(uint32_t time) const {
  size_t frame = static_cast<size_t>(uint64_t{time} * rate_ / (1000 * kRateOne));
  // Due times are rounded down, so the next frame may be due already.
  while (frame + 1 < frames() && DueTime(frame + 1) <= time) frame++;
  return std::min(frame, frames() - 1);
}

}  // namespace vexel::client
