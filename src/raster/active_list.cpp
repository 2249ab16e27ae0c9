// The list of active edges: taking up the edges that start at a scanline,
// sorting, and the walk from left to right.
#include <new>

#include "raster/active_edge.h"
#include "raster/edge.h"
#include "raster/paint_index.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/run.h"

namespace vexel {
namespace {

// Steps that looking for places may take on one scanline, before they come out
// of the picture's spare ones. With those used up too, edges go in where they
// are: the sort that follows brings them home, and only the order among edges of
// equal x can differ.
constexpr int32_t kPlaceSteps = 1 << 16;

void LinkBehind(RActiveEdge* at, RActiveEdge* e) {
  e->prev = at;
  e->next = at->next;
  if (at->next != nullptr) at->next->prev = e;
  at->next = e;
}

// Where an edge of that x goes, looking from `at` on: behind the result.
RActiveEdge* FindPlace(RActiveEdge* at, int32_t x, int32_t* steps) {
  if (at->x < x) {
    while (at->next != nullptr && at->x<x&& * steps> 0) {
      at = at->next;
      --*steps;
    }
  } else if (at->x > x) {
    while (at->prev != nullptr && at->x > x && *steps > 0) {
      at = at->prev;
      --*steps;
    }
  }
  return at;
}

// Merges the sorted lists a and b, linked by next; a's entries come first
// among equals.
RActiveEdge* Merge(RActiveEdge* a, RActiveEdge* b) {
  RActiveEdge* head = nullptr;
  RActiveEdge** link = &head;
  while (a != nullptr && b != nullptr) {
    RActiveEdge** from = b->x < a->x ? &b : &a;
    *link = *from;
    link = &(*from)->next;
    *from = *link;
  }
  *link = a != nullptr ? a : b;
  return head;
}

// Cuts the rising stretch off the front of *list.
RActiveEdge* TakeRise(RActiveEdge** list) {
  RActiveEdge* head = *list;
  RActiveEdge* e = head;
  while (e->next != nullptr && e->x <= e->next->x) e = e->next;
  *list = e->next;
  e->next = nullptr;
  return head;
}

bool IsSorted(const RActiveEdge* e) {
  while (e != nullptr && e->next != nullptr) {
    if (e->x > e->next->x) return false;
    e = e->next;
  }
  return true;
}

}  // namespace

void CRaster::AddActive() {
  RActiveEdge* last = firstActive;
  // Required: the order among edges of equal x counts. A colour that is toggled
  // as well as counted stays on or goes off by it.
  int32_t steps = kPlaceSteps + sparePlaceSteps;
  for (REdge* e = yindex[y - edgeClip.ymin]; e != nullptr; e = e->nextActive) {
    auto* a = static_cast<RActiveEdge*>(activeEdgeAlloc.Alloc());
    if (a == nullptr) return;
    if (!a->SetUp(e, y, !antialias)) {
      activeEdgeAlloc.Free(a);
      continue;
    }
    if (last == nullptr) {
      a->next = nullptr;
      a->prev = nullptr;
      firstActive = a;
    } else {
      LinkBehind(FindPlace(last, a->x, &steps), a);
    }
    last = a;
  }
  if (steps < sparePlaceSteps) sparePlaceSteps = steps;
}

// A stable merge sort of the rising stretches: one look when nothing crossed,
// and no hostile picture makes it slow. Level i holds a merge of 2^i stretches.
void CRaster::SortActive() {
  if (IsSorted(firstActive)) return;
  constexpr int32_t kLevels = 32;
  RActiveEdge* levels[kLevels] = {};
  RActiveEdge* rest = firstActive;
  while (rest != nullptr) {
    RActiveEdge* run = TakeRise(&rest);
    int32_t i = 0;
    for (; levels[i] != nullptr && i < kLevels - 1; i++) {
      run = Merge(levels[i], run);
      levels[i] = nullptr;
    }
    levels[i] = run;
  }
  RActiveEdge* sorted = nullptr;
  for (RActiveEdge* run : levels) {
    if (run != nullptr) sorted = sorted != nullptr ? Merge(run, sorted) : run;
  }
  firstActive = sorted;
  RActiveEdge* prev = nullptr;
  for (RActiveEdge* e = sorted; e != nullptr; prev = e, e = e->next) e->prev = prev;
}

void CRaster::PaintActive() {
  if (antialias) {
    if (firstRun == nullptr) {
      firstRun = static_cast<RRun*>(runAlloc.Alloc());
      if (firstRun == nullptr) return;
      firstRun->xmin = edgeClip.xmin;
      firstRun->xmax = edgeClip.xmax;
      firstRun->next = nullptr;
      firstRun->nStacks = 0;
      firstRun->typeMask = 0;
      firstRun->isPure = true;
      firstRun->transparent = false;
    }
    curRun = firstRun;
  } else {
    SetYCoord(y);
  }
  // What an unbalanced outline left on does not run into the next scanline.
  for (RColor* c = firstColor; c != nullptr; c = c->nextActive) {
    c->visible = 0;
    if (paintIndexed) paintIndex->Drop(c);
  }
  firstColor = nullptr;
  RActiveEdge* e = firstActive;
  while (e != nullptr) {
    RActiveEdge* next = e->next;
    e->doEdgeProc(this, e);
    if (e->ymax <= y + 1) {
      (e->prev != nullptr ? e->prev->next : firstActive) = next;
      if (next != nullptr) next->prev = e->prev;
      activeEdgeAlloc.Free(e);
    } else {
      e->stepProc(e, y + 1);
    }
    e = next;
  }
}

}  // namespace vexel
