// Attribute values of SVG: path data, transform lists, points, colours, lengths.
// The grammars of paths, transforms and colours are those of SVG++; this is the
// only source that sees them, since they are slow to compile.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "author/vector_path.h"

namespace vexel::author {

// Appends path data to `out`, arcs as cubics. False if the data is malformed;
// `out` then holds what stood before the mistake, as viewers draw it.
bool ParsePathData(std::string_view text, VectorPath* out);

// The points of a polygon or polyline; an odd coordinate at the end is dropped.
std::vector<Vec2> ParsePoints(std::string_view text);

// False, and `out` as it was, for a malformed list.
bool ParseTransform(std::string_view text, Affine* out);

struct SvgColor {
  uint8_t red = 0, green = 0, blue = 0;
  double alpha = 1;
};

// A named colour, "transparent", #rgb, #rgba, #rrggbb, #rrggbbaa, rgb(), rgba(),
// hsl(), hsla(). False for anything else, "currentColor" too.
bool ParseColor(std::string_view text, SvgColor* out);

// Reference values for relative lengths, in user units.
struct LengthBase {
  double percent = 100;  // what 100% stands for
  double fontSize = 16;  // what 1em stands for
};

// A number with a unit, in user units (pixels at 96 to the inch). False for what
// is no length, and for what is not finite.
bool ParseLength(std::string_view text, const LengthBase& base, double* out);

// All numbers in a list separated by blanks and commas; stops at what is none.
std::vector<double> ParseNumbers(std::string_view text);

// A plain number or a percentage (100% is 1).
bool ParseFraction(std::string_view text, double* out);

std::string_view Trim(std::string_view text);

}  // namespace vexel::author
