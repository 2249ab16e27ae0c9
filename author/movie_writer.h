// A whole movie: header and tags.
#pragma once

#include "author/tag_stream.h"

namespace vexel::author {

// What a header says of the movie, where it is to differ from the truth.
struct HeaderForm {
  int frameCount = kAuto;          // 0 to 65535
  int64_t declaredLength = kAuto;  // bytes, the eight of the header included
  int rectBits = kAuto;
  Bytes signature = {'V', 'X', 'F'};
};

class MovieWriter : public TagStream {
 public:
  // Size in pixels, the corner at 0, 0; rate in frames a second.
  MovieWriter(int width, int height, double rate = 12);
  // Any rectangle, and the rate in 8.8.
  MovieWriter(const Rect& frame, uint16_t rate, uint8_t version = 4);

  HeaderForm& header() { return header_; }
  // The bytes of the movie as it stands. An end tag is the caller's business.
  Bytes Finish() const;

 private:
  Rect frame_;
  uint16_t rate_;
  uint8_t version_;
  HeaderForm header_;
};

// Writes bytes to a file; false if that fails.
bool WriteFile(const std::string& path, std::span<const uint8_t> bytes);

}  // namespace vexel::author
