// PNG by libpng, with no alpha.
#pragma once

#include <cstdio>
#include <string>

#include "raster/bit_buffer.h"

namespace vexel::tools {

// Writes the buffer in 8-bit RGB, the colours as the rasterizer reads them
// back from its format. `path` is for messages only. Throws Failure.
void WritePng(CBitBuffer* bits, const std::string& path, std::FILE* stream);

}  // namespace vexel::tools
