// Boolean operations, by Clipper on a grid that is much finer than the tolerance.
#include <polyclipping/clipper.hpp>

#include <algorithm>
#include <utility>

#include "author/outline.h"

namespace vexel::author {
namespace {

// Grid units in a tolerance.
constexpr double kGrid = 16;

// Coordinates that the library's faster arithmetic can hold.
constexpr double kGridLimit = 0x3FFFFFFF;

// What the library takes, in nanoseconds of an ordinary machine: for each side and each
// other one alive at its top; for each crossing, which is by far the dearest; and for
// all sides together, since it keeps their joints in lists.
constexpr double kAliveCost = 10, kCrossingCost = 4000, kSideCost = 300, kJointCost = 2;

struct Side {
  Vec2 top, bottom;
  double xmin, xmax;
};

bool Cross(const Side& s, const Side& t) {
  auto turn = [](Vec2 p, Vec2 q, Vec2 r) { return author::Cross(q - p, r - p); };
  return turn(s.top, s.bottom, t.top) * turn(s.top, s.bottom, t.bottom) < 0 &&
         turn(t.top, t.bottom, s.top) * turn(t.top, t.bottom, s.bottom) < 0;
}

// The estimate for an operation on two regions, broken off above `limit`.
double EstimateCost(const Polygons* a, const Polygons* b, double limit) {
  std::vector<Side> sides;
  for (const Polygons* region : {a, b}) {
    if (!region) continue;
    for (const Polygon& p : *region)
      for (size_t i = 0; i < p.size(); i++) {
        Vec2 u = p[i], v = p[(i + 1) % p.size()];
        if (v.y < u.y) std::swap(u, v);
        sides.push_back({u, v, std::fmin(u.x, v.x), std::fmax(u.x, v.x)});
      }
  }
  double count = static_cast<double>(sides.size());
  double cost = kSideCost * count + kJointCost * count * count;
  std::sort(sides.begin(), sides.end(),
            [](const Side& s, const Side& t) { return s.top.y < t.top.y; });
  std::vector<Side> alive;
  for (const Side& s : sides) {
    if (!(cost <= limit)) break;
    size_t kept = 0;
    for (const Side& t : alive) {
      if (t.bottom.y < s.top.y) continue;
      if (t.xmax >= s.xmin && t.xmin <= s.xmax && Cross(s, t)) cost += kCrossingCost;
      alive[kept++] = t;
    }
    alive.resize(kept);
    alive.push_back(s);
    cost += kAliveCost * static_cast<double>(alive.size());
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
