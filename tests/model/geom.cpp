// Fixed-point arithmetic, trigonometry, points, rectangles and matrices.
#include "geom.h"

#include <cmath>

namespace vexel::model {

i32 FixedMul(i32 a, i32 b) {
  const i64 sum = i64{a} * b + 0x8000;
  const i64 top = sum >> 47;
  if (top == 0 || top == -1) return static_cast<i32>(sum >> 16);
  return sum >= 0 ? kMax : kMin;
}

static i32 Divide(i64 shifted, i32 a, i32 b) {
  if (b == 0) return a == 0 ? 0 : a > 0 ? kMax : kMin;
  const i32 q = static_cast<i32>(static_cast<u32>(static_cast<u64>(shifted / b)));
  if (q == kMin && ((a < 0) == (b < 0))) return kMax;
  return q;
}

i32 FixedDiv(i32 a, i32 b) {
  return Divide(static_cast<i64>(a) * 65536, a, b);
}

// ---- trigonometry ----------------------------------------------------------

static u32 SineEntry(int k) {
  if (k > 360) k = 720 - k;
  if (k == 0) return 0;
  if (k == 120) return 0x40000000u;
  if (k == 360) return 0x80000000u;
  const long double radians = k * 3.14159265358979323846264338327950288L / 720.0L;
  return static_cast<u32>(floorl(sinl(radians) * 2147483648.0L));
}

// First quadrant, frac = out = 16.
static i32 QuadrantSin(i32 x) {
  const int frac = 16, out = 16;
  const int i = (x >> (frac - 2)) & 0x1FF;
  const i32 r = x - (i << (frac - 2));
  const u32 t0 = SineEntry(i);
  const u32 t1 = SineEntry(i + 1 > 511 ? 511 : i + 1);
  const u32 d = t1 >= t0 ? t1 - t0 : t0 - t1;
  const i64 product = static_cast<i64>(d) * r + (i64{1} << (31 - frac));
  const i32 step = Saturate(product >> (32 - frac));
  const u32 value = t1 >= t0 ? t0 + static_cast<u32>(step) : t0 - static_cast<u32>(step);
  return static_cast<i32>((value + (1u << (30 - out))) >> (31 - out));
}

constexpr i32 kFull = 0x16800000 >> 4, kHalf = 0xB400000 >> 4, kQuarter = 0x5A00000 >> 4,
              kThreeQuarter = 0x10E00000 >> 4;

static i32 Reduce(i32 a) {
  if (a >= kFull) a %= kFull;
  if (a < 0) a = static_cast<i32>(a + (-i64{a} / kFull + 1) * kFull);
  return a;
}

i32 Sin(i32 a) {
  a = Reduce(a);
  bool negate = false;
  if (a >= kHalf) {
    a -= kHalf;
    negate = true;
  }
  if (a > kQuarter) a = kHalf - a;
  const i32 v = QuadrantSin(a);
  return negate ? -v : v;
}

i32 Cos(i32 a) {
  a = Reduce(a);
  if (a < kQuarter) return QuadrantSin(kQuarter - a);
  if (a < kThreeQuarter) {
    i32 v = a - kQuarter;
    if (v > kQuarter) v = kHalf + kQuarter - a;
    return -QuadrantSin(v);
  }
  return QuadrantSin(a - kThreeQuarter);
}

static i32 UnitATan(i32 x) {
  static const i32 n[10] = {0,        0xD1B,    0x4189,    0x8312,    0x51EB8,
                            0x333333, 0x999999, 0x1000000, 0x1666666, 0x1CCCCCC};
  static const u32 c[11] = {0,          0x72977063, 0xFFFA2214, 0xD9CD8811, 0x440D74,  0x16BC31BB,
                            0xF9C12219, 0xF59CAB63, 0xA44F19D,  0xFCEB901A, 0xFE34E3A5};
  const int frac = 16, out = 16;
  const i32 u = x << (25 - frac);
  i32 acc = static_cast<i32>(c[10]);
  for (int i = 9; i >= 0; --i) {
    const i64 sum = i64{u - n[i]} * acc + 0x1000000;
    const i64 top = sum >> 56;
    i32 v;
    if (top == 0 || top == -1) {
      v = static_cast<i32>(sum >> 25);
    } else {
      v = sum >= 0 ? kMax : kMin;
    }
    acc = static_cast<i32>(c[i]) + v;
  }
  return (acc + (1 << (24 - out))) >> (25 - out);
}

constexpr i32 kNinety = (0x5A00000 + (1 << 3)) >> 4;
constexpr i32 kOneEighty = (0xB400000 + (1 << 3)) >> 4;

static i32 ATan(i32 x) {
  bool negate = false;
  if (x < 0) {
    negate = true;
    x = x == kMin ? kMax : -x;
  }
  i32 r;
  if (x <= 0x10000) {
    r = UnitATan(x);
  } else {
    r = kNinety - UnitATan(FixedDiv(0x10000, x));
  }
  return negate ? -r : r;
}

i32 ATan2(i32 y, i32 x) {
  if (x == 0) return y < 0 ? -kNinety : kNinety;
  i32 r = ATan(FixedDiv(y, x));
  if (x < 0) r = y >= 0 ? r + kOneEighty : r - kOneEighty;
  return r;
}

// ---- points ----------------------------------------------------------------

static u32 IntegerRoot(u64 v) {
  u64 r = static_cast<u64>(std::sqrt(static_cast<double>(v)));
  while (r * r > v) --r;
  while ((r + 1) * (r + 1) <= v) ++r;
  return static_cast<u32>(r);
}

i32 PointLength(Point p) {
  const i32 ax = Abs(p.x), ay = Abs(p.y);
  const i32 hi = ax > ay ? ax : ay, lo = ax > ay ? ay : ax;
  if (hi == 0) return 0;
  static u32 table[66];
  static bool ready = false;
  if (!ready) {
    for (u64 k = 0; k <= 64; ++k) table[k] = IntegerRoot((4096 + k * k) << 28);
    table[65] = table[64];
    ready = true;
  }
  const i32 q = FixedDiv(lo, hi);
  int k = q >> 10;
  if (k < 0) k = 0;
  if (k > 64) k = 64;
  const i32 f = q & 1023;
  const i32 m =
      ((1024 - f) * static_cast<i32>(table[k]) + f * static_cast<i32>(table[k + 1])) >> 14;
  return FixedMul(m, hi);
}

i32 PointFastLength(Point p) {
  const i32 x = Abs(p.x), y = Abs(p.y);
  return x + y - ((x < y ? x : y) >> 1);
}

i32 PointFastDistance(Point a, Point b) {
  const i32 dx = Abs(a.x - b.x), dy = Abs(a.y - b.y);
  return (dx + dy - (dx < dy ? dx : dy)) >> 1;
}

i32 PointDistance(Point a, Point b) {
  return PointLength({a.x - b.x, a.y - b.y});
}

i32 PointAngle(Point p, Point origin) {
  return ATan2(p.y - origin.y, p.x - origin.x);
}

Point PointPolar(i32 r, i32 angle, Point origin) {
  return {FixedMul(Cos(angle), r) + origin.x, FixedMul(Sin(angle), r) + origin.y};
}

Point PointAverage(Point p1, Point p2, i32 t) {
  return {p2.x + FixedMul(p1.x - p2.x, t), p2.y + FixedMul(p1.y - p2.y, t)};
}

Point PointNormalize(Point p, i32 length) {
  const i32 l = PointLength(p);
  if (l > 0) {
    const i32 s = FixedDiv(length, l);
    p.x = FixedMul(p.x, s);
    p.y = FixedMul(p.y, s);
  }
  return p;
}

// ---- rectangles ------------------------------------------------------------

static void Validate(Rect& r) {
  if (r.xmin > r.xmax || r.ymin > r.ymax) r = Rect{};
}

Rect RectInset(Rect r, i32 d) {
  if (r.Empty()) return r;
  r.xmin += d;
  r.xmax -= d;
  r.ymin += d;
  r.ymax -= d;
  Validate(r);
  return r;
}

Rect RectUnion(Rect a, Rect b) {
  if (a.Empty()) return b;
  if (b.Empty()) return a;
  if (b.xmin < a.xmin) a.xmin = b.xmin;
  if (b.xmax > a.xmax) a.xmax = b.xmax;
  if (b.ymin < a.ymin) a.ymin = b.ymin;
  if (b.ymax > a.ymax) a.ymax = b.ymax;
  return a;
}

void RectUnionPoint(Point p, Rect& r) {
  if (r.Empty()) {
    r = Rect{p.x, p.x, p.y, p.y};
    return;
  }
  if (p.x < r.xmin)
    r.xmin = p.x;
  else if (p.x > r.xmax)
    r.xmax = p.x;
  if (p.y < r.ymin)
    r.ymin = p.y;
  else if (p.y > r.ymax)
    r.ymax = p.y;
}

Rect RectIntersect(Rect a, Rect b) {
  if (a.Empty() || b.Empty()) return Rect{};
  if (b.xmin > a.xmin) a.xmin = b.xmin;
  if (b.xmax < a.xmax) a.xmax = b.xmax;
  if (b.ymin > a.ymin) a.ymin = b.ymin;
  if (b.ymax < a.ymax) a.ymax = b.ymax;
  Validate(a);
  return a;
}

bool RectTestIntersect(Rect a, Rect b) {
  if (a.Empty()) return false;
  return !(a.xmin > b.xmax || b.xmin > a.xmax || a.ymin > b.ymax || b.ymin > a.ymax);
}

// ---- matrices --------------------------------------------------------------

Matrix MatrixScale(i32 sx, i32 sy) {
  return {sx, 0, 0, sy, 0, 0};
}

Point Transform(const Matrix& m, Point p) {
  i32 x = FixedMul(m.a, p.x) + m.tx;
  if (m.c != 0) x += FixedMul(m.c, p.y);
  i32 y = FixedMul(m.d, p.y) + m.ty;
  if (m.b != 0) y += FixedMul(m.b, p.x);
  return {x, y};
}

Point DeltaTransform(const Matrix& m, Point p) {
  i32 x = FixedMul(m.a, p.x);
  if (m.c != 0) x += FixedMul(m.c, p.y);
  i32 y = FixedMul(m.d, p.y);
  if (m.b != 0) y += FixedMul(m.b, p.x);
  return {x, y};
}

Rect TransformRect(const Matrix& m, Rect r) {
  if (r.Empty()) return r;
  Rect out;
  RectUnionPoint(Transform(m, {r.xmin, r.ymax}), out);
  RectUnionPoint(Transform(m, {r.xmax, r.ymax}), out);
  RectUnionPoint(Transform(m, {r.xmax, r.ymin}), out);
  RectUnionPoint(Transform(m, {r.xmin, r.ymin}), out);
  return out;
}

i32 TransformThickness(const Matrix& m, i32 t) {
  const i32 r = FixedMul(46341, PointLength(DeltaTransform(m, {t, t})));
  if (t >= 1 && r < 1) return 1;
  return r;
}

Matrix Concat(const Matrix& m1, const Matrix& m2) {
  const i32 A = FixedMul(m1.a, m2.a), D = FixedMul(m1.d, m2.d);
  const i32 X = FixedMul(m1.tx, m2.a) + m2.tx, Y = FixedMul(m1.ty, m2.d) + m2.ty;
  if (m1.b == 0 && m1.c == 0 && m2.b == 0 && m2.c == 0) return {A, 0, 0, D, X, Y};
  Matrix r;
  r.a = A + FixedMul(m1.b, m2.c);
  r.b = FixedMul(m1.b, m2.d) + FixedMul(m1.a, m2.b);
  r.c = FixedMul(m1.d, m2.c) + FixedMul(m1.c, m2.a);
  r.d = D + FixedMul(m1.c, m2.b);
  r.tx = X + FixedMul(m1.ty, m2.c);
  r.ty = Y + FixedMul(m1.tx, m2.b);
  return r;
}

Matrix Invert(const Matrix& m) {
  Matrix r;
  if (m.b == 0 && m.c == 0) {
    if (m.a == 0 || m.d == 0) return r;
    r.a = FixedDiv(0x10000, m.a);
    r.d = FixedDiv(0x10000, m.d);
    r.tx = -FixedMul(r.a, m.tx);
    r.ty = -FixedMul(r.d, m.ty);
    return r;
  }
  auto magnitude = [](i32 v) { return v < 0 ? 0u - static_cast<u32>(v) : static_cast<u32>(v); };
  u32 s = magnitude(m.a) | magnitude(m.b) | magnitude(m.c) | magnitude(m.d);
  if (s == 0) return r;
  int n = 0;
  while (s < 0x1000000) {
    s *= 64;
    n += 6;
  }
  while (s < 0x20000000) {
    s *= 2;
    n += 1;
  }
  int sh = 32 - 2 * n;
  i32 det;
  if (sh > 0) {
    const i64 round = i64{1} << (sh - 1);
    const i32 ad = Saturate((i64{m.a} * m.d + round) >> sh);
    const i32 cb = Saturate((i64{m.c} * m.b + round) >> sh);
    det = ad - cb;
  } else {
    det = m.a * m.d - m.c * m.b;
    sh = 0;
  }
  if (det == 0) return r;
  const int e = 16 - sh;
  auto prepare = [e](i32 v) {
    return e >= 0 ? static_cast<i32>(static_cast<u32>(v) << e) : v >> -e;
  };
  r.a = FixedDiv(prepare(m.d), det);
  r.b = -FixedDiv(prepare(m.b), det);
  r.c = -FixedDiv(prepare(m.c), det);
  r.d = FixedDiv(prepare(m.a), det);
  const Point t = DeltaTransform(r, {m.tx, m.ty});
  r.tx = -t.x;
  r.ty = -t.y;
  return r;
}

i32 Lerp(i32 a, i32 b, i32 t) {
  return a + FixedMul(b - a, t);
}

Rect Lerp(Rect a, Rect b, i32 t) {
  return {Lerp(a.xmin, b.xmin, t), Lerp(a.xmax, b.xmax, t), Lerp(a.ymin, b.ymin, t),
          Lerp(a.ymax, b.ymax, t)};
}

Matrix Lerp(const Matrix& a, const Matrix& b, i32 t) {
  return {Lerp(a.a, b.a, t), Lerp(a.b, b.b, t),   Lerp(a.c, b.c, t),
          Lerp(a.d, b.d, t), Lerp(a.tx, b.tx, t), Lerp(a.ty, b.ty, t)};
}

}  // namespace vexel::model
