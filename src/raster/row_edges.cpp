// Stepping of edges, and the order of a row's events.
//
// The order hardly changes from row to row, so each event goes in from the
// right, and seldom moves far. An event that has to pass another one in some
// lanes only is split. If a row would take too many moves (a hostile picture),
// its lanes are sorted one by one instead.
#include "raster/row_edges.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "raster/active_edge.h"
#include "raster/edge.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

constexpr int32_t kHalf = 0x8000;
constexpr int64_t kStepsPerEvent = 64;
constexpr int64_t kMinSteps = 4096;

int32_t Round16(int32_t v) {
  return Asr(WrapAdd(v, kHalf), 16);
}

int32_t NumberOf(const RColor* c) {
  return c != nullptr ? static_cast<int32_t>(c->rank) : kNoColor;
}

// Makes room for n items, keeping the first `used`. False without memory.
template <class T>
bool Grow(T** items, int32_t used, int32_t n) {
  auto* bigger =
      static_cast<T*>(std::aligned_alloc(16, (static_cast<size_t>(n) * sizeof(T) + 15) & ~15ull));
  if (bigger == nullptr) return false;
  if (used > 0)
    std::memcpy(static_cast<void*>(bigger), *items, static_cast<size_t>(used) * sizeof(T));
  std::free(*items);
  *items = bigger;
  return true;
}

int32_t LastLane(LaneMask mask) {
  return 31 - __builtin_clz(mask);
}

}  // namespace

RowEdges::~RowEdges() {
  std::free(edges_);
  std::free(free_);
  std::free(order_);
  std::free(events_);
  std::free(starts_);
  std::free(crossings_);
  for (int32_t* list : lists_) std::free(list);
}

void RowEdges::Reset(bool exactOrder) {
  exactOrder_ = exactOrder;
  nEdges_ = 0;
  nFree_ = 0;
  nOrder_ = 0;
  nEvents_ = 0;
}

bool RowEdges::Reserve(int32_t nStarting) {
  const int32_t nNow = nOrder_ + nStarting;
  if (nNow > edgeRoom_) {
    const int32_t room = nNow * 2 + 64;
    if (!Grow(&edges_, nEdges_, room) || !Grow(&free_, nFree_, room) ||
        !Grow(&order_, nOrder_, room)) {
      return false;
    }
    edgeRoom_ = room;
  }
  if (nStarting > startRoom_) {
    const int32_t room = nStarting * 2 + 64;
    if (!Grow(&starts_, nStarting - 1, room)) return false;
    startRoom_ = room;
  }
  return true;
}

// Makes room for what an exact row needs for n edges.
bool RowEdges::ReserveExact(int32_t n) {
  if (edgeRoom_ > exactRoom_) {
    if (!Grow(&crossings_, 0, edgeRoom_)) return false;
    for (int32_t*& list : lists_) {
      if (!Grow(&list, 0, edgeRoom_)) return false;
    }
    exactRoom_ = edgeRoom_;
  }
  return ReserveEvents(n * kLanes);
}

// Makes room for n events. False without memory.
bool RowEdges::ReserveEvents(int32_t n) {
  if (n <= eventRoom_) return true;
  const int32_t room = n + n / 2 + 64;
  if (!Grow(&events_, nEvents_, room)) return false;
  eventRoom_ = room;
  return true;
}

int32_t RowEdges::NewEdge() {
  return nFree_ > 0 ? free_[--nFree_] : nEdges_++;
}

// Sets the event's x in the lanes from the first in the mask on, to where the
// edge ends or the row does, and moves the edge on.
void RowEdges::StepEdge(int32_t i, int32_t y, RowEvent* event) {
  Edge* e = &edges_[i];
  const int32_t left = e->ymax - y;
  event->mask = left >= kLanes ? kAllLanes : (1u << left) - 1;
  event->edge = i;
  event->color1 = e->color1;
  event->color2 = e->color2;
  event->rule = e->rule;
  event->dir = e->dir;
  if (e->isLine) {
    using Words = uint32_t __attribute__((vector_size(16)));
    const auto step = static_cast<uint32_t>(e->xStep);
    const auto at = static_cast<uint32_t>(e->xl) + kHalf;
    const Words x = {at, at + step, at + 2 * step, at + 3 * step};
    event->x = reinterpret_cast<Lanes>(x) >> 16;
    e->xl = static_cast<int32_t>(static_cast<uint32_t>(e->xl) + 4 * step);
    return;
  }
  int32_t xl = e->xl;
  int32_t yl = e->yl;
  int32_t xStep = e->xStep;
  int32_t yStep = e->yStep;
  int32_t t = e->t;
  const int32_t xStepStep = e->xStepStep;
  const int32_t yStepStep = e->yStepStep;
  for (int32_t l = 0; l < kLanes; l++) {
    const int32_t target = WrapShl(y + l, 16);
    while (yl < target && t >= 0) {
      yl = WrapAdd(yl, Asr(yStep, 8));
      yStep = WrapAdd(yStep, yStepStep);
      xl = WrapAdd(xl, Asr(xStep, 8));
      xStep = WrapAdd(xStep, xStepStep);
      t--;
    }
    event->x[l] = Round16(xl);
  }
  e->xl = xl;
  e->yl = yl;
  e->xStep = xStep;
  e->yStep = yStep;
  e->t = t;
}

// Collects the edges that start in the row, lane by lane.
bool RowEdges::TakeUp(CRaster* raster, int32_t y) {
  nStarts_ = 0;
  REdge** buckets = raster->yindex + (y - raster->edgeClip.ymin);
  for (int32_t l = 0; l < kLanes; l++) {
    for (const REdge* r = buckets[l]; r != nullptr; r = r->nextActive) {
      // The next edge lies anywhere in memory.
      if (r->nextActive != nullptr) __builtin_prefetch(r->nextActive);
      if (!Reserve(nStarts_ + 1)) return false;
      RActiveEdge a;
      if (!a.SetUp(r, y + l, false)) continue;
      const int32_t i = NewEdge();
      Edge* e = &edges_[i];
      *e = {a.xl,
            a.xStep,
            a.xStepStep,
            a.yl,
            a.yStep,
            a.yStepStep,
            a.t,
            a.ymax,
            NumberOf(r->color1),
            NumberOf(r->color2),
            r->isLine,
            r->fillRule < kFillRuleCount ? r->fillRule : uint8_t{ruleEdgeEdge},
            r->dir};
      // A line's first lane is where the row's would be, l steps back.
      Start* s = &starts_[nStarts_++];
      if (e->isLine) e->xl = WrapSub(e->xl, WrapMul(l, e->xStep));
      StepEdge(i, y, &s->event);
      s->event.mask &= kAllLanes << l;
      s->key = s->event.x[LastLane(s->event.mask)];
      s->lane = l;
    }
  }
  return true;
}

void RowEdges::Place(const RowEvent& event, LaneMask mask, int32_t at) {
  // The neighbour may be the edge that this one takes over from.
  if (at < nEvents_ && (events_[at].mask & mask) == 0 && event.SameEffect(events_[at])) {
    RowEvent* other = &events_[at];
    other->x = Select(LanesOf(mask), event.x, other->x);
    if (mask > other->mask) other->edge = event.edge;
    other->mask |= mask;
    return;
  }
  if (!ReserveEvents(nEvents_ + 1)) return;
  std::memmove(static_cast<void*>(events_ + at + 1), events_ + at,
               static_cast<size_t>(nEvents_ - at) * sizeof(RowEvent));
  events_[at] = event;
  events_[at].mask = mask;
  nEvents_++;
}

void RowEdges::Insert(const RowEvent& e) {
  if (!ReserveEvents(nEvents_ + 1)) return;
  if (nEvents_ == 0) {
    events_[nEvents_++] = e;
    return;
  }
  const RowEvent& last = events_[nEvents_ - 1];
  if ((last.mask & e.mask) == e.mask && (TrueLanes(last.x > e.x) & e.mask) == 0) {
    events_[nEvents_++] = e;
    return;
  }
  // Mostly it carries on the outline of the event before, which ends in the row.
  if (nEvents_ > 1 && (last.mask & e.mask) == 0) {
    const RowEvent& p = events_[nEvents_ - 2];
    if ((p.mask & e.mask) == e.mask && (TrueLanes(p.x > e.x) & e.mask) == 0) {
      steps_ -= 2;
      Place(e, e.mask, nEvents_ - 1);
      return;
    }
  }
  // `moving` lanes still look for their predecessor; `settled` ones have found
  // it and may stand anywhere from `place` on.
  LaneMask moving = e.mask;
  LaneMask settled = 0;
  int32_t place = nEvents_;
  int32_t leftmost = -1;
  int32_t i = nEvents_;
  for (; i > 0 && moving != 0; i--, steps_--) {
    const RowEvent& p = events_[i - 1];
    const LaneMask common = p.mask & moving;
    if (common == 0) continue;
    // Where the two meet, they stand as they did in the lane before.
    LaneMask pass = TrueLanes(p.x > e.x);
    if (pass != 0) {
      const LaneMask meet = TrueLanes(p.x == e.x);
      for (int32_t l = 1; l < kLanes; l++) pass |= meet & pass << 1;
    }
    pass &= common;
    const LaneMask stop = common & ~pass;
    if (pass == 0) {
      if (settled == 0) place = i;
      settled |= stop;
    } else {
      if ((settled | stop) != 0) Place(e, settled | stop, settled != 0 ? place : i);
      settled = 0;
      leftmost = i - 1;
    }
    moving &= ~stop;
  }
  const LaneMask rest = settled | moving;
  if (rest == 0) return;
  Place(e, rest, settled != 0 ? place : leftmost >= 0 ? leftmost : nEvents_);
}

// Makes single-lane events of all that are there, sorted within each lane.
void RowEdges::SplitByLane() {
  const int32_t n = nEvents_;
  if (!ReserveEvents(n * (kLanes + 1))) {
    nEvents_ = 0;
    return;
  }
  int32_t to = n;
  for (int32_t l = kLanes - 1; l >= 1; l--) {
    const LaneMask bit = 1u << l;
    for (int32_t i = 0; i < n; i++) {
      if ((events_[i].mask & bit) == 0) continue;
      events_[to] = events_[i];
      events_[to++].mask = bit;
    }
  }
  int32_t top = 0;
  for (int32_t i = 0; i < n; i++) {
    if ((events_[i].mask & 1) == 0) continue;
    events_[top] = events_[i];
    events_[top++].mask = 1;
  }
  std::memmove(static_cast<void*>(events_ + top), events_ + n,
               static_cast<size_t>(to - n) * sizeof(RowEvent));
  nEvents_ = top + to - n;
  std::sort(events_, events_ + nEvents_, [](const RowEvent& a, const RowEvent& b) {
    if (a.mask != b.mask) return a.mask < b.mask;
    return a.x[LastLane(a.mask)] < b.x[LastLane(a.mask)];
  });
}

void RowEdges::KeepOrder(int32_t y) {
  const LaneMask last = 1u << (kLanes - 1);
  nOrder_ = 0;
  for (int32_t i = 0; i < nEvents_; i++) {
    const RowEvent& e = events_[i];
    if ((e.mask & last) != 0 && edges_[e.edge].ymax > y + kLanes) order_[nOrder_++] = e.edge;
  }
}

// Makes the row from the order of the one before, with the new edges merged in
// by where they are at its end.
void RowEdges::BuildSorted(int32_t y) {
  std::sort(starts_, starts_ + nStarts_,
            [](const Start& a, const Start& b) { return a.key < b.key; });
  steps_ = kMinSteps + kStepsPerEvent * (nOrder_ + nStarts_);
  const Start* start = starts_;
  const Start* const starts = starts_ + nStarts_;
  const int32_t firstFree = nFree_;
  int32_t nDone = 0;
  bool crowded = false;
  const auto add = [&](const RowEvent& e) {
    // An ending edge's number is free when the row is done.
    if (edges_[e.edge].ymax <= y + kLanes) free_[firstFree + nDone++] = e.edge;
    crowded = crowded || steps_ < 0;
    if (crowded) {
      if (ReserveEvents(nEvents_ + 1)) events_[nEvents_++] = e;
    } else {
      Insert(e);
    }
  };
  for (int32_t i = 0; i < nOrder_; i++) {
    RowEvent e;
    StepEdge(order_[i], y, &e);
    const int32_t key = e.x[LastLane(e.mask)];
    while (start < starts && start->key <= key) add((start++)->event);
    add(e);
  }
  while (start < starts) add((start++)->event);
  if (crowded) SplitByLane();
  KeepOrder(y);
  nFree_ = firstFree + nDone;
}

// Puts the edges that start in the lane into its list: each one is looked for a
// place from the one before it on, the first from the head, and goes in behind
// the edge where the look ends.
void RowEdges::TakeInto(int32_t lane, int32_t* list, int32_t* n) {
  const auto x = [&](int32_t i) { return crossings_[list[i]].x[lane]; };
  int32_t at = 0;
  for (const Start* s = starts_; s < starts_ + nStarts_; s++) {
    if (s->lane != lane) continue;
    if (*n == 0) {
      list[(*n)++] = s->event.edge;
      continue;
    }
    const int32_t want = s->event.x[lane];
    if (x(at) < want) {
      while (at + 1 < *n && x(at) < want && steps_ > 0) at++, steps_--;
    } else {
      while (at > 0 && x(at) > want && steps_ > 0) at--, steps_--;
    }
    at++;
    std::memmove(list + at + 1, list + at, static_cast<size_t>(*n - at) * sizeof *list);
    list[at] = s->event.edge;
    ++*n;
  }
}

// Sorts the lane's list by x, equal ones keeping their order.
void RowEdges::SortLane(int32_t lane, int32_t* list, int32_t n) {
  const auto x = [&](int32_t edge) { return crossings_[edge].x[lane]; };
  for (int32_t i = 1; i < n; i++) {
    const int32_t edge = list[i];
    int32_t to = i;
    for (; to > 0 && x(list[to - 1]) > x(edge); to--, steps_--) list[to] = list[to - 1];
    list[to] = edge;
    if (steps_ >= 0) continue;
    std::stable_sort(list, list + n, [&](int32_t a, int32_t b) { return x(a) < x(b); });
    return;
  }
}

// Makes events of the four lists: lanes that come to the same edge share one.
void RowEdges::JoinLanes(const int32_t* n) {
  int32_t at[kLanes] = {};
  for (;;) {
    LaneMask mask = 0;
    int32_t edge = 0;
    for (int32_t l = 0; l < kLanes; l++) {
      if (at[l] == n[l]) continue;
      const int32_t e = lists_[l][at[l]];
      if (mask != 0 && e == edge) continue;
      // The first edge will do, but better is one that none of its lanes lacks.
      LaneMask with = 0;
      for (int32_t k = 0; k < kLanes; k++) {
        if (at[k] < n[k] && lists_[k][at[k]] == e) with |= 1u << k;
      }
      if (mask != 0 && with != crossings_[e].mask) continue;
      mask = with;
      edge = e;
      if (with == crossings_[e].mask) break;
    }
    if (mask == 0) return;
    for (int32_t l = 0; l < kLanes; l++) at[l] += static_cast<int32_t>(mask >> l & 1);
    RowEvent e = crossings_[edge];
    e.mask = mask;
    RowEvent* last = nEvents_ > 0 ? &events_[nEvents_ - 1] : nullptr;
    if (last != nullptr && (last->mask & mask) == 0 && e.SameEffect(*last)) {
      last->x = Select(LanesOf(mask), e.x, last->x);
      last->mask |= mask;
    } else {
      events_[nEvents_++] = e;
    }
  }
}

// Makes the row lane by lane, as the plain way goes from scanline to scanline.
void RowEdges::BuildExact(int32_t y) {
  const int32_t nAll = nOrder_ + nStarts_;
  steps_ = kMinSteps + kStepsPerEvent * nAll;
  const int32_t firstFree = nFree_;
  int32_t nDone = 0;
  const auto add = [&](const RowEvent& e) {
    crossings_[e.edge] = e;
    if (edges_[e.edge].ymax <= y + kLanes) free_[firstFree + nDone++] = e.edge;
  };
  for (int32_t i = 0; i < nOrder_; i++) {
    RowEvent e;
    StepEdge(order_[i], y, &e);
    add(e);
  }
  for (const Start* s = starts_; s < starts_ + nStarts_; s++) add(s->event);
  int32_t n[kLanes];
  const int32_t* from = order_;
  int32_t nFrom = nOrder_;
  for (int32_t l = 0; l < kLanes; l++) {
    n[l] = 0;
    for (int32_t i = 0; i < nFrom; i++) {
      if (edges_[from[i]].ymax > y + l) lists_[l][n[l]++] = from[i];
    }
    TakeInto(l, lists_[l], &n[l]);
    SortLane(l, lists_[l], n[l]);
    from = lists_[l];
    nFrom = n[l];
  }
  JoinLanes(n);
  nOrder_ = 0;
  for (int32_t i = 0; i < nFrom; i++) {
    if (edges_[from[i]].ymax > y + kLanes) order_[nOrder_++] = from[i];
  }
  nFree_ = firstFree + nDone;
}

bool RowEdges::BuildRow(CRaster* raster, int32_t y) {
  if (!TakeUp(raster, y)) return false;
  nEvents_ = 0;
  if (exactOrder_ && nStarts_ > 0) {
    if (!ReserveExact(nOrder_ + nStarts_)) return false;
    BuildExact(y);
  } else {
    BuildSorted(y);
  }
  return true;
}

}  // namespace vexel
