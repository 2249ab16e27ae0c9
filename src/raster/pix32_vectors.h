// What the inner loops for 256-bit integer vectors share. A function marked
// VEXEL_AVX2 is compiled for them whatever the rest is compiled for.
#pragma once

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstdint>

#include "raster/rcolor.h"

#define VEXEL_AVX2 __attribute__((target("avx2")))

namespace vexel {

constexpr int32_t kStep = 8;  // pixels a vector

VEXEL_AVX2 inline __m256i Load(const void* at) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(at));
}
VEXEL_AVX2 inline void Store(void* at, __m256i v) {
  _mm256_storeu_si256(static_cast<__m256i*>(at), v);
}

// -1 in the first n 32-bit lanes, to load and store what is left of a span.
VEXEL_AVX2 inline __m256i FirstLanes(int32_t n) {
  return _mm256_cmpgt_epi32(_mm256_set1_epi32(n), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
VEXEL_AVX2 inline __m256i LoadFirst(const uint8_t* at, __m256i lanes) {
  return _mm256_maskload_epi32(reinterpret_cast<const int*>(at), lanes);
}
VEXEL_AVX2 inline void StoreFirst(uint8_t* at, __m256i lanes, __m256i v) {
  _mm256_maskstore_epi32(reinterpret_cast<int*>(at), lanes, v);
}

VEXEL_AVX2 inline void Put(uint8_t* at, int32_t n, __m256i v) {
  if (n >= kStep) {
    Store(at, v);
  } else {
    StoreFirst(at, FirstLanes(n), v);
  }
}

// start, start + step and so on, wrapping.
VEXEL_AVX2 inline __m256i Progression(int32_t start, int32_t step) {
  return _mm256_add_epi32(
      _mm256_set1_epi32(start),
      _mm256_mullo_epi32(_mm256_set1_epi32(step), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7)));
}

VEXEL_AVX2 inline __m256i Gather(const uint32_t* base, __m256i index) {
  return _mm256_i32gather_epi32(reinterpret_cast<const int*>(base), index, 4);
}

// The entries of a ramp at eight indexes. Along a span they mostly lie close
// together, and then one load and a shuffle are faster than eight loads.
VEXEL_AVX2 inline __m256i LookUp(const uint32_t* ramp, __m256i index) {
  const int32_t first = _mm256_extract_epi32(index, 0);
  const int32_t end = _mm256_extract_epi32(index, 7);
  int32_t base = first < end ? first : end;
  if (base > kRampEntries - kStep) base = kRampEntries - kStep;
  const __m256i offset = _mm256_sub_epi32(index, _mm256_set1_epi32(base));
  // As unsigned numbers all from 0 to 7.
  if (_mm256_testz_si256(offset, _mm256_set1_epi32(~7)) == 0) return Gather(ramp, index);
  return _mm256_permutevar8x32_epi32(Load(reinterpret_cast<const uint8_t*>(ramp + base)), offset);
}

}  // namespace vexel

#endif
