// The rules: what an edge does to the list of colours that are on. The list is
// in descending order, topmost first; a span ends only when something that can
// be seen changes, so what toggles below an opaque colour costs no drawing.
#include "raster/paint_list.h"
#include "raster/active_edge.h"
#include "raster/edge.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

void Insert(CRaster* raster, RColor* c, int32_t x) {
  RColor** link = &raster->firstColor;
  bool hidden = false;
  for (; *link != nullptr && (*link)->order >= c->order; link = &(*link)->nextActive) {
    // An edge without a direction leaves a colour listed with a count of 0.
    if (*link == c) return;
    hidden = hidden || HidesBelow(*link);
  }
  if (!hidden) raster->PaintSlab(x);
  c->nextActive = *link;
  *link = c;
}

void Remove(CRaster* raster, RColor* c, int32_t x) {
  RColor** link = &raster->firstColor;
  bool hidden = false;
  for (; *link != nullptr && *link != c; link = &(*link)->nextActive) {
    hidden = hidden || HidesBelow(*link);
  }
  if (*link == nullptr) return;
  if (!hidden) raster->PaintSlab(x);
  *link = c->nextActive;
}

void Toggle(CRaster* raster, RColor* c, int32_t x) {
  if (c == nullptr) return;
  if (c->visible == 0) {
    Insert(raster, c, x);
    c->visible = 1;
  } else {
    Remove(raster, c, x);
    c->visible = 0;
  }
}

}  // namespace

void DoEdgeEdgeRule(CRaster* raster, RActiveEdge* edge) {
  // On one side is the colour that ends here and on the other the one that
  // begins; two toggles do both without asking which is which.
  Toggle(raster, edge->color1, edge->x);
  Toggle(raster, edge->color2, edge->x);
}

void DoEdgeEvenOddRule(CRaster* raster, RActiveEdge* edge) {
  Toggle(raster, edge->color1, edge->x);
}

void DoEdgeWindingRule(CRaster* raster, RActiveEdge* edge) {
  RColor* c = edge->color1;
  if (c == nullptr) return;
  if (c->visible == 0) {
    Insert(raster, c, edge->x);
    c->visible = edge->dir;
    return;
  }
  // Required: the count is 8 bits wide and wraps.
  const auto count = static_cast<int8_t>(c->visible + edge->dir);
  if (count == 0) Remove(raster, c, edge->x);
  c->visible = count;
}

const DoEdgeProc doEdgeProcs[kFillRuleCount] = {DoEdgeEdgeRule, DoEdgeEvenOddRule,
                                                DoEdgeWindingRule};

}  // namespace vexel
