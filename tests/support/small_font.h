// Font files of a few glyphs, written here, so that tests know every number in
// them.
#pragma once

#include <string>
#include <vector>

#include "author/types.h"

namespace vexel::test {

// In the font's units, y upward.
struct FontPoint {
  int x = 0;
  int y = 0;
  bool on = true;  // else a control point of a quadratic
};

// TrueType: points around the contour. OpenType: the start, then three points
// for each cubic, the last of them at the start again.
using FontContour = std::vector<FontPoint>;

struct SmallGlyph {
  uint32_t character = 0;
  int advance = 0;
  std::vector<FontContour> contours{};
  std::vector<uint16_t> parts{};  // indexes of glyphs, from 1, in place of contours; TrueType alone
};

struct SmallPair {
  uint16_t left = 0;  // indexes of glyphs, from 1
  uint16_t right = 0;
  int16_t by = 0;
};

struct SmallFont {
  std::string family = "Small";
  int unitsPerEm = 1000;
  int ascent = 800;
  int descent = -200;
  int lineGap = 90;
  bool bold = false;
  bool italic = false;
  std::vector<SmallGlyph> glyphs{};  // ascending characters; glyph 0, an empty one, comes by itself
  std::vector<SmallPair> kerning{};
};

author::Bytes TrueTypeFile(const SmallFont& font);
author::Bytes OpenTypeFile(const SmallFont& font);

// A closed contour of lines, clockwise with y upward: the direction that
// TrueType fills.
FontContour SquareContour(int x, int y, int width, int height);
// A circle of four cubics, for OpenType.
FontContour CubicCircle(int x, int y, int radius);

}  // namespace vexel::test
