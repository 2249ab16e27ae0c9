// Edges, the paint list and the spans of one scanline.
#include "raster.h"

namespace vexel::model {

const RColor kOutermost{};

// ---- active edges ----------------------------------------------------------

void ActiveEdge::SetUp(const REdge& e, i32 y, bool interpolate) {
  const i32 dy = e.y2 - e.y1;
  if (e.isLine) {
    kind = 0;
    xStep = static_cast<i32>(static_cast<u32>(e.x2 - e.x1) << 16) / dy;
    xl = (i32{e.x1} << 16) + xStep * (y - e.y1);
    x = (xl + 0x8000) >> 16;
  } else {
    kind = interpolate ? 2 : 1;
    t = 2 * dy;
    const i32 dt = 0x1000000 / t;
    const i32 dt2 = static_cast<i32>((i64{dt} * dt + 0x800000) >> 24);
    xStep = dt * (2 * (e.cx - e.x1));
    yStep = dt * (2 * (e.cy - e.y1));
    xStepStep = 2 * (e.x1 - 2 * e.cx + e.x2) * dt2;
    yStepStep = 2 * (e.y1 - 2 * e.cy + e.y2) * dt2;
    xl = i32{e.x1} << 16;
    yl = i32{e.y1} << 16;
    x = e.x1;
  }
  ymax = e.y2;
  color1 = e.color1;
  color2 = e.color2;
  dir = e.dir;
  fillRule = e.fillRule;
  if (kind != 0 && y > e.y1) Step(y);
}

void ActiveEdge::Step(i32 y) {
  if (kind == 0) {
    xl += xStep;
    x = (xl + 0x8000) >> 16;
    return;
  }
  const i32 target = y << 16;
  const i32 oldX = xl, oldY = yl;
  while (yl < target && t >= 0) {
    yl += yStep >> 8;
    yStep += yStepStep;
    xl += xStep >> 8;
    xStep += xStepStep;
    --t;
  }
  i32 at = xl;
  if (kind == 2 && yl != oldY) {
    // The division has the form of FixedDiv on the product's integer part: the
    // product is a 16.16 number and so is the divisor.
    const i32 e = FixedDiv(FixedMul(xl - oldX, target - yl), yl - oldY);
    at += e;
  }
  x = (at + 0x8000) >> 16;
}

// ---- setting up a paint ----------------------------------------------------

void Raster::Attach(Buffer* b, Rect clip, bool aa) {
  bits = b;
  writer.bits = b;
  antialias = aa;
  bitClip = RectIntersect(Rect{0, b->width, 0, b->height}, clip);
  edgeClip = bitClip;
  if (aa) {
    edgeClip.xmin *= 4;
    edgeClip.xmax *= 4;
    edgeClip.ymin *= 4;
    edgeClip.ymax *= 4;
  }
}

void Raster::BeginPaint() {
  i32 n = edgeClip.ymax - edgeClip.ymin + 1;
  if (n < 1) n = 0;
  buckets.assign(static_cast<size_t>(n), {});
  active.clear();
  paintList.clear();
  layer = 0;
}

void Raster::AddEdges(const EdgeList& list) {
  for (const REdge& e : list) {
    if (e.y1 > edgeClip.ymax || e.y2 <= edgeClip.ymin) continue;
    i32 bucket = e.y1 - edgeClip.ymin;
    if (bucket < 0) bucket = 0;
    if (bucket >= static_cast<i32>(buckets.size())) continue;
    buckets[static_cast<size_t>(bucket)].push_front(&e);
  }
}

void Raster::AddEdges(const EdgeList& list, const ColorList& colors, const RColor* clipper) {
  AddEdges(list);
  for (const auto& c : colors) {
    c->order = (c->order & 0xFFFF) | layer;
    c->clipColor = clipper;
  }
  layer += 0x10000;
}

void Raster::PaintBits() {
  for (y = edgeClip.ymin; y < edgeClip.ymax; ++y) {
    AddActive();
    SortActive();
    PaintActive();
    if (antialias && (y & 3) == 3) PaintAARuns();
  }
  active.clear();
  writer.EndPaint();
}

void Raster::SetYCoord(i32 row) {
  bitY = row;
  writer.NextRow();
}

// ---- one scanline ----------------------------------------------------------

void Raster::AddActive() {
  const size_t bucket = static_cast<size_t>(y - edgeClip.ymin);
  auto at = active.begin();
  for (const REdge* e : buckets[bucket]) {
    if (e->y2 <= e->y1) continue;
    ActiveEdge a;
    a.SetUp(*e, y, !antialias);
    if (active.empty()) {
      active.push_front(a);
      at = active.begin();
      continue;
    }
    if (at->x < a.x) {
      while (std::next(at) != active.end() && at->x < a.x) ++at;
    } else if (at->x > a.x) {
      while (at != active.begin() && at->x > a.x) --at;
    }
    at = active.insert(std::next(at), a);
  }
}

void Raster::SortActive() {
  active.sort([](const ActiveEdge& a, const ActiveEdge& b) { return a.x < b.x; });
}

void Raster::PaintActive() {
  if (antialias) {
    if (runs.empty()) {
      Run r;
      r.xmin = edgeClip.xmin;
      r.xmax = edgeClip.xmax;
      runs.push_back(r);
    }
    curRun = runs.begin();
    haveRun = true;
  } else {
    SetYCoord(y);
  }
  for (RColor* c : paintList) c->visible = 0;
  paintList.clear();
  for (auto e = active.begin(); e != active.end();) {
    if (e->fillRule == 0) {
      Toggle(e->color1, e->x);
      Toggle(e->color2, e->x);
    } else if (e->fillRule == 1) {
      Toggle(e->color1, e->x);
    } else {
      Winding(e->color1, e->dir, e->x);
    }
    if (e->ymax <= y + 1) {
      e = active.erase(e);
    } else {
      e->Step(y + 1);
      ++e;
    }
  }
}

void Raster::Insert(RColor* c, i32 x) {
  auto at = paintList.begin();
  bool hidden = false;
  while (at != paintList.end() && (*at)->order >= c->order) {
    if ((*at)->Hides()) hidden = true;
    ++at;
  }
  if (!hidden) PaintSlab(x);
  paintList.insert(at, c);
}

void Raster::Remove(RColor* c, i32 x) {
  auto at = paintList.begin();
  bool hidden = false;
  while (at != paintList.end() && *at != c) {
    if ((*at)->Hides()) hidden = true;
    ++at;
  }
  if (at == paintList.end()) return;
  if (!hidden) PaintSlab(x);
  paintList.erase(at);
}

void Raster::Toggle(RColor* c, i32 x) {
  if (!c) return;
  if (c->visible == 0) {
    Insert(c, x);
    c->visible = 1;
  } else {
    Remove(c, x);
    c->visible = 0;
  }
}

void Raster::Winding(RColor* c, int dir, i32 x) {
  if (!c) return;
  if (c->visible != 0) {
    const int8_t sum = static_cast<int8_t>(c->visible + dir);
    if (sum != 0) {
      c->visible = sum;
    } else {
      Remove(c, x);
      c->visible = 0;
    }
  } else {
    Insert(c, x);
    c->visible = static_cast<int8_t>(dir);
  }
}

bool Raster::Shown(const RColor* c) {
  if (c->clipColor == nullptr) return true;
  if (c->type == kClip) return false;
  for (const RColor* k = c->clipColor; k != nullptr && k != &kOutermost; k = k->clipColor) {
    if (k->visible == 0) return false;
  }
  return true;
}

void Raster::PaintSlab(i32 x) {
  i32 x1 = paintX;
  paintX = x;
  if (paintList.empty()) return;
  if (!antialias) {
    if (x1 < bitClip.xmin) x1 = bitClip.xmin;
    if (x > bitClip.xmax) x = bitClip.xmax;
    if (x <= x1) return;
    RColor* shown[255];
    int n = 0;
    for (RColor* c : paintList) {
      if (!Shown(c)) continue;
      if (n == 255) --n;
      shown[n++] = c;
      if (!c->transparent) break;
    }
    if (n == 0) return;
    if (shown[0]->transparent) {
      CompositeSlab(x1, x, shown, n);
    } else {
      shown[0]->Draw(x1, x);
    }
    return;
  }
  if (!haveRun || curRun->xmin >= x) return;
  auto r = curRun;
  while (r->xmax < x1) {
    ++r;
    if (r == runs.end()) {
      haveRun = false;
      return;
    }
  }
  if (r->xmin < x1) r = Split(r, x1);
  while (r != runs.end() && r->xmin < x) {
    if (r->xmax > x) {
      auto right = Split(r, x);
      FillRun(*r);
      r = right;
      break;
    }
    FillRun(*r);
    ++r;
  }
  curRun = r;
  haveRun = r != runs.end();
}

std::list<Run>::iterator Raster::Split(std::list<Run>::iterator r, i32 x) {
  Run right = *r;
  right.xmin = x;
  r->xmax = x;
  return runs.insert(std::next(r), right);
}

void Raster::FillRun(Run& r) {
  if (r.nStacks == 4) return;
  RColor** stack = r.stacks[r.nStacks];
  int i = 0;
  for (RColor* c : paintList) {
    if (!Shown(c)) continue;
    if (i == 12) i = 11;
    stack[i] = c;
    if (c != r.stacks[0][i]) r.isPure = false;
    r.typeMask |= c->type;
    ++i;
    if (!c->transparent) break;
    r.transparent = true;
  }
  if (i > 0) {
    r.stackN[r.nStacks] = i;
    if (i != r.stackN[0]) r.isPure = false;
    ++r.nStacks;
  }
}

}  // namespace vexel::model
