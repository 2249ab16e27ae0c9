// A small paint for tests: a buffer, a raster on it, and colours and edges that
// live as long. Coordinates are device units (quarter-pixels with
// anti-aliasing).
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "raster/bit_buffer.h"
#include "raster/color_table.h"
#include "raster/edge.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel::test {

struct PaintKit {
  CBitBuffer buffer;
  CRaster raster;
  std::deque<RColor> colors;
  std::deque<REdge> edges;
  std::deque<SBitmapCore> bitmaps;

  PaintKit(int32_t width, int32_t height, bool antialias = true, int32_t format = pix32,
           uint32_t background = 0xFF0000FF) {
    SColorTable table;
    SetStandardColors(&table);
    SColorInfo* info = CreateColorInfo(&table);
    EXPECT_TRUE(buffer.CreateBits(format, info, width, height));
    ReleaseColorInfo(info);
    if (buffer.depth == 32) {
      for (int32_t i = 0; i < width * height; i++) {
        Store32(buffer.baseAddr + 4 * i, background);
      }
    }
    raster.useBackground = true;
    raster.Attach(&buffer, nullptr, antialias);
    raster.BeginPaint();
  }
  ~PaintKit() {
    for (RColor& c : colors) c.FreeCache();
    for (SBitmapCore& b : bitmaps) b.PIFree();
  }

  RColor* NewColor(uint8_t type) {
    RColor* c = &colors.emplace_back();
    c->SetUp(&raster);
    c->colorType = type;
    c->order = static_cast<uint32_t>(colors.size());
    c->rgb = {0, 0, 255, 255};
    return c;
  }

  // A solid of 0xAARRGGBB, premultiplied.
  RColor* Solid(uint32_t argb) {
    RColor* c = NewColor(colorSolid);
    c->rgb = UnpackPix32(argb);
    c->transparent = argb >> 24 != 255;
    c->BuildCache();
    return c;
  }

  RColor* Clip() {
    RColor* c = NewColor(colorClip);
    c->transparent = true;
    c->BuildCache();
    return c;
  }

  // A gradient of two stops, 0xAARRGGBB not premultiplied; `inverse` maps
  // pixels with 8 fraction bits to gradient space.
  RColor* Gradient(uint32_t fillStyle, uint32_t from, uint32_t to, const MATRIX& inverse) {
    RColor* c = NewColor(colorGradient);
    c->grad.fillStyle = fillStyle;
    c->grad.invGradMat = inverse;
    c->grad.ramp = {};
    c->grad.ramp.nColors = 2;
    c->grad.ramp.colorRatio[1] = 255;
    c->grad.ramp.color[0] = Rgba(from);
    c->grad.ramp.color[1] = Rgba(to);
    c->transparent = (from & to) >> 24 != 255;
    c->BuildCache();
    return c;
  }

  static SRGB Rgba(uint32_t argb) {
    return {static_cast<uint8_t>(argb >> 16), static_cast<uint8_t>(argb >> 8),
            static_cast<uint8_t>(argb), static_cast<uint8_t>(argb >> 24)};
  }

  // A bitmap of 32-bit pixels, row by row.
  RColor* Bitmap(int32_t width, int32_t height, const std::vector<uint32_t>& pixels,
                 uint16_t fillStyle, const MATRIX& inverse, bool transparent = false) {
    SBitmapCore* b = &bitmaps.emplace_back();
    b->PIInit();
    EXPECT_TRUE(b->PICreate(bm32Bit, width, height, nullptr, 0));
    std::memcpy(b->baseAddr, pixels.data(), pixels.size() * 4);
    RColor* c = NewColor(colorBitmap);
    c->transparent = transparent;
    c->bm.bitmap = b;
    c->bm.fillStyle = fillStyle;
    c->bm.invMat = inverse;
    c->bm.cxform.Clear();
    c->BuildCache();
    return c;
  }

  // A line or, with a control point, a curve, pointing down.
  REdge* Edge(FillRule rule, RColor* c1, RColor* c2, int32_t x1, int32_t y1, int32_t x2, int32_t y2,
              int8_t dir = 1) {
    const auto s = [](int32_t v) { return static_cast<int16_t>(v); };
    edges.push_back({nullptr,
                     nullptr,
                     c1,
                     c2,
                     {s(x1), s(y1)},
                     {s(x1), s(y1)},
                     {s(x2), s(y2)},
                     true,
                     static_cast<uint8_t>(rule),
                     dir});
    return &edges.back();
  }
  REdge* Curve(FillRule rule, RColor* c1, int32_t x1, int32_t y1, int32_t cx, int32_t cy,
               int32_t x2, int32_t y2) {
    REdge* e = Edge(rule, c1, nullptr, x1, y1, x2, y2);
    e->control = {static_cast<int16_t>(cx), static_cast<int16_t>(cy)};
    e->isLine = false;
    return e;
  }

  // Adds edges as a layer, with one colour.
  void AddLayer(std::vector<REdge*> list, RColor* color, RColor* clipper = nullptr) {
    for (size_t i = 0; i + 1 < list.size(); i++) list[i]->next = list[i + 1];
    raster.AddEdges(list.empty() ? nullptr : list[0], color, clipper);
  }

  // A rectangle as a layer of its own.
  void Box(RColor* c, int32_t x1, int32_t y1, int32_t x2, int32_t y2, RColor* clipper = nullptr) {
    AddLayer({Edge(ruleEvenOdd, c, nullptr, x1, y1, x1, y2),
              Edge(ruleEvenOdd, c, nullptr, x2, y1, x2, y2)},
             c, clipper);
  }

  // Paints what was added and begins again.
  void Paint() {
    raster.PaintBits();
    raster.BeginPaint();
  }

  // The 32-bit pixel.
  uint32_t At(int32_t x, int32_t y) const {
    return Load32(buffer.baseAddr + y * buffer.rowBytes + 4 * x);
  }
};

// `over` composed onto `under`, both 0xAARRGGBB.
inline uint32_t Over(uint32_t over, uint32_t under) {
  const uint32_t k = 256 - (over >> 24);
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const uint32_t channel = ((under >> shift & 255) * k >> 8) + (over >> shift & 255);
    out |= (channel & 255) << shift;
  }
  return out;
}

// Each channel of the pixel times n / 16, truncated.
inline uint32_t Sixteenths(uint32_t argb, uint32_t n) {
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) out |= ((argb >> shift & 255) * n / 16) << shift;
  return out;
}

}  // namespace vexel::test
