// Random movies that seek the corners of drawing: every kind of fill, stroke,
// mask, morph, bitmap and text, odd matrices, and timelines that loop back over
// sprites. Written with a bit writer of its own, so that a shared mistake in
// the authoring library cannot hide one in the player.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexel::model {

// What a movie is mostly made of; kEverything mixes all.
enum class Flavor {
  kEverything,
  kFills,
  kStrokes,
  kMorphs,
  kClips,
  kBitmaps,
  kGradients,
  kStacks,
  kZoom,
  kText,
  kTimeline,
  kCount
};

struct NastyMovie {
  std::vector<uint8_t> bytes;
  int width = 0, height = 0;  // of its frame, in pixels
  int frames = 0;
  Flavor flavor = Flavor::kEverything;
};

NastyMovie MakeNastyMovie(uint64_t seed);
// The flavor for a seed is its remainder; with a size in pixels at most most.
NastyMovie MakeNastyMovie(uint64_t seed, Flavor flavor, int most);

}  // namespace vexel::model
