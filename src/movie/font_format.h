// The flags of a font of the second form (tag 48), and how far a glyph's square
// is scaled.
#pragma once

#include <cstdint>

namespace vexel {

inline constexpr uint16_t kFontBold = 0x0001;
inline constexpr uint16_t kFontItalic = 0x0002;
inline constexpr uint16_t kFontWideCodes = 0x0004;    // codes of 16 bits, else 8
inline constexpr uint16_t kFontWideOffsets = 0x0008;  // offsets of 32 bits, else 16
inline constexpr uint16_t kFontShiftJIS = 0x0040;

// Of the flags byte in a font's separate information record.
inline constexpr uint8_t kFontInfoBold = 0x02;
inline constexpr uint8_t kFontInfoItalic = 0x04;

// Glyphs are designed on a square of 1024 units: a height times 64 is their
// scale in 16.16.
inline constexpr int32_t kHeightToScale = 64;

}  // namespace vexel
