// A movie file in memory, looked over before it is played: its header, its
// tags, and where it ends early.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vexel::tools {

struct MovieFile {
  std::string path;
  std::vector<uint8_t> bytes;  // no more than the declared length

  int version = 0;
  uint32_t length = 0;  // declared, bytes
  int32_t width = 0;    // of the frame rectangle in pixels, truncated toward zero
  int32_t height = 0;
  uint32_t rate = 0;  // frames a second in 8.8 fixed point
  int32_t frames = 0;

  uint32_t tagCount = 0;                  // root timeline, the end tag too
  std::map<int32_t, uint32_t> tagCounts;  // by code

  // Why the movie ends before its end tag or its declared length; empty if it
  // does not. Such a movie plays as far as it came.
  std::string endsEarly;
};

// Reads and looks over a movie. Throws Failure for a file that cannot be read
// or is no movie.
MovieFile LoadMovie(const std::string& path);

// Warns of a movie that ends early.
void WarnIfEndsEarly(const MovieFile& movie);

}  // namespace vexel::tools
