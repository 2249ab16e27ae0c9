#include "author/scene_raster.h"

#include <cairo/cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "author/import_pixels.h"

namespace vexel::author {
namespace {

struct FreeSurface {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
struct FreePattern {
  void operator()(cairo_pattern_t* p) const { cairo_pattern_destroy(p); }
};
struct FreeContext {
  void operator()(cairo_t* c) const { cairo_destroy(c); }
};
using Surface = std::unique_ptr<cairo_surface_t, FreeSurface>;
using Pattern = std::unique_ptr<cairo_pattern_t, FreePattern>;
using Context = std::unique_ptr<cairo_t, FreeContext>;

cairo_matrix_t ToCairo(const Affine& m) {
  return {m.a, m.b, m.c, m.d, m.e, m.f};
}

std::vector<cairo_path_data_t> PathOf(const VectorPath& path) {
  std::vector<cairo_path_data_t> data;
  auto add = [&](cairo_path_data_type_t type, std::initializer_list<Vec2> points) {
    cairo_path_data_t d;
    d.header.type = type;
    d.header.length = static_cast<int>(points.size()) + 1;
    data.push_back(d);
    for (Vec2 p : points) {
      d.point.x = p.x;
      d.point.y = p.y;
      data.push_back(d);
    }
  };
  Vec2 pen, start;
  for (const PathCommand& c : path.commands) {
    switch (c.op) {
      case PathOp::kMove:
        add(CAIRO_PATH_MOVE_TO, {c.p});
        start = c.p;
        break;
      case PathOp::kLine:
        add(CAIRO_PATH_LINE_TO, {c.p});
        break;
      case PathOp::kQuad:
        add(CAIRO_PATH_CURVE_TO, {Mix(pen, c.c1, 2.0 / 3), Mix(c.p, c.c1, 2.0 / 3), c.p});
        break;
      case PathOp::kCubic:
        add(CAIRO_PATH_CURVE_TO, {c.c1, c.c2, c.p});
        break;
      case PathOp::kClose:
        add(CAIRO_PATH_CLOSE_PATH, {});
        pen = start;
        continue;
    }
    pen = c.p;
  }
  return data;
}

// A surface that owns a copy of the pixels.
Surface SurfaceOf(const SceneBitmap& bitmap) {
  SceneBitmap decoded;
  const SceneBitmap* source = &bitmap;
  if (bitmap.pixels.empty()) {
    std::string error;
    if (!DecodeJpeg(bitmap.jpeg.data(), bitmap.jpeg.size(), &decoded, &error)) return nullptr;
    source = &decoded;
  }
  Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, source->width, source->height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  unsigned char* rows = cairo_image_surface_get_data(surface.get());
  size_t stride = static_cast<size_t>(cairo_image_surface_get_stride(surface.get()));
  size_t width = static_cast<size_t>(source->width);
  for (size_t y = 0; y < static_cast<size_t>(source->height); y++)
    std::copy_n(&source->pixels[y * width], width, reinterpret_cast<uint32_t*>(rows + y * stride));
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

// Null if the paint's matrix has no inverse, or a bitmap no pixels.
Pattern PatternOf(const Paint& paint, const std::vector<SceneBitmap>& bitmaps) {
  const SceneColor& c = paint.color;
  Pattern pattern;
  if (paint.kind == PaintKind::kSolid) {
    pattern.reset(
        cairo_pattern_create_rgba(c.red / 255.0, c.green / 255.0, c.blue / 255.0, c.alpha));
    return pattern;
  }
  if (paint.kind == PaintKind::kBitmap) {
    Surface surface = SurfaceOf(bitmaps[static_cast<size_t>(paint.bitmap)]);
    if (!surface) return nullptr;
    pattern.reset(cairo_pattern_create_for_surface(surface.get()));
    cairo_pattern_set_extend(pattern.get(), paint.tiled ? CAIRO_EXTEND_REPEAT : CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_BILINEAR);
  } else {
    pattern.reset(paint.kind == PaintKind::kLinear
                      ? cairo_pattern_create_linear(0, 0, 1, 0)
                      : cairo_pattern_create_radial(paint.focus.x, paint.focus.y, 0, 0, 0, 1));
    for (const PaintStop& s : paint.stops)
      cairo_pattern_add_color_stop_rgba(pattern.get(), s.offset, s.color.red / 255.0,
                                        s.color.green / 255.0, s.color.blue / 255.0, s.color.alpha);
    cairo_pattern_set_extend(pattern.get(), paint.spread == Spread::kPad ? CAIRO_EXTEND_PAD
                                            : paint.spread == Spread::kReflect
                                                ? CAIRO_EXTEND_REFLECT
                                                : CAIRO_EXTEND_REPEAT);
  }
  Affine inverse;
  if (!paint.matrix.Invert(&inverse)) return nullptr;
  cairo_matrix_t m = ToCairo(inverse);
  cairo_pattern_set_matrix(pattern.get(), &m);
  return pattern;
}

// The table that turns the numbers of colours into light, and back. Both sides have 16
// bits, so that dark colours survive the way there and back.
struct LightTables {
  uint16_t toLight[256];
  uint8_t fromLight[4097];
  LightTables() {
    for (int i = 0; i < 256; i++) {
      double v = i / 255.0;
      v = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
      toLight[i] = static_cast<uint16_t>(std::lround(v * 65535));
    }
    for (int i = 0; i <= 4096; i++) {
      double v = i / 4096.0;
      v = v <= 0.0031308 ? v * 12.92 : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
      fromLight[i] = static_cast<uint8_t>(std::lround(v * 255));
    }
  }
};

struct FloatPixel {
  float v[4];  // premultiplied; blue, green, red, alpha
};

// One pass along rows or columns: `count` pixels that stand `step` apart.
void BlurLine(FloatPixel* line, size_t count, size_t step, const std::vector<float>& kernel,
              std::vector<FloatPixel>* scratch) {
  long reach = static_cast<long>(kernel.size()) - 1, n = static_cast<long>(count);
  scratch->resize(count);
  for (long i = 0; i < n; i++) (*scratch)[size_t(i)] = line[size_t(i) * step];
  for (long i = 0; i < n; i++) {
    FloatPixel sum{};
    long from = std::max(-reach, -i), to = std::min(reach, n - 1 - i);
    for (long k = from; k <= to; k++) {
      float w = kernel[static_cast<size_t>(std::labs(k))];
      const FloatPixel& p = (*scratch)[static_cast<size_t>(i + k)];
      for (int c = 0; c < 4; c++) sum.v[c] += w * p.v[c];
    }
    line[size_t(i) * step] = sum;
  }
}

// Half a bell: the middle and one side; the whole sums to 1.
std::vector<float> BellOf(double sigma) {
  size_t reach = static_cast<size_t>(std::ceil(3 * sigma));
  std::vector<float> kernel(reach + 1);
  double sum = 0;
  for (size_t i = 0; i <= reach; i++) {
    double x = static_cast<double>(i) / sigma, w = std::exp(-x * x / 2);
    kernel[i] = static_cast<float>(w);
    sum += i == 0 ? w : 2 * w;
  }
  for (float& w : kernel) w = static_cast<float>(w / sum);
  return kernel;
}

}  // namespace

struct CairoScene::Step {
  SceneOp op;
  std::vector<cairo_path_data_t> path;
  Pattern pattern;
  double width;  // of a stroke
  double alpha;  // over the pattern
};

CairoScene::~CairoScene() = default;

CairoScene::CairoScene(const std::vector<SceneItem>& items,
                       const std::vector<SceneBitmap>& bitmaps) {
  for (const SceneItem& item : items) {
    Step step{item.op, PathOf(item.path), nullptr, item.width, 1};
    if (item.op == SceneOp::kFill || item.op == SceneOp::kStroke) {
      step.pattern = PatternOf(item.paint, bitmaps);
      if (!step.pattern) continue;
      if (item.paint.kind == PaintKind::kBitmap) step.alpha = item.paint.alpha;
    }
    steps_.push_back(std::move(step));
  }
}

void CairoScene::Draw(cairo_t* cairo) const {
  cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
  int clips = 0;
  for (const Step& step : steps_) {
    if (step.op == SceneOp::kEndClip) {
      if (clips-- > 0) cairo_restore(cairo);
      continue;
    }
    cairo_path_t path{CAIRO_STATUS_SUCCESS, const_cast<cairo_path_data_t*>(step.path.data()),
                      static_cast<int>(step.path.size())};
    cairo_new_path(cairo);
    cairo_append_path(cairo, &path);
    if (step.op == SceneOp::kBeginClip) {
      cairo_save(cairo);
      clips++;
      cairo_clip(cairo);
      continue;
    }
    cairo_set_source(cairo, step.pattern.get());
    if (step.op == SceneOp::kStroke) {
      cairo_set_line_width(cairo, step.width);
      cairo_stroke(cairo);
    } else if (step.alpha < 1) {
      cairo_save(cairo);
      cairo_clip(cairo);
      cairo_paint_with_alpha(cairo, step.alpha);
      cairo_restore(cairo);
    } else {
      cairo_fill(cairo);
    }
  }
  while (clips-- > 0) cairo_restore(cairo);
}

SceneBitmap RasterizeItems(const std::vector<SceneItem>& items,
                           const std::vector<SceneBitmap>& bitmaps, const Box& region,
                           double density) {
  SceneBitmap out;
  double width = std::ceil(region.Width() * density), height = std::ceil(region.Height() * density);
  if (!(width >= 1 && height >= 1 && width <= kMaxBitmapSide && height <= kMaxBitmapSide &&
        width * height <= kMaxBitmapPixels))
    return out;
  Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                             static_cast<int>(height)));
  Context cairo(cairo_create(surface.get()));
  cairo_scale(cairo.get(), density, density);
  cairo_translate(cairo.get(), -region.xmin, -region.ymin);
  CairoScene(items, bitmaps).Draw(cairo.get());
  cairo_surface_flush(surface.get());
  if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) return out;
  const unsigned char* rows = cairo_image_surface_get_data(surface.get());
  size_t stride = static_cast<size_t>(cairo_image_surface_get_stride(surface.get()));
  out.width = static_cast<int>(width);
  out.height = static_cast<int>(height);
  out.pixels.resize(static_cast<size_t>(width * height));
  for (size_t y = 0; y < static_cast<size_t>(out.height); y++)
    std::copy_n(reinterpret_cast<const uint32_t*>(rows + y * stride),
                static_cast<size_t>(out.width), &out.pixels[y * static_cast<size_t>(out.width)]);
  return out;
}

void BlurBitmap(SceneBitmap* bitmap, double sigmaX, double sigmaY, bool linear) {
  static const LightTables tables;
  size_t width = static_cast<size_t>(bitmap->width), height = static_cast<size_t>(bitmap->height);
  std::vector<FloatPixel> pixels(bitmap->pixels.size());
  for (size_t i = 0; i < pixels.size(); i++) {
    uint32_t p = bitmap->pixels[i], a = p >> 24;
    for (int c = 0; c < 3; c++) {
      uint32_t v = p >> (8 * c) & 255;
      pixels[i].v[c] = static_cast<float>(v);
      if (linear && a > 0) {
        uint32_t plain = std::min(255u, (v * 255 + a / 2) / a);
        pixels[i].v[c] = static_cast<float>(tables.toLight[plain] * (a / 65535.0));
      }
    }
    pixels[i].v[3] = static_cast<float>(a);
  }
  std::vector<FloatPixel> scratch;
  if (sigmaX > 0) {
    std::vector<float> kernel = BellOf(sigmaX);
    for (size_t y = 0; y < height; y++) BlurLine(&pixels[y * width], width, 1, kernel, &scratch);
  }
  if (sigmaY > 0) {
    std::vector<float> kernel = BellOf(sigmaY);
    for (size_t x = 0; x < width; x++) BlurLine(&pixels[x], height, width, kernel, &scratch);
  }
  for (size_t i = 0; i < pixels.size(); i++) {
    float alpha = pixels[i].v[3];
    uint32_t a = static_cast<uint32_t>(std::lround(std::clamp(alpha, 0.0f, 255.0f)));
    uint32_t p = a << 24;
    for (int c = 0; c < 3; c++) {
      float v = pixels[i].v[c];
      if (linear && alpha > 0.001f) {
        float light = std::clamp(v / alpha, 0.0f, 1.0f);
        v = static_cast<float>(tables.fromLight[std::lround(light * 4096)]) * alpha / 255;
      }
      uint32_t channel = static_cast<uint32_t>(std::lround(std::max(v, 0.0f)));
      p |= std::min(channel, a) << (8 * c);
    }
    bitmap->pixels[i] = p;
  }
}

}  // namespace vexel::author
