// Palettes, and the inverse tables that find the nearest palette entry of a
// colour without a search: red, green and blue, cut to 4 bits each, index a
// table of 4096 palette indexes.
#pragma once

#include <cstdint>

namespace vexel {

// A palette entry: 0xAARRGGBB, premultiplied, so blue is first in memory.
using RGB8 = uint32_t;

constexpr uint32_t AlphaOf(RGB8 c) {
  return c >> 24;
}
constexpr uint32_t RedOf(RGB8 c) {
  return c >> 16 & 255;
}
constexpr uint32_t GreenOf(RGB8 c) {
  return c >> 8 & 255;
}
constexpr uint32_t BlueOf(RGB8 c) {
  return c & 255;
}

inline constexpr int32_t kMaxColors = 256;
inline constexpr int32_t kInverseTableSize = 4096;

// A palette. Made empty and black.
struct SColorTable {
  int32_t n = 0;  // entries that count, 0 to 256
  RGB8 colors[kMaxColors] = {};
};

// Whether the counts and the red, green and blue of each counted entry are the
// same. Alpha is not compared.
bool ColorTableEqual(const SColorTable* a, const SColorTable* b);

// Copies the count and that many entries; entries of `dst` behind them stay.
void ColorTableCopy(const SColorTable* src, SColorTable* dst);

// The 216 colours of 6 levels a channel (0, 51 ... 255), red changing fastest
// and blue slowest. The alpha bytes are left as they were.
void SetStandardColors(SColorTable* table);

// The cell of an inverse table for 4 bits a channel.
constexpr int32_t InverseTableCell(int32_t r4, int32_t g4, int32_t b4) {
  return r4 << 8 | g4 << 4 | b4;
}

// Fills itab[4096] with the palette index nearest to each cell, up to the
// distance that 13 growing rounds reach. Cells that no entry reaches (an empty
// palette) stay as they were.
void BuildInverseTable(const SColorTable* table, uint8_t* itab);

// The state while an inverse table is filled.
struct ITabBuilder {
  uint8_t* itab;                    // the table in hand, 4096 bytes, not owned
  uint8_t dist[kInverseTableSize];  // best distance so far, 255 for unset
  int32_t remaining;                // cells still unset

  explicit ITabBuilder(uint8_t* itab);

  // Offers the palette entry `index` of that colour to all cells whose
  // channels lie within `radius` of its own cell's.
  void FillCube(RGB8 color, uint8_t index, int32_t radius);
};

// A palette with its inverse table, shared by reference count between those
// who use an equal palette. Single-threaded.
struct SColorInfo {
  SColorInfo* next = nullptr;  // in the list of shared palettes
  int32_t refCount = 1;
  SColorTable ctab;
  uint8_t itab[kInverseTableSize] = {};  // see InverseTableCell
};

// The head of the list of shared palettes.
extern SColorInfo* firstColorInfo;

// A new unshared palette with a copy of `table`, its inverse table built and
// refCount 1; null without memory. Release with ReleaseColorInfo.
SColorInfo* CreateColorInfo(const SColorTable* table);

// The shared palette equal to `table`, made if there is none yet; null without
// memory. The caller holds one reference.
SColorInfo* GetColorInfo(const SColorTable* table);

// Gives one reference back; the last one deletes. Null is passed over.
void ReleaseColorInfo(SColorInfo* info);

}  // namespace vexel
