// Turns paths into closed outlines: each segment gives two offset curves, joined
// to those of the segment before, and the whole stroke is one boundary with a
// winding number other than 0 inside. Thin lines are the curve itself shifted by
// whole units, so that hairlines stay crisp without anti-aliasing; thick ones
// have normals, round joins and round caps.
//
// "Left" and "right" only name the two sides: left is where the offset is added.
#pragma once

#include <cstdint>

#include "geometry/curve.h"
#include "movie/fwd.h"

namespace vexel {

// BeginStroke, any number of AddStrokeCurve, EndStroke; and again for the next
// path. All coordinates are device units.
class SStroker {
 public:
  // Edges come from the display's pool and go to the head of `*edges`. The
  // maker sets `antialias` and `preclip`.
  SStroker(DisplayList* stage, REdge** edges) : display(stage), edgeList(edges) {}

  // Starts a path. The thinnest line is a pixel wide: 1 unit, or 4 with
  // antialias; a width below that is raised to it. `color` may be null.
  void BeginStroke(int32_t thickness, RColor* color);
  // The next segment; one without any extent adds nothing.
  void AddStrokeCurve(const CURVE* c);
  // Closes the outline: by a join if the path ends where it began, else by caps.
  void EndStroke();

  bool antialias = false;  // device units are quarter-pixels
  bool preclip = false;    // curves may leave 16 bits
  DisplayList* display;
  REdge** edgeList;
  RColor* color = nullptr;
  bool thick = false;
  int32_t lineThickness = 0;
  bool started = false;  // this path has a segment
  // Divisions under way, in AddCurve and in StrokeThickCurve together.
  // Required: it is not reset from path to path.
  int32_t depth = 0;
  SPOINT startLeft = {0, 0};  // where the path began
  SPOINT startPoint = {0, 0};
  SPOINT startRight = {0, 0};
  SPOINT prevLeft = {0, 0};  // where its last segment ended
  SPOINT prevPoint = {0, 0};
  SPOINT prevRight = {0, 0};
  SPOINT lastPoint = {kInt32Min, 0};  // end of the last curve given; x of kInt32Min: none

 private:
  void StrokeThinLine(const CURVE* c);
  void StrokeThinCurve(const CURVE* c, int32_t level);
  void StrokeThickCurve(const CURVE* c);
  void StrokeJoin(const SPOINT* a, const SPOINT* b, const SPOINT* center);
  void StrokeDot();
  void JoinThin(const SPOINT& l1, const SPOINT& l2, const SPOINT& r1, const SPOINT& r2,
                const CURVE* c);
  void AddEdge(const SPOINT* a, const SPOINT* b);
  void AddCurve(const CURVE* c);
};

}  // namespace vexel
