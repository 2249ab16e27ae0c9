// Memory of the lane sets.
#include "raster/lane_set.h"

#include <cstdlib>
#include <cstring>

namespace vexel {

LaneSet::~LaneSet() {
  std::free(words_);
}

bool LaneSet::Reset(int32_t n) {
  int32_t sizes[kMaxLevels];
  int32_t total = 0;
  nLevels_ = 0;
  // A word more than the numbers need, for Below(n).
  int32_t count = n;
  do {
    count = count / 16 + 1;
    sizes[nLevels_++] = count;
    total += count;
  } while (count > 1);
  if (total > nWords_) {
    std::free(words_);
    words_ = static_cast<uint64_t*>(std::malloc(static_cast<size_t>(total) * sizeof(uint64_t)));
    nWords_ = words_ != nullptr ? total : 0;
    if (words_ == nullptr) return false;
  }
  std::memset(words_, 0, static_cast<size_t>(total) * sizeof(uint64_t));
  uint64_t* at = words_;
  for (int32_t k = 0; k < nLevels_; k++) {
    levels_[k] = at;
    at += sizes[k];
  }
  return true;
}

}  // namespace vexel
