// Fonts of both forms, and the record that names a font of the first form.
#pragma once

#include "author/shape_builder.h"

namespace vexel::author {

// Outlines lie on a square of 1024 units, y downward, the pen at the baseline;
// glyphs select fill 1.
struct Glyph {
  uint16_t code = 0;
  int16_t advance = 0;  // in the units of the square
  std::vector<ShapeRecord> outline;
  int fillBits = 1;
  int lineBits = 0;
};

enum FontFlags : uint16_t {
  kFontBold = 0x0001,
  kFontItalic = 0x0002,
  kFontWideCodes = 0x0004,
  kFontWideOffsets = 0x0008,
  kFontAnsi = 0x0010,
  kFontShiftJIS = 0x0040,
  kFontHasLayout = 0x0080,
};

struct Font {
  std::string name;
  uint16_t flags = kFontAnsi;  // wide codes and layout decide what is written
  std::vector<Glyph> glyphs;   // second form: ascending codes, so that they can be searched
  int16_t ascent = 0;
  int16_t descent = 0;
  int16_t leading = 0;
  Bytes behind;  // what follows the advances (bounds and kerning); players pass it over

  // Index of a code, or kAuto.
  int Find(uint32_t code) const;
  // Sum of the advances of a text, in the units of the square.
  int32_t Width(std::string_view text) const;
};

// First form: offsets (16 bits) and shapes.
void WriteFont(BitWriter& out, const Font& font);
// Second form, behind the id: flags to layout block.
void WriteFont2(BitWriter& out, const Font& font);
// Name, flags byte (0x02 bold, 0x04 italic) and code table, behind the id.
void WriteFontInfo(BitWriter& out, const Font& font, uint8_t flags, bool wideCodes);

// Two characters that stand closer together, or farther apart, than their
// advances say.
struct KerningPair {
  uint16_t left = 0;  // codes
  uint16_t right = 0;
  int16_t adjustment = 0;  // added to the left one's advance, in the units of the square
};

// For Font::behind: the bounds of each glyph, control points included, and the
// pairs. Players pass over it, other readers of movies lay out text by it.
Bytes BoundsAndKerning(const Font& font, std::span<const KerningPair> pairs);

// A plain font of squares, for digits, letters and a few signs, for
// demos and tests: no outline of it comes from anywhere else.
Font BlockFont(std::string name);

}  // namespace vexel::author
