// Plane geometry of the importers: points, affine maps and paths, in floating
// point. Nothing here is part of a drawing path; what the importers find out is
// rounded to the movie's whole units once, when it is written.
#pragma once

#include <cmath>
#include <vector>

namespace vexel::author {

struct Vec2 {
  double x = 0, y = 0;
  friend Vec2 operator+(Vec2 p, Vec2 q) { return {p.x + q.x, p.y + q.y}; }
  friend Vec2 operator-(Vec2 p, Vec2 q) { return {p.x - q.x, p.y - q.y}; }
  friend Vec2 operator*(double k, Vec2 p) { return {k * p.x, k * p.y}; }
  friend bool operator==(Vec2 p, Vec2 q) { return p.x == q.x && p.y == q.y; }
};

inline double Dot(Vec2 p, Vec2 q) {
  return p.x * q.x + p.y * q.y;
}
inline double Cross(Vec2 p, Vec2 q) {
  return p.x * q.y - p.y * q.x;
}
inline double Length(Vec2 p) {
  return std::hypot(p.x, p.y);
}
inline Vec2 Mix(Vec2 p, Vec2 q, double t) {
  return p + t * (q - p);
}

// x' = a x + c y + e, y' = b x + d y + f: columns as art formats list them.
struct Affine {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

  Vec2 Apply(Vec2 p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  double Determinant() const { return a * d - b * c; }
  // The side of the square that has the area of the unit square's image.
  double MeanScale() const { return std::sqrt(std::fabs(Determinant())); }
  // Circles stay circles: one scale in all directions, within `slack` of it.
  bool IsSimilarity(double slack) const {
    double x = std::hypot(a, b), y = std::hypot(c, d);
    double size = x > y ? x : y;
    return std::fabs(x - y) <= slack * size && std::fabs(a * c + b * d) <= slack * size * size;
  }
  bool IsFinite() const {
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) &&
           std::isfinite(e) && std::isfinite(f);
  }
  // False, and `out` as it was, if the plane is folded onto a line or a point.
  bool Invert(Affine* out) const {
    double det = Determinant();
    if (!std::isfinite(det) || std::fabs(det) < 1e-18) return false;
    *out = {d / det, -b / det, -c / det, a / det, (c * f - d * e) / det, (b * e - a * f) / det};
    return true;
  }
  static Affine Translate(double x, double y) { return {1, 0, 0, 1, x, y}; }
  static Affine Scale(double x, double y) { return {x, 0, 0, y, 0, 0}; }
};

// `inner` first, then `outer`.
inline Affine operator*(const Affine& outer, const Affine& inner) {
  return {outer.a * inner.a + outer.c * inner.b,
          outer.b * inner.a + outer.d * inner.b,
          outer.a * inner.c + outer.c * inner.d,
          outer.b * inner.c + outer.d * inner.d,
          outer.a * inner.e + outer.c * inner.f + outer.e,
          outer.b * inner.e + outer.d * inner.f + outer.f};
}

// An upright rectangle; empty until the first point is added.
struct Box {
  double xmin = 0, ymin = 0, xmax = -1, ymax = -1;
  bool IsEmpty() const { return xmax < xmin || ymax < ymin; }
  double Width() const { return xmax - xmin; }
  double Height() const { return ymax - ymin; }
  void Add(Vec2 p) {
    if (IsEmpty()) {
      xmin = xmax = p.x;
      ymin = ymax = p.y;
      return;
    }
    xmin = std::fmin(xmin, p.x);
    xmax = std::fmax(xmax, p.x);
    ymin = std::fmin(ymin, p.y);
    ymax = std::fmax(ymax, p.y);
  }
  void Add(const Box& o) {
    if (o.IsEmpty()) return;
    Add(Vec2{o.xmin, o.ymin});
    Add(Vec2{o.xmax, o.ymax});
  }
  Box Intersection(const Box& o) const {
    if (IsEmpty() || o.IsEmpty()) return {};
    return {std::fmax(xmin, o.xmin), std::fmax(ymin, o.ymin), std::fmin(xmax, o.xmax),
            std::fmin(ymax, o.ymax)};
  }
  Box Grown(double by) const {
    return IsEmpty() ? *this : Box{xmin - by, ymin - by, xmax + by, ymax + by};
  }
  bool Contains(const Box& o) const {
    return o.xmin >= xmin && o.xmax <= xmax && o.ymin >= ymin && o.ymax <= ymax;
  }
};

// Path commands. A contour begins with kMove and ends at the next kMove or at
// kClose; after kClose the pen stands at the contour's start. Fills close open
// contours by themselves.
enum class PathOp : unsigned char { kMove, kLine, kQuad, kCubic, kClose };

struct PathCommand {
  PathOp op;
  Vec2 c1;  // control point of kQuad, first of kCubic
  Vec2 c2;  // second control point of kCubic
  Vec2 p;   // where the pen goes; unused by kClose
};

struct VectorPath {
  std::vector<PathCommand> commands;

  bool IsEmpty() const { return commands.empty(); }
  void MoveTo(Vec2 p) { commands.push_back({PathOp::kMove, {}, {}, p}); }
  void LineTo(Vec2 p) { commands.push_back({PathOp::kLine, {}, {}, p}); }
  void QuadTo(Vec2 c, Vec2 p) { commands.push_back({PathOp::kQuad, c, {}, p}); }
  void CubicTo(Vec2 c1, Vec2 c2, Vec2 p) { commands.push_back({PathOp::kCubic, c1, c2, p}); }
  void Close() { commands.push_back({PathOp::kClose, {}, {}, {}}); }
  void Append(const VectorPath& o) {
    commands.insert(commands.end(), o.commands.begin(), o.commands.end());
  }
  void AddRect(double x, double y, double width, double height);
  // An ellipse of four cubics, clockwise from its rightmost point.
  void AddEllipse(Vec2 center, double rx, double ry);
  // Corners rounded by quarter ellipses; radii above half a side are cut.
  void AddRoundRect(double x, double y, double width, double height, double rx, double ry);

  void Transform(const Affine& m);
  // Of the curves themselves, not of their control points.
  Box Bounds() const;
};

}  // namespace vexel::author
