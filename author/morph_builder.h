// Draws a morph shape: every style and every point twice, at the start and at
// the end.
#pragma once

#include "author/shape.h"

namespace vexel::author {

struct MorphStop {
  uint8_t startPosition = 0;
  Color startColor;
  uint8_t endPosition = 0;
  Color endColor;
};

struct MorphFill {
  uint8_t type = kFillSolid;
  Color startColor;
  Color endColor;
  Matrix startMatrix;
  Matrix endMatrix;
  std::vector<MorphStop> stops;
  uint16_t bitmap = 0;

  static MorphFill Solid(Color start, Color end);
};

struct MorphLine {
  uint16_t startWidth = kPixel;
  uint16_t endWidth = kPixel;
  Color startColor;
  Color endColor;
};

class MorphBuilder {
 public:
  uint32_t AddFill(const MorphFill& fill);
  uint32_t AddFill(Color start, Color end) { return AddFill(MorphFill::Solid(start, end)); }
  uint32_t AddLine(const MorphLine& line);

  MorphBuilder& Fill0(uint32_t fill);
  MorphBuilder& Fill1(uint32_t fill);
  MorphBuilder& Line(uint32_t line);
  MorphBuilder& Style(uint32_t fill, uint32_t line = 0);

  MorphBuilder& MoveTo(Point start, Point end);
  MorphBuilder& LineTo(Point start, Point end);
  MorphBuilder& CurveTo(Point startControl, Point startAnchor, Point endControl, Point endAnchor);

  Rect StartBounds() const;
  Rect EndBounds() const;

  // Forces the 16-bit counts also where a byte would do.
  bool longFillCount = false;
  bool longLineCount = false;
  // Leaves that many records away at the end of the end shape.
  size_t endRecordsMissing = 0;

  // The body behind the two bounds.
  void Write(BitWriter& out, bool alpha = true) const;

 private:
  struct Side {
    std::vector<ShapeRecord> records;
    Point pen;
    Rect bounds;
  };
  void Flush();
  void Grow(Point start, Point end);

  std::vector<MorphFill> fills_;
  std::vector<MorphLine> lines_;
  Side start_;
  Side end_;
  ShapeRecord pending_;
  Point pendingEnd_;
  bool drawn_ = false;
  int32_t thickestStart_ = 0;
  int32_t thickestEnd_ = 0;
};

}  // namespace vexel::author
