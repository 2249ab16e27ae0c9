// What concerns an element as a whole: filter, clip, mask, opacity.
//
// Clips become clip brackets. Opacity goes into the paints where the parts of the
// element do not overlap, or can be cut so that they don't. The rest is drawn into a
// bitmap.
#include <algorithm>
#include <cmath>

#include "author/scene_raster.h"
#include "author/svg_builder.h"

namespace vexel::author {
namespace {

// Bitmaps bear a frame of this many pixels without growing coarse.
constexpr double kBitmapSide = 512;

// Opacities from here on are drawn as full: a step of 255 is all a movie can tell.
constexpr double kFull = 0.997;

// A blur of less than this part of the frame's longer side is not worth losing the
// outlines for.
constexpr double kLeastBlur = 0.001;

// Groups with more parts than this are not cut up to fade them.
constexpr size_t kMaxFadedParts = 200;

bool Paints(const SceneItem& item) {
  return item.op == SceneOp::kFill || item.op == SceneOp::kStroke;
}

Box BoundsOf(const std::vector<SceneItem>& items) {
  Box box;
  for (const SceneItem& item : items)
    if (Paints(item)) box.Add(item.bounds);
  return box;
}

// x, y, width and height of a filter or mask, by default a tenth more on each side.
Box RegionOfUse(const xmlNode* node, const char* unitsName, const Box& userBox, double viewWidth,
                double viewHeight) {
  bool inUser = Attribute(node, unitsName) == "userSpaceOnUse";
  double w = inUser ? viewWidth : 1, h = inUser ? viewHeight : 1;
  auto length = [&](const char* name, double percent, double absent) {
    std::string text = Attribute(node, name);
    double value;
    return !text.empty() && ParseLength(text, {percent, 16}, &value) ? value : absent;
  };
  double x = length("x", w, -0.1 * w), y = length("y", h, -0.1 * h);
  double width = length("width", w, 1.2 * w), height = length("height", h, 1.2 * h);
  if (inUser) return {x, y, x + width, y + height};
  return {userBox.xmin + x * userBox.Width(), userBox.ymin + y * userBox.Height(),
          userBox.xmin + (x + width) * userBox.Width(),
          userBox.ymin + (y + height) * userBox.Height()};
}

}  // namespace

double SvgBuilder::BitmapDensity() const {
  return kBitmapSide / std::max(scene_->width, scene_->height);
}

bool SvgBuilder::TakePixels(double count) {
  if (!(count <= bitmapPixelsLeft_)) return false;
  bitmapPixelsLeft_ -= count;
  return true;
}

bool SvgBuilder::ReplaceByBitmap(const Box& region, double density, const BitmapEdit& edit,
                                 Items* items) {
  if (region.IsEmpty()) return false;
  double pixels = std::ceil(region.Width() * density) * std::ceil(region.Height() * density);
  if (!TakePixels(pixels)) return false;
  SceneBitmap bitmap = RasterizeItems(*items, scene_->bitmaps, region, density);
  if (bitmap.pixels.empty()) return false;
  if (edit) edit(&bitmap);
  SceneItem item;
  item.path.AddRect(region.xmin, region.ymin, bitmap.width / density, bitmap.height / density);
  item.bounds = item.path.Bounds();
  item.paint.kind = PaintKind::kBitmap;
  item.paint.matrix =
      Affine::Translate(region.xmin, region.ymin) * Affine::Scale(1 / density, 1 / density);
  item.paint.bitmap = AddBitmap(std::move(bitmap));
  items->clear();
  items->push_back(std::move(item));
  return true;
}

void SvgBuilder::ApplyFilter(const std::string& id, const SvgStyle& style, const Place& place,
                             const Box& userBox, Items* items) {
  const xmlNode* filter = document_.Find(id);
  if (!IsNamed(filter, "filter")) return;
  bool inBox = Attribute(filter, "primitiveUnits") == "objectBoundingBox";
  SvgStyle filterStyle = ComputeStyle(filter, style, sheet_, place.Diagonal());
  double varianceX = 0, varianceY = 0;
  bool linear = filterStyle.linearFilters;
  for (const xmlNode* p = FirstElement(filter); p; p = NextElement(p)) {
    if (!IsSvgElement(p)) continue;
    if (!IsNamed(p, "feGaussianBlur")) {
      Warn("filter " + std::string(NodeName(p)) + ": left out");
      continue;
    }
    linear = ComputeStyle(p, filterStyle, sheet_, place.Diagonal()).linearFilters;
    std::vector<double> deviation = ParseNumbers(Attribute(p, "stdDeviation"));
    double x = deviation.empty() ? 0 : deviation[0], y = deviation.size() > 1 ? deviation[1] : x;
    if (inBox) x *= userBox.Width(), y *= userBox.Height();
    if (x < 0 || y < 0) continue;
    varianceX += x * x;
    varianceY += y * y;
  }
  double sigmaX = std::sqrt(varianceX) * std::hypot(place.toFrame.a, place.toFrame.b);
  double sigmaY = std::sqrt(varianceY) * std::hypot(place.toFrame.c, place.toFrame.d);
  double side = std::max(scene_->width, scene_->height);
  if (!(std::max(sigmaX, sigmaY) >= kLeastBlur * side)) return;
  // A blur wider than the frame is as good as none at all.
  sigmaX = std::min(sigmaX, side);
  sigmaY = std::min(sigmaY, side);
  Box area = BoxThrough(place.toFrame,
                        RegionOfUse(filter, "filterUnits", userBox, place.width, place.height));
  double margin = 3 * std::max(sigmaX, sigmaY);
  Box region = area.Intersection(BoundsOf(*items).Grown(margin))
                   .Intersection(Box{0, 0, scene_->width, scene_->height}.Grown(margin));
  if (region.IsEmpty()) {
    items->clear();
    return;
  }
  // Nothing in a blurred picture is finer than its blur.
  double density = std::min(BitmapDensity(), 8 / std::max(std::min(sigmaX, sigmaY), 1e-9));
  density = std::max(density, 64 / side);
  double steps =
      region.Width() * region.Height() * density * density * density * (sigmaX + sigmaY) * 6;
  bool drawn =
      budget_.Take(4 * steps) &&
      ReplaceByBitmap(
          region, density,
          [&](SceneBitmap* b) { BlurBitmap(b, sigmaX * density, sigmaY * density, linear); },
          items);
  Warn(drawn ? "blur: drawn as a bitmap" : "blur: too large, left out");
}

bool SvgBuilder::RegionOf(const SceneItem& item, Polygons* out) {
  if (item.op == SceneOp::kStroke) {
    StrokeStyle pen;
    pen.width = item.width;
    pen.cap = StrokeCap::kRound;
    pen.join = StrokeJoin::kRound;
    return StrokeRegion(item.path, pen, tolerance_, &budget_, out);
  }
  return UnionPolygons(FlattenFill(item.path, tolerance_), Winding::kEvenOdd, tolerance_, &budget_,
                       out);
}

bool SvgBuilder::ClipRegion(const xmlNode* clip, const Place& place, const Box& userBox,
                            VectorPath* out) {
  Place inner = place;
  inner.depth++;
  if (Attribute(clip, "clipPathUnits") == "objectBoundingBox")
    inner.toFrame =
        place.toFrame * Affine{userBox.Width(), 0, 0, userBox.Height(), userBox.xmin, userBox.ymin};
  std::string list = Attribute(clip, "transform");
  Affine m;
  if (!list.empty() && ParseTransform(list, &m)) inner.toFrame = inner.toFrame * m;
  SvgStyle base = ComputeStyle(clip, SvgStyle(), sheet_, place.Diagonal());

  // The outlines of the children, with the clip's rule in place of the fill's.
  std::vector<VectorPath> paths;
  for (const xmlNode* child = FirstElement(clip); child; child = NextElement(child)) {
    if (!IsSvgElement(child) || !Enter(inner.depth)) continue;
    SvgStyle style = StyleOf(child, base, inner);
    Place at = Transformed(child, inner);
    const xmlNode* shape = child;
    if (IsNamed(child, "use")) {
      shape = document_.Find(Href(child));
      if (!IsSvgElement(shape) || Href(child).substr(0, 1) != "#") continue;
      at.toFrame = at.toFrame * Affine::Translate(LengthOf(child, "x", at.width, 16, 0),
                                                  LengthOf(child, "y", at.height, 16, 0));
      style = StyleOf(shape, style, at);
      at = Transformed(shape, at);
    }
    if (!style.display || !style.visible) continue;
    std::string_view name = NodeName(shape);
    if (name == "text") {
      Warn("text in a clip path");
      continue;
    }
    if (name != "path" && name != "rect" && name != "circle" && name != "ellipse" &&
        name != "polygon" && name != "polyline")
      continue;
    VectorPath path, region;
    if (!PathOf(shape, style, at, &path)) continue;
    path.Transform(at.toFrame);
    if (!ResolveWinding(path, style.clipRule, tolerance_, &budget_, &region))
      Warn("clip path too complex for its winding rule: taken even-odd");
    if (!style.clipPath.empty()) Warn("clip path on a part of a clip path: left out");
    paths.push_back(std::move(region));
  }
  if (paths.empty()) return false;
  if (paths.size() == 1) {
    *out = std::move(paths[0]);
    return true;
  }
  Polygons all, together;
  for (const VectorPath& path : paths) {
    Polygons region;
    if (!UnionPolygons(FlattenFill(path, tolerance_), Winding::kEvenOdd, tolerance_, &budget_,
                       &region))
      continue;
    all.insert(all.end(), region.begin(), region.end());
  }
  if (!UnionPolygons(all, Winding::kNonZero, tolerance_, &budget_, &together)) {
    Warn("clip path too complex: only its first part taken");
    *out = std::move(paths[0]);
    return true;
  }
  *out = FitCurves(together, tolerance_);
  return true;
}

void SvgBuilder::ClipItems(VectorPath path, Items* items) {
  SceneItem begin, end;
  begin.op = SceneOp::kBeginClip;
  begin.path = std::move(path);
  end.op = SceneOp::kEndClip;
  items->insert(items->begin(), std::move(begin));
  items->push_back(std::move(end));
}

void SvgBuilder::ApplyClip(const std::string& id, const Place& place, const Box& userBox,
                           Items* items) {
  const xmlNode* clip = document_.Find(id);
  // A clip path may be clipped itself; each bracket lies around the one before.
  for (int nested = 0; IsNamed(clip, "clipPath") && nested < 8; nested++) {
    VectorPath path;
    if (!ClipRegion(clip, place, userBox, &path)) {
      items->clear();  // an empty clip path shows nothing
      return;
    }
    ClipItems(std::move(path), items);
    std::string outer = ComputeStyle(clip, SvgStyle(), sheet_, place.Diagonal()).clipPath;
    clip = outer.empty() ? nullptr : document_.Find(outer);
  }
}

void SvgBuilder::ApplyMask(const std::string& id, const Place& place, const Box& userBox,
                           Items* items) {
  const xmlNode* mask = document_.Find(id);
  if (!IsNamed(mask, "mask") || !Enter(place.depth)) return;
  Box area =
      BoxThrough(place.toFrame, RegionOfUse(mask, "maskUnits", userBox, place.width, place.height));
  Place inner = place;
  inner.depth++;
  if (Attribute(mask, "maskContentUnits") == "objectBoundingBox")
    inner.toFrame =
        place.toFrame * Affine{userBox.Width(), 0, 0, userBox.Height(), userBox.xmin, userBox.ymin};
  Items content;
  DrawChildren(mask, ComputeStyle(mask, SvgStyle(), sheet_, place.Diagonal()), inner, &content);
  Box region = area.Intersection(BoundsOf(content)).Intersection(BoundsOf(*items));
  if (content.empty() || region.IsEmpty()) {
    items->clear();
    return;
  }
  // A single opaque white shape is a clip path by another name.
  if (content.size() == 1 && content[0].op == SceneOp::kFill &&
      content[0].paint.kind == PaintKind::kSolid && area.Contains(content[0].bounds)) {
    const SceneColor& c = content[0].paint.color;
    if (c.red == 255 && c.green == 255 && c.blue == 255) {
      ClipItems(std::move(content[0].path), items);
      ApplyOpacity(c.alpha, items);
      return;
    }
  }
  region = region.Intersection(Box{0, 0, scene_->width, scene_->height});
  if (region.IsEmpty()) {
    items->clear();
    return;
  }
  double density = BitmapDensity();
  if (!TakePixels(region.Width() * region.Height() * density * density)) {
    Warn("mask: too large, left out");
    return;
  }
  SceneBitmap cover = RasterizeItems(content, scene_->bitmaps, region, density);
  bool drawn = ReplaceByBitmap(
      region, density,
      [&](SceneBitmap* b) {
        for (size_t i = 0; i < b->pixels.size() && i < cover.pixels.size(); i++) {
          uint32_t m = cover.pixels[i], p = b->pixels[i], out = 0;
          double light =
              (0.2125 * (m >> 16 & 255) + 0.7154 * (m >> 8 & 255) + 0.0721 * (m & 255)) / 255;
          for (int shift = 0; shift < 32; shift += 8)
            out |= static_cast<uint32_t>(std::lround((p >> shift & 255) * light)) << shift;
          b->pixels[i] = out;
        }
      },
      items);
  Warn(drawn ? "mask: drawn as a bitmap" : "mask: too large, left out");
}

// Cuts from each part what lies above it, so that no two overlap, and fades them
// all. That shows the same as fading the whole, if what lies above covers.
bool SvgBuilder::FadeWithoutOverlap(double opacity, Items* items) {
  if (items->size() > kMaxFadedParts) return false;
  for (size_t i = 1; i < items->size(); i++)
    if (!(*items)[i].paint.IsOpaque()) return false;
  Items faded;
  Polygons above;  // the union of what was visited, from the top down
  for (size_t i = items->size(); i-- > 0;) {
    SceneItem item = (*items)[i];
    Polygons region, visible;
    if (!RegionOf(item, &region) ||
        !SubtractPolygons(region, above, tolerance_, &budget_, &visible))
      return false;
    above.insert(above.end(), region.begin(), region.end());
    if (!UnionPolygons(above, Winding::kNonZero, tolerance_, &budget_, &above)) return false;
    item.op = SceneOp::kFill;
    item.path = FitCurves(visible, tolerance_);
    item.bounds = item.path.Bounds();
    FadePaint(opacity, &item.paint);
    if (!visible.empty()) faded.push_back(std::move(item));
  }
  std::reverse(faded.begin(), faded.end());
  *items = std::move(faded);
  return true;
}

void SvgBuilder::ApplyOpacity(double opacity, Items* items) {
  if (opacity >= kFull) return;
  bool overlap = false, brackets = false;
  size_t parts = 0;
  for (size_t i = 0; i < items->size(); i++) {
    brackets = brackets || !Paints((*items)[i]);
    if (!Paints((*items)[i])) continue;
    parts++;
    // Many parts are taken to overlap without asking each pair.
    overlap = overlap || parts > kMaxFadedParts;
    for (size_t j = 0; j < i && !overlap; j++)
      overlap =
          Paints((*items)[j]) && !(*items)[i].bounds.Intersection((*items)[j].bounds).IsEmpty();
  }
  if (overlap && !brackets && FadeWithoutOverlap(opacity, items)) return;
  if (overlap) {
    Box region = BoundsOf(*items).Intersection(Box{0, 0, scene_->width, scene_->height});
    if (ReplaceByBitmap(region, BitmapDensity(), {}, items))
      Warn("opacity of overlapping parts: drawn as a bitmap");
    else
      Warn("opacity of overlapping parts: each part faded by itself");
  }
  for (SceneItem& item : *items)
    if (Paints(item)) FadePaint(opacity, &item.paint);
}

}  // namespace vexel::author
