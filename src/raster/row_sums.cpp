// Sums of samples, and the drawing of the pixels they belong to.
#include "raster/row_sums.h"

#include <cstdlib>
#include <cstring>

#include "raster/pix32_ops.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"

namespace vexel {
namespace {

constexpr PackedRGBI kChannelMask = 0x00FF00FF00FF00FF;

// Spans wider than this many pixels between their ends are added lane by lane.
constexpr int32_t kWideSpan = 12;

// Counts the samples that narrow spans have in each pixel from x = at on,
// quarter-pixels, which none of them starts before.
#if defined(__SSE2__)
// Ends and starts in one register of 16-bit numbers, which has minimum and
// maximum on all processors.
class SampleCounter {
 public:
  SampleCounter(Lanes x1, Lanes x2, int32_t at)
      : ends_(_mm_packs_epi32(reinterpret_cast<__m128i>(x2 - at),
                              reinterpret_cast<__m128i>(x1 - at))) {}

  int32_t Next() {
    const __m128i four = _mm_set1_epi16(4);
    const __m128i inside = _mm_min_epi16(_mm_max_epi16(ends_, _mm_setzero_si128()), four);
    __m128i n = _mm_madd_epi16(inside, _mm_setr_epi16(1, 1, 1, 1, -1, -1, -1, -1));
    n = _mm_add_epi32(n, _mm_shuffle_epi32(n, 0x4E));
    n = _mm_add_epi32(n, _mm_shuffle_epi32(n, 0xB1));
    ends_ = _mm_sub_epi16(ends_, four);
    return _mm_cvtsi128_si32(n);
  }

 private:
  __m128i ends_;
};
#else
class SampleCounter {
 public:
  SampleCounter(Lanes x1, Lanes x2, int32_t at) : x1_(x1 - at), x2_(x2 - at) {}

  int32_t Next() {
    const auto clamp = [](Lanes x) { return MinLanes(MaxLanes(x, SplatLanes(0)), SplatLanes(4)); };
    const int32_t n = SumOf(clamp(x2_) - clamp(x1_));
    x1_ -= 4;
    x2_ -= 4;
    return n;
  }

 private:
  Lanes x1_, x2_;
};
#endif

uint32_t PackedToPix32(PackedRGBI c) {
  // The four channels' low bytes, brought together.
  c |= c >> 8;
  return static_cast<uint32_t>(c & 0xFFFF) | static_cast<uint32_t>(c >> 16 & 0xFFFF0000);
}

PackedRGBI Pix32ToPacked(uint32_t v) {
  const uint64_t w = (v & 0xFFFFu) | (uint64_t{v} & 0xFFFF0000u) << 16;
  return (w | w << 8) & kChannelMask;
}

// top over below, in the arithmetic of CompositeWords.
PackedRGBI Over(PackedRGBI top, PackedRGBI below) {
  const auto k = static_cast<uint32_t>(256 - (top >> 48));
  const uint32_t bg = (static_cast<uint32_t>(below) * k >> 8) + static_cast<uint32_t>(top);
  const uint32_t ra =
      (static_cast<uint32_t>(below >> 32) * k >> 8) + static_cast<uint32_t>(top >> 32);
  return (uint64_t{ra} << 32 | bg) & kChannelMask;
}

}  // namespace

RowSums::~RowSums() {
  std::free(sums_);
  std::free(touched_);
  std::free(broken_);
}

bool RowSums::Reset(int32_t width, bool trackBreaks) {
  trackBreaks_ = trackBreaks;
  // One more: a span that ends at the row's end may name the pixel behind it.
  nWords_ = width / 64 + 1;
  const auto words = static_cast<size_t>(nWords_);
  if (nWords_ * 64 > room_) {
    std::free(sums_);
    std::free(touched_);
    std::free(broken_);
    // The sums and bits are zero between rows; only here they are cleared.
    sums_ = static_cast<PackedRGBI*>(std::calloc(words * 64, sizeof(PackedRGBI)));
    touched_ = static_cast<uint64_t*>(std::calloc(words, sizeof(uint64_t)));
    broken_ = static_cast<uint64_t*>(std::calloc(words, sizeof(uint64_t)));
    room_ = sums_ != nullptr && touched_ != nullptr && broken_ != nullptr ? nWords_ * 64 : 0;
  }
  return room_ != 0;
}

void RowSums::Touch(int32_t x1, int32_t x2) {
  for (int32_t w = x1 >> 6; w <= (x2 - 1) >> 6; w++) {
    uint64_t bits = ~uint64_t{0};
    if (w == x1 >> 6) bits &= ~uint64_t{0} << (x1 & 63);
    if (w == (x2 - 1) >> 6) bits &= ~uint64_t{0} >> (63 - ((x2 - 1) & 63));
    touched_[w] |= bits;
  }
}

void RowSums::AddSamples(PackedRGBI c, int32_t x1, int32_t x2, uint32_t n) {
  if (x1 >= x2) return;
  const int32_t first = x1 >> 2;
  const int32_t last = x2 >> 2;
  c *= n;
  if (first == last) {
    Add(first, c, static_cast<uint32_t>(x2 - x1));
    return;
  }
  int32_t whole = first;
  if ((x1 & 3) != 0) {
    Add(first, c, 4 - static_cast<uint32_t>(x1 & 3));
    whole++;
  }
  if (whole < last) {
    Touch(whole, last);
    const PackedRGBI four = c * 4;
    for (int32_t x = whole; x < last; x++) sums_[x] += four;
  }
  if ((x2 & 3) != 0) Add(last, c, static_cast<uint32_t>(x2 & 3));
}

void RowSums::AddSpan(PackedRGBI c, Lanes x1, Lanes x2) {
  const int32_t first = MinOf(x1) >> 2;
  const int32_t end = (MaxOf(x2) + 3) >> 2;
  if (end - first > kWideSpan) {
    for (int32_t l = 0; l < kLanes; l++) AddSamples(c, x1[l], x2[l], 1);
    return;
  }
  SampleCounter counter(x1, x2, first * 4);
  for (int32_t x = first; x < end; x++) {
    const int32_t n = counter.Next();
    if (n != 0) Add(x, c, static_cast<uint32_t>(n));
  }
}

void RowSums::DrawPixel(CRaster* raster, int32_t x, PackedRGBI sum, bool broken) {
  // A pixel whose alpha adds up to nothing is drawn if a run covers it whole.
  if (sum >> 48 == 0 && (!trackBreaks_ || broken)) return;
  const PackedRGBI c = sum >> 4 & kChannelMask;
  RGBI pixel = UnpackRGBI(c);
  if (pixel.alpha != 255) {
    RGBI below;
    raster->getBackground(raster, x, x + 1, &below);
    pixel = UnpackRGBI(Over(c, PackRGBI(below)));
  }
  raster->drawRGBSlab(raster, x, x + 1, &pixel);
}

void RowSums::Draw(CRaster* raster) {
  const bool direct = raster->pixelFormat >= pix32;
  uint8_t* row = raster->rowAddr + int64_t{4} * raster->xOffset;
  for (int32_t w = 0; w < nWords_; w++) {
    uint64_t bits = touched_[w];
    const uint64_t broken = broken_[w];
    if ((bits | broken) == 0) {
      // An empty word is mostly followed by more.
      while (!trackBreaks_ && w + 4 < nWords_ &&
             (touched_[w + 1] | touched_[w + 2] | touched_[w + 3] | touched_[w + 4]) == 0) {
        w += 4;
      }
      continue;
    }
    touched_[w] = 0;
    broken_[w] = 0;
    while (bits != 0) {
      const int32_t bit = __builtin_ctzll(bits);
      bits &= bits - 1;
      const int32_t x = w * 64 + bit;
      const PackedRGBI sum = sums_[x];
      sums_[x] = 0;
      if (!direct || sum >> 48 == 0) {
        DrawPixel(raster, x, sum, (broken >> bit & 1) != 0);
        continue;
      }
      uint8_t* at = row + int64_t{4} * x;
      PackedRGBI c = sum >> 4 & kChannelMask;
      if (c >> 48 != 255) {
        c = Over(c, raster->useBackground ? Pix32ToPacked(Load32(at)) : kWhiteBackground);
      }
      Store32(at, PackedToPix32(c));
    }
  }
}

}  // namespace vexel
