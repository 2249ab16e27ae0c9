// Basic shapes as paths, and the exact bounds of curves: the extremes of a
// quadratic or cubic lie where its derivative is zero.
#include "author/vector_path.h"

namespace vexel::author {
namespace {

// The control distance of a cubic that stays closest to a quarter circle.
constexpr double kQuarter = 0.5522847498;

double CubicAt(double p0, double p1, double p2, double p3, double t) {
  double u = 1 - t;
  return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

// Adds the points of one cubic where x or y has an extreme inside.
void AddCubicExtremes(Vec2 a, Vec2 b, Vec2 c, Vec2 d, Box* box) {
  double axis[2][4] = {{a.x, b.x, c.x, d.x}, {a.y, b.y, c.y, d.y}};
  for (const double* v : axis) {
    double qa = v[3] - 3 * v[2] + 3 * v[1] - v[0];
    double qb = 2 * (v[2] - 2 * v[1] + v[0]);
    double qc = v[1] - v[0];
    double roots[2];
    int count = 0;
    if (std::fabs(qa) < 1e-12) {
      if (qb != 0) roots[count++] = -qc / qb;
    } else if (double disc = qb * qb - 4 * qa * qc; disc >= 0) {
      double s = std::sqrt(disc);
      roots[count++] = (-qb + s) / (2 * qa);
      roots[count++] = (-qb - s) / (2 * qa);
    }
    for (int i = 0; i < count; i++) {
      double t = roots[i];
      if (t > 0 && t < 1)
        box->Add(Vec2{CubicAt(a.x, b.x, c.x, d.x, t), CubicAt(a.y, b.y, c.y, d.y, t)});
    }
  }
}

}  // namespace

void VectorPath::AddRect(double x, double y, double width, double height) {
  MoveTo({x, y});
  LineTo({x + width, y});
  LineTo({x + width, y + height});
  LineTo({x, y + height});
  Close();
}

void VectorPath::AddEllipse(Vec2 o, double rx, double ry) {
  double kx = rx * kQuarter, ky = ry * kQuarter;
  MoveTo({o.x + rx, o.y});
  CubicTo({o.x + rx, o.y + ky}, {o.x + kx, o.y + ry}, {o.x, o.y + ry});
  CubicTo({o.x - kx, o.y + ry}, {o.x - rx, o.y + ky}, {o.x - rx, o.y});
  CubicTo({o.x - rx, o.y - ky}, {o.x - kx, o.y - ry}, {o.x, o.y - ry});
  CubicTo({o.x + kx, o.y - ry}, {o.x + rx, o.y - ky}, {o.x + rx, o.y});
  Close();
}

void VectorPath::AddRoundRect(double x, double y, double width, double height, double rx,
                              double ry) {
  rx = std::fmin(rx, width / 2);
  ry = std::fmin(ry, height / 2);
  if (rx <= 0 || ry <= 0) {
    AddRect(x, y, width, height);
    return;
  }
  double kx = rx * (1 - kQuarter), ky = ry * (1 - kQuarter);
  double right = x + width, bottom = y + height;
  MoveTo({x + rx, y});
  LineTo({right - rx, y});
  CubicTo({right - kx, y}, {right, y + ky}, {right, y + ry});
  LineTo({right, bottom - ry});
  CubicTo({right, bottom - ky}, {right - kx, bottom}, {right - rx, bottom});
  LineTo({x + rx, bottom});
  CubicTo({x + kx, bottom}, {x, bottom - ky}, {x, bottom - ry});
  LineTo({x, y + ry});
  CubicTo({x, y + ky}, {x + kx, y}, {x + rx, y});
  Close();
}

void VectorPath::Transform(const Affine& m) {
  for (PathCommand& c : commands) {
    c.c1 = m.Apply(c.c1);
    c.c2 = m.Apply(c.c2);
    c.p = m.Apply(c.p);
  }
}

Box VectorPath::Bounds() const {
  Box box;
  Vec2 pen, start;
  for (const PathCommand& c : commands) {
    switch (c.op) {
      case PathOp::kMove:
        start = c.p;
        box.Add(c.p);
        break;
      case PathOp::kLine:
        box.Add(c.p);
        break;
      case PathOp::kQuad:
        box.Add(c.p);
        AddCubicExtremes(pen, Mix(pen, c.c1, 2.0 / 3), Mix(c.p, c.c1, 2.0 / 3), c.p, &box);
        break;
      case PathOp::kCubic:
        box.Add(c.p);
        AddCubicExtremes(pen, c.c1, c.c2, c.p, &box);
        break;
      case PathOp::kClose:
        pen = start;
        continue;
    }
    pen = c.p;
  }
  return box;
}

}  // namespace vexel::author
