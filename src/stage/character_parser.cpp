// Shapes and glyphs.
#include "stage/character_parser.h"

#include "raster/edge.h"
#include "stage/clip_color.h"
#include "stage/display_list.h"
#include "stage/stroker.h"

namespace vexel {

// Bounds within which no edge can leave 16 bits.
static constexpr SCOORD kSafe = 32000;

static bool IsSafe(const SRECT* r) {
  return r->xmin >= -kSafe && r->xmax <= kSafe && r->ymin >= -kSafe && r->ymax <= kSafe;
}

void SCharacterParser::UseGlyphColor(RColor* color) {
  useWinding = true;
  nFills = 1;
  fillTable[0] = nullptr;
  fillTable[1] = color;
}

void SCharacterParser::AddCurve(const CURVE* curve) {
  const EdgeTarget target = {object->display, &object->edges, color1, color2, fillRule, preclip};
  AddCurveEdges(curve, target, &depth);
}

void SCharacterParser::SetUp(SStroker* stroker, const SRECT* devBounds) {
  depth = 0;
  preclip = devBounds && !IsSafe(devBounds);
  stroker->antialias = object->display->antialias;
  stroker->preclip = preclip;
  raster = RasterForCaches(object->display);
  colorList = &object->colors;
}

void SCharacterParser::ClearColors() {
  color1 = color2 = nullptr;
  filling = stroking = false;
}

// All areas become one mask, and lines vanish: a mask has no strokes.
void SCharacterParser::MakeClipper() {
  RColor* clip = CreateClipColor(object->display, colorList);
  for (int32_t i = 1; i <= nFills; ++i) fillTable[i] = clip;
  for (int32_t i = 1; i <= nLines; ++i) lineTable[i].color = nullptr;
}

RColor* SCharacterParser::Fill(int32_t index) const {
  return index > 0 && index <= nFills ? fillTable[index] : nullptr;
}

uint8_t SCharacterParser::RuleOfColors() const {
  return color2 ? ruleEdgeEdge : useWinding ? ruleWinding : ruleEvenOdd;
}

void SCharacterParser::SelectFills() {
  color1 = Fill(fill0);
  color2 = Fill(fill1);
  if (!color1) {
    color1 = color2;
    color2 = nullptr;
  }
  fillRule = RuleOfColors();
  filling = color1 != nullptr;
}

void SCharacterParser::SelectLine(SStroker* stroker, bool wantWidth) {
  if (stroking) stroker->EndStroke();
  stroking = false;
  if (line <= 0 || line > nLines) return;
  const LineStyle& style = lineTable[line];
  if (!style.color || (wantWidth && style.thickness <= 0)) return;
  stroker->BeginStroke(style.thickness, style.color);
  stroking = true;
}

void SCharacterParser::AddEdge(const CURVE* curve, SStroker* stroker) {
  if (extent) {
    SRECT box;
    CurveBounds(curve, &box);
    if (RectIsEmpty(&box)) ++box.xmin;  // a coordinate that only looks like no rectangle
    RectUnion(extent, &box, extent);
  }
  if (filling) AddCurve(curve);
  if (stroking) stroker->AddStrokeCurve(curve);
}

void SCharacterParser::BuildEdges(bool getStyles, const SRECT* devBounds) {
  SStroker stroker(object->display, &object->edges);
  SetUp(&stroker, devBounds);
  if (getStyles) {
    if (!GetStyles()) return;
    if (object->clipDepth != 0) MakeClipper();
  } else {
    GetIndexWidths();
  }
  ClearColors();
  for (;;) {
    CURVE curve;
    const int32_t record = GetEdge(&curve);
    if (record == kEdgeRecord) {
      AddEdge(&curve, &stroker);
      continue;
    }
    if (record == kEndOfShape) break;
    if (record & (kEdgeFill0 | kEdgeFill1)) SelectFills();
    if (record & (kEdgeMove | kEdgeLine)) SelectLine(&stroker, false);
  }
  if (stroking) stroker.EndStroke();
}

}  // namespace vexel
