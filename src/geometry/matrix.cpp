// Matrices: concatenation, inversion and the maps between rectangles.
#include "geometry/matrix.h"

#include "geometry/trig.h"

namespace vexel {

void MatrixRotate(SFIXED angle, MATRIX* m) {
  const SFIXED cosine = _FPCos(angle, 16, 16);
  const SFIXED sine = _FPSin(angle, 16, 16);
  *m = {cosine, sine, -sine, cosine, 0, 0};
}

void MatrixConcat(const MATRIX* m1, const MATRIX* m2, MATRIX* dst) {
  MATRIX r = {FixedMul(m1->a, m2->a),
              0,
              0,
              FixedMul(m1->d, m2->d),
              WrapAdd(FixedMul(m1->tx, m2->a), m2->tx),
              WrapAdd(FixedMul(m1->ty, m2->d), m2->ty)};
  // Nearly all matrices of a movie have no rotation.
  if ((m1->b | m1->c | m2->b | m2->c) != 0) {
    r.a = WrapAdd(r.a, FixedMul(m1->b, m2->c));
    r.b = WrapAdd(FixedMul(m1->b, m2->d), FixedMul(m1->a, m2->b));
    r.c = WrapAdd(FixedMul(m1->d, m2->c), FixedMul(m1->c, m2->a));
    r.d = WrapAdd(r.d, FixedMul(m1->c, m2->b));
    r.tx = WrapAdd(r.tx, FixedMul(m1->ty, m2->c));
    r.ty = WrapAdd(r.ty, FixedMul(m1->tx, m2->b));
  }
  *dst = r;
}

// An element made ready for its division by the determinant.
static int32_t Prepared(int32_t v, int shift) {
  return shift >= 0 ? WrapShl(v, shift) : Asr(v, -shift);
}

void MatrixInvert(const MATRIX* m, MATRIX* dst) {
  if (m->b == 0 && m->c == 0) {
    if (m->a == 0 || m->d == 0) {
      MatrixIdentity(dst);
      return;
    }
    dst->a = FixedDiv(kFixedOne, m->a);
    dst->d = FixedDiv(kFixedOne, m->d);
    dst->b = dst->c = 0;
    dst->tx = WrapNeg(FixedMul(dst->a, m->tx));
    dst->ty = WrapNeg(FixedMul(dst->d, m->ty));
    return;
  }
  // The determinant keeps as many bits as the largest element allows: drop is the
  // number of low bits that its products lose.
  uint32_t s = static_cast<uint32_t>(WrapAbs(m->a)) | static_cast<uint32_t>(WrapAbs(m->b)) |
               static_cast<uint32_t>(WrapAbs(m->c)) | static_cast<uint32_t>(WrapAbs(m->d));
  int n = 0;
  for (; s < 0x1000000; n += 6) s *= 64;
  for (; s < 0x20000000; n += 1) s *= 2;
  int drop = 32 - 2 * n;
  int32_t det;
  if (drop > 0) {
    const int64_t half = int64_t{1} << (drop - 1);
    det = WrapSub(Saturate32(Asr64(int64_t{m->a} * m->d + half, drop)),
                  Saturate32(Asr64(int64_t{m->c} * m->b + half, drop)));
  } else {
    det = WrapSub(WrapMul(m->a, m->d), WrapMul(m->c, m->b));
    drop = 0;
  }
  if (det == 0) {
    MatrixIdentity(dst);
    return;
  }
  const int shift = 16 - drop;
  dst->a = FixedDiv(Prepared(m->d, shift), det);
  dst->b = WrapNeg(FixedDiv(Prepared(m->b, shift), det));
  dst->c = WrapNeg(FixedDiv(Prepared(m->c, shift), det));
  dst->d = FixedDiv(Prepared(m->a, shift), det);
  SPOINT t = {m->tx, m->ty};
  MatrixDeltaTransformPoint(dst, &t, &t);
  dst->tx = WrapNeg(t.x);
  dst->ty = WrapNeg(t.y);
}

void MatrixTransformRect(const MATRIX* m, const SRECT* src, SRECT* dst) {
  SRECT bounds;
  RectSetEmpty(&bounds);
  if (!RectIsEmpty(src)) {
    for (int i = rectBottomLeft; i <= rectTopLeft; ++i) {
      SPOINT corner;
      RectGetPoint(src, i, &corner);
      MatrixTransformPoint(m, &corner, &corner);
      RectUnionPoint(&corner, &bounds);
    }
  }
  *dst = bounds;
}

SCOORD MatrixTransformThickness(const MATRIX* m, SCOORD t) {
  constexpr SFIXED kInverseRootOfTwo = 46341;
  SPOINT p = {t, t};
  MatrixDeltaTransformPoint(m, &p, &p);
  const SCOORD r = FixedMul(kInverseRootOfTwo, PointLength(&p));
  // A line that has a width never vanishes.
  return t >= 1 && r < 1 ? 1 : r;
}

// The scales that bring the sides of src to those of dst.
static SPOINT MapScale(const SRECT* src, const SRECT* dst) {
  SPOINT from, to;
  RectSizePoint(src, &from);
  RectSizePoint(dst, &to);
  return {FixedDiv(to.x, from.x < 1 ? 1 : from.x), FixedDiv(to.y, from.y < 1 ? 1 : from.y)};
}

void MatrixMap(const SRECT* src, const SRECT* dst, MATRIX* m) {
  const SPOINT scale = MapScale(src, dst);
  // Required: aligned by the left sides in x, but by the bottom sides in y.
  *m = {scale.x,
        0,
        0,
        scale.y,
        WrapSub(dst->xmin, FixedMul(src->xmin, scale.x)),
        WrapSub(dst->ymax, FixedMul(src->ymax, scale.y))};
}

void MatrixMapAspect(const SRECT* src, const SRECT* dst, MATRIX* m) {
  const SPOINT scales = MapScale(src, dst);
  const SFIXED scale = scales.x < scales.y ? scales.x : scales.y;
  SPOINT from, to;
  RectGetPoint(src, rectCenter, &from);
  RectGetPoint(dst, rectCenter, &to);
  *m = {scale,
        0,
        0,
        scale,
        WrapSub(to.x, FixedMul(from.x, scale)),
        WrapSub(to.y, FixedMul(from.y, scale))};
}

void MatrixDecompose(const MATRIX* m, SPOINT* scale, SFIXED* rotation) {
  const SPOINT xAxis = {m->a, m->b};
  const SPOINT yAxis = {m->c, m->d};
  *scale = {PointLength(&xAxis), PointLength(&yAxis)};
  *rotation = _FPATan2(m->b, m->a, 16, 16);
}

bool MatrixEqual(const MATRIX* m1, const MATRIX* m2, int32_t tolerance) {
  const auto near = [tolerance](int32_t a, int32_t b) {
    return WrapAbs(WrapSub(a, b)) <= tolerance;
  };
  return near(m1->a, m2->a) && near(m1->b, m2->b) && near(m1->c, m2->c) && near(m1->d, m2->d) &&
         near(m1->tx, m2->tx) && near(m1->ty, m2->ty);
}

bool MatrixIsIdentity(const MATRIX* m) {
  return m->a == kFixedOne && m->b == 0 && m->c == 0 && m->d == kFixedOne && m->tx == 0 &&
         m->ty == 0;
}

bool MatrixIsScaleOnly(const MATRIX* m) {
  constexpr SFIXED kNoRotation = 16;
  return WrapAbs(m->b) <= kNoRotation && WrapAbs(m->c) <= kNoRotation && m->a > 0 && m->d > 0;
}

}  // namespace vexel
