// Paint servers: gradients and patterns as the movie's paints.
#include <algorithm>
#include <cmath>

#include "author/scene_raster.h"
#include "author/svg_builder.h"

namespace vexel::author {
namespace {

constexpr size_t kMaxStops = 8;   // of a movie's gradient
constexpr size_t kMaxChain = 32;  // of references from one server to the next
constexpr double kMaxTileSide = 1024;

// A gradient that is narrower than this part of the frame's longer side would make
// the player's inverse matrix overflow when the movie is shown small. It is stretched,
// and its stops move together.
constexpr double kNarrowest = 1.0 / 32;

// Focal points this close to the middle, in radii, look the same.
constexpr double kFocusSlack = 0.02;

SceneColor ToScene(const SvgColor& c, double opacity) {
  return {c.red, c.green, c.blue, c.alpha * opacity};
}

// A paint server and those it refers to for what it leaves out.
class ServerChain {
 public:
  ServerChain(const SvgDocument& document, const xmlNode* node) {
    while (IsSvgElement(node) && nodes_.size() < kMaxChain) {
      nodes_.push_back(node);
      std::string next = Href(node);
      node = next.empty() ? nullptr : document.Find(next);
    }
  }
  std::string Get(const char* name) const {
    for (const xmlNode* n : nodes_)
      if (HasAttribute(n, name)) return Attribute(n, name);
    return {};
  }
  // The first that has an element child of SVG.
  const xmlNode* WithChildren(std::string_view name) const {
    for (const xmlNode* n : nodes_)
      for (const xmlNode* c = FirstElement(n); c; c = NextElement(c))
        if (name.empty() ? IsSvgElement(c) : IsNamed(c, name)) return n;
    return nullptr;
  }
  double Length(const char* name, double percent, const char* absent) const {
    std::string text = Get(name);
    double value;
    if (text.empty() || !ParseLength(text, {percent, 16}, &value)) {
      value = 0;
      ParseLength(absent, {percent, 16}, &value);
    }
    return value;
  }
  Affine Transform(const char* name) const {
    Affine m;
    std::string text = Get(name);
    if (!text.empty()) ParseTransform(text, &m);
    return m;
  }

 private:
  std::vector<const xmlNode*> nodes_;
};

// The greatest channel difference that leaving out stop `i` makes at its place.
double StopWeight(const std::vector<PaintStop>& stops, size_t i) {
  const PaintStop &p = stops[i - 1], &q = stops[i], &r = stops[i + 1];
  double span = r.offset - p.offset;
  double t = span > 0 ? (q.offset - p.offset) / span : 0;
  auto off = [t](double u, double v, double w) { return std::fabs(v - (u + (w - u) * t)); };
  double worst = std::max({off(p.color.red, q.color.red, r.color.red),
                           off(p.color.green, q.color.green, r.color.green),
                           off(p.color.blue, q.color.blue, r.color.blue),
                           255 * off(p.color.alpha, q.color.alpha, r.color.alpha)});
  return worst * (span + 0.02);
}

}  // namespace

bool SvgBuilder::MakePaint(const SvgPaint& spec, double opacity, const SvgStyle& style,
                           const Place& place, const Box& userBox, Paint* out) {
  auto solid = [&](SvgPaintKind kind, const SvgColor& color) {
    if (kind != SvgPaintKind::kColor && kind != SvgPaintKind::kCurrentColor) return false;
    out->kind = PaintKind::kSolid;
    out->color = ToScene(kind == SvgPaintKind::kColor ? color : style.color, opacity);
    return out->color.alpha > 0;
  };
  if (opacity <= 0) return false;
  if (spec.kind != SvgPaintKind::kReference) return solid(spec.kind, spec.color);
  const xmlNode* server = document_.Find(spec.reference);
  if (IsNamed(server, "linearGradient") || IsNamed(server, "radialGradient"))
    return MakeGradient(server, opacity, place, userBox, out);
  if (IsNamed(server, "pattern")) return MakePattern(server, opacity, place, userBox, out);
  return spec.hasFallback && solid(spec.fallback, spec.color);
}

std::vector<PaintStop> SvgBuilder::StopsOf(const xmlNode* node, double opacity) {
  std::vector<PaintStop> stops;
  SvgStyle parent = ComputeStyle(node, SvgStyle(), sheet_, 100);
  double last = 0;
  for (const xmlNode* c = FirstElement(node); c; c = NextElement(c)) {
    if (!IsNamed(c, "stop") || stops.size() >= 1000) continue;
    SvgStyle style = ComputeStyle(c, parent, sheet_, 100);
    double offset = 0;
    ParseFraction(Attribute(c, "offset"), &offset);
    last = std::clamp(offset, last, 1.0);
    bool current = style.stopColor.kind == SvgPaintKind::kCurrentColor;
    stops.push_back({last, ToScene(current ? style.color : style.stopColor.color,
                                   style.stopOpacity * opacity)});
  }
  return stops;
}

bool SvgBuilder::MakeGradient(const xmlNode* node, double opacity, const Place& place,
                              const Box& userBox, Paint* out) {
  ServerChain chain(document_, node);
  const xmlNode* holder = chain.WithChildren("stop");
  if (!holder) return false;
  out->stops = StopsOf(holder, opacity);
  auto lastStop = [&] {
    SceneColor color = out->stops.back().color;
    *out = Paint();
    out->color = color;
    return color.alpha > 0;
  };
  if (out->stops.size() == 1) return lastStop();

  bool inUser = chain.Get("gradientUnits") == "userSpaceOnUse";
  Affine units;
  double w = place.width, h = place.height, diagonal = place.Diagonal();
  if (!inUser) {
    if (!(userBox.Width() > 0) || !(userBox.Height() > 0)) return false;
    units = {userBox.Width(), 0, 0, userBox.Height(), userBox.xmin, userBox.ymin};
    w = h = diagonal = 1;
  }
  Affine toFrame = place.toFrame * units * chain.Transform("gradientTransform");
  if (NodeName(node) == "linearGradient") {
    out->kind = PaintKind::kLinear;
    Vec2 p{chain.Length("x1", w, "0%"), chain.Length("y1", h, "0%")};
    Vec2 q{chain.Length("x2", w, "100%"), chain.Length("y2", h, "0%")};
    Vec2 d = q - p;
    if (Length(d) == 0) return lastStop();
    out->matrix = toFrame * Affine{d.x, d.y, -d.y, d.x, p.x, p.y};
  } else {
    out->kind = PaintKind::kRadial;
    Vec2 center{chain.Length("cx", w, "50%"), chain.Length("cy", h, "50%")};
    double r = chain.Length("r", diagonal, "50%");
    if (!(r > 0)) return lastStop();
    Vec2 focus{chain.Get("fx").empty() ? center.x : chain.Length("fx", w, "50%"),
               chain.Get("fy").empty() ? center.y : chain.Length("fy", h, "50%")};
    out->matrix = toFrame * Affine{r, 0, 0, r, center.x, center.y};
    focus = (1 / r) * (focus - center);
    double off = Length(focus);
    if (off > 0.999) focus = (0.999 / off) * focus;
    if (off > kFocusSlack) {
      out->focus = focus;
      Warn("radial gradient with a focal point: drawn as a bitmap");
    }
  }
  std::string spread = chain.Get("spreadMethod");
  if (spread == "reflect") out->spread = Spread::kReflect;
  if (spread == "repeat") out->spread = Spread::kRepeat;
  if (out->spread != Spread::kPad) Warn("repeated gradient: drawn as a bitmap");
  Affine inverse;
  if (!out->matrix.IsFinite() || !out->matrix.Invert(&inverse)) return lastStop();
  if (out->spread == Spread::kPad && out->focus == Vec2{}) {
    LimitStops(out);
    WidenGradient(out);
  }
  return std::any_of(out->stops.begin(), out->stops.end(),
                     [](const PaintStop& s) { return s.color.alpha > 0; });
}

void SvgBuilder::LimitStops(Paint* paint) {
  std::vector<PaintStop>& stops = paint->stops;
  bool visible = false;
  while (stops.size() > kMaxStops) {
    size_t least = 1;
    for (size_t i = 2; i + 1 < stops.size(); i++)
      if (StopWeight(stops, i) < StopWeight(stops, least)) least = i;
    visible = visible || StopWeight(stops, least) > 0.5;
    stops.erase(stops.begin() + static_cast<long>(least));
  }
  if (visible) Warn("gradient of more than 8 stops: simplified");
}

void SvgBuilder::WidenGradient(Paint* paint) const {
  Affine& m = paint->matrix;
  double narrowest = kNarrowest * std::max(scene_->width, scene_->height);
  if (paint->kind == PaintKind::kLinear) {
    // The distance between the lines where the stops begin and end. Only the direction
    // of those lines matters, so they may be given any length.
    double across = std::hypot(m.c, m.d), width = std::fabs(m.Determinant()) / across;
    if (width < narrowest) {
      double k = narrowest / width;
      m = m * Affine{k, 0, 0, 1, 0.5 - k / 2, 0};
      for (PaintStop& s : paint->stops) s.offset = 0.5 + (s.offset - 0.5) / k;
    }
    double ratio = std::hypot(m.a, m.b) / across;
    m.c *= ratio;
    m.d *= ratio;
    return;
  }
  double radius = m.MeanScale();
  if (radius >= narrowest) return;
  double k = narrowest / radius;
  m = m * Affine::Scale(k, k);
  for (PaintStop& s : paint->stops) s.offset /= k;
}

void SvgBuilder::BakePaint(const Box& frameBox, Paint* paint) {
  Box frame{0, 0, scene_->width, scene_->height};
  Box region = frameBox.Intersection(frame.Grown(0.25 * std::max(frame.xmax, frame.ymax)));
  Items items(1);
  items[0].path.AddRect(region.xmin, region.ymin, region.Width(), region.Height());
  items[0].paint = *paint;
  items[0].bounds = region;
  if (!region.IsEmpty() && ReplaceByBitmap(region, BitmapDensity(), {}, &items)) {
    *paint = items[0].paint;
    return;
  }
  paint->focus = {};
  paint->spread = Spread::kPad;
  LimitStops(paint);
}

bool SvgBuilder::MakePattern(const xmlNode* node, double opacity, const Place& place,
                             const Box& userBox, Paint* out) {
  ServerChain chain(document_, node);
  const xmlNode* holder = chain.WithChildren("");
  if (!holder || !Enter(place.depth)) return false;
  bool inUser = chain.Get("patternUnits") == "userSpaceOnUse";
  bool contentInBox = chain.Get("patternContentUnits") == "objectBoundingBox";
  if ((!inUser || contentInBox) && (!(userBox.Width() > 0) || !(userBox.Height() > 0)))
    return false;
  double w = inUser ? place.width : 1, h = inUser ? place.height : 1;
  double x = chain.Length("x", w, "0"), y = chain.Length("y", h, "0");
  double width = chain.Length("width", w, "0"), height = chain.Length("height", h, "0");
  if (!inUser) {
    x = userBox.xmin + x * userBox.Width();
    y = userBox.ymin + y * userBox.Height();
    width *= userBox.Width();
    height *= userBox.Height();
  }
  if (!(width > 0) || !(height > 0)) return false;
  Affine toFrame = place.toFrame * chain.Transform("patternTransform");
  // A tile is a whole number of pixels; its content is stretched to them.
  double density = BitmapDensity();
  double columns = std::clamp(std::ceil(width * std::hypot(toFrame.a, toFrame.b) * density - 1e-6),
                              1.0, kMaxTileSide);
  double rows = std::clamp(std::ceil(height * std::hypot(toFrame.c, toFrame.d) * density - 1e-6),
                           1.0, kMaxTileSide);
  if (!std::isfinite(columns) || !std::isfinite(rows)) return false;
  Place inner = place;
  inner.depth++;
  inner.toFrame = Affine::Scale(columns / width, rows / height) * Affine::Translate(-x, -y);
  std::vector<double> box = ParseNumbers(chain.Get("viewBox"));
  if (box.size() == 4 && box[2] > 0 && box[3] > 0) {
    bool slice;
    inner.toFrame = inner.toFrame * FitViewBox(chain.Get("preserveAspectRatio"), box[0], box[1],
                                               box[2], box[3], x, y, width, height, &slice);
  } else {
    Affine content;
    if (contentInBox)
      content = {userBox.Width(), 0, 0, userBox.Height(), userBox.xmin, userBox.ymin};
    inner.toFrame = inner.toFrame * content;
  }
  Items items;
  DrawChildren(holder, ComputeStyle(holder, SvgStyle(), sheet_, 100), inner, &items);
  if (!TakePixels(columns * rows)) return false;
  SceneBitmap tile = RasterizeItems(items, scene_->bitmaps, {0, 0, columns, rows}, 1);
  if (tile.pixels.empty()) return false;
  Warn("pattern: drawn as a bitmap");
  out->kind = PaintKind::kBitmap;
  out->tiled = true;
  out->alpha = opacity;
  out->matrix = toFrame * Affine::Translate(x, y) * Affine::Scale(width / columns, height / rows);
  out->bitmap = AddBitmap(std::move(tile));
  return true;
}

}  // namespace vexel::author
