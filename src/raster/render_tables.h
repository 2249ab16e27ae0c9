// Tables shared by all rasters, built once by the first.
#pragma once

#include <cstdint>

namespace vexel {

extern bool renderTablesBuilt;

// [x][y], position in a pixel in eighths: the weights of the pixels (0, 0),
// (1, 0), (0, 1) and (1, 1) in a bilinear sample, 8 in all.
extern int32_t PixCoverage[8][8][4];

// i squared, at most 65535, for radii in a gradient.
inline constexpr int32_t kSquareEntries = 258;
extern uint16_t squareTable[kSquareEntries];

// The whole part of the square root of i. Padded, so that four bytes can be read
// at any entry.
inline constexpr int32_t kRootEntries = 65536;
extern uint8_t rootTable[kRootEntries + 4];

// Sets renderTablesBuilt and fills all three.
void BuildRenderTables();

}  // namespace vexel
