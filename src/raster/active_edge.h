// An edge that crosses the current scanline, and how it moves on to the next:
// lines by a constant step, curves by forward differences along their parameter.
#pragma once

#include <cstdint>

#include "geometry/intmath.h"

namespace vexel {

class CRaster;
struct RActiveEdge;
struct RColor;
struct REdge;

// Moves the edge on to scanline y and sets its x there.
using StepProc = void (*)(RActiveEdge* edge, int32_t y);
// Switches the edge's colours on or off at its x.
using DoEdgeProc = void (*)(CRaster* raster, RActiveEdge* edge);

struct RActiveEdge {
  RActiveEdge* next;  // in ascending x
  RActiveEdge* prev;
  int32_t x;      // where the scanline meets the edge, device units, rounded
  int32_t ymax;   // the edge ends before this scanline
  int32_t xStep;  // line: change of x a scanline, 16.16; curve: see SetUp
  int32_t yStep;
  int32_t xStepStep;
  int32_t yStepStep;
  int32_t xl;  // current position, 16.16
  int32_t yl;
  int32_t t;  // curve steps left
  RColor* color1;
  RColor* color2;
  int8_t dir;
  DoEdgeProc doEdgeProc;
  StepProc stepProc;

  // Prepares the edge for scanline y, at or below its start. `interpolate`
  // makes a curve's x exact for the scanline, which a raster without
  // anti-aliasing needs. False, with nothing usable set, if the edge does not
  // end below its start.
  [[nodiscard]] bool SetUp(const REdge* e, int32_t y, bool interpolate);
};

// Required: StepLine goes on by exactly one scanline, whatever y is.
void StepLine(RActiveEdge* edge, int32_t y);
// Goes on until the curve has reached y. Each call may pass it by a step, which
// a quarter-pixel grid is fine enough to bear.
void StepCurve(RActiveEdge* edge, int32_t y);
// The same, with the overshoot taken back from x.
void StepCurveInterpolate(RActiveEdge* edge, int32_t y);

// The rule functions, by FillRule in doEdgeProcs. A null colour is passed over.
void DoEdgeEdgeRule(CRaster* raster, RActiveEdge* edge);
void DoEdgeEvenOddRule(CRaster* raster, RActiveEdge* edge);
void DoEdgeWindingRule(CRaster* raster, RActiveEdge* edge);
extern const DoEdgeProc doEdgeProcs[3];

}  // namespace vexel
