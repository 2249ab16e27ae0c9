// Outlines: from the curves and fill rules of art to those of movies.
//
// Movie shapes know straight edges and quadratic curves, and a shape's fill is
// toggled by each edge (even-odd). Art has cubics, a winding rule, and strokes with
// all kinds of caps, joins and dashes. The functions here bring the one to the
// other: cubics become quadratics, windings become contours that mean the same under
// even-odd, strokes that the player's own stroker would draw differently become
// filled outlines.
//
// All tolerances are distances in the units of the path at hand.
#pragma once

#include <vector>

#include "author/vector_path.h"

namespace vexel::author {

enum class Winding { kEvenOdd, kNonZero };

using Polygon = std::vector<Vec2>;      // closed by itself
using Polygons = std::vector<Polygon>;  // a region; even-odd unless said otherwise

// Bounds the time of one import: boolean operations on hostile outlines take time that
// grows with the square of their sides. Each operation takes its estimated cost, in
// nanoseconds, first, and is refused when the budget cannot pay it.
class WorkBudget {
 public:
  explicit WorkBudget(double nanoseconds = 8e9) : left_(nanoseconds) {}
  bool Take(double nanoseconds) {
    if (!(nanoseconds <= left_)) return false;
    left_ -= nanoseconds;
    return true;
  }
  double left() const { return left_; }

 private:
  double left_;
};

// A flattened contour. `smooth` tells, for each point, that it lies inside a
// curve, where a stroke has no join of its own.
struct Polyline {
  std::vector<Vec2> points;
  std::vector<char> smooth;
  bool closed = false;
};

// The same path with every cubic replaced by quadratics within `tolerance`.
VectorPath CubicsToQuads(const VectorPath& path, double tolerance);

// Straight pieces within `tolerance` of the curves; consecutive points differ.
std::vector<Polyline> Flatten(const VectorPath& path, double tolerance);
Polygons FlattenFill(const VectorPath& path, double tolerance);

// Boolean operations. Each leaves `out` as it was and returns false when the budget
// cannot pay or the operands are no regions at all. The result's outer contours
// and holes run in opposite directions and do not cross.
bool UnionPolygons(const Polygons& region, Winding rule, double tolerance, WorkBudget* budget,
                   Polygons* out);
bool SubtractPolygons(const Polygons& from, const Polygons& what, double tolerance,
                      WorkBudget* budget, Polygons* out);
bool IntersectPolygons(const Polygons& a, const Polygons& b, double tolerance, WorkBudget* budget,
                       Polygons* out);

// Sum of the signed areas: the area of a region that a boolean operation made.
double SignedArea(const Polygons& region);

// The polygons as lines and, where many vertices lie on a smooth arc, quadratics
// within `tolerance`.
VectorPath FitCurves(const Polygons& region, double tolerance);

// A path of quadratics that means under even-odd what `path` means under `rule`.
// Keeps the path's own curves when the rules agree on it, which is the usual case; a
// path without area becomes empty.
// False when the budget cannot pay; `out` is then the path as it came.
bool ResolveWinding(const VectorPath& path, Winding rule, double tolerance, WorkBudget* budget,
                    VectorPath* out);

enum class StrokeCap { kButt, kRound, kSquare };
enum class StrokeJoin { kMiter, kRound, kBevel };

struct StrokeStyle {
  double width = 1;
  StrokeCap cap = StrokeCap::kButt;
  StrokeJoin join = StrokeJoin::kMiter;
  double miterLimit = 4;
  std::vector<double> dashes;  // on, off, on, ...; empty for a solid line
  double dashOffset = 0;
};

// Cuts contours into dashes. False, and `lines` as they were, for more dashes than
// any viewer would tell apart.
bool CutDashes(const std::vector<double>& dashes, double offset, std::vector<Polyline>* lines);

// The region a stroke covers. False when the budget cannot pay.
bool StrokeRegion(const VectorPath& path, const StrokeStyle& style, double tolerance,
                  WorkBudget* budget, Polygons* out);

}  // namespace vexel::author
