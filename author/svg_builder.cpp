// The walk over the tree: containers, references, viewports, pictures.
#include "author/svg_builder.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cmath>

#include "author/import_pixels.h"

namespace vexel::author {
namespace {

constexpr int kMaxDepth = 80;
constexpr size_t kMaxElements = 200000;
constexpr size_t kMaxCommands = 4000000;
constexpr double kMaxAllBitmaps = 64e6;  // pixels

// A frame's side. The largest client rectangle of the command is 8191 pixels.
constexpr double kMaxFrame = 8191;
// What a picture without any size gets, as pages give it.
constexpr double kDefaultWidth = 300, kDefaultHeight = 150;

// Curves stay within a twentieth of a pixel, also when the picture is blown up to
// this many pixels.
constexpr double kFineSide = 512;

bool IsShape(std::string_view name) {
  return name == "path" || name == "rect" || name == "circle" || name == "ellipse" ||
         name == "line" || name == "polyline" || name == "polygon";
}

// Elements that draw nothing where they stand.
bool IsSilent(std::string_view name) {
  static constexpr std::string_view kNames[] = {
      "defs",   "symbol", "linearGradient", "radialGradient", "pattern", "clipPath",   "mask",
      "filter", "marker", "style",          "title",          "desc",    "metadata",   "script",
      "stop",   "view",   "font",           "font-face",      "cursor",  "solidColor",
  };
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

bool IsAnimation(std::string_view name) {
  return name == "set" || name.substr(0, 7) == "animate";
}

void CollectStyles(const xmlNode* root, StyleSheet* sheet) {
  const xmlNode* node = root;
  while (node) {
    if (IsNamed(node, "style")) sheet->Add(TextOf(node));
    if (node->type == XML_ELEMENT_NODE && node->children) {
      node = node->children;
      continue;
    }
    while (node != root && !node->next) node = node->parent;
    if (node == root) break;
    node = node->next;
  }
}

bool ReadViewBox(const xmlNode* node, double box[4]) {
  std::vector<double> v = ParseNumbers(Attribute(node, "viewBox"));
  if (v.size() != 4 || !(v[2] > 0) || !(v[3] > 0)) return false;
  std::copy(v.begin(), v.end(), box);
  return true;
}

}  // namespace

double SvgBuilder::Place::Diagonal() const {
  return std::sqrt((width * width + height * height) / 2);
}

Box BoxThrough(const Affine& m, const Box& box) {
  Box out;
  if (box.IsEmpty()) return out;
  for (double x : {box.xmin, box.xmax})
    for (double y : {box.ymin, box.ymax}) out.Add(m.Apply({x, y}));
  return out;
}

Affine FitViewBox(std::string_view preserve, double boxX, double boxY, double boxWidth,
                  double boxHeight, double x, double y, double width, double height, bool* slice) {
  double sx = width / boxWidth, sy = height / boxHeight;
  double alignX = 0.5, alignY = 0.5;
  *slice = preserve.find("slice") != std::string_view::npos;
  if (preserve.find("none") != std::string_view::npos) {
    *slice = false;
  } else {
    if (preserve.find("xMin") != std::string_view::npos) alignX = 0;
    if (preserve.find("xMax") != std::string_view::npos) alignX = 1;
    if (preserve.find("YMin") != std::string_view::npos) alignY = 0;
    if (preserve.find("YMax") != std::string_view::npos) alignY = 1;
    sx = sy = *slice ? std::max(sx, sy) : std::min(sx, sy);
  }
  return {sx,
          0,
          0,
          sy,
          x + (width - boxWidth * sx) * alignX - boxX * sx,
          y + (height - boxHeight * sy) * alignY - boxY * sy};
}

void SvgBuilder::Warn(const std::string& what) {
  for (ImportWarning& w : warnings_)
    if (w.what == what) {
      w.count++;
      return;
    }
  warnings_.push_back({what, 1});
}

int SvgBuilder::AddBitmap(SceneBitmap bitmap) {
  scene_->bitmaps.push_back(std::move(bitmap));
  return static_cast<int>(scene_->bitmaps.size()) - 1;
}

double SvgBuilder::LengthOf(const xmlNode* node, const char* name, double percent, double fontSize,
                            double absent) const {
  std::string text = Attribute(node, name);
  double value;
  return !text.empty() && ParseLength(text, {percent, fontSize}, &value) ? value : absent;
}

void SvgBuilder::Build(Scene* scene) {
  scene_ = scene;
  elementsLeft_ = kMaxElements;
  commandsLeft_ = kMaxCommands;
  bitmapPixelsLeft_ = kMaxAllBitmaps;
  const xmlNode* root = document_.root();
  CollectStyles(root, &sheet_);

  double box[4];
  bool hasBox = ReadViewBox(root, box);
  double width =
      LengthOf(root, "width", hasBox ? box[2] : kDefaultWidth, 16, hasBox ? box[2] : kDefaultWidth);
  double height = LengthOf(root, "height", hasBox ? box[3] : kDefaultHeight, 16,
                           hasBox ? box[3] : kDefaultHeight);
  if (hasBox && !HasAttribute(root, "width") && HasAttribute(root, "height"))
    width = height * box[2] / box[3];
  if (hasBox && HasAttribute(root, "width") && !HasAttribute(root, "height"))
    height = width * box[3] / box[2];
  if (!(width > 0) || !(height > 0)) width = kDefaultWidth, height = kDefaultHeight;
  // Frames have whole movie units and a bounded size; the picture is scaled to them.
  double scale = std::min(1.0, kMaxFrame / std::max(width, height));
  if (std::max(width, height) < 1) scale = 1 / std::max(width, height);
  scene->width = std::max(1.0, std::round(width * scale * kPixel)) / kPixel;
  scene->height = std::max(1.0, std::round(height * scale * kPixel)) / kPixel;
  tolerance_ = 0.05 * std::min(1.0, std::max(scene->width, scene->height) / kFineSide);

  Place place;
  place.width = width;
  place.height = height;
  place.toFrame = Affine::Scale(scene->width / width, scene->height / height);
  if (hasBox) {
    bool slice;
    place.toFrame = place.toFrame * FitViewBox(Attribute(root, "preserveAspectRatio"), box[0],
                                               box[1], box[2], box[3], 0, 0, width, height, &slice);
    place.width = box[2];
    place.height = box[3];
  }
  SvgStyle style = StyleOf(root, SvgStyle(), place);
  if (!style.display) return;
  Items items;
  DrawChildren(root, style, place, &items);
  ApplyOpacity(style.opacity, &items);
  // What lies wholly outside the frame would only slow players down.
  Box frame{0, 0, scene->width, scene->height};
  for (SceneItem& item : items) {
    bool paints = item.op == SceneOp::kFill || item.op == SceneOp::kStroke;
    if (!paints || !item.bounds.Intersection(frame).IsEmpty())
      scene->items.push_back(std::move(item));
  }
}

bool SvgBuilder::Enter(int depth) {
  if (depth > kMaxDepth) {
    Warn("elements nested too deeply");
    return false;
  }
  if (elementsLeft_ == 0) {
    Warn("elements beyond the limit of " + std::to_string(kMaxElements));
    return false;
  }
  elementsLeft_--;
  return true;
}

SvgStyle SvgBuilder::StyleOf(const xmlNode* node, const SvgStyle& parent, const Place& place) {
  return ComputeStyle(node, parent, sheet_, place.Diagonal());
}

SvgBuilder::Place SvgBuilder::Transformed(const xmlNode* node, const Place& place) {
  Place inner = place;
  inner.depth++;
  std::string list = Attribute(node, "transform");
  Affine m;
  if (!list.empty() && ParseTransform(list, &m)) inner.toFrame = place.toFrame * m;
  return inner;
}

void SvgBuilder::DrawChildren(const xmlNode* node, const SvgStyle& style, const Place& place,
                              Items* out) {
  for (const xmlNode* child = FirstElement(node); child; child = NextElement(child))
    DrawElement(child, style, place, out);
}

void SvgBuilder::DrawElement(const xmlNode* node, const SvgStyle& parent, const Place& place,
                             Items* out) {
  if (!IsSvgElement(node)) return;
  std::string_view name = NodeName(node);
  if (IsSilent(name) || !Enter(place.depth)) return;
  if (IsAnimation(name)) {
    Warn("animation: the picture stands still");
    return;
  }
  SvgStyle style = StyleOf(node, parent, place);
  if (!style.display || style.opacity <= 0) return;
  Place inner = Transformed(node, place);
  if (!inner.toFrame.IsFinite() || inner.toFrame.Determinant() == 0) return;
  if (style.blended) Warn("blend mode: drawn as normal");

  Items items;
  Box userBox;
  DrawContent(node, style, inner, &userBox, &items);
  if (items.empty()) return;
  bool whole = !style.filter.empty() || !style.clipPath.empty() || !style.mask.empty();
  if (whole && userBox.IsEmpty()) {
    Box frameBox;
    for (const SceneItem& item : items)
      if (item.op == SceneOp::kFill || item.op == SceneOp::kStroke) frameBox.Add(item.bounds);
    Affine inverse;
    if (inner.toFrame.Invert(&inverse)) userBox = BoxThrough(inverse, frameBox);
  }
  if (!style.filter.empty()) ApplyFilter(style.filter, style, inner, userBox, &items);
  // Fading before cutting shows the same as after, and meets no brackets.
  ApplyOpacity(style.opacity, &items);
  if (!style.clipPath.empty()) ApplyClip(style.clipPath, inner, userBox, &items);
  if (!style.mask.empty()) ApplyMask(style.mask, inner, userBox, &items);
  std::move(items.begin(), items.end(), std::back_inserter(*out));
}

void SvgBuilder::DrawContent(const xmlNode* node, const SvgStyle& style, const Place& place,
                             Box* userBox, Items* out) {
  std::string_view name = NodeName(node);
  if (IsShape(name)) {
    DrawShape(node, style, place, userBox, out);
  } else if (name == "g" || name == "a") {
    DrawChildren(node, style, place, out);
  } else if (name == "use") {
    DrawUse(node, style, place, out);
  } else if (name == "switch") {
    DrawSwitch(node, style, place, out);
  } else if (name == "svg") {
    double x = LengthOf(node, "x", place.width, style.fontSize, 0);
    double y = LengthOf(node, "y", place.height, style.fontSize, 0);
    DrawViewport(node, style, place, x, y,
                 LengthOf(node, "width", place.width, style.fontSize, place.width),
                 LengthOf(node, "height", place.height, style.fontSize, place.height), out);
  } else if (name == "image") {
    DrawImage(node, style, place, userBox, out);
  } else if (name == "text" || name == "flowRoot") {
    if (style.visible && !Trim(TextOf(node)).empty()) Warn("text");
  } else if (name == "foreignObject") {
    Warn("foreignObject");
  }
}

void SvgBuilder::DrawUse(const xmlNode* node, const SvgStyle& style, const Place& place,
                         Items* out) {
  std::string reference = Href(node);
  if (reference.empty()) return;
  if (reference[0] != '#') {
    Warn("use of another file");
    return;
  }
  const xmlNode* target = document_.Find(reference);
  if (!IsSvgElement(target)) return;
  double x = LengthOf(node, "x", place.width, style.fontSize, 0);
  double y = LengthOf(node, "y", place.height, style.fontSize, 0);
  Place inner = place;
  inner.depth++;
  inner.toFrame = place.toFrame * Affine::Translate(x, y);
  if (!IsNamed(target, "symbol") && !IsNamed(target, "svg")) {
    DrawElement(target, style, inner, out);
    return;
  }
  if (!Enter(inner.depth)) return;
  double width = LengthOf(target, "width", place.width, style.fontSize, place.width);
  double height = LengthOf(target, "height", place.height, style.fontSize, place.height);
  width = LengthOf(node, "width", place.width, style.fontSize, width);
  height = LengthOf(node, "height", place.height, style.fontSize, height);
  SvgStyle targetStyle = StyleOf(target, style, place);
  if (!targetStyle.display) return;
  Items items;
  DrawViewport(target, targetStyle, Transformed(target, inner), 0, 0, width, height, &items);
  ApplyOpacity(targetStyle.opacity, &items);
  std::move(items.begin(), items.end(), std::back_inserter(*out));
}

void SvgBuilder::DrawSwitch(const xmlNode* node, const SvgStyle& style, const Place& place,
                            Items* out) {
  for (const xmlNode* child = FirstElement(node); child; child = NextElement(child)) {
    if (!IsSvgElement(child)) continue;
    std::string_view name = NodeName(child);
    if (IsSilent(name) || name == "foreignObject") continue;
    if (HasAttribute(child, "requiredExtensions")) continue;
    if (HasAttribute(child, "systemLanguage") &&
        Attribute(child, "systemLanguage").substr(0, 2) != "en")
      continue;
    DrawElement(child, style, place, out);
    return;
  }
}

void SvgBuilder::DrawViewport(const xmlNode* node, const SvgStyle& style, const Place& place,
                              double x, double y, double width, double height, Items* out) {
  if (!(width > 0) || !(height > 0)) return;
  Place inner = place;
  inner.width = width;
  inner.height = height;
  double box[4];
  if (ReadViewBox(node, box)) {
    bool slice;
    inner.toFrame = place.toFrame * FitViewBox(Attribute(node, "preserveAspectRatio"), box[0],
                                               box[1], box[2], box[3], x, y, width, height, &slice);
    inner.width = box[2];
    inner.height = box[3];
  } else {
    inner.toFrame = place.toFrame * Affine::Translate(x, y);
  }
  Items items;
  DrawChildren(node, style, inner, &items);
  bool sticksOut = false;
  SceneItem clip;
  clip.op = SceneOp::kBeginClip;
  clip.path.AddRect(x, y, width, height);
  clip.path.Transform(place.toFrame);
  Affine toUser;
  if (!style.overflowVisible && place.toFrame.Invert(&toUser)) {
    Box view{x, y, x + width, y + height};
    for (const SceneItem& item : items)
      if (item.op == SceneOp::kFill || item.op == SceneOp::kStroke)
        sticksOut = sticksOut ||
                    !view.Grown(1e-6 * place.Diagonal()).Contains(BoxThrough(toUser, item.bounds));
  }
  if (sticksOut) out->push_back(std::move(clip));
  std::move(items.begin(), items.end(), std::back_inserter(*out));
  if (sticksOut) {
    SceneItem end;
    end.op = SceneOp::kEndClip;
    out->push_back(std::move(end));
  }
}

void SvgBuilder::DrawImage(const xmlNode* node, const SvgStyle& style, const Place& place,
                           Box* userBox, Items* out) {
  if (!style.visible) return;
  std::string type;
  std::vector<uint8_t> bytes;
  if (!DecodeDataUrl(Href(node), &type, &bytes)) {
    Warn("image outside the file");
    return;
  }
  SceneBitmap bitmap;
  std::string error;
  bool png = bytes.size() > 4 && bytes[0] == 0x89 && bytes[1] == 'P';
  if (png) {
    if (!DecodePng(bytes.data(), bytes.size(), &bitmap, &error)) {
      Warn("image that cannot be read");
      return;
    }
  } else {
    JpegFacts facts;
    if (!ReadJpegFacts(bytes.data(), bytes.size(), &facts, &error) || facts.channels > 3) {
      Warn("image that cannot be read");
      return;
    }
    bitmap.width = facts.width;
    bitmap.height = facts.height;
    bitmap.opaque = true;
    bitmap.jpeg = std::move(bytes);
  }
  if (!TakePixels(static_cast<double>(bitmap.width) * bitmap.height)) {
    Warn("image beyond the limit of all pixels");
    return;
  }
  double x = LengthOf(node, "x", place.width, style.fontSize, 0);
  double y = LengthOf(node, "y", place.height, style.fontSize, 0);
  double width = LengthOf(node, "width", place.width, style.fontSize, -1);
  double height = LengthOf(node, "height", place.height, style.fontSize, -1);
  if (width < 0 && height < 0) width = bitmap.width, height = bitmap.height;
  if (width < 0) width = height * bitmap.width / bitmap.height;
  if (height < 0) height = width * bitmap.height / bitmap.width;
  if (!(width > 0) || !(height > 0)) return;
  bool slice;
  Affine fit = FitViewBox(Attribute(node, "preserveAspectRatio"), 0, 0, bitmap.width, bitmap.height,
                          x, y, width, height, &slice);
  Box picture = BoxThrough(
      fit, {0, 0, static_cast<double>(bitmap.width), static_cast<double>(bitmap.height)});
  *userBox = {x, y, x + width, y + height};
  Box shown = picture.Intersection(*userBox);
  Paint paint;
  paint.kind = PaintKind::kBitmap;
  paint.matrix = place.toFrame * fit;
  paint.bitmap = AddBitmap(std::move(bitmap));
  VectorPath path;
  path.AddRect(shown.xmin, shown.ymin, shown.Width(), shown.Height());
  path.Transform(place.toFrame);
  AddFillItem(std::move(path), std::move(paint), out);
}

}  // namespace vexel::author
