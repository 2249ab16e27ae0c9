// Pictures with hundreds of colours on at one place, by the rasterizer and by
// its plain twin.
#include "raster/paint_index.h"

#include "paint_kit.h"
#include "plain/plain_raster.h"

namespace vexel {
namespace {

using test::PaintKit;

constexpr int32_t kWidth = 24;
constexpr int32_t kHeight = 3;
constexpr int32_t kLayers = 700;

struct Crowd : PaintKit {
  uint64_t state;

  Crowd(uint32_t seed, bool antialias)
      : PaintKit(kWidth, kHeight, antialias, antialias ? pix16 : pix32), state(seed) {}

  int32_t Below(int32_t n) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int32_t>((state >> 33) % static_cast<uint64_t>(n));
  }

  RColor* AnyColor(int32_t kinds) {
    const auto gray = static_cast<uint32_t>(Below(3)) * 0x010101;
    MATRIX mat = {};
    mat.a = mat.d = 0x1800;
    switch (Below(kinds)) {
      case 1:
        return Gradient(0x10, 0x04FF0000, 0x0800FF00, mat);
      case 2:
        return Bitmap(2, 2, {0x02010101, 0, 0x03020202, 0x01010101}, 0x40, mat, true);
      default:
        return Solid(0x03000000 + gray);
    }
  }

  void Build() {
    raster.BeginPaint();
    const int32_t kinds = 1 + Below(3);
    const int32_t opaque = Below(3) * 40;
    RColor* mask = nullptr;
    for (int32_t i = 0; i < kLayers; i++) {
      if (i % 50 == 0) mask = Below(2) == 0 ? Clip() : nullptr;
      const int32_t side = raster.antialias ? 4 : 1;
      const int32_t x1 = Below(kWidth * side / 2);
      const int32_t x2 = x1 + Below(kWidth * side);
      RColor* c = opaque > 0 && Below(opaque) == 0 ? Solid(0xFF000000 + (state >> 40 & 0xFFFFFF))
                                                   : AnyColor(kinds);
      Box(c, x1, 0, x2, kHeight * side, mask);
      if (mask == nullptr || i % 50 != 49) continue;
      Box(mask, Below(kWidth * side / 2), 0, kWidth * side - Below(8), kHeight * side,
          OutermostClip());
    }
    // An outline that is left open, and a count that goes up and down.
    AddLayer({Edge(ruleEvenOdd, &colors[5], nullptr, 7, 0, 9, 12)}, nullptr);
    RColor* counted = Solid(0x40400000);
    std::vector<REdge*> list;
    for (int32_t i = 0; i < 40; i++) {
      const auto dir = static_cast<int8_t>(2 * Below(2) - 1);
      list.push_back(Edge(ruleWinding, counted, nullptr, Below(60), 0, Below(60), 12, dir));
    }
    AddLayer(list, counted);
  }

  bool LooksAs(const Crowd& other) const {
    return std::memcmp(buffer.baseAddr, other.buffer.baseAddr,
                       static_cast<size_t>(buffer.rowBytes * buffer.height)) == 0;
  }
};

TEST(PaintIndex, CrowdedPicturesEqualThoseOfThePlainTwin) {
  int32_t indexed = 0;
  for (uint32_t seed = 0; seed < 24; seed++) {
    Crowd fast(seed, seed % 2 == 0);
    Crowd plain(seed, seed % 2 == 0);
    fast.Build();
    plain.Build();
    fast.raster.PaintBits();
    plain::PaintBits(&plain.raster);
    EXPECT_TRUE(fast.LooksAs(plain)) << "seed " << seed;
    indexed += fast.raster.paintIndexed;
  }
  EXPECT_GT(indexed, 12);
}

TEST(PaintIndex, RefusesColorsOfOneOrder) {
  PaintKit kit(4, 1);
  RColor* a = kit.Solid(0xFF00FF00);
  RColor* b = kit.Solid(0xFFFF0000);
  RColor* list[] = {a, b};
  PaintIndex index;
  EXPECT_TRUE(index.Start(list, 2, nullptr));
  a->order = b->order;
  EXPECT_FALSE(index.Start(list, 2, nullptr));
}

TEST(PaintIndex, FindsWhatLiesAboveAndWhatHides) {
  PaintKit kit(4, 1);
  RColor* low = kit.Solid(0x80000000);
  RColor* middle = kit.Solid(0xFF000000);
  RColor* high = kit.Solid(0x40000000);
  RColor* list[] = {high, low, middle};
  PaintIndex index;
  ASSERT_TRUE(index.Start(list, 3, nullptr));
  EXPECT_EQ(index.Above(low), nullptr);
  index.Add(high);
  EXPECT_EQ(index.Above(low), high);
  EXPECT_FALSE(index.IsHidden(low));
  index.Add(middle);
  EXPECT_EQ(index.Above(low), middle);
  EXPECT_TRUE(index.IsHidden(low));
  EXPECT_FALSE(index.IsHidden(middle));
  EXPECT_FALSE(index.IsHidden(high));
  index.Drop(middle);
  EXPECT_EQ(index.Above(low), high);
  EXPECT_FALSE(index.Has(middle));
}

}  // namespace
}  // namespace vexel
