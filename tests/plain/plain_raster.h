// A second rasterizer, plain and slow: the twin that src/raster is held to,
// byte by byte. It walks every sub-scanline and splits every run as the
// arithmetic of a picture is defined, with no shortcut, and shares no drawing
// code with the fast one but the routines of pixel formats and the copying
// routines, which have twins of their own.
#pragma once

#include "raster/raster.h"

namespace vexel::plain {

// Paints what was added to the raster, as CRaster::PaintBits does.
void PaintBits(CRaster* raster);

}  // namespace vexel::plain
