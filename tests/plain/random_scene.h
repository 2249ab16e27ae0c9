// Random pictures for the twins of the rasterizer: all kinds of colours, rules,
// masks, formats and clips, from a seed. The same seed builds the same picture
// again, on a raster of its own.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "raster/bit_buffer.h"
#include "raster/color_table.h"
#include "raster/edge.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel::plain {

class RandomScene {
 public:
  explicit RandomScene(uint32_t seed);
  ~RandomScene();
  RandomScene(const RandomScene&) = delete;
  RandomScene& operator=(const RandomScene&) = delete;

  // Begins a paint and adds all layers, moved by (dx, dy) device units.
  void Add(int32_t dx, int32_t dy);

  const std::vector<uint8_t> Pixels() const;

  CBitBuffer buffer;
  CRaster raster;

 private:
  struct Layer {
    std::vector<size_t> edges;  // indexes of edges_
    std::vector<RColor*> colors;
    RColor* clipper = nullptr;
  };

  int32_t Below(int32_t n);  // 0 to n - 1
  int32_t Between(int32_t low, int32_t high);
  bool Chance(int32_t percent) { return Below(100) < percent; }
  int32_t X();  // a device coordinate in or near the buffer
  int32_t Y();

  void MakeTarget();
  SBitmapCore* MakeBitmap();
  MATRIX MakeMatrix(int shift);
  RColor* MakeColor();
  RColor* MakeClip();
  void FillSolid(RColor* c);
  void FillGradient(RColor* c);
  void FillBitmap(RColor* c);

  void AddEdge(Layer* layer, uint8_t rule, RColor* c1, RColor* c2, int32_t x1, int32_t y1,
               int32_t x2, int32_t y2);
  void AddCurve(Layer* layer, uint8_t rule, RColor* c1, RColor* c2, int32_t x1, int32_t y1,
                int32_t x2, int32_t y2);
  void AddBox(Layer* layer, uint8_t rule, RColor* c);
  void AddPolygon(Layer* layer, uint8_t rule, RColor* c, bool curved);
  void AddStrips(Layer* layer);
  void AddNoise(Layer* layer);
  void MakeLayer(RColor* clipper);
  void MakeMask(RColor* outer, int depth);

  uint64_t state_;
  int32_t scale_ = 4;  // device units a pixel
  std::deque<RColor> colors_;
  std::deque<SBitmapCore> bitmaps_;
  std::vector<REdge> edges_;
  std::vector<REdge> moved_;
  std::vector<Layer> layers_;
};

}  // namespace vexel::plain
