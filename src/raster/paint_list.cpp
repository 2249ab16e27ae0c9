// The rules: what an edge does to the list of colours that are on. The list is
// in descending order, topmost first; a span ends only when something that can
// be seen changes, so what toggles below an opaque colour costs no drawing.
#include "raster/paint_list.h"
#include "raster/active_edge.h"
#include "raster/edge.h"
#include "raster/paint_index.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

void LinkBehind(CRaster* raster, RColor* above, RColor* c) {
  RColor** link = above != nullptr ? &above->nextActive : &raster->firstColor;
  c->nextActive = *link;
  *link = c;
}

void Unlink(CRaster* raster, RColor* above, RColor* c) {
  (above != nullptr ? above->nextActive : raster->firstColor) = c->nextActive;
}

void InsertIndexed(CRaster* raster, RColor* c, int32_t x) {
  PaintIndex* index = raster->paintIndex;
  if (index->Has(c)) return;
  if (!index->IsHidden(c)) raster->PaintSlab(x);
  LinkBehind(raster, index->Above(c), c);
  index->Add(c);
}

void RemoveIndexed(CRaster* raster, RColor* c, int32_t x) {
  PaintIndex* index = raster->paintIndex;
  if (!index->Has(c)) return;
  if (!index->IsHidden(c)) raster->PaintSlab(x);
  Unlink(raster, index->Above(c), c);
  index->Drop(c);
}

void Insert(CRaster* raster, RColor* c, int32_t x) {
  if (raster->paintIndexed) {
    InsertIndexed(raster, c, x);
    return;
  }
  RColor* above = nullptr;
  bool hidden = false;
  int32_t steps = 0;
  for (RColor* k = raster->firstColor; k != nullptr && k->order >= c->order; k = k->nextActive) {
    // An edge without a direction leaves a colour listed with a count of 0.
    if (k == c) return;
    hidden = hidden || HidesBelow(k);
    above = k;
    steps++;
  }
  if (!hidden) raster->PaintSlab(x);
  LinkBehind(raster, above, c);
  raster->CountSteps(steps);
}

void Remove(CRaster* raster, RColor* c, int32_t x) {
  if (raster->paintIndexed) {
    RemoveIndexed(raster, c, x);
    return;
  }
  RColor* above = nullptr;
  bool hidden = false;
  int32_t steps = 0;
  RColor* k = raster->firstColor;
  for (; k != nullptr && k != c; k = k->nextActive) {
    hidden = hidden || HidesBelow(k);
    above = k;
    steps++;
  }
  if (k == nullptr) return;
  if (!hidden) raster->PaintSlab(x);
  Unlink(raster, above, c);
  raster->CountSteps(steps);
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
