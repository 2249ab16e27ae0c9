// A movie that shows a font, and carries it for others to take.
#pragma once

#include "author/font.h"

namespace vexel::author {

// The font is character 1. Its glyphs stand in rows, in the order of their
// codes, as text of 24 pixels, on a stage as high as they need: one frame.
Bytes SpecimenMovie(const Font& font);

}  // namespace vexel::author
