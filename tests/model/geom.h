// The model's geometry: integers that wrap (the target is built with -fwrapv),
// 16.16 numbers, points, rectangles, matrices and quadratic curves. Plain and
// slow on purpose; nothing here is shared with the player.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace vexel::model {

using i32 = int32_t;
using u32 = uint32_t;
using i64 = int64_t;
using u64 = uint64_t;

constexpr i32 kMax = 0x7FFFFFFF;
constexpr i32 kMin = -0x7FFFFFFF - 1;
constexpr i32 kEmpty = kMin;

inline i32 Saturate(i64 v) {
  return v > kMax ? kMax : v < kMin ? kMin : static_cast<i32>(v);
}
inline i32 Abs(i32 v) {
  return v < 0 ? -v : v;
}
i32 FixedMul(i32 a, i32 b);
i32 FixedDiv(i32 a, i32 b);

i32 Sin(i32 angle);
i32 Cos(i32 angle);
i32 ATan2(i32 y, i32 x);

struct Point {
  i32 x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

i32 PointLength(Point p);
i32 PointFastLength(Point p);
i32 PointFastDistance(Point a, Point b);
i32 PointDistance(Point a, Point b);
i32 PointAngle(Point p, Point origin);
Point PointPolar(i32 r, i32 angle, Point origin);
Point PointAverage(Point p1, Point p2, i32 t);
Point PointNormalize(Point p, i32 length);

struct Rect {
  i32 xmin = kEmpty, xmax = kEmpty, ymin = kEmpty, ymax = kEmpty;
  bool Empty() const { return xmin == kEmpty; }
};

Rect RectInset(Rect r, i32 d);
Rect RectUnion(Rect a, Rect b);
void RectUnionPoint(Point p, Rect& r);
Rect RectIntersect(Rect a, Rect b);
bool RectTestIntersect(Rect a, Rect b);

struct Matrix {
  i32 a = 0x10000, b = 0, c = 0, d = 0x10000, tx = 0, ty = 0;
  bool operator==(const Matrix&) const = default;
};

Matrix MatrixScale(i32 sx, i32 sy);
Point Transform(const Matrix& m, Point p);
Point DeltaTransform(const Matrix& m, Point p);
Rect TransformRect(const Matrix& m, Rect r);
i32 TransformThickness(const Matrix& m, i32 t);
Matrix Concat(const Matrix& m1, const Matrix& m2);
Matrix Invert(const Matrix& m);

i32 Lerp(i32 a, i32 b, i32 t);
Rect Lerp(Rect a, Rect b, i32 t);
Matrix Lerp(const Matrix& a, const Matrix& b, i32 t);

struct Curve {
  Point a1, c, a2;
  bool isLine = false;
};

Curve Line(Point a, Point b);
Rect CurveBounds(const Curve& c);
i32 CurveFlatness(const Curve& c);
bool CurveIsExtreme(const Curve& c);
void CurveDivide(const Curve& c, Curve& first, Curve& second);
void CurveDivide(const Curve& c, i32 t, Curve& first, Curve& second);
Curve CurveReverse(const Curve& c);
Curve CurveAdjust(const Curve& c, Point p1, Point p2);

}  // namespace vexel::model
