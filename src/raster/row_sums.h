// The pixels of a row that are not wholly one colour's: their 16 samples are
// summed up, in any order, and drawn when the row is done.
#pragma once

#include <cstdint>

#include "geometry/color.h"
#include "raster/lanes.h"

namespace vexel {

class CRaster;

// An RGBI in one word, blue lowest: sums of up to 16 colours fit its 16-bit
// channels, and so does a multiplication of all four by up to 16.
using PackedRGBI = uint64_t;

inline PackedRGBI PackRGBI(const RGBI& c) {
  return c.blue | uint64_t{c.green} << 16 | uint64_t{c.red} << 32 | uint64_t{c.alpha} << 48;
}
inline RGBI UnpackRGBI(PackedRGBI v) {
  return {static_cast<uint16_t>(v), static_cast<uint16_t>(v >> 16), static_cast<uint16_t>(v >> 32),
          static_cast<uint16_t>(v >> 48)};
}

class RowSums {
 public:
  RowSums() = default;
  ~RowSums();
  RowSums(const RowSums&) = delete;
  RowSums& operator=(const RowSums&) = delete;

  // Makes room for the pixels 0 to width - 1, all sums 0. False without memory.
  // With `trackBreaks` the raster tells where spans end inside of pixels.
  [[nodiscard]] bool Reset(int32_t width, bool trackBreaks);

  // Adds n samples of a colour to pixel x.
  void Add(int32_t x, PackedRGBI c, uint32_t n) {
    sums_[x] += c * n;
    touched_[x >> 6] |= uint64_t{1} << (x & 63);
  }

  // Adds a colour's samples from x1[l] to x2[l] - 1 in each lane, quarter-pixels.
  void AddSpan(PackedRGBI c, Lanes x1, Lanes x2);

  // Adds a colour's samples from x1 to x2 - 1 in n lanes, quarter-pixels.
  void AddSamples(PackedRGBI c, int32_t x1, int32_t x2, uint32_t n);

  // Notes that a span ends at x, quarter-pixels, in some lane.
  void Break(int32_t x) {
    if (trackBreaks_ && (x & 3) != 0) broken_[x >> 8] |= uint64_t{1} << (x >> 2 & 63);
  }
  bool TracksBreaks() const { return trackBreaks_; }

  // Draws the touched pixels into the raster's row, and clears the sums.
  void Draw(CRaster* raster);

 private:
  void Touch(int32_t x1, int32_t x2);
  void DrawPixel(CRaster* raster, int32_t x, PackedRGBI sum, bool broken);

  PackedRGBI* sums_ = nullptr;   // by pixel
  uint64_t* touched_ = nullptr;  // a bit a pixel: has something in sums_
  uint64_t* broken_ = nullptr;   // a bit a pixel: some span ends inside
  int32_t room_ = 0;             // pixels
  int32_t nWords_ = 0;           // of touched_ and broken_, in use
  bool trackBreaks_ = false;
};

}  // namespace vexel
