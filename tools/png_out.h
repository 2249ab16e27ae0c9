// PNG by libpng, with no alpha.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "raster/bit_buffer.h"

namespace vexel::tools {

// The buffer's colours as the rasterizer reads them back from its format, 8-bit
// red, green, blue, rows from the top without gaps.
std::vector<uint8_t> RgbOf(CBitBuffer* bits);

// Writes these colours. `path` is for messages only. Throws Failure.
void WritePng(CBitBuffer* bits, const std::string& path, std::FILE* stream);

}  // namespace vexel::tools
