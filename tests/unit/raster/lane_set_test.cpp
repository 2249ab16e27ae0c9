#include "raster/lane_set.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace vexel {
namespace {

TEST(LaneSet, MatchesFourPlainSets) {
  std::mt19937 random(3);
  for (const int32_t n : {1, 15, 16, 17, 255, 256, 257, 5000, 70000}) {
    LaneSet set;
    ASSERT_TRUE(set.Reset(n));
    std::set<int32_t> plain[kLanes];
    for (int step = 0; step < 3000; step++) {
      const auto i = static_cast<int32_t>(random() % static_cast<uint32_t>(n));
      const LaneMask lanes = random() & kAllLanes;
      const bool add = random() % 2 == 0;
      if (add) {
        set.Set(i, lanes);
      } else {
        set.Clear(i, lanes);
      }
      for (int32_t l = 0; l < kLanes; l++) {
        if ((lanes >> l & 1) == 0) continue;
        if (add) {
          plain[l].insert(i);
        } else {
          plain[l].erase(i);
        }
      }
      const LaneMask asked = 1 + random() % 15;
      const auto limit = static_cast<int32_t>(random() % static_cast<uint32_t>(n + 1));
      int32_t below = -1;
      int32_t top = -1;
      for (int32_t l = 0; l < kLanes; l++) {
        if ((asked >> l & 1) == 0) continue;
        const auto at = plain[l].lower_bound(limit);
        if (at != plain[l].begin()) below = std::max(below, *std::prev(at));
        if (!plain[l].empty()) top = std::max(top, *plain[l].rbegin());
      }
      ASSERT_EQ(set.Below(limit, asked), below) << n;
      ASSERT_EQ(set.Top(asked), top) << n;
    }
  }
}

}  // namespace
}  // namespace vexel
