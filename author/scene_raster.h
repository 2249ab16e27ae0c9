// Scenes as pixels, by cairo: for what a movie has no record for, and as a second
// renderer of the same scene.
#pragma once

#include "author/scene.h"

struct _cairo;

namespace vexel::author {

// Items of a scene in cairo's own terms, made once and drawn any number of times.
class CairoScene {
 public:
  CairoScene(const std::vector<SceneItem>& items, const std::vector<SceneBitmap>& bitmaps);
  ~CairoScene();
  CairoScene(const CairoScene&) = delete;
  CairoScene& operator=(const CairoScene&) = delete;

  // The context's matrix maps frame pixels to the target.
  void Draw(_cairo* cairo) const;

 private:
  struct Step;
  std::vector<Step> steps_;
};

// Draws the part of the frame in `region` at `density` pixels to the frame pixel.
// The pixels are premultiplied; empty if there is no memory or nothing to draw.
SceneBitmap RasterizeItems(const std::vector<SceneItem>& items,
                           const std::vector<SceneBitmap>& bitmaps, const Box& region,
                           double density);

// Gaussian blur, in pixels; `linear` blurs light, not the numbers that stand for it.
void BlurBitmap(SceneBitmap* bitmap, double sigmaX, double sigmaY, bool linear);

}  // namespace vexel::author
