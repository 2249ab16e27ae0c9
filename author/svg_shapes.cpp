// Shapes: geometry, fill and stroke of one element.
#include <algorithm>

#include "author/svg_builder.h"

namespace vexel::author {

bool SvgBuilder::PathOf(const xmlNode* node, const SvgStyle& style, const Place& place,
                        VectorPath* out) {
  std::string_view name = NodeName(node);
  double em = style.fontSize;
  auto along = [&](const char* attribute, double percent, double absent) {
    return LengthOf(node, attribute, percent, em, absent);
  };
  if (name == "path") {
    if (!ParsePathData(Attribute(node, "d"), out)) Warn("malformed path: drawn up to the mistake");
  } else if (name == "rect") {
    double width = along("width", place.width, 0), height = along("height", place.height, 0);
    if (!(width > 0) || !(height > 0)) return false;
    double rx = along("rx", place.width, -1), ry = along("ry", place.height, -1);
    if (rx < 0) rx = ry;
    if (ry < 0) ry = rx;
    out->AddRoundRect(along("x", place.width, 0), along("y", place.height, 0), width, height, rx,
                      ry);
  } else if (name == "circle" || name == "ellipse") {
    double rx, ry;
    if (name == "circle") {
      rx = ry = along("r", place.Diagonal(), 0);
    } else {
      rx = along("rx", place.width, -1);
      ry = along("ry", place.height, -1);
      if (rx < 0) rx = ry;
      if (ry < 0) ry = rx;
    }
    if (!(rx > 0) || !(ry > 0)) return false;
    out->AddEllipse({along("cx", place.width, 0), along("cy", place.height, 0)}, rx, ry);
  } else if (name == "line") {
    out->MoveTo({along("x1", place.width, 0), along("y1", place.height, 0)});
    out->LineTo({along("x2", place.width, 0), along("y2", place.height, 0)});
  } else {
    std::vector<Vec2> points = ParsePoints(Attribute(node, "points"));
    for (size_t i = 0; i < points.size(); i++)
      i == 0 ? out->MoveTo(points[i]) : out->LineTo(points[i]);
    if (name == "polygon" && !points.empty()) out->Close();
  }
  if (out->commands.size() > commandsLeft_) {
    Warn("outlines beyond the limit of all points");
    return false;
  }
  commandsLeft_ -= out->commands.size();
  return !out->IsEmpty();
}

void SvgBuilder::DrawShape(const xmlNode* node, const SvgStyle& style, const Place& place,
                           Box* userBox, Items* out) {
  VectorPath path;
  if (!PathOf(node, style, place, &path)) return;
  *userBox = path.Bounds();
  if (!style.visible) return;
  if (style.markers) Warn("marker");
  if (style.strokeFirst) DrawStroke(path, style, place, *userBox, out);
  DrawFill(path, style, place, *userBox, out);
  if (!style.strokeFirst) DrawStroke(path, style, place, *userBox, out);
}

void SvgBuilder::AddFillItem(VectorPath path, Paint paint, Items* out) {
  SceneItem item;
  item.bounds = path.Bounds();
  if (!(item.bounds.Width() > 0) || !(item.bounds.Height() > 0)) return;
  item.path = std::move(path);
  bool plain = paint.spread == Spread::kPad && paint.focus == Vec2{};
  if (!plain) BakePaint(item.bounds, &paint);
  item.paint = std::move(paint);
  out->push_back(std::move(item));
}

void SvgBuilder::DrawFill(const VectorPath& path, const SvgStyle& style, const Place& place,
                          const Box& userBox, Items* out) {
  Paint paint;
  if (!MakePaint(style.fill, style.fillOpacity, style, place, userBox, &paint)) return;
  VectorPath framePath = path, region;
  framePath.Transform(place.toFrame);
  if (!ResolveWinding(framePath, style.fillRule, tolerance_, &budget_, &region))
    Warn("fill too complex for its winding rule: filled even-odd");
  AddFillItem(std::move(region), std::move(paint), out);
}

void SvgBuilder::DrawStroke(const VectorPath& path, const SvgStyle& style, const Place& place,
                            const Box& userBox, Items* out) {
  Paint paint;
  if (!(style.strokeWidth > 0) ||
      !MakePaint(style.stroke, style.strokeOpacity, style, place, userBox, &paint))
    return;
  // The pen is round in the user's units, or on the frame if its width is fixed.
  Affine toFrame = place.toFrame;
  VectorPath user = path;
  if (style.fixedStroke) {
    user.Transform(toFrame);
    toFrame = Affine();
  }
  double scale = std::max(std::hypot(toFrame.a, toFrame.b), std::hypot(toFrame.c, toFrame.d));
  StrokeStyle pen{style.strokeWidth, style.cap,    style.join,
                  style.miterLimit,  style.dashes, style.dashOffset};
  // Every stroke becomes an outline, also where the player's own pen has the right caps
  // and joins. Tried with it: its width is rounded down to half pixels of the device and
  // never falls below one, which puts a picture of many lines a fifth further off, and
  // following the pen anew costs each frame 5 to 10 in 100 more than the outline does.
  Polygons region;
  if (StrokeRegion(user, pen, tolerance_ / scale, &budget_, &region)) {
    VectorPath outline = FitCurves(region, tolerance_ / scale);
    outline.Transform(toFrame);
    AddFillItem(std::move(outline), std::move(paint), out);
    return;
  }
  Warn("stroke too complex: drawn solid, with round caps and joins");
  SceneItem line;
  line.op = SceneOp::kStroke;
  line.path = CubicsToQuads(user, tolerance_ / scale);
  line.path.Transform(toFrame);
  line.width = style.strokeWidth * toFrame.MeanScale();
  line.bounds = line.path.Bounds().Grown(line.width);
  line.paint.color = paint.color;
  if (!paint.stops.empty()) line.paint.color = paint.stops[paint.stops.size() / 2].color;
  out->push_back(std::move(line));
}

}  // namespace vexel::author
