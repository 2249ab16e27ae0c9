// All sets of inner loops give the same bits as the plain one.
#include "raster/pix32_ops.h"

#include "raster/pixel_memory.h"
#include "raster/render_tables.h"
#include "raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::Random;

constexpr int32_t kMost = 300;

struct Row {
  // A few bytes more on both sides, which must stay.
  std::vector<uint8_t> bytes;
  explicit Row(Random& random) : bytes(4 * kMost + 64) {
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
  }
  uint8_t* At(int32_t offset) { return bytes.data() + 16 + offset; }
};

class Pix32OpsTest : public testing::Test {
 protected:
  // Runs op(set, row, n) on copies of one random row, for each set.
  template <class Op>
  void Compare(Op op) {
    int32_t nSets;
    const Pix32Ops* const* sets = Pix32OpSets(&nSets);
    const Row before(random);
    const auto n = static_cast<int32_t>(Below(random, kMost));
    const auto offset = static_cast<int32_t>(Below(random, 16));
    Row plain = before;
    op(*sets[0], plain.At(offset), n);
    for (int32_t i = 1; i < nSets; i++) {
      Row other = before;
      op(*sets[i], other.At(offset), n);
      ASSERT_EQ(other.bytes, plain.bytes) << "set " << i << ", " << n << " pixels";
    }
  }

  int32_t Any() { return static_cast<int32_t>(random()); }

  Random random{7};
};

TEST_F(Pix32OpsTest, FillsAndBlendsOfOneColor) {
  for (int i = 0; i < 3000; i++) {
    const uint32_t color = static_cast<uint32_t>(random());
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.fill(at, n, color); });
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.blendColor(at, n, color); });
  }
}

TEST_F(Pix32OpsTest, BlendsOfPixels) {
  for (int i = 0; i < 3000; i++) {
    Row src(random);
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.blend(at, src.At(1), n); });
  }
}

TEST_F(Pix32OpsTest, LinearGradients) {
  uint32_t ramp[257];
  for (uint32_t& v : ramp) v = static_cast<uint32_t>(random());
  for (int i = 0; i < 3000; i++) {
    const int32_t pos = i % 10 == 0 ? Any() : Any() >> 8;
    const int32_t step = i % 10 == 0 ? Any() : Any() >> 14;
    Compare(
        [&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.linear(at, n, ramp, pos, step); });
  }
}

TEST_F(Pix32OpsTest, RadialGradientsWithTheirTies) {
  BuildRenderTables();
  uint32_t ramp[257];
  for (uint32_t& v : ramp) v = static_cast<uint32_t>(random());
  for (int i = 0; i < 20000; i++) {
    RadialLine line = {Any() >> 9, Any() >> 9, Any() >> 15, Any() >> 15};
    if (i % 3 == 0) line.y = 0;  // all distances are whole
    if (i % 4 == 0) line.dy = 0;
    if (i % 5 == 0) {  // whole units
      line.x &= ~0x3FFF;
      line.dx = static_cast<int32_t>(Below(random, 5)) * 0x4000 - 0x8000;
    }
    if (i % 50 == 0) line = {Any(), Any(), Any(), Any()};
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.radial(at, n, ramp, line); });
  }
}

TEST_F(Pix32OpsTest, SmoothRadialGradients) {
  BuildRenderTables();
  uint32_t ramp[257];
  for (uint32_t& v : ramp) v = static_cast<uint32_t>(random());
  for (int i = 0; i < 20000; i++) {
    // Steps below an entry a pixel, from far outside to the centre.
    const int shift = 17 + i % 4;
    RadialLine line = {Any() >> (9 + i % 5), Any() >> (9 + i % 5), Any() >> shift, Any() >> shift};
    if (i % 3 == 0) line.dy = 0;
    if (i % 7 == 0) line.y &= ~0x3FFF;
    if (i % 11 == 0) line.x = Any() >> 3;
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.radial(at, n, ramp, line); });
  }
}

TEST_F(Pix32OpsTest, SamplesOfBitmaps) {
  constexpr int32_t kSide = 64;
  std::vector<uint8_t> bitmap(4 * kSide * kSide);
  for (uint8_t& b : bitmap) b = static_cast<uint8_t>(random());
  for (int i = 0; i < 3000; i++) {
    // Lines that stay inside for all pixels.
    const auto inside = [&](SFIXED* start, SFIXED* step) {
      const auto from = static_cast<SFIXED>(Below(random, kSide << 16));
      const auto to = static_cast<SFIXED>(Below(random, kSide << 16));
      *start = from;
      *step = (to - from) / kMost;
    };
    SampleLine line = {bitmap.data(), 4 * kSide, 0, 0, 0, 0, kSide};
    inside(&line.x, &line.dx);
    inside(&line.y, &line.dy);
    if (i % 2 == 0) line.dy = 0;
    Compare([&](const Pix32Ops& ops, uint8_t* at, int32_t n) { ops.sample(at, n, line); });
  }
}

}  // namespace
}  // namespace vexel
