// A piece of a pixel row of anti-aliased drawing: a range of quarter-pixels in
// which none of the row's four sub-scanlines changes its colours.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

struct RColor;

// Sub-scanlines of a pixel row, and quarter-columns of a pixel.
inline constexpr int32_t kSubScanlines = 4;
// Colours that one sub-scanline can stack up in a run.
inline constexpr int32_t kMaxStack = 12;

struct RRun {
  int32_t xmin;       // quarter-pixels
  int32_t xmax;       // exclusive
  RRun* next;         // in ascending x
  int32_t nStacks;    // sub-scanlines that put colours here, 0 to 4
  uint8_t typeMask;   // the colour types of all stacks, ORed; 0 if all are solid
  bool isPure;        // all stacks are the same
  bool transparent;   // some stack holds a transparent colour
  uint8_t stackN[4];  // colours in each stack
  RColor* stacks[kSubScanlines][kMaxStack];  // topmost first

  // The sum of the stacks' colours at pixel (x, y), each channel up to 4 times
  // 255. All zero without stacks.
  void CalcColor(int32_t x, int32_t y, RGBI* out);
};

}  // namespace vexel
