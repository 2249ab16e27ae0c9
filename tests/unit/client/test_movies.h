// Movies for the tests of streams.
#pragma once

#include "author/movie_writer.h"
#include "support/random_movie.h"

namespace vexel::client {

// `frames` frames of some bytes each, and an end tag.
inline author::Bytes FramesOf(const std::vector<size_t>& filler, double rate = 10) {
  author::MovieWriter movie(100, 80, rate);
  for (const size_t size : filler) {
    if (size > 0) movie.Tag(999, author::Bytes(size, 7));
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

}  // namespace vexel::client
