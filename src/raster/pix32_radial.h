// The index of a radial gradient's ramp along a span: the distance from the
// centre, found without a root. The radius hardly changes its slope from pixel
// to pixel, so the last change predicts it, and the squares around correct it.
#pragma once

#include <cstdint>

#include "geometry/point.h"
#include "raster/pix32_ops.h"
#include "raster/render_tables.h"

namespace vexel {

// The index that stands for those before a span's first pixel.
inline int32_t RadialStart(const RadialLine& line) {
  const SPOINT p = {line.x, line.y};
  const int32_t i = Asr(PointLength(&p), 14);
  return i < 0 ? 0 : i > 256 ? 256 : i;
}

class RadialIndex {
 public:
  // `start` stands for the pixels before the first.
  explicit RadialIndex(int32_t start) : last_(start), before_(start) {}

  // The index at a position in whole units, 256 to the radius.
  int32_t Next(int64_t px, int64_t py) {
    const int64_t d = px * px + py * py;
    int32_t i = Predicted();
    for (;;) {
      if (d < squareTable[i]) {
        i--;
      } else if (i > 255 || d <= squareTable[i + 1]) {
        break;
      } else {
        i++;
      }
    }
    Push(i);
    return i;
  }

  int32_t Predicted() const {
    const int32_t i = 2 * last_ - before_;
    return i < 0 ? 0 : i > 256 ? 256 : i;
  }
  void Push(int32_t i) {
    before_ = last_;
    last_ = i;
  }

 private:
  int32_t last_;    // the index of the pixel before
  int32_t before_;  // and of the one before that
};

}  // namespace vexel
