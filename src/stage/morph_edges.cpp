// Morph shapes: two shapes are read side by side, and each pair of edges gives
// one that lies between them.
#include "geometry/interpolate.h"
#include "raster/edge.h"
#include "stage/character_parser.h"
#include "stage/object.h"
#include "stage/stroker.h"

namespace vexel {

void SCharacterParser::SelectMorphFills() {
  // Required: unlike in a shape, a single colour on side 1 is not moved to side
  // 0, so it comes with ruleEdgeEdge; two equal ones count as one.
  color1 = Fill(fill0);
  color2 = Fill(fill1);
  if (color1 == color2) color2 = nullptr;
  fillRule = RuleOfColors();
  filling = color1 || color2;
}

// The next edge of the end shape, its style changes passed over. An end shape
// that has no more edges stays at its pen.
static void GetEndEdge(SShapeParser* end, CURVE* curve) {
  if (end->GetEdge(curve) == kEdgeRecord || end->GetEdge(curve) == kEdgeRecord) return;
  CurveSetLine(&end->curPtDev, &end->curPtDev, curve);
}

static SPOINT Mix(const SPOINT& a, const SPOINT& b, SFIXED ratio) {
  return {Interpolate(a.x, b.x, ratio), Interpolate(a.y, b.y, ratio)};
}

void SCharacterParser::BuildMorphEdges(const SRECT* devBounds) {
  SStroker stroker(object->display, &object->edges);
  SetUp(&stroker, devBounds);
  const int64_t offset = GetDWord();
  const int64_t endPos = pos + offset < dataEnd ? pos + offset : dataEnd;
  SShapeParser end(player, script, dataEnd, static_cast<int32_t>(endPos), &mat);
  end.GetIndexWidths();
  if (!GetMorphStyles()) return;
  if (object->clipDepth != 0) MakeClipper();
  GetIndexWidths();
  ClearColors();
  for (;;) {
    CURVE curve;
    const int32_t record = GetEdge(&curve);
    if (record == kEdgeRecord) {
      CURVE endCurve;
      GetEndEdge(&end, &endCurve);
      curve = {Mix(curve.anchor1, endCurve.anchor1, ratio),
               Mix(curve.control, endCurve.control, ratio),
               Mix(curve.anchor2, endCurve.anchor2, ratio), curve.isLine && endCurve.isLine};
      AddEdge(&curve, &stroker);
      continue;
    }
    if (record == kEndOfShape) break;
    // Required: lines before fills here, fills before lines in a shape.
    if (record & (kEdgeMove | kEdgeLine)) SelectLine(&stroker, true);
    if (record & (kEdgeFill0 | kEdgeFill1)) SelectMorphFills();
  }
  if (stroking) stroker.EndStroke();
}

}  // namespace vexel
