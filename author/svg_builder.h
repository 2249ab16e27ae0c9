// Builds a scene from an SVG tree (internal to the importer).
//
// The walk turns each element into scene items in frame pixels, bottom first, and
// then lets the properties that concern an element as a whole (filter, clip, mask,
// opacity) work on its items. An element thus only knows its own items, whatever lies
// around it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "author/importers.h"
#include "author/outline.h"
#include "author/scene.h"
#include "author/svg_document.h"
#include "author/svg_style.h"

namespace vexel::author {

class SvgBuilder {
 public:
  explicit SvgBuilder(const SvgDocument& document) : document_(document) {}

  // Fills the scene. What could not be expressed is in `warnings` afterwards.
  void Build(Scene* scene);
  const std::vector<ImportWarning>& warnings() const { return warnings_; }

 private:
  using Items = std::vector<SceneItem>;

  // Where an element stands.
  struct Place {
    Affine toFrame;                // from its user units to frame pixels
    double width = 0, height = 0;  // of the nearest viewport, in user units
    int depth = 0;                 // of nesting, references included
    double Diagonal() const;
  };

  // The tree: svg_builder.cpp.
  void DrawElement(const xmlNode* node, const SvgStyle& parent, const Place& place, Items* out);
  void DrawContent(const xmlNode* node, const SvgStyle& style, const Place& place, Box* userBox,
                   Items* out);
  void DrawChildren(const xmlNode* node, const SvgStyle& style, const Place& place, Items* out);
  void DrawUse(const xmlNode* node, const SvgStyle& style, const Place& place, Items* out);
  void DrawSwitch(const xmlNode* node, const SvgStyle& style, const Place& place, Items* out);
  // An svg or symbol element in a rectangle of the current user units.
  void DrawViewport(const xmlNode* node, const SvgStyle& style, const Place& place, double x,
                    double y, double width, double height, Items* out);
  void DrawImage(const xmlNode* node, const SvgStyle& style, const Place& place, Box* userBox,
                 Items* out);
  bool Enter(int depth);  // false once nesting or the number of elements is out of bounds
  SvgStyle StyleOf(const xmlNode* node, const SvgStyle& parent, const Place& place);
  Place Transformed(const xmlNode* node, const Place& place);
  double LengthOf(const xmlNode* node, const char* name, double percent, double fontSize,
                  double absent) const;

  // Shapes: svg_shapes.cpp.
  bool PathOf(const xmlNode* node, const SvgStyle& style, const Place& place, VectorPath* out);
  void DrawShape(const xmlNode* node, const SvgStyle& style, const Place& place, Box* userBox,
                 Items* out);
  void DrawFill(const VectorPath& path, const SvgStyle& style, const Place& place,
                const Box& userBox, Items* out);
  void DrawStroke(const VectorPath& path, const SvgStyle& style, const Place& place,
                  const Box& userBox, Items* out);
  void AddFillItem(VectorPath path, Paint paint, Items* out);

  // Paints: svg_paint.cpp. False if nothing is to be painted.
  bool MakePaint(const SvgPaint& spec, double opacity, const SvgStyle& style, const Place& place,
                 const Box& userBox, Paint* out);
  bool MakeGradient(const xmlNode* node, double opacity, const Place& place, const Box& userBox,
                    Paint* out);
  bool MakePattern(const xmlNode* node, double opacity, const Place& place, const Box& userBox,
                   Paint* out);
  std::vector<PaintStop> StopsOf(const xmlNode* node, double opacity);
  void LimitStops(Paint* paint);
  void WidenGradient(Paint* paint) const;
  void BakePaint(const Box& frameBox, Paint* paint);

  // Whole elements: svg_group.cpp. They work on items in place.
  void ApplyFilter(const std::string& id, const SvgStyle& style, const Place& place,
                   const Box& userBox, Items* items);
  void ApplyClip(const std::string& id, const Place& place, const Box& userBox, Items* items);
  void ApplyMask(const std::string& id, const Place& place, const Box& userBox, Items* items);
  void ApplyOpacity(double opacity, Items* items);
  bool FadeWithoutOverlap(double opacity, Items* items);
  bool ClipRegion(const xmlNode* clip, const Place& place, const Box& userBox, VectorPath* out);
  void ClipItems(VectorPath path, Items* items);
  bool RegionOf(const SceneItem& item, Polygons* out);
  // Draws the items into pixels and replaces them by one bitmap; `edit` may change the
  // pixels (0xAARRGGBB, premultiplied) before.
  bool TakePixels(double count);  // from what all bitmaps together may have
  using BitmapEdit = std::function<void(SceneBitmap*)>;
  bool ReplaceByBitmap(const Box& region, double density, const BitmapEdit& edit, Items* items);
  // Frame pixels to bitmap pixels, for bitmaps that have to bear being blown up.
  double BitmapDensity() const;

  void Warn(const std::string& what);
  int AddBitmap(SceneBitmap bitmap);

  const SvgDocument& document_;
  StyleSheet sheet_;
  Scene* scene_ = nullptr;
  std::vector<ImportWarning> warnings_;
  WorkBudget budget_;
  double tolerance_ = 0.05;  // of curves, frame pixels
  size_t elementsLeft_ = 0;
  size_t commandsLeft_ = 0;  // path commands still to be taken
  double bitmapPixelsLeft_ = 0;
};

// Reads "none" or an alignment; gives the map of a view box into a viewport.
Affine FitViewBox(std::string_view preserve, double boxX, double boxY, double boxWidth,
                  double boxHeight, double x, double y, double width, double height, bool* slice);

// The user-space box that surrounds a box of frame pixels.
Box BoxThrough(const Affine& m, const Box& box);

// Data of data: addresses: the media type and the bytes. False for anything else.
bool DecodeDataUrl(std::string_view url, std::string* type, std::vector<uint8_t>* bytes);

}  // namespace vexel::author
