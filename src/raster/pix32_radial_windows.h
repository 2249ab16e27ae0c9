// Windows into a radial gradient's ramp, for the vector forms. Where the distance
// grows by less than an entry a pixel, the indexes of some vectors lie in a window
// of as many entries as a vector has, which the distances at both its ends tell.
//
// Inside, the excess over the square at the window's start gives a guess that is
// hardly ever more than one too low, and the squares on each side of the
// corrected guess prove it. What isn't proven goes another, exact way.
#pragma once

#include <cstdint>

#include "geometry/intmath.h"
#include "raster/pix32_ops.h"
#include "raster/rcolor.h"

namespace vexel {

inline constexpr int32_t kLastEntry = kRampEntries - 1;

// Index i holds distances whose squares lie between entry i and entry i + 1; a
// square itself may belong to either side.
struct RadialSquares {
  int32_t at[kRampEntries + 1];
};
constexpr RadialSquares MakeRadialSquares() {
  RadialSquares t = {};
  for (int32_t i = 0; i < kLastEntry; i++) t.at[i] = i * i;
  t.at[kLastEntry] = 65535;
  t.at[kRampEntries] = kInt32Max;
  return t;
}
inline constexpr RadialSquares radialSquares = MakeRadialSquares();

// For windows of kSize entries.
template <int32_t kSize>
struct RadialWindows {
  static constexpr int32_t kLastBase = kRampEntries - kSize;
  static constexpr int32_t kFar = 255;  // all is beyond the radius
  static constexpr int32_t kFarSquare = 65536 / 16;
  // From this base on a guess is at most one too low, below it kCorrections:
  // near the centre a window spans a large part of the distance.
  static constexpr int32_t kCloseBase = 25;
  static constexpr int32_t kCorrections = 5;

  // By a window's first entry i. Guesses count from the first number above the
  // square of i, and hold for as many as there are below the window's end. One at
  // a square is always too low, so the corrections meet all squares.
  int32_t first[kRampEntries];
  int32_t room[kRampEntries];
  // 65536 / (2 i + kSize): makes indexes of what is above the square of i.
  int32_t inverse[kRampEntries];
  // By a sixteenth of a squared distance: a window that begins below its index,
  // or kFar.
  uint8_t base[kFarSquare + 1];
};
template <int32_t kSize>
constexpr RadialWindows<kSize> MakeRadialWindows() {
  using Windows = RadialWindows<kSize>;
  Windows t = {};
  for (int32_t i = 0; i < kRampEntries; i++) {
    t.first[i] = i * i + 1;
    t.room[i] = kSize * (2 * i + kSize) - 1;
    t.inverse[i] = 65536 / (2 * i + kSize);
  }
  for (int32_t i = 0, root = 0; i < Windows::kFarSquare; i++) {
    while ((root + 1) * (root + 1) <= 16 * i) root++;
    // Cut positions may make the distance go up and down by one on the way.
    const int32_t base = root < 1 ? 0 : root - 1;
    t.base[i] = static_cast<uint8_t>(base < Windows::kLastBase ? base : Windows::kLastBase);
  }
  t.base[Windows::kFarSquare] = Windows::kFar;
  return t;
}
template <int32_t kSize>
inline constexpr RadialWindows<kSize> radialWindows = MakeRadialWindows<kSize>();

// Goes along a line from window to window.
template <int32_t kSize>
class WindowWalk {
 public:
  WindowWalk(const RadialLine& line, int32_t vectors)
      : x_(line.x),
        y_(line.y),
        dx_(WrapMul(line.dx, kSize * vectors)),
        dy_(WrapMul(line.dy, kSize * vectors)),
        here_(AtBorder()) {}

  // The first entry of the next window, or kFar.
  int32_t Next() {
    const int32_t before = here_;
    here_ = AtBorder();
    return before < here_ ? before : here_;
  }

 private:
  int32_t AtBorder() {
    const int32_t px = Asr(x_, 14);
    const int32_t py = Asr(y_, 14);
    const int32_t square = (px * px + py * py) >> 4;
    constexpr int32_t kFarSquare = RadialWindows<kSize>::kFarSquare;
    x_ = WrapAdd(x_, dx_);
    y_ = WrapAdd(y_, dy_);
    return radialWindows<kSize>.base[square < kFarSquare ? square : kFarSquare];
  }

  int32_t x_, y_;
  int32_t dx_, dy_;
  int32_t here_;
};

// How many vectors a window has room for, at most four; 0 if the step is too
// large for windows, or positions may not fit 16 bits without their fraction.
template <int32_t kSize>
int32_t WindowVectors(const RadialLine& line, int32_t n) {
  constexpr int64_t kFarthest = int64_t{1} << 28;
  const auto isNear = [n](int64_t from, int64_t step) {
    const int64_t to = from + (n + 8 * kSize) * step;
    return from > -kFarthest && from < kFarthest && to > -kFarthest && to < kFarthest;
  };
  if (!isNear(line.x, line.dx) || !isNear(line.y, line.dy)) return 0;
  // Two entries and a bit are for cut positions.
  constexpr int64_t kMostStep = (int64_t{1} << 14) * (10 * kSize - 22) / (10 * kSize);
  const int64_t step = int64_t{line.dx} * line.dx + int64_t{line.dy} * line.dy;
  int32_t vectors = 4;
  while (vectors > 0 && vectors * vectors * step > kMostStep * kMostStep) vectors--;
  return vectors;
}

}  // namespace vexel
