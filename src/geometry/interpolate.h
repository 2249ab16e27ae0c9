// Linear interpolation between two states of a morph, field by field: t = 0
// gives a, t = 1.0 gives b. dst may be either argument.
#pragma once

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/rect.h"

namespace vexel {

// One field. t outside 0 to 1.0 is not clamped.
constexpr int32_t Interpolate(int32_t a, int32_t b, SFIXED t) {
  return WrapAdd(a, FixedMul(WrapSub(b, a), t));
}

// No test for emptiness.
void Interpolate(const SRECT* a, const SRECT* b, SFIXED t, SRECT* dst);
// Field by field: between two rotations lies no rotation.
void Interpolate(const MATRIX* a, const MATRIX* b, SFIXED t, MATRIX* dst);
void Interpolate(const RGBI* a, const RGBI* b, SFIXED t, RGBI* dst);
// t is clamped to 0 to 1.0.
void Interpolate(const SRGB* a, const SRGB* b, SFIXED t, SRGB* dst);

}  // namespace vexel
