// Colours as files write them, made into what fills an area: the one way for
// fills, lines and texts.
#pragma once

#include "geometry/color.h"
#include "movie/fwd.h"
#include "raster/color_transform.h"

namespace vexel {

// Makes `color` plain `rgb` (not premultiplied, channels 0 to 255) under
// `cxform`: premultiplied, and marked as transparent, if its alpha is below 255
// then. The caller builds the cache.
void SetSolidColor(RColor* color, RGBI rgb, const ColorTransform& cxform);

}  // namespace vexel
