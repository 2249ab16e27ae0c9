// Makes the font record of a movie from a font file.
#pragma once

#include <span>

#include "author/font.h"
#include "author/fonts/font_file.h"
#include "author/outline.h"

namespace vexel::author {

struct WantedGlyph {
  uint32_t character = 0;  // Unicode
  uint16_t code = 0;       // what the record lists it by
};

struct EmbedOptions {
  // A quadratic stays within this of the cubic it stands for, and a contour
  // that had to be drawn anew within this of the old one; in units of the
  // square. Rounding to whole units then moves a point by half a unit each way.
  double tolerance = 0.25;
  // Characters that the font lacks get an empty glyph as wide as its blank;
  // else they are left out.
  bool keepMissing = false;
  // Bytes that bounds and kerning may take together; of the pairs those that
  // move least are dropped first.
  size_t maxBehind = 65536;
};

struct Embedded {
  Font font;                      // glyphs in ascending codes, with layout, bounds and kerning
  std::vector<uint32_t> missing;  // characters that the font lacks, ascending codes
  // Glyphs too intricate to have their overlapping contours made one: where
  // they overlap, there are holes.
  size_t holed = 0;
};

// The name is the family's and can be changed afterwards; so can the lines'
// measures. Each code counts once, the first time. Codes and offsets are wide
// where they must be. Throws FontError if a glyph is damaged or the record
// would be of no sensible size or take more than some seconds to make.
Embedded EmbedFont(const FontFile& file, std::span<const WantedGlyph> wanted,
                   const EmbedOptions& options = {});

}  // namespace vexel::author
