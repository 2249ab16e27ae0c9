// Dirty rectangles, the camera and the painting of one rectangle.
#include "stage.h"

#include "stroker.h"

namespace vexel::model {

void Object::CalcDevBounds(const Matrix& m) {
  devBounds = Rect{};
  if (!character) return;
  if (character->type == kMorph) {
    devBounds = TransformRect(m, Lerp(character->bounds, character->bounds2, ratio));
  } else {
    devBounds = TransformRect(m, character->bounds);
  }
}

void Object::CalcUpdate(const Matrix& parentMat, bool force) {
  const Matrix m = Concat(mat, parentMat);
  const bool d = force || dirty;
  if (d) {
    FreeCache();
    if (drawn) {
      stage->InvalidateRect(devBounds);
      drawn = false;
    }
    CalcDevBounds(m);
    stage->InvalidateRect(devBounds);
    dirty = false;
  }
  for (Object* c = firstChild; c; c = c->next) c->CalcUpdate(m, d);
}

void Stage::CalcUpdate() {
  if (!dirty) return;
  root.CalcUpdate(camera, false);
  dirty = false;
}

static i32 Area(const Rect& r) {
  return (r.xmax - r.xmin) * (r.ymax - r.ymin);
}

static bool Overlap(const Rect& a, const Rect& b) {
  return a.xmin < b.xmax && b.xmin < a.xmax && a.ymin < b.ymax && b.ymin < a.ymax;
}

void Stage::InvalidateRect(Rect r) {
  r = RectInset(r, antialias ? -8 : -2);
  if (!RectTestIntersect(r, devViewRect)) return;
  dirtyRects.push_back(RectIntersect(devViewRect, r));
  MergeDirtyList(dirtyRects.size() == 4);
}

bool Stage::MergeDirtyList(bool force) {
  const size_t n = dirtyRects.size();
  if (n < 2) return false;
  i32 best = force ? kMax : 0;
  size_t bestA = 0, bestB = 0;
  for (size_t i = 0; i < n; ++i) {
    for (size_t j = i + 1; j < n; ++j) {
      const i32 waste =
          Area(RectUnion(dirtyRects[i], dirtyRects[j])) - Area(dirtyRects[i]) - Area(dirtyRects[j]);
      if (best > waste) {
        bestA = i;
        bestB = j;
        best = waste;
      }
    }
  }
  if (bestA == bestB) {
    if (!force) return false;
    bestA = n - 2;
    bestB = n - 1;
  }
  dirtyRects[bestA] = RectUnion(dirtyRects[bestA], dirtyRects[bestB]);
  dirtyRects.erase(dirtyRects.begin() + static_cast<i64>(bestB));
  return true;
}

static void DecomposeRect(Rect& a, Rect& b) {
  Rect top, middle, bottom;
  if (a.ymin >= b.ymin) {
    top = Rect{b.xmin, b.xmax, b.ymin, a.ymin};
  } else {
    top = Rect{a.xmin, a.xmax, a.ymin, b.ymin};
  }
  if (a.ymax >= b.ymax) {
    bottom = Rect{a.xmin, a.xmax, b.ymax, a.ymax};
  } else {
    bottom = Rect{b.xmin, b.xmax, a.ymax, b.ymax};
  }
  middle = Rect{a.xmin < b.xmin ? a.xmin : b.xmin, a.xmax > b.xmax ? a.xmax : b.xmax, top.ymax,
                bottom.ymin};
  const Rect u1 = RectUnion(top, middle), u2 = RectUnion(middle, bottom);
  const i32 s1 = Area(top) + Area(middle) - Area(u1), s2 = Area(middle) + Area(bottom) - Area(u2);
  if (s1 <= s2) {
    a = top;
    b = u2;
  } else {
    a = u1;
    b = bottom;
  }
}

void Stage::DecomposeDirtyList() {
  while (MergeDirtyList(false)) {
  }
  for (size_t i = 0; i < dirtyRects.size(); ++i) {
    for (size_t j = i + 1; j < dirtyRects.size(); ++j) {
      if (Overlap(dirtyRects[i], dirtyRects[j])) DecomposeRect(dirtyRects[i], dirtyRects[j]);
    }
  }
}

void Stage::Update() {
  CalcUpdate();
  painted.clear();
  if (!dirtyRects.empty() && bits) {
    DecomposeDirtyList();
    for (Rect r : dirtyRects) {
      if (antialias && !r.Empty()) {
        r.xmin /= 4;
        r.xmax /= 4;
        r.ymin /= 4;
        r.ymax /= 4;
      }
      painted.push_back(r);
      UpdateRect(r);
    }
  }
  dirtyRects.clear();
}

static void AddRect(EdgeList& list, const Rect& r, RColor* color) {
  const Point corner[] = {{r.xmin, r.ymin}, {r.xmin, r.ymax}, {r.xmax, r.ymax}, {r.xmax, r.ymin}};
  for (int i = 0; i < 4; ++i) {
    int depth = 0;
    AddCurve({&list, false, &depth, 2, color, nullptr}, Line(corner[i], corner[(i + 1) % 4]));
  }
}

void Stage::UpdateRect(Rect rect) {
  raster.Attach(bits, rect, antialias);
  raster.BeginPaint();
  ColorList none;
  auto back = std::make_shared<RColor>();
  back->SetUp(&raster);
  back->rgb.red = background.red;
  back->rgb.green = background.green;
  back->rgb.blue = background.blue;
  if (!haveBackground) back->rgb.red = back->rgb.green = back->rgb.blue = 255;
  back->rgb.alpha = 255;
  back->BuildCache();
  EdgeList edges;
  for (int side = 1; side >= 0; --side) {
    REdge e;
    e.x1 = e.cx = e.x2 = static_cast<i16>(side ? raster.edgeClip.xmax : raster.edgeClip.xmin);
    e.y1 = static_cast<i16>(raster.edgeClip.ymin);
    e.y2 = static_cast<i16>(raster.edgeClip.ymax);
    e.cy = static_cast<i16>((e.y1 + e.y2) / 2);
    e.isLine = true;
    e.fillRule = 1;
    e.dir = 0;
    e.color1 = back.get();
    edges.push_front(e);
  }
  raster.AddEdges(edges, ColorList{back}, nullptr);
  root.Draw(raster, STransform{camera, {}}, nullptr);
  EdgeList frame;
  auto yellow = std::make_shared<RColor>();
  if (!tabFocus.Empty()) {
    yellow->SetUp(&raster);
    yellow->rgb.red = yellow->rgb.green = yellow->rgb.alpha = 255;
    yellow->BuildCache();
    const i32 w = antialias ? 12 : 3;
    const Rect& f = tabFocus;
    AddRect(frame, {f.xmin, f.xmin + w, f.ymin, f.ymax}, yellow.get());
    AddRect(frame, {f.xmax - w, f.xmax, f.ymin, f.ymax}, yellow.get());
    AddRect(frame, {f.xmin, f.xmax, f.ymin, f.ymin + w}, yellow.get());
    AddRect(frame, {f.xmin, f.xmax, f.ymax - w, f.ymax}, yellow.get());
    raster.AddEdges(frame, ColorList{yellow}, nullptr);
  }
  raster.PaintBits();
}

void Stage::UpdateDevViewRect() {
  devViewRect = bits ? Rect{0, bits->width, 0, bits->height} : Rect{0, 2000, 0, 2000};
  if (antialias) {
    devViewRect.xmax *= 4;
    devViewRect.ymax *= 4;
  }
}

void Stage::SetBits(Buffer* b) {
  bits = b;
  UpdateDevViewRect();
  InvalidateRect(devViewRect);
}

void Stage::ModifyCamera() {
  UpdateDevViewRect();
  InvalidateRect(devViewRect);
  root.Modify();
}

void Stage::SetCamera(Rect frame, Rect screen, bool smoothWanted, int mode) {
  if (smoothWanted) {
    screen.xmin *= 4;
    screen.xmax *= 4;
    screen.ymin *= 4;
    screen.ymax *= 4;
  }
  auto atLeast16 = [](i32 v) { return v < 16 ? 16 : v; };
  i32 sx = FixedDiv(atLeast16(screen.xmax - screen.xmin), atLeast16(frame.xmax - frame.xmin));
  i32 sy = FixedDiv(atLeast16(screen.ymax - screen.ymin), atLeast16(frame.ymax - frame.ymin));
  const int scale = mode & 15;
  if (scale == 0) {
    sx = sy = sx < sy ? sx : sy;
  } else if (scale == 1) {
    sx = sy = sx > sy ? sx : sy;
  } else if (scale == 3) {
    sx = sy = smoothWanted ? 13107 : 3276;
  }
  auto mid = [](i32 a, i32 b) { return (a + b) >> 1; };
  i32 fx = mid(frame.xmin, frame.xmax), px = mid(screen.xmin, screen.xmax);
  i32 fy = mid(frame.ymin, frame.ymax), py = mid(screen.ymin, screen.ymax);
  if (mode & 0x10) {
    fx = frame.xmin;
    px = screen.xmin;
  } else if (mode & 0x20) {
    fx = frame.xmax;
    px = screen.xmax;
  }
  if (mode & 0x40) {
    fy = frame.ymin;
    py = screen.ymin;
  } else if (mode & 0x80) {
    fy = frame.ymax;
    py = screen.ymax;
  }
  const Matrix m{sx, 0, 0, sy, px - FixedMul(fx, sx), py - FixedMul(fy, sy)};
  const bool smoothing = smoothWanted && !animating;
  if (m == camera && antialias == smoothWanted && smooth == smoothing) return;
  antialias = smoothWanted;
  camera = m;
  smooth = smoothing;
  raster.writer.ditherKind = antialias ? 2 : 1;
  ModifyCamera();
}

}  // namespace vexel::model
