// The inner loops for 256-bit integer vectors, eight pixels at a time. The
// functions are compiled for them whatever the rest is compiled for, and run
// only where the processor has them.
#include "raster/pix32_simd.h"

#if defined(__x86_64__)

#include "raster/pix32_vectors.h"
#include "raster/pixel_memory.h"

namespace vexel {
namespace {

// Half of eight pixels, in 16-bit channels, as CompositeWords has it: products
// by channel, shift and sum by words of two channels, then the mask.
VEXEL_AVX2 inline __m256i ComposeHalf(__m256i below, __m256i k, __m256i top) {
  const __m256i scaled = _mm256_srli_epi32(_mm256_mullo_epi16(below, k), 8);
  return _mm256_and_si256(_mm256_add_epi32(scaled, top), _mm256_set1_epi16(255));
}

// k of a half: 256 minus each pixel's alpha, in all its channels.
VEXEL_AVX2 inline __m256i Remainders(__m256i top) {
  const __m256i alpha = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(top, 0xFF), 0xFF);
  return _mm256_sub_epi16(_mm256_set1_epi16(256), alpha);
}

struct Halves {
  __m256i low, high;
};
VEXEL_AVX2 inline Halves Widen(__m256i v) {
  const __m256i zero = _mm256_setzero_si256();
  return {_mm256_unpacklo_epi8(v, zero), _mm256_unpackhi_epi8(v, zero)};
}

VEXEL_AVX2 inline __m256i Compose(__m256i top, __m256i below) {
  const Halves t = Widen(top);
  const Halves b = Widen(below);
  return _mm256_packus_epi16(ComposeHalf(b.low, Remainders(t.low), t.low),
                             ComposeHalf(b.high, Remainders(t.high), t.high));
}

VEXEL_AVX2 void Fill(uint8_t* at, int32_t n, uint32_t pixel) {
  const __m256i v = _mm256_set1_epi32(static_cast<int32_t>(pixel));
  for (; n >= 4 * kStep; n -= 4 * kStep, at += 16 * kStep) {
    Store(at, v);
    Store(at + 32, v);
    Store(at + 64, v);
    Store(at + 96, v);
  }
  for (; n >= kStep; n -= kStep, at += 4 * kStep) Store(at, v);
  for (; n > 0; n--, at += 4) Store32(at, pixel);
}

VEXEL_AVX2 void BlendColor(uint8_t* at, int32_t n, uint32_t color) {
  const __m256i top = Widen(_mm256_set1_epi32(static_cast<int32_t>(color))).low;
  const __m256i k = Remainders(top);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    const __m256i lanes = FirstLanes(n);
    const Halves b = Widen(n >= kStep ? Load(at) : LoadFirst(at, lanes));
    const __m256i v = _mm256_packus_epi16(ComposeHalf(b.low, k, top), ComposeHalf(b.high, k, top));
    if (n >= kStep) {
      Store(at, v);
    } else {
      StoreFirst(at, lanes, v);
    }
  }
}

VEXEL_AVX2 void BlendPixels(uint8_t* at, const uint8_t* src, int32_t n) {
  for (; n >= kStep; n -= kStep, at += 4 * kStep, src += 4 * kStep) {
    Store(at, Compose(Load(src), Load(at)));
  }
  if (n <= 0) return;
  const __m256i lanes = FirstLanes(n);
  StoreFirst(at, lanes, Compose(LoadFirst(src, lanes), LoadFirst(at, lanes)));
}

VEXEL_AVX2 void Linear(uint8_t* at, int32_t n, const uint32_t* ramp, int32_t pos, int32_t step) {
  __m256i p = Progression(pos, step);
  const __m256i advance = _mm256_set1_epi32(WrapMul(step, kStep));
  const __m256i centre = _mm256_set1_epi32(128);
  const __m256i last = _mm256_set1_epi32(256);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    __m256i i = _mm256_add_epi32(_mm256_srai_epi32(p, 15), centre);
    i = _mm256_min_epi32(_mm256_max_epi32(i, _mm256_setzero_si256()), last);
    Put(at, n, LookUp(ramp, i));
    p = _mm256_add_epi32(p, advance);
  }
}

VEXEL_AVX2 void Sample(uint8_t* at, int32_t n, const SampleLine& line) {
  const __m256i advanceX = _mm256_set1_epi32(WrapMul(line.dx, kStep));
  const __m256i advanceY = _mm256_set1_epi32(WrapMul(line.dy, kStep));
  __m256i x = Progression(line.x, line.dx);
  if (line.dy == 0) {
    const uint8_t* row = line.baseAddr + int64_t{Asr(line.y, 16)} * line.rowBytes;
    const auto* pixels = reinterpret_cast<const int*>(row);
    // Enlarged: eight pixels come from at most eight side by side.
    if (line.dx >= 0 && line.dx <= kFixedOne) {
      SFIXED from = line.x;
      for (; n >= kStep && Asr(from, 16) + kStep <= line.width; n -= kStep, at += 4 * kStep) {
        const __m256i first = _mm256_set1_epi32(Asr(from, 16));
        const __m256i offset = _mm256_sub_epi32(_mm256_srai_epi32(x, 16), first);
        Store(at, _mm256_permutevar8x32_epi32(Load(row + 4 * Asr(from, 16)), offset));
        x = _mm256_add_epi32(x, advanceX);
        from += kStep * line.dx;
      }
    }
    for (; n >= kStep; n -= kStep, at += 4 * kStep) {
      Store(at, _mm256_i32gather_epi32(pixels, _mm256_srai_epi32(x, 16), 4));
      x = _mm256_add_epi32(x, advanceX);
    }
    if (n <= 0) return;
    // What lies behind the span's end may lie outside of the bitmap.
    const __m256i lanes = FirstLanes(n);
    StoreFirst(at, lanes,
               _mm256_mask_i32gather_epi32(_mm256_setzero_si256(), pixels, _mm256_srai_epi32(x, 16),
                                           lanes, 4));
    return;
  }
  __m256i y = Progression(line.y, line.dy);
  // Sides are below 32768, so a pixel's number fits 32 bits.
  const auto* pixels = reinterpret_cast<const int*>(line.baseAddr);
  const __m256i pitch = _mm256_set1_epi32(line.rowBytes >> 2);
  for (; n > 0; n -= kStep, at += 4 * kStep) {
    const __m256i index = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_srai_epi32(y, 16), pitch),
                                           _mm256_srai_epi32(x, 16));
    if (n >= kStep) {
      Store(at, _mm256_i32gather_epi32(pixels, index, 4));
    } else {
      const __m256i lanes = FirstLanes(n);
      StoreFirst(at, lanes,
                 _mm256_mask_i32gather_epi32(_mm256_setzero_si256(), pixels, index, lanes, 4));
    }
    x = _mm256_add_epi32(x, advanceX);
    y = _mm256_add_epi32(y, advanceY);
  }
}

constexpr Pix32Ops simdOps = {Fill, BlendColor, BlendPixels, Linear, SimdRadial, Sample};

}  // namespace

const Pix32Ops* Pix32SimdOps() {
  static const bool supported = __builtin_cpu_supports("avx2") != 0;
  return supported ? &simdOps : nullptr;
}

}  // namespace vexel

#else

namespace vexel {

const Pix32Ops* Pix32SimdOps() {
  return nullptr;
}

}  // namespace vexel

#endif
