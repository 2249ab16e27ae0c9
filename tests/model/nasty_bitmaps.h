// Random bitmap tags: lossless in all formats, JPEG in its three forms.
#pragma once

#include "movie_bits.h"

namespace vexel::model {

// Adds a bitmap character; may add the tag of shared JPEG tables before it.
void AddBitmap(Random& r, Writer& movie, int id, bool* tablesWritten);

}  // namespace vexel::model
