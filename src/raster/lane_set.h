// A set of numbers for each of the four lanes, as a tree: 4 bits, one a lane,
// for each number, 16 numbers to a word; above each level the same bits again
// for each of its words. So the next lower member is found in a few steps,
// however many colours lie on top of each other.
#pragma once

#include <cstdint>

#include "raster/lanes.h"

namespace vexel {

class LaneSet {
 public:
  LaneSet() = default;
  ~LaneSet();
  LaneSet(const LaneSet&) = delete;
  LaneSet& operator=(const LaneSet&) = delete;

  // Empties the set and makes room for the numbers 0 to n - 1. False without
  // memory.
  [[nodiscard]] bool Reset(int32_t n);

  // The lanes that hold the number.
  LaneMask Get(int32_t i) const {
    return static_cast<LaneMask>(levels_[0][i >> 4] >> ((i & 15) * 4)) & kAllLanes;
  }

  void Set(int32_t i, LaneMask lanes) {
    for (int32_t k = 0; k < nLevels_; k++, i >>= 4) {
      const uint64_t bits = uint64_t{lanes} << ((i & 15) * 4);
      uint64_t* word = &levels_[k][i >> 4];
      if (k > 0 && (*word & bits) == bits) return;  // and so it is above
      *word |= bits;
    }
  }

  void Clear(int32_t i, LaneMask lanes) {
    for (int32_t k = 0; lanes != 0; i >>= 4) {
      uint64_t w = levels_[k][i >> 4] & ~(uint64_t{lanes} << ((i & 15) * 4));
      levels_[k][i >> 4] = w;
      if (++k == nLevels_) return;
      w |= w >> 32;
      w |= w >> 16;
      w |= w >> 8;
      w |= w >> 4;
      lanes &= ~static_cast<LaneMask>(w);
    }
  }

  // The highest number below `limit` that one of the lanes holds, or -1.
  int32_t Below(int32_t limit, LaneMask lanes) const {
    const uint64_t wanted = lanes * 0x1111111111111111u;
    int32_t k = 0;
    for (int32_t i = limit; k < nLevels_; k++, i >>= 4) {
      const uint64_t w = levels_[k][i >> 4] & wanted & ((uint64_t{1} << ((i & 15) * 4)) - 1);
      if (w == 0) continue;
      int32_t at = (i & ~15) + TopNibble(w);
      while (k > 0) {
        k--;
        at = (at << 4) + TopNibble(levels_[k][at] & wanted);
      }
      return at;
    }
    return -1;
  }

  // The highest number that one of the lanes holds, or -1.
  int32_t Top(LaneMask lanes) const {
    const uint64_t wanted = lanes * 0x1111111111111111u;
    int32_t k = nLevels_ - 1;
    const uint64_t root = levels_[k][0] & wanted;
    if (root == 0) return -1;
    int32_t at = TopNibble(root);
    while (k > 0) {
      k--;
      at = (at << 4) + TopNibble(levels_[k][at] & wanted);
    }
    return at;
  }

 private:
  static constexpr int32_t kMaxLevels = 8;

  static int32_t TopNibble(uint64_t w) { return (63 - __builtin_clzll(w)) >> 2; }

  uint64_t* words_ = nullptr;
  int32_t nWords_ = 0;  // room in words_
  int32_t nLevels_ = 0;
  uint64_t* levels_[kMaxLevels] = {};
};

}  // namespace vexel
