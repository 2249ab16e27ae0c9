// Boolean operations, by Clipper on a grid that is much finer than the tolerance.
#include <polyclipping/clipper.hpp>

#include <algorithm>

#include "author/outline.h"

namespace vexel::author {
namespace {

// Grid units in a tolerance.
constexpr double kGrid = 16;

// Coordinates that the library's faster arithmetic can hold.
constexpr double kGridLimit = 0x3FFFFFFF;

struct Side {
  double ymin, ymax, xmin, xmax;
};

// What the operation may cost: for each side, the sides alive at its top, and far
// more for those whose boxes meet, which may cross. The sum is cut off at `limit`.
double EstimateCost(const Polygons* a, const Polygons* b, double limit) {
  std::vector<Side> sides;
  for (const Polygons* region : {a, b}) {
    if (!region) continue;
    for (const Polygon& p : *region)
      for (size_t i = 0; i < p.size(); i++) {
        Vec2 u = p[i], v = p[(i + 1) % p.size()];
        sides.push_back(
            {std::fmin(u.y, v.y), std::fmax(u.y, v.y), std::fmin(u.x, v.x), std::fmax(u.x, v.x)});
      }
  }
  std::sort(sides.begin(), sides.end(),
            [](const Side& s, const Side& t) { return s.ymin < t.ymin; });
  std::vector<Side> alive;
  double cost = 0;
  for (const Side& s : sides) {
    size_t kept = 0;
    for (const Side& t : alive) {
      if (t.ymax < s.ymin) continue;
      if (t.xmax >= s.xmin && t.xmin <= s.xmax) cost += 8;
      alive[kept++] = t;
    }
    alive.resize(kept);
    alive.push_back(s);
    cost += static_cast<double>(alive.size());
    if (cost > limit) break;
  }
  return cost;
}

bool ToGrid(const Polygons& region, double unit, ClipperLib::Paths* out) {
  for (const Polygon& p : region) {
    ClipperLib::Path path;
    path.reserve(p.size());
    for (Vec2 v : p) {
      if (!(std::fabs(v.x) < kGridLimit * unit && std::fabs(v.y) < kGridLimit * unit)) return false;
      path.emplace_back(std::llround(v.x / unit), std::llround(v.y / unit));
    }
    out->push_back(std::move(path));
  }
  return true;
}

bool Combine(ClipperLib::ClipType type, const Polygons& a, ClipperLib::PolyFillType rule,
             const Polygons* b, double tolerance, WorkBudget* budget, Polygons* out) {
  using namespace ClipperLib;
  if (a.empty()) {
    out->clear();
    return true;
  }
  if (!budget->Take(EstimateCost(&a, b, budget->left()))) return false;
  double unit = tolerance / kGrid;
  Paths subject, other, result;
  if (!ToGrid(a, unit, &subject) || (b && !ToGrid(*b, unit, &other))) return false;
  try {
    Clipper clipper;
    if (!clipper.AddPaths(subject, ptSubject, true)) {
      out->clear();  // nothing that is more than a line on the grid
      return true;
    }
    if (b) clipper.AddPaths(other, ptClip, true);
    if (!clipper.Execute(type, result, rule, pftEvenOdd)) return false;
  } catch (const clipperException&) {
    return false;
  }
  Polygons region;
  for (const Path& path : result) {
    Polygon p;
    p.reserve(path.size());
    for (const IntPoint& v : path)
      p.push_back({static_cast<double>(v.X) * unit, static_cast<double>(v.Y) * unit});
    region.push_back(std::move(p));
  }
  *out = std::move(region);
  return true;
}

}  // namespace

bool UnionPolygons(const Polygons& region, Winding rule, double tolerance, WorkBudget* budget,
                   Polygons* out) {
  return Combine(ClipperLib::ctUnion, region,
                 rule == Winding::kNonZero ? ClipperLib::pftNonZero : ClipperLib::pftEvenOdd,
                 nullptr, tolerance, budget, out);
}

bool SubtractPolygons(const Polygons& from, const Polygons& what, double tolerance,
                      WorkBudget* budget, Polygons* out) {
  return Combine(ClipperLib::ctDifference, from, ClipperLib::pftEvenOdd, &what, tolerance, budget,
                 out);
}

bool IntersectPolygons(const Polygons& a, const Polygons& b, double tolerance, WorkBudget* budget,
                       Polygons* out) {
  return Combine(ClipperLib::ctIntersection, a, ClipperLib::pftEvenOdd, &b, tolerance, budget, out);
}

}  // namespace vexel::author
