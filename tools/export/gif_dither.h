// Pictures in the colours of a palette. A colour that the palette lacks becomes
// a fixed pattern of two that it has: fixed, so that what stands still in a
// film does not flicker, and packs as nothing.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "gif_palette.h"

namespace vexel::tools {

class Dither {
 public:
  // `palette` has 1 to 256 colours.
  explicit Dither(std::vector<Rgb> palette);

  // A row of `width` pixels of 3 bytes each to palette indices; `y` counts from
  // the top.
  void Row(const uint8_t* rgb, int32_t width, int32_t y, uint8_t* indices);

 private:
  // `level` of 64 pixels show `second`, the others `first`.
  struct Mix {
    uint8_t first = 0;
    uint8_t second = 0;
    uint8_t level = 0;  // 0 to 32
  };
  Mix Find(const uint8_t* rgb) const;

  std::vector<Rgb> palette_;
  std::unordered_map<uint32_t, Mix> known_;
};

}  // namespace vexel::tools
