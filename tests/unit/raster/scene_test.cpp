// Random pictures, painted by the rasterizer and by its plain twin, are the
// same to the byte. A failure names the seed, and `RandomScene scene(seed)`
// builds the picture again.
#include <gtest/gtest.h>

#include <cstdlib>

#include "plain/plain_raster.h"
#include "plain/random_scene.h"

namespace vexel {
namespace {

using plain::RandomScene;

#ifdef VEXEL_SCENES
constexpr uint32_t kScenes = VEXEL_SCENES;
#else
constexpr uint32_t kScenes = 4000;
#endif

// Names the first pixel that differs.
std::string Difference(const RandomScene& fast, const RandomScene& plain) {
  const CBitBuffer& b = fast.buffer;
  for (int32_t y = 0; y < b.height; y++) {
    for (int32_t i = 0; i < b.rowBytes; i++) {
      const int32_t at = y * b.rowBytes + i;
      if (b.baseAddr[at] != plain.buffer.baseAddr[at]) {
        return "row " + std::to_string(y) + ", pixel " + std::to_string(i * 8 / b.depth) +
               ", byte " + std::to_string(i) + ": " + std::to_string(b.baseAddr[at]) +
               " instead of " + std::to_string(plain.buffer.baseAddr[at]) + ", format " +
               std::to_string(b.pixelFormat);
      }
    }
  }
  return "same";
}

TEST(Scene, PicturesEqualThoseOfThePlainTwin) {
  int32_t failures = 0;
  for (uint32_t seed = 0; seed < kScenes && failures < 10; seed++) {
    RandomScene fast(seed);
    RandomScene plain(seed);
    // Twice: what a colour keeps from one paint shows in the next.
    for (int32_t paint = 0; paint < 2; paint++) {
      fast.Add(paint, -paint);
      fast.raster.PaintBits();
      plain.Add(paint, -paint);
      plain::PaintBits(&plain.raster);
      if (fast.Pixels() == plain.Pixels()) continue;
      ADD_FAILURE() << "seed " << seed << ", paint " << paint << ", " << Difference(fast, plain);
      failures++;
      break;
    }
  }
}

}  // namespace
}  // namespace vexel
