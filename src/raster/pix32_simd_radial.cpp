// Radial gradients for 256-bit integer vectors, eight pixels at a time.
#include "raster/pix32_simd.h"

#if defined(__x86_64__)

#include "raster/pix32_radial.h"
#include "raster/pix32_radial_windows.h"
#include "raster/pix32_vectors.h"

namespace vexel {
namespace {

using Windows = RadialWindows<kStep>;

// The indexes of the eight pixels before some, counted from a base.
struct Before {
  __m256i index;
  int32_t base;
};
constexpr int32_t kNoneBefore = -1;  // a base

// The whole part of roots up to 255, and 256 above the last square. Found bit by
// bit, which for eight roots at once is faster than to look them up.
VEXEL_AVX2 inline __m256i Roots(__m256i square) {
  __m256i root = _mm256_setzero_si256();
  for (int32_t bit = 128; bit != 0; bit >>= 1) {
    const __m256i more = _mm256_add_epi32(root, _mm256_set1_epi32(bit));
    const __m256i tooMuch = _mm256_cmpgt_epi32(_mm256_mullo_epi16(more, more), square);
    root = _mm256_blendv_epi8(more, root, tooMuch);
  }
  return _mm256_blendv_epi8(root, _mm256_set1_epi32(kLastEntry),
                            _mm256_cmpgt_epi32(square, _mm256_set1_epi32(65535)));
}

// Where the distance is a whole number, the index is it or one less, the one
// that the prediction from the two pixels before meets first. Settles the pixels
// in `doubtful`, in order; `index` has the distances.
VEXEL_AVX2 __m256i SettleTies(const RadialLine& line, const Before& before, __m256i index,
                              uint32_t doubtful) {
  alignas(32) int32_t entries[2 * kStep];
  int32_t* const now = entries + kStep;
  const int32_t start = before.base == kNoneBefore ? RadialStart(line) : before.base;
  Store(entries, _mm256_add_epi32(before.index, _mm256_set1_epi32(start)));
  Store(now, index);
  for (; doubtful != 0; doubtful &= doubtful - 1) {
    const int32_t i = __builtin_ctz(doubtful);
    const int32_t predicted = 2 * now[i - 1] - now[i - 2];
    if (predicted < now[i] && now[i] > 0) now[i]--;
  }
  return Load(now);
}

VEXEL_AVX2 inline uint32_t LaneBits(__m256i mask) {
  return static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(mask)));
}

// The indexes of the eight pixels at any positions.
VEXEL_AVX2 __m256i ExactIndexes(const RadialLine& line, const Before& before, __m256i x,
                                __m256i y) {
  // Beyond the radius it doesn't matter how far; this keeps squares in 32 bits.
  const __m256i far = _mm256_set1_epi32(400);
  const __m256i px = _mm256_min_epi32(_mm256_abs_epi32(_mm256_srai_epi32(x, 14)), far);
  const __m256i py = _mm256_min_epi32(_mm256_abs_epi32(_mm256_srai_epi32(y, 14)), far);
  const __m256i d = _mm256_add_epi32(_mm256_madd_epi16(px, px), _mm256_madd_epi16(py, py));
  __m256i root = Roots(d);
  // 65535 stands in for the square of 256.
  const __m256i atLimit = _mm256_cmpeq_epi32(d, _mm256_set1_epi32(65535));
  const __m256i atSquare = _mm256_cmpeq_epi32(_mm256_madd_epi16(root, root), d);
  const __m256i beyond = _mm256_cmpgt_epi32(d, _mm256_set1_epi32(65535));
  root = _mm256_sub_epi32(root, atLimit);
  const uint32_t doubtful =
      LaneBits(_mm256_or_si256(_mm256_andnot_si256(beyond, atSquare), atLimit));
  return doubtful != 0 ? SettleTies(line, before, root, doubtful) : root;
}

// The squared distances of positions within kFarthest.
VEXEL_AVX2 inline __m256i NearSquares(__m256i x, __m256i y) {
  const __m256i both = _mm256_blend_epi16(_mm256_srli_epi32(x, 14), _mm256_slli_epi32(y, 2), 0xAA);
  return _mm256_madd_epi16(both, both);
}

constexpr uint32_t kAllBits = 255;

// The indexes of eight pixels that aren't proven: `index` counts from the base of
// their window, and the squares are its own and the next one's.
__attribute__((noinline, cold)) VEXEL_AVX2 __m256i UnprovenIndexes(const RadialLine& line,
                                                                   const Before& before, __m256i x,
                                                                   __m256i y, __m256i index,
                                                                   __m256i square, __m256i next,
                                                                   int32_t base) {
  const __m256i d = NearSquares(x, y);
  const __m256i atNext = _mm256_cmpeq_epi32(d, next);
  const __m256i atSquare = _mm256_or_si256(_mm256_cmpeq_epi32(d, square), atNext);
  const __m256i inside =
      _mm256_and_si256(_mm256_cmpgt_epi32(d, square), _mm256_cmpgt_epi32(next, d));
  if (LaneBits(_mm256_or_si256(inside, atSquare)) != kAllBits) {
    return ExactIndexes(line, before, x, y);
  }
  const __m256i distance =
      _mm256_sub_epi32(_mm256_add_epi32(index, _mm256_set1_epi32(base)), atNext);
  return SettleTies(line, before, distance, LaneBits(atSquare));
}

// The same where all should lie beyond the radius.
VEXEL_AVX2 inline __m256i FarIndexes(const RadialLine& line, const Before& before, __m256i x,
                                     __m256i y) {
  const __m256i beyond = _mm256_cmpgt_epi32(NearSquares(x, y), _mm256_set1_epi32(65535));
  if (LaneBits(beyond) == kAllBits) return _mm256_set1_epi32(kLastEntry);
  return ExactIndexes(line, before, x, y);
}

VEXEL_AVX2 void SmoothRadial(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line,
                             int32_t windowVectors) {
  __m256i x = Progression(line.x, line.dx);
  __m256i y = Progression(line.y, line.dy);
  const __m256i advanceX = _mm256_set1_epi32(WrapMul(line.dx, kStep));
  const __m256i advanceY = _mm256_set1_epi32(WrapMul(line.dy, kStep));
  WindowWalk<kStep> walk(line, windowVectors);
  __m256i last = _mm256_setzero_si256();
  int32_t lastBase = kNoneBefore;
  while (n > 0) {
    const int32_t base = walk.Next();
    if (base == Windows::kFar) {
      for (int32_t v = 0; v < windowVectors && n > 0; v++, n -= kStep, at += 4 * kStep) {
        last = FarIndexes(line, {last, lastBase}, x, y);
        lastBase = 0;
        Put(at, n, LookUp(ramp, last));
        x = _mm256_add_epi32(x, advanceX);
        y = _mm256_add_epi32(y, advanceY);
      }
      continue;
    }
    const __m256i colors = Load(ramp + base);
    const __m256i squares = Load(radialSquares.at + base);
    const __m256i nextSquares = Load(radialSquares.at + base + 1);
    const __m256i first = _mm256_set1_epi32(radialSquares.at[base]);
    const __m256i inverse = _mm256_set1_epi32(radialWindows<kStep>.inverse[base]);
    for (int32_t v = 0; v < windowVectors && n > 0; v++, n -= kStep, at += 4 * kStep) {
      const __m256i d = NearSquares(x, y);
      __m256i i = _mm256_mulhi_epu16(_mm256_sub_epi32(d, first), inverse);
      i = _mm256_sub_epi32(i, _mm256_cmpgt_epi32(d, _mm256_permutevar8x32_epi32(nextSquares, i)));
      const __m256i square = _mm256_permutevar8x32_epi32(squares, i);
      const __m256i nextSquare = _mm256_permutevar8x32_epi32(nextSquares, i);
      const __m256i inside =
          _mm256_and_si256(_mm256_cmpgt_epi32(d, square), _mm256_cmpgt_epi32(nextSquare, d));
      if (LaneBits(inside) == kAllBits) {
        Put(at, n, _mm256_permutevar8x32_epi32(colors, i));
        last = i;
        lastBase = base;
      } else {
        last = UnprovenIndexes(line, {last, lastBase}, x, y, i, square, nextSquare, base);
        lastBase = 0;
        Put(at, n, LookUp(ramp, last));
      }
      x = _mm256_add_epi32(x, advanceX);
      y = _mm256_add_epi32(y, advanceY);
    }
  }
}

}  // namespace

VEXEL_AVX2 void SimdRadial(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line) {
  if (const int32_t windowVectors = WindowVectors<kStep>(line, n); windowVectors != 0) {
    SmoothRadial(at, n, ramp, line, windowVectors);
    return;
  }
  __m256i x = Progression(line.x, line.dx);
  __m256i y = Progression(line.y, line.dy);
  const __m256i advanceX = _mm256_set1_epi32(WrapMul(line.dx, kStep));
  const __m256i advanceY = _mm256_set1_epi32(WrapMul(line.dy, kStep));
  Before before = {_mm256_setzero_si256(), kNoneBefore};
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    before = {ExactIndexes(line, before, x, y), 0};
    Put(at, n, LookUp(ramp, before.index));
    x = _mm256_add_epi32(x, advanceX);
    y = _mm256_add_epi32(y, advanceY);
  }
}

}  // namespace vexel

#endif
