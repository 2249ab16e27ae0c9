// An edge as the stage builds it and the rasterizer paints it.
#pragma once

#include <cstdint>

namespace vexel {

struct RColor;

// A point of an edge in device units: pixels, or quarter-pixels when the
// raster anti-aliases. 16 bits keep an edge within a cache line.
struct REdgePoint {
  int16_t x;
  int16_t y;
};

// Values of REdge::fillRule: how crossing the edge changes what is on.
enum FillRule : uint8_t {
  ruleEdgeEdge = 0,  // toggles color1 and color2, a fill on each side of the edge
  ruleEvenOdd = 1,   // toggles color1
  ruleWinding = 2,   // counts color1 up or down by dir; on while the count isn't 0
};
inline constexpr int32_t kFillRuleCount = 3;

// A line or a quadratic curve, monotonic in y. Whoever builds an edge owns it
// and drops those that end above or at the y they start from; the rasterizer
// only links it through nextActive, until the paint ends. Either colour may be
// null.
struct REdge {
  REdge* next;        // of the object's list
  REdge* nextActive;  // in the same scanline bucket
  RColor* color1;
  RColor* color2;
  REdgePoint anchor1;  // the upper end
  REdgePoint control;  // of a curve; a line's is not read
  REdgePoint anchor2;
  bool isLine;
  uint8_t fillRule;  // FillRule
  int8_t dir;        // +1 or -1, the direction of the outline, for ruleWinding
};

}  // namespace vexel
