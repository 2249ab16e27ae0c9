// Seeded movies for sweeps: valid, small, and made of all that draws.
#pragma once

#include <cstdint>

#include "author/types.h"

namespace vexel::author {

struct RandomMovieOptions {
  bool text = true;      // static text in a font of the movie
  bool buttons = true;   // of both forms, idle
  bool fields = false;   // editable text, mostly in the movie's own outlines
  bool actions = false;  // play, stop, go to, variables and properties
  int maxFrames = 8;     // of the root timeline, at least 1
};

// The same seed and options give the same bytes everywhere. Pictures are 60 to
// 240 pixels wide and 40 to 160 high; the movie has 1 to maxFrames frames and
// ends in an end tag.
Bytes RandomMovie(uint32_t seed, const RandomMovieOptions& options = {});

}  // namespace vexel::author
