// Rectangles as edges, without the tests that curves need.
#include "stage/rect_edges.h"

#include "raster/edge.h"
#include "stage/curve_edges.h"
#include "stage/stroker.h"

namespace vexel {

void AddRectEdge(const SPOINT* a, const SPOINT* b, RColor* color, DisplayList* display,
                 REdge** list, SStroker* stroker) {
  CURVE c;
  if (stroker) {
    CurveSetLine(a, b, &c);
    stroker->AddStrokeCurve(&c);
    return;
  }
  if (a->y == b->y) return;
  const bool downward = a->y < b->y;
  CurveSetLine(downward ? a : b, downward ? b : a, &c);
  StoreEdge(&c, downward ? 1 : -1, {display, list, color, nullptr, ruleWinding, false});
}

void AddRect(const SRECT* r, const MATRIX* m, RColor* color, DisplayList* display, REdge** list,
             SStroker* stroker) {
  SPOINT corners[4] = {
      {r->xmin, r->ymin}, {r->xmin, r->ymax}, {r->xmax, r->ymax}, {r->xmax, r->ymin}};
  for (SPOINT& corner : corners) MatrixTransformPoint(m, &corner, &corner);
  if (stroker) stroker->BeginStroke(1, color);
  for (int i = 0; i < 4; ++i)
    AddRectEdge(&corners[i], &corners[(i + 1) & 3], color, display, list, stroker);
  if (stroker) stroker->EndStroke();
}

}  // namespace vexel
