// From curves to edges: the one way in which fills and strokes make a curve fit
// for the rasterizer, whose edges run downward, are monotonic in y, at most 256
// device units high if they are curves, and live in 16 bits.
#pragma once

#include <cstdint>

#include "geometry/curve.h"
#include "movie/fwd.h"

namespace vexel {

// Where new edges go, and what they carry beside their points.
struct EdgeTarget {
  DisplayList* display;  // whose pool they come from
  REdge** list;          // they are pushed on its head
  RColor* color1;        // either may be null
  RColor* color2;
  uint8_t fillRule;  // FillRule
  bool preclip;      // the curves may leave 16 bits: test each
};

// Adds the edges of a curve in device units. What is horizontal, out of sight
// (with preclip), or beyond the pool's memory adds none. `depth` counts the
// divisions that are under way; callers start it at 0 and leave it alone.
// Required: it stays raised after a curve that would need more than 16
// divisions, so that what follows is divided less.
void AddCurveEdges(const CURVE* curve, const EdgeTarget& target, int32_t* depth);

// Adds one edge as it is: `c` runs downward, `dir` is 1 or -1. Points are held
// to 16 bits; an edge that no longer runs downward then is dropped.
void StoreEdge(const CURVE* c, int8_t dir, const EdgeTarget& target);

// Makes `c`, which runs downward, a vertical line at x from -32000 to 32000 at
// most: what stands for an outline far to the side, and keeps its winding.
void MakeVertLine(CURVE* c, SCOORD x);

}  // namespace vexel
