// The inner loops that gain from 512-bit integer vectors, sixteen pixels at a
// time: those that look colours up. Sixteen entries of a ramp, or pixels of a
// bitmap's row, are one register, and one instruction picks from it.
#include "raster/pix32_simd.h"

#if defined(__x86_64__)

// The compiler's own functions for these vectors leave registers undefined on
// purpose, which g++ 12 warns of.
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>

#include "raster/pix32_radial.h"
#include "raster/pix32_radial_windows.h"

#define VEXEL_AVX512 __attribute__((target("avx512f,avx512bw")))

namespace vexel {
namespace {

constexpr int32_t kStep = 16;  // pixels a vector
constexpr __mmask16 kAll = 0xFFFF;
using Windows = RadialWindows<kStep>;

VEXEL_AVX512 inline __m512i Load(const void* at) {
  return _mm512_loadu_si512(at);
}
VEXEL_AVX512 inline __m512i Splat(int32_t v) {
  return _mm512_set1_epi32(v);
}
VEXEL_AVX512 inline __m512i Counting() {
  return _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}

// The first n lanes, to load and store what is left of a span.
VEXEL_AVX512 inline __mmask16 FirstLanes(int32_t n) {
  return n >= kStep ? kAll : static_cast<__mmask16>((1 << n) - 1);
}
VEXEL_AVX512 inline void Put(uint8_t* at, int32_t n, __m512i v) {
  if (n >= kStep) {
    _mm512_storeu_si512(at, v);
  } else {
    _mm512_mask_storeu_epi32(at, FirstLanes(n), v);
  }
}

// start, start + step and so on, wrapping.
VEXEL_AVX512 inline __m512i Progression(int32_t start, int32_t step) {
  return _mm512_add_epi32(Splat(start), _mm512_mullo_epi32(Splat(step), Counting()));
}

VEXEL_AVX512 inline __m512i Gather(const void* base, __m512i index, __mmask16 lanes) {
  return _mm512_mask_i32gather_epi32(_mm512_setzero_si512(), lanes, index, base, 4);
}

VEXEL_AVX512 void Linear(uint8_t* at, int32_t n, const uint32_t* ramp, int32_t pos, int32_t step) {
  __m512i p = Progression(pos, step);
  const int32_t advance = WrapMul(step, kStep);
  // Sixteen pixels that move by no more than an entry each need sixteen entries.
  const bool isSmooth = step >= -0x8000 && step <= 0x8000;
  int32_t low = step < 0 ? WrapAdd(pos, WrapMul(step, kStep - 1)) : pos;
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    const __m512i i = _mm512_srai_epi32(p, 15);
    const int32_t base = Asr(low, 15) + 128;
    if (isSmooth && static_cast<uint32_t>(base) <= kRampEntries - kStep) {
      const __m512i offset = _mm512_sub_epi32(i, Splat(base - 128));
      Put(at, n, _mm512_permutexvar_epi32(offset, Load(ramp + base)));
    } else {
      const __m512i entry = _mm512_max_epi32(_mm512_add_epi32(i, Splat(128)), Splat(0));
      Put(at, n, Gather(ramp, _mm512_min_epi32(entry, Splat(kLastEntry)), kAll));
    }
    p = _mm512_add_epi32(p, Splat(advance));
    low = WrapAdd(low, advance);
  }
}

// The indexes of the sixteen pixels before some, counted from a base.
struct Before {
  __m512i index;
  int32_t base;
};
constexpr int32_t kNoneBefore = -1;  // a base

// The pixels of `ties` for which the two pixels before predict less than the
// distance.
VEXEL_AVX512 inline __mmask16 PredictedBelow(__m512i old, __m512i index, __m512i distance,
                                             __mmask16 ties) {
  const __m512i last = _mm512_add_epi32(Counting(), Splat(kStep - 1));
  const __m512i secondLast = _mm512_add_epi32(Counting(), Splat(kStep - 2));
  const __m512i a = _mm512_permutex2var_epi32(old, last, index);
  const __m512i b = _mm512_permutex2var_epi32(old, secondLast, index);
  const __m512i predicted = _mm512_sub_epi32(_mm512_add_epi32(a, a), b);
  return _mm512_mask_cmplt_epi32_mask(ties, predicted, distance);
}

// Where the distance is a whole number, the index is it or one less, the one
// that the prediction from the two pixels before meets first. These again may
// be such pixels: a run of them mostly goes the way of its first, and what
// doesn't settles in some turns.
VEXEL_AVX512 inline __m512i SettleTies(const RadialLine& line, const Before& before,
                                       __m512i distance, __mmask16 ties) {
  const int32_t start = before.base == kNoneBefore ? RadialStart(line) : before.base;
  const __m512i old = _mm512_add_epi32(before.index, Splat(start));
  ties &= _mm512_cmpgt_epi32_mask(distance, _mm512_setzero_si512());
  const uint32_t runs = ties;
  const uint32_t starts = runs & ~(runs << 1);
  const uint32_t lowStarts = PredictedBelow(old, distance, distance, ties) & starts;
  // The carry runs through the bits of a run.
  auto low = static_cast<__mmask16>(runs & ~(runs + lowStarts));
  for (;;) {
    const __m512i index = _mm512_mask_sub_epi32(distance, low, distance, Splat(1));
    const __mmask16 next = PredictedBelow(old, index, distance, ties);
    if (next == low) return index;
    low = next;
  }
}

// The indexes of the sixteen pixels at any positions, in whole units.
VEXEL_AVX512 inline __m512i ExactIndexes(const RadialLine& line, const Before& before, __m512i x,
                                         __m512i y) {
  // Beyond the radius it doesn't matter how far; this keeps squares in 32 bits.
  const __m512i far = Splat(400);
  const __m512i px = _mm512_min_epi32(_mm512_abs_epi32(x), far);
  const __m512i py = _mm512_min_epi32(_mm512_abs_epi32(y), far);
  const __m512i d = _mm512_add_epi32(_mm512_madd_epi16(px, px), _mm512_madd_epi16(py, py));
  // The whole part of the root, bit by bit.
  __m512i root = _mm512_setzero_si512();
  for (int32_t bit = 128; bit != 0; bit >>= 1) {
    const __m512i more = _mm512_add_epi32(root, Splat(bit));
    const __mmask16 fits = _mm512_cmple_epi32_mask(_mm512_mullo_epi16(more, more), d);
    root = _mm512_mask_mov_epi32(root, fits, more);
  }
  // 65535 stands in for the square of 256.
  const __m512i limit = Splat(65535);
  const __mmask16 outer = _mm512_cmpge_epi32_mask(d, limit);
  const __mmask16 ties = (_mm512_cmpeq_epi32_mask(_mm512_madd_epi16(root, root), d) & ~outer) |
                         _mm512_cmpeq_epi32_mask(d, limit);
  root = _mm512_mask_mov_epi32(root, outer, Splat(kLastEntry));
  return ties != 0 ? SettleTies(line, before, root, ties) : root;
}

// The entries of a ramp, which mostly lie in the window at base.
VEXEL_AVX512 inline __m512i LookUp(const uint32_t* ramp, int32_t base, __m512i index) {
  const __m512i offset = _mm512_sub_epi32(index, Splat(base));
  if (_mm512_cmplt_epu32_mask(offset, Splat(kStep)) == kAll) {
    return _mm512_permutexvar_epi32(offset, Load(ramp + base));
  }
  return Gather(ramp, index, kAll);
}

// Positions of sixteen pixels of a line, and the indexes before them. Positions
// have kFraction fraction bits.
template <int32_t kFraction>
struct RadialWalk {
  const RadialLine& line;
  __m512i x, y;
  __m512i advanceX, advanceY;
  Before before;

  static constexpr int32_t Scale(int32_t v) { return WrapShl(v, kFraction - 14); }

  VEXEL_AVX512 explicit RadialWalk(const RadialLine& l)
      : line(l),
        x(Progression(Scale(l.x), Scale(l.dx))),
        y(Progression(Scale(l.y), Scale(l.dy))),
        advanceX(Splat(WrapMul(Scale(l.dx), kStep))),
        advanceY(Splat(WrapMul(Scale(l.dy), kStep))),
        before{_mm512_setzero_si512(), kNoneBefore} {}

  VEXEL_AVX512 __m512i Exact() {
    const __m512i px = _mm512_srai_epi32(x, kFraction);
    before = {ExactIndexes(line, before, px, _mm512_srai_epi32(y, kFraction)), 0};
    return before.index;
  }
  VEXEL_AVX512 void Advance() {
    x = _mm512_add_epi32(x, advanceX);
    y = _mm512_add_epi32(y, advanceY);
  }
};

// Whole units are the upper halves of near positions.
using NearWalk = RadialWalk<16>;
VEXEL_AVX512 inline __m512i Squares(const NearWalk& w) {
  const __m512i both = _mm512_mask_blend_epi16(0xAAAAAAAA, _mm512_srli_epi32(w.x, 16), w.y);
  return _mm512_madd_epi16(both, both);
}

// Some vectors in a window, whose guesses are at most kCorrections too low.
template <int32_t kCorrections>
VEXEL_AVX512 inline void DrawWindow(uint8_t* at, int32_t n, const uint32_t* ramp, int32_t base,
                                    NearWalk* w) {
  const __m512i colors = Load(ramp + base);
  const __m512i nextSquares = Load(radialSquares.at + base + 1);
  const __m512i first = Splat(radialWindows<kStep>.first[base]);
  const __m512i room = Splat(radialWindows<kStep>.room[base]);
  const __m512i inverse = Splat(radialWindows<kStep>.inverse[base]);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    const __m512i d = Squares(*w);
    const __m512i excess = _mm512_sub_epi32(d, first);
    const __mmask16 inside = _mm512_cmplt_epu32_mask(excess, room);
    __mmask16 holds = inside;
    __m512i i = _mm512_mulhi_epu16(excess, inverse);
    for (int32_t k = 0; k < kCorrections; k++) {
      const __m512i next = _mm512_permutexvar_epi32(i, nextSquares);
      holds = _mm512_mask_cmpneq_epi32_mask(holds, d, next);
      i = _mm512_mask_add_epi32(i, _mm512_cmpge_epi32_mask(d, next), i, Splat(1));
    }
    __m512i color = _mm512_permutexvar_epi32(i, colors);
    if (_mm512_kortestc(holds, holds) != 0) {
      w->before = {i, base};
    } else {
      if (inside == kAll) {
        const __m512i distance = _mm512_add_epi32(i, Splat(base));
        const auto ties = static_cast<__mmask16>(~holds);
        w->before = {SettleTies(w->line, w->before, distance, ties), 0};
      } else {
        w->Exact();
      }
      color = LookUp(ramp, base, w->before.index);
    }
    Put(at, n, color);
    w->Advance();
  }
}

VEXEL_AVX512 void RadialAnywhere(uint8_t* at, int32_t n, const uint32_t* ramp,
                                 const RadialLine& line) {
  RadialWalk<14> w(line);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    Put(at, n, Gather(ramp, w.Exact(), kAll));
    w.Advance();
  }
}

VEXEL_AVX512 void Radial(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line) {
  const int32_t windowPixels = kStep * WindowVectors<kStep>(line, n);
  if (windowPixels == 0) {
    RadialAnywhere(at, n, ramp, line);
    return;
  }
  NearWalk w(line);
  WindowWalk<kStep> walk(line, windowPixels / kStep);
  for (; n > 0; n -= windowPixels, at += 4 * windowPixels) {
    const int32_t pixels = n < windowPixels ? n : windowPixels;
    const int32_t base = walk.Next();
    if (base < Windows::kCloseBase) {
      DrawWindow<Windows::kCorrections>(at, pixels, ramp, base, &w);
      continue;
    }
    if (base != Windows::kFar) {
      DrawWindow<1>(at, pixels, ramp, base, &w);
      continue;
    }
    for (int32_t done = 0; done < pixels; done += kStep) {
      const __mmask16 beyond = _mm512_cmpgt_epi32_mask(Squares(w), Splat(65535));
      if (beyond == kAll) {
        w.before = {Splat(kLastEntry), 0};
        Put(at + 4 * done, pixels - done, Splat(static_cast<int32_t>(ramp[kLastEntry])));
      } else {
        Put(at + 4 * done, pixels - done, Gather(ramp, w.Exact(), kAll));
      }
      w.Advance();
    }
  }
}

VEXEL_AVX512 void Sample(uint8_t* at, int32_t n, const SampleLine& line) {
  __m512i x = Progression(line.x, line.dx);
  const __m512i advanceX = Splat(WrapMul(line.dx, kStep));
  if (line.dy == 0) {
    const uint8_t* row = line.baseAddr + int64_t{Asr(line.y, 16)} * line.rowBytes;
    // Enlarged: sixteen pixels come from at most as many side by side.
    if (line.dx >= 0 && line.dx <= kFixedOne) {
      const SFIXED advance = kStep * line.dx;
      const int32_t lastFirst = line.width - kStep;
      SFIXED from = line.x;
      for (; n > 0 && Asr(from, 16) <= lastFirst; n -= kStep, at += 4 * kStep) {
        const int32_t first = Asr(from, 16);
        const __m512i offset = _mm512_sub_epi32(_mm512_srai_epi32(x, 16), Splat(first));
        Put(at, n, _mm512_permutexvar_epi32(offset, Load(row + 4 * first)));
        x = _mm512_add_epi32(x, advanceX);
        from += advance;
      }
    }
    for (; n > 0; n -= kStep, at += 4 * kStep) {
      // What lies behind the span's end may lie outside of the bitmap.
      Put(at, n, Gather(row, _mm512_srai_epi32(x, 16), FirstLanes(n)));
      x = _mm512_add_epi32(x, advanceX);
    }
    return;
  }
  __m512i y = Progression(line.y, line.dy);
  const __m512i advanceY = Splat(WrapMul(line.dy, kStep));
  // Sides are below 32768, so a pixel's number fits 32 bits.
  const __m512i pitch = Splat(line.rowBytes >> 2);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    const __m512i index = _mm512_add_epi32(_mm512_mullo_epi32(_mm512_srai_epi32(y, 16), pitch),
                                           _mm512_srai_epi32(x, 16));
    Put(at, n, Gather(line.baseAddr, index, FirstLanes(n)));
    x = _mm512_add_epi32(x, advanceX);
    y = _mm512_add_epi32(y, advanceY);
  }
}

}  // namespace

const Pix32Ops* Pix32Simd512Ops() {
  static const Pix32Ops ops = [] {
    Pix32Ops set = {};
    if (__builtin_cpu_supports("avx512bw") != 0 && Pix32SimdOps() != nullptr) {
      set = *Pix32SimdOps();
      set.linear = Linear;
      set.radial = Radial;
      set.sample = Sample;
    }
    return set;
  }();
  return ops.fill != nullptr ? &ops : nullptr;
}

}  // namespace vexel

#else

namespace vexel {

const Pix32Ops* Pix32Simd512Ops() {
  return nullptr;
}

}  // namespace vexel

#endif
