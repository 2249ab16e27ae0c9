// Writing a buffer as a picture, `.png` or `.raw`.
#pragma once

#include <string>

#include "picture_kind.h"
#include "raster/bit_buffer.h"

namespace vexel::tools {

// Writes an RGB picture of the buffer (.png), or its rows as they stand in
// memory from the top, rowBytes bytes each (.raw). The kind must be one of the
// two. Throws Failure, and leaves no half-written file.
void WritePicture(CBitBuffer* bits, const std::string& path);

}  // namespace vexel::tools
