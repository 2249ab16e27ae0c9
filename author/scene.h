// A picture as the importers hand it over: a flat list of what to draw, bottom
// first, in the movie's own terms but in floating point.
//
// The movie is written from this list, and so is the list that other renderers are
// measured with: both draw the same thing.
#pragma once

#include <cstdint>
#include <vector>

#include "author/bitmap.h"
#include "author/vector_path.h"

namespace vexel::author {

class TagStream;

// Not premultiplied; alpha from 0 to 1.
struct SceneColor {
  uint8_t red = 0, green = 0, blue = 0;
  double alpha = 1;
};

struct PaintStop {
  double offset = 0;  // 0 to 1, never descending
  SceneColor color;
};

enum class PaintKind : uint8_t { kSolid, kLinear, kRadial, kBitmap };

// How a gradient goes on beyond its ends. Movies know kPad alone.
enum class Spread : uint8_t { kPad, kReflect, kRepeat };

struct Paint {
  PaintKind kind = PaintKind::kSolid;
  SceneColor color;              // solid
  std::vector<PaintStop> stops;  // gradients: at least one
  // From the paint's own space to the frame. Linear: stops run along x from 0 to 1.
  // Radial: from the middle to the unit circle. Bitmap: a pixel is a unit square.
  Affine matrix;
  // Gradients that movies have no form for. The importers draw them as bitmaps before a
  // scene is complete.
  Spread spread = Spread::kPad;
  Vec2 focus;          // radial: where the first stop lies, inside the unit circle
  int bitmap = -1;     // index in Scene::bitmaps
  bool tiled = false;  // bitmap: repeats, else its border pixels go on
  double alpha = 1;    // bitmap: over all of it

  bool IsOpaque() const;
};

// Either premultiplied pixels, 0xAARRGGBB, rows from the top, or a JPEG file.
struct SceneBitmap {
  int width = 0, height = 0;
  std::vector<uint32_t> pixels;
  std::vector<uint8_t> jpeg;
  bool opaque = false;
};

enum class SceneOp : uint8_t {
  kFill,       // the inside of `path`, even-odd
  kStroke,     // along `path`, with round caps and joins; solid paint only
  kBeginClip,  // until the matching kEndClip only the inside of `path` shows
  kEndClip,
};

struct SceneItem {
  SceneOp op = SceneOp::kFill;
  VectorPath path;  // lines and quadratics; frame pixels
  Box bounds;       // of all that is painted
  Paint paint;
  double width = 0;  // of a stroke, frame pixels
};

struct Scene {
  double width = 0, height = 0;  // of the frame, pixels; its corner is at 0, 0
  std::vector<SceneItem> items;
  std::vector<SceneBitmap> bitmaps;
};

// Multiplies opacity into a paint.
void FadePaint(double opacity, Paint* paint);

// A bitmap without a JPEG file as a lossless body; opaque pictures of few colours get a
// colour table. It has alpha unless the bitmap is opaque.
LosslessBody LosslessFromBitmap(const SceneBitmap& bitmap);

// The scene as the tags of a sprite: characters from the first id on, and their
// placements. Returns the first id that is still free; throws std::range_error for a
// first id with too few behind it.
uint16_t WriteSceneSprite(const Scene& scene, uint32_t firstId, TagStream* definitions,
                          TagStream* stage);

// The movie of one frame that shows the scene on white.
Bytes WriteSceneMovie(const Scene& scene);

}  // namespace vexel::author
