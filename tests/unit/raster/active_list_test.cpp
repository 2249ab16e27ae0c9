// Scanlines on which thousands of edges start, by the rasterizer and by its
// plain twin.
#include "paint_kit.h"
#include "plain/plain_raster.h"
#include "raster/edge.h"

namespace vexel {
namespace {

using test::PaintKit;

constexpr int32_t kWidth = 24;
constexpr int32_t kHeight = 3;
constexpr int32_t kEdges = 2000;
constexpr int32_t kColors = 12;

// Edges all over the buffer, of few colours and of all rules.
struct Thicket : PaintKit {
  uint64_t state;

  Thicket(uint32_t seed, bool antialias) : PaintKit(kWidth, kHeight, antialias), state(seed) {
    const int32_t side = antialias ? 4 : 1;
    for (int32_t i = 0; i < kColors; i++) Solid(0xFF000000 + static_cast<uint32_t>(i) * 0x13579);
    std::vector<REdge*> list;
    for (int32_t i = 0; i < kEdges; i++) {
      RColor* c = &colors[static_cast<size_t>(Below(kColors))];
      const auto rule = static_cast<FillRule>(Below(kFillRuleCount));
      const auto dir = static_cast<int8_t>(2 * Below(2) - 1);
      list.push_back(Edge(rule, c, rule == ruleEdgeEdge ? c : nullptr, Below(kWidth * side), 0,
                          Below(kWidth * side), (1 + Below(kHeight)) * side, dir));
    }
    AddLayer(list, nullptr);
  }

  int32_t Below(int32_t n) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int32_t>((state >> 33) % static_cast<uint64_t>(n));
  }
};

// A toggle of a colour that is counted below 0 turns the count, so what shows
// hangs on the order among edges of equal x.
TEST(ActiveList, ThousandsOfNewEdgesKeepTheirOrderAmongEquals) {
  for (uint32_t seed = 0; seed < 8; seed++) {
    Thicket fast(seed, seed % 2 == 0);
    Thicket plain(seed, seed % 2 == 0);
    fast.raster.PaintBits();
    plain::PaintBits(&plain.raster);
    EXPECT_EQ(std::memcmp(fast.buffer.baseAddr, plain.buffer.baseAddr,
                          static_cast<size_t>(fast.buffer.rowBytes * kHeight)),
              0)
        << "seed " << seed;
  }
}

}  // namespace
}  // namespace vexel
