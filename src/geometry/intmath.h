// The integer semantics of the whole system, in one place: 32-bit wrap-around,
// arithmetic shifts, 16.16 multiplication and division with their saturation.
// Elsewhere a plain operator means "cannot overflow".
#pragma once

#include <cmath>
#include <cstdint>

namespace vexel {

// A coordinate. Movies and the stage count twentieths of a pixel; device space
// counts pixels, or quarter-pixels when the display anti-aliases.
using SCOORD = int32_t;

// A 16.16 fixed-point number, kFixedOne being 1.0. Angles are degrees in this
// form, so 90 degrees is 0x5A0000.
using SFIXED = int32_t;

inline constexpr SFIXED kFixedOne = 0x10000;
inline constexpr int32_t kInt32Max = 0x7FFFFFFF;
inline constexpr int32_t kInt32Min = -0x7FFFFFFF - 1;

// Two's complement arithmetic that wraps at 32 bits.
constexpr int32_t WrapAdd(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
constexpr int32_t WrapSub(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
constexpr int32_t WrapMul(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
constexpr int32_t WrapNeg(int32_t a) {
  return static_cast<int32_t>(0u - static_cast<uint32_t>(a));
}

// The magnitude; that of 0x80000000 wraps to itself.
constexpr int32_t WrapAbs(int32_t a) {
  return a < 0 ? WrapNeg(a) : a;
}

// a << n for n from 0 to 31, bits lost at the top.
constexpr int32_t WrapShl(int32_t a, int n) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) << n);
}

// Arithmetic shift right, n from 0 to 31 (63). C++20 defines >> this way for
// signed operands; the name says that it is meant.
constexpr int32_t Asr(int32_t a, int n) {
  return a >> n;
}
constexpr int64_t Asr64(int64_t a, int n) {
  return a >> n;
}

// The low 32 bits of a 64-bit value, as a signed number.
constexpr int32_t Low32(int64_t a) {
  return static_cast<int32_t>(static_cast<uint32_t>(a));
}

// The nearest value that 32 bits hold.
constexpr int32_t Saturate32(int64_t a) {
  return a > kInt32Max ? kInt32Max : a < kInt32Min ? kInt32Min : static_cast<int32_t>(a);
}

// 16.16 product, rounded to nearest with ties upward, saturated.
constexpr SFIXED FixedMul(SFIXED a, SFIXED b) {
  return Saturate32(Asr64(int64_t{a} * b + 0x8000, 16));
}

// (a << shift) / b for 64-bit a << shift, truncated toward zero and cut to 32
// bits. Required: the one overflow that is recognised is a result of exactly
// 0x80000000 from operands of equal sign, which becomes 0x7FFFFFFF; larger
// quotients wrap. A zero divisor gives 0 for a zero dividend and else the
// extreme value of the dividend's sign.
constexpr int32_t QuotientShifted(int64_t a, int64_t b, int shift) {
  if (b == 0) return a == 0 ? 0 : a > 0 ? kInt32Max : kInt32Min;
  const int32_t q = Low32(static_cast<int64_t>(static_cast<uint64_t>(a) << shift) / b);
  if (q == kInt32Min && (a < 0) == (b < 0)) return kInt32Max;
  return q;
}

// 16.16 quotient.
constexpr SFIXED FixedDiv(SFIXED a, SFIXED b) {
  return QuotientShifted(a, b, 16);
}

// A double cut toward zero; out of range and NaN give -2147483648.
inline int32_t ToInt32(double v) {
  return v > -2147483649.0 && v < 2147483648.0 ? static_cast<int32_t>(v) : kInt32Min;
}

}  // namespace vexel
