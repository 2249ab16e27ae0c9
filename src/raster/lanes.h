// The four sub-scanlines of a pixel row, side by side: a lane each. A set of
// lanes is a mask of 4 bits, the topmost sub-scanline lowest.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vexel {

// Four 32-bit numbers, a compiler's vector: + and comparisons work lane by
// lane, a comparison giving -1 or 0.
using Lanes = int32_t __attribute__((vector_size(16)));

using LaneMask = uint32_t;
inline constexpr int32_t kLanes = 4;
inline constexpr LaneMask kAllLanes = 15;

inline Lanes SplatLanes(int32_t v) {
  return Lanes{v, v, v, v};
}

// The lanes that are true (-1) in the result of a comparison.
inline LaneMask TrueLanes(Lanes m) {
#if defined(__SSE2__)
  __m128 bits;
  static_assert(sizeof bits == sizeof m);
  __builtin_memcpy(&bits, &m, sizeof m);
  return static_cast<LaneMask>(_mm_movemask_ps(bits));
#else
  return (m[0] & 1) | (m[1] & 2) | (m[2] & 4) | (m[3] & 8);
#endif
}

// -1 in the lanes of the mask, 0 in the others.
inline Lanes LanesOf(LaneMask mask) {
  return (SplatLanes(static_cast<int32_t>(mask)) & Lanes{1, 2, 4, 8}) != 0;
}

// a where `which` is -1, b where it is 0.
inline Lanes Select(Lanes which, Lanes a, Lanes b) {
  return (a & which) | (b & ~which);
}
inline Lanes MinLanes(Lanes a, Lanes b) {
  return Select(a < b, a, b);
}
inline Lanes MaxLanes(Lanes a, Lanes b) {
  return Select(a > b, a, b);
}
inline int32_t MinOf(Lanes v) {
  const int32_t a = v[0] < v[1] ? v[0] : v[1];
  const int32_t b = v[2] < v[3] ? v[2] : v[3];
  return a < b ? a : b;
}
inline int32_t MaxOf(Lanes v) {
  const int32_t a = v[0] > v[1] ? v[0] : v[1];
  const int32_t b = v[2] > v[3] ? v[2] : v[3];
  return a > b ? a : b;
}
inline int32_t SumOf(Lanes v) {
  return v[0] + v[1] + v[2] + v[3];
}

}  // namespace vexel
