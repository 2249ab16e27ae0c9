// The font that a field draws with, as found from its record.
#pragma once

#include <cstdint>

#include "movie/fwd.h"

namespace vexel {

inline constexpr uint16_t kNoGlyph = 0xFFFF;

// Units of a font's square: advances, ascent and descent are in 1024ths of the
// height.
inline constexpr int32_t kFontSquare = 1024;

struct FontDesc {
  char fontName[256] = {};  // zero-terminated
  int32_t fontHeight = 0;   // twentieths
  bool bold = false;
  bool italic = false;
  bool shiftJIS = false;
  SCharacter* font = nullptr;    // borrowed from its movie; null when it can't be found
  int32_t codeTableOffset = -1;  // of the code table in the font's data, or -1

  // The glyph of `code`, or kNoGlyph. Codes ascend in a sound font; in any
  // other some glyphs are not found.
  uint16_t FindGlyph(uint16_t code) const;
  // The same for each of `count` characters: a new array for delete[]; null
  // for none and without memory.
  uint16_t* FindGlyphs(const uint16_t* text, int32_t count) const;
  // In units of the font's square; 0 where its record has no layout.
  int32_t Ascent() const;
  int32_t Descent() const;
  int32_t Advance(uint16_t glyph) const;
};

}  // namespace vexel
