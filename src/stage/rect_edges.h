// Rectangles as edges: the focus frame, and borders, selections and cursors of
// text fields.
#pragma once

#include "geometry/matrix.h"
#include "movie/fwd.h"

namespace vexel {

// Adds the outline of `r` under `m`. With a stroker, which has its list and
// display itself, as a line one device unit wide; without one as an area in
// `color`, its edges from the display's pool on the head of `*list`. The area
// is not tested against the 16 bits of an edge: its points are held to them.
void AddRect(const SRECT* r, const MATRIX* m, RColor* color, DisplayList* display, REdge** list,
             SStroker* stroker);

// One side of it, from a to b in device units; the stroke has been begun.
void AddRectEdge(const SPOINT* a, const SPOINT* b, RColor* color, DisplayList* display,
                 REdge** list, SStroker* stroker);

}  // namespace vexel
