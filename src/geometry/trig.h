// Sine, cosine and arctangent in integers. Angles are degrees; frac is the
// number of fraction bits of an argument (2 to 20, clamped), out that of the
// result (0 to 30, clamped). All callers pass 16 for both.
#pragma once

#include "geometry/intmath.h"

namespace vexel {

// v rounded to a multiple of m, halves away from zero; v itself for m = 0.
SFIXED FixedNearestMultiple(SFIXED v, SFIXED m);

// The sine for an angle of the first quadrant only, and for any angle.
int32_t __FPSin(int32_t angle, int frac, int out);
int32_t _FPSin(int32_t angle, int frac, int out);
int32_t _FPCos(int32_t angle, int frac, int out);

// The arctangent for x from 0 to 1.0 only, and for any x: -90 to +90 degrees.
int32_t __FPATan(int32_t x, int frac, int out);
int32_t _FPATan(int32_t x, int frac, int out);
// The direction of vector (x, y), -180 to +180 degrees; +90 for (0, 0).
int32_t _FPATan2(int32_t y, int32_t x, int frac, int out);

// The tangent of an angle in 16.16 degrees, as a 16.16 number.
SFIXED FixedTan(SFIXED angle);

}  // namespace vexel
