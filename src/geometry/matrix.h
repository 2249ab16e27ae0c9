// The 2 by 3 affine transform: x' = a x + c y + tx, y' = b x + d y + ty.
#pragma once

#include "geometry/rect.h"

namespace vexel {

struct MATRIX {
  SFIXED a;   // x scale
  SFIXED b;   // y of the x axis
  SFIXED c;   // x of the y axis
  SFIXED d;   // y scale
  SCOORD tx;  // translation
  SCOORD ty;
};

// Each overwrites all of m. An angle is degrees with 16 fraction bits.
constexpr void MatrixIdentity(MATRIX* m) {
  *m = {kFixedOne, 0, 0, kFixedOne, 0, 0};
}
constexpr void MatrixTranslate(SCOORD dx, SCOORD dy, MATRIX* m) {
  *m = {kFixedOne, 0, 0, kFixedOne, dx, dy};
}
constexpr void MatrixScale(SFIXED sx, SFIXED sy, MATRIX* m) {
  *m = {sx, 0, 0, sy, 0, 0};
}
void MatrixRotate(SFIXED angle, MATRIX* m);

// Transforms a vector: the matrix without its translation. dst may be src.
constexpr void MatrixDeltaTransformPoint(const MATRIX* m, const SPOINT* src, SPOINT* dst) {
  SCOORD x = FixedMul(m->a, src->x);
  if (m->c != 0) x = WrapAdd(x, FixedMul(m->c, src->y));
  SCOORD y = FixedMul(m->d, src->y);
  if (m->b != 0) y = WrapAdd(y, FixedMul(m->b, src->x));
  *dst = {x, y};
}
// Transforms a point. dst may be src.
constexpr void MatrixTransformPoint(const MATRIX* m, const SPOINT* src, SPOINT* dst) {
  MatrixDeltaTransformPoint(m, src, dst);
  *dst = {WrapAdd(dst->x, m->tx), WrapAdd(dst->y, m->ty)};
}

// m1 applies first, then m2. dst may be either argument.
void MatrixConcat(const MATRIX* m1, const MATRIX* m2, MATRIX* dst);
// The inverse; the identity for a singular matrix. dst must be another object.
void MatrixInvert(const MATRIX* m, MATRIX* dst);

// The bounds of the transformed rectangle; an empty one stays empty.
void MatrixTransformRect(const MATRIX* m, const SRECT* src, SRECT* dst);
// A line width t under m: at least 1 if t is.
SCOORD MatrixTransformThickness(const MATRIX* m, SCOORD t);

// The matrix that stretches src onto dst, and the one that scales src evenly
// into dst, centres meeting. Sides of src below 1 count as 1.
void MatrixMap(const SRECT* src, const SRECT* dst, MATRIX* m);
void MatrixMapAspect(const SRECT* src, const SRECT* dst, MATRIX* m);

// The lengths of the two axes (never negative) and the direction of the x axis
// in degrees. Skew is not reported.
void MatrixDecompose(const MATRIX* m, SPOINT* scale, SFIXED* rotation);

// All six differences at most tolerance.
bool MatrixEqual(const MATRIX* m1, const MATRIX* m2, int32_t tolerance);
bool MatrixIsIdentity(const MATRIX* m);
// No rotation to speak of, and no mirroring.
bool MatrixIsScaleOnly(const MATRIX* m);

}  // namespace vexel
