// The rasterizer alone: rates of filling a 1920 x 1080 frame of 32-bit pixels,
// and of small anti-aliased shapes. A turn clears the frame to white and paints
// the scene; ms a frame is the figure to compare.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <deque>
#include <vector>

#include "raster/bit_buffer.h"
#include "raster/edge.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

constexpr int32_t kWidth = 1920;
constexpr int32_t kHeight = 1080;

int16_t To16(double v) {
  return static_cast<int16_t>(std::lround(v));
}

class Frame {
 public:
  Frame() {
    if (!buffer_.CreateBits(pix32, nullptr, kWidth, kHeight)) std::abort();
    raster.Attach(&buffer_, nullptr, true);
  }
  ~Frame() {
    for (RColor& c : colors_) c.FreeCache();
    for (SBitmapCore& b : bitmaps_) b.PIFree();
  }

  CRaster raster;

  RColor* NewColor(uint8_t type) {
    RColor* c = &colors_.emplace_back();
    c->SetUp(&raster);
    c->colorType = type;
    c->order = 1;
    c->rgb = {0, 0, 255, 255};
    return c;
  }
  RColor* Solid(uint16_t red, uint16_t green, uint16_t blue, uint16_t alpha) {
    RColor* c = NewColor(colorSolid);
    c->rgb = {blue, green, red, alpha};
    c->transparent = alpha != 255;
    c->BuildCache();
    return c;
  }
  RColor* Gradient(uint32_t fillStyle, const MATRIX& inverse, uint8_t alpha) {
    RColor* c = NewColor(colorGradient);
    c->grad.fillStyle = fillStyle;
    c->grad.invGradMat = inverse;
    c->grad.ramp = {};
    c->grad.ramp.nColors = 2;
    c->grad.ramp.colorRatio[1] = 255;
    c->grad.ramp.color[0] = {255, 200, 0, alpha};
    c->grad.ramp.color[1] = {0, 30, 160, alpha};
    c->transparent = alpha != 255;
    c->BuildCache();
    return c;
  }
  RColor* Bitmap(int32_t side, uint16_t fillStyle, const MATRIX& inverse, bool transparent) {
    SBitmapCore* b = &bitmaps_.emplace_back();
    b->PIInit();
    if (!b->PICreate(bm32Bit, side, side, nullptr, 0)) std::abort();
    for (int32_t i = 0; i < side * side * 4; i++) {
      b->baseAddr[i] = i % 4 == 3 ? 255 : static_cast<uint8_t>(i * 7 + i / 1000);
    }
    RColor* c = NewColor(colorBitmap);
    c->bm.bitmap = b;
    c->bm.fillStyle = fillStyle;
    c->bm.invMat = inverse;
    c->bm.cxform.Clear();
    c->transparent = transparent;
    c->BuildCache();
    return c;
  }

  // Shapes in quarter-pixels, as a layer of their own.
  void Box(RColor* c, double x1, double y1, double x2, double y2) {
    Begin();
    Line(c, ruleEvenOdd, x1, y1, x1, y2);
    Line(c, ruleEvenOdd, x2, y1, x2, y2);
    End(c);
  }
  // Four times two arcs of 45 degrees.
  void Circle(RColor* c, double x, double y, double r) {
    Begin();
    const double tip = r * (std::sqrt(2.0) - 1);
    const double arm = r * std::sqrt(0.5);
    for (const double side : {-1.0, 1.0}) {
      Arc(c, x, y - r, x + side * tip, y - r, x + side * arm, y - arm);
      Arc(c, x + side * arm, y - arm, x + side * r, y - tip, x + side * r, y);
      Arc(c, x + side * r, y, x + side * r, y + tip, x + side * arm, y + arm);
      Arc(c, x + side * arm, y + arm, x + side * tip, y + r, x, y + r);
    }
    End(c);
  }

  // Clears to white and paints the scene, which moves a quarter-pixel a turn.
  void Paint() {
    raster.FillBackground({255, 255, 255, 255});
    raster.BeginPaint();
    turn_ ^= 1;
    for (const Layer& layer : layers_) {
      REdge* head = nullptr;
      for (size_t i = layer.first; i < layer.end; i++) {
        REdge* e = &edges_[i];
        const int16_t d = turn_ ? 1 : -1;
        e->anchor1.x = static_cast<int16_t>(e->anchor1.x + d);
        e->control.x = static_cast<int16_t>(e->control.x + d);
        e->anchor2.x = static_cast<int16_t>(e->anchor2.x + d);
        e->next = head;
        head = e;
      }
      raster.AddEdges(head, layer.color, nullptr);
    }
    raster.PaintBits();
  }

 private:
  struct Layer {
    size_t first, end;
    RColor* color;
  };

  void Begin() { first_ = edges_.size(); }
  void End(RColor* c) { layers_.push_back({first_, edges_.size(), c}); }
  void Line(RColor* c, uint8_t rule, double x1, double y1, double x2, double y2) {
    edges_.push_back({nullptr,
                      nullptr,
                      c,
                      nullptr,
                      {To16(x1), To16(y1)},
                      {To16(x1), To16(y1)},
                      {To16(x2), To16(y2)},
                      true,
                      rule,
                      1});
  }
  void Arc(RColor* c, double x1, double y1, double cx, double cy, double x2, double y2) {
    if (To16(y1) == To16(y2)) return;
    Line(c, ruleEvenOdd, x1, y1, x2, y2);
    edges_.back().control = {To16(cx), To16(cy)};
    edges_.back().isLine = false;
  }

  CBitBuffer buffer_;
  std::deque<RColor> colors_;
  std::deque<SBitmapCore> bitmaps_;
  std::vector<REdge> edges_;
  std::vector<Layer> layers_;
  size_t first_ = 0;
  int turn_ = 0;
};

// 257 entries across the frame, turned by 30 degrees.
MATRIX TurnedGradient() {
  const double scale = 32768.0 / kWidth * 65536 * 0.9;
  const auto fixed = [scale](double v) { return static_cast<SFIXED>(v * scale); };
  return {fixed(0.866), fixed(-0.5), fixed(0.5), fixed(0.866), -(16384 << 8), -(8192 << 8)};
}

MATRIX ScaledBitmap(double scale, double angle) {
  const auto fixed = [scale](double v) { return static_cast<SFIXED>(v * 65536 / scale); };
  return {fixed(std::cos(angle)),
          fixed(-std::sin(angle)),
          fixed(std::sin(angle)),
          fixed(std::cos(angle)),
          12345,
          54321};
}

void PaintFrames(benchmark::State& state, Frame* frame) {
  for (auto _ : state) frame->Paint();
  benchmark::ClobberMemory();
}

void Clear(benchmark::State& state) {
  Frame frame;
  PaintFrames(state, &frame);
}
BENCHMARK(Clear)->Unit(benchmark::kMillisecond);

// A rectangle over the whole frame.
void FullFrame(benchmark::State& state, RColor* (*color)(Frame*)) {
  Frame frame;
  frame.Box(color(&frame), 1, 1, 4 * kWidth - 2, 4 * kHeight - 2);
  PaintFrames(state, &frame);
}
BENCHMARK_CAPTURE(FullFrame, solid, [](Frame* f) {
  return f->Solid(200, 30, 30, 255);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, half_transparent, [](Frame* f) {
  return f->Solid(100, 15, 15, 128);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, linear, [](Frame* f) {
  return f->Gradient(16, TurnedGradient(), 255);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, radial, [](Frame* f) {
  return f->Gradient(18, TurnedGradient(), 255);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, linear_transparent, [](Frame* f) {
  return f->Gradient(16, TurnedGradient(), 128);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, radial_transparent, [](Frame* f) {
  return f->Gradient(18, TurnedGradient(), 128);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, bitmap_3x, [](Frame* f) {
  return f->Bitmap(700, 65, ScaledBitmap(3, 0), false);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, bitmap_tiled_turned, [](Frame* f) {
  return f->Bitmap(256, 64, ScaledBitmap(1.3, 0.3), false);
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullFrame, bitmap_3x_transparent, [](Frame* f) {
  return f->Bitmap(700, 65, ScaledBitmap(3, 0), true);
})->Unit(benchmark::kMillisecond);

// Pseudo-random numbers from 0 to 1, the same in each run.
class Unit {
 public:
  double operator()() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<double>(state_ >> 40) / (1 << 24);
  }

 private:
  uint64_t state_ = 1;
};

// Circles of a given radius in pixels, each an object of its own.
void Circles(benchmark::State& state, int32_t count, double radius, uint16_t alpha) {
  Frame frame;
  Unit unit;
  for (int32_t i = 0; i < count; i++) {
    RColor* c =
        frame.Solid(static_cast<uint16_t>(unit() * alpha), static_cast<uint16_t>(unit() * alpha),
                    static_cast<uint16_t>(unit() * alpha), alpha);
    frame.Circle(c, unit() * 4 * kWidth, unit() * 4 * kHeight, 4 * radius * (0.5 + unit()));
  }
  PaintFrames(state, &frame);
  state.counters["shapes"] =
      benchmark::Counter(static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK_CAPTURE(Circles, small, 10000, 4.0, 255)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Circles, small_transparent, 10000, 4.0, 128)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Circles, middling, 1000, 25.0, 255)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Circles, middling_transparent, 1000, 25.0, 128)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Circles, large, 400, 300.0, 255)->Unit(benchmark::kMillisecond);

// Circles with gradients, as icons have them.
void GradientCircles(benchmark::State& state, uint32_t fillStyle, uint8_t alpha) {
  Frame frame;
  Unit unit;
  for (int32_t i = 0; i < 1000; i++) {
    const double x = unit() * kWidth;
    const double y = unit() * kHeight;
    const double r = 25 * (0.5 + unit());
    const double scale = 16384 / r;
    const MATRIX m = {static_cast<SFIXED>(scale * 65536),
                      0,
                      0,
                      static_cast<SFIXED>(scale * 65536),
                      static_cast<SCOORD>(-x * scale * 256),
                      static_cast<SCOORD>(-y * scale * 256)};
    frame.Circle(frame.Gradient(fillStyle, m, alpha), 4 * x, 4 * y, 4 * r);
  }
  PaintFrames(state, &frame);
}
BENCHMARK_CAPTURE(GradientCircles, linear, 16, 255)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(GradientCircles, radial, 18, 255)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(GradientCircles, radial_transparent, 18, 200)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vexel
