// The colour of a mask.
#pragma once

#include "movie/fwd.h"

namespace vexel {

// A clip colour of order 0 at the head of `*list`, which owns it; null, the list
// unchanged, if there is no memory.
RColor* CreateClipColor(DisplayList* display, RColor** list);

// The stage's rasterizer for the caches of new colours; null while it has no
// target, as no cache can be built then.
CRaster* RasterForCaches(DisplayList* display);

}  // namespace vexel
