// Photographs for demos: JPEG files of a package, cut and scaled to the size
// that a movie shows them in.
#pragma once

#include <cstdint>
#include <string>

#include "author/bitmap.h"

namespace demo {

// Reads the JPEG file at `path` and scales it down to cover `width` by `height`
// pixels; of what is too much in one direction, the part `place` of the way
// from the left or the top (0 to 1, 0.5 the middle) is cut off there and the
// rest at the other end. Enlarges nothing. False with a cause in `error`.
bool ReadPhoto(const std::string& path, uint16_t width, uint16_t height, double place,
               vexel::author::Picture* out, std::string* error);

}  // namespace demo
