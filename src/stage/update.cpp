// The update cycle: marks on objects become dirty rectangles, and each dirty
// rectangle becomes one paint of the whole tree.
#include <cstring>

#include "geometry/rect.h"
#include "raster/edge.h"
#include "raster/rcolor.h"
#include "stage/display_list.h"
#include "stage/rect_edges.h"

namespace vexel {

namespace {

// The bars of the keyboard focus frame: 3 pixels wide.
constexpr int32_t kFocusBarPixels = 3;
constexpr RGBI kFocusColor = {0, 255, 255, 255};  // blue, green, red, alpha: yellow

void SetUpSolid(RColor* color, CRaster* raster, const RGBI& rgb) {
  color->SetUp(raster);
  color->order = 0;
  color->rgb = rgb;
  color->BuildCache();
}

REdge VerticalEdge(RColor* color, SCOORD x, SCOORD ymin, SCOORD ymax) {
  const REdgePoint top = {static_cast<int16_t>(x), static_cast<int16_t>(ymin)};
  const REdgePoint bottom = {static_cast<int16_t>(x), static_cast<int16_t>(ymax)};
  return {nullptr, nullptr, color, nullptr, top, top, bottom, true, ruleEvenOdd, 0};
}

// A layer of its own that fills the clip rectangle. `edges` are two edges of
// the caller's, which the paint links until it ends.
void AddBackground(CRaster* raster, RColor* color, REdge* edges) {
  const SRECT& clip = raster->edgeClip;
  if (clip.ymin >= clip.ymax) return;
  edges[0] = VerticalEdge(color, clip.xmin, clip.ymin, clip.ymax);
  edges[1] = VerticalEdge(color, clip.xmax, clip.ymin, clip.ymax);
  edges[0].next = &edges[1];
  raster->AddEdges(edges, color, nullptr);
}

uint32_t ColorWord(SRGB color) {
  uint32_t word;
  memcpy(&word, &color, sizeof word);
  return word;
}

}  // namespace

void SObject::CalcUpdate(const MATRIX* parentMat, bool forceDirty) {
  MATRIX m;
  MatrixConcat(&mat, parentMat, &m);
  const bool changed = forceDirty || dirty;
  if (changed) {
    FreeCache();
    if (drawn) {
      display->InvalidateRect(&devBounds);
      drawn = false;
    }
    CalcDevBounds(&m);
    display->InvalidateRect(&devBounds);
    dirty = false;
  }
  // A parent's move moves its children, so dirt goes down the whole subtree.
  for (SObject* child = firstChild; child; child = child->next) {
    if (changed || child->dirty || child->firstChild) child->CalcUpdate(&m, changed);
  }
}

void DisplayList::CalcUpdate() {
  if (!dirty) return;
  root.CalcUpdate(&camera.mat, false);
  dirty = false;
}

void DisplayList::CalcBitsDirty(const SRECT* dev, SRECT* bitsRect) const {
  *bitsRect = *dev;
  if (!antialias || RectIsEmpty(dev)) return;
  *bitsRect = {dev->xmin / kDevPerPixel, dev->xmax / kDevPerPixel, dev->ymin / kDevPerPixel,
               dev->ymax / kDevPerPixel};
}

void DisplayList::Update() {
  CalcUpdate();
  if (dirtyCount >= 1 && bits) {
    DecomposeDirtyList();
    for (int32_t i = 0; i < dirtyCount; ++i) {
      SRECT pixels;
      CalcBitsDirty(&dirtyRect[i], &pixels);
      RectUnion(&screenDirtyRect, &pixels, &screenDirtyRect);
      UpdateRect(&pixels);
    }
  }
  RectSetEmpty(&devDirtyUnion);
  dirtyCount = 0;
}

void DisplayList::UpdateRect(const SRECT* bitsRect) {
  if (!bits || !bits->BitsValid()) return;
  raster.Attach(bits, bitsRect, antialias);
  raster.BeginPaint();

  RColor background;
  REdge backgroundEdges[2];
  const bool hasBackground = ColorWord(backgroundColor) != 0;
  if (hasBackground) {
    SetUpSolid(&background, &raster,
               {backgroundColor.blue, backgroundColor.green, backgroundColor.red, 255});
    AddBackground(&raster, &background, backgroundEdges);
  } else {
    raster.useBackground = true;
  }

  root.Draw(&raster, camera, nullptr);

  RColor frameColor;
  REdge* frameEdges = nullptr;
  const bool hasFrame = useFocusRect && !RectIsEmpty(&tabFocusRect);
  if (hasFrame) {
    SetUpSolid(&frameColor, &raster, kFocusColor);
    AddFocusFrame(&frameColor, &frameEdges);
    raster.AddEdges(frameEdges, &frameColor, nullptr);
  }

  raster.PaintBits();

  if (hasFrame) {
    FreeEdges(&frameEdges);
    frameColor.FreeCache();
  }
  if (hasBackground) background.FreeCache();
}

void DisplayList::AddFocusFrame(RColor* color, REdge** edges) {
  const SRECT& r = tabFocusRect;
  const int32_t w = kFocusBarPixels * (antialias ? kDevPerPixel : 1);
  const SRECT bars[] = {
      {r.xmin, WrapAdd(r.xmin, w), r.ymin, r.ymax},
      {WrapSub(r.xmax, w), r.xmax, r.ymin, r.ymax},
      {r.xmin, r.xmax, r.ymin, WrapAdd(r.ymin, w)},
      {r.xmin, r.xmax, WrapSub(r.ymax, w), r.ymax},
  };
  MATRIX identity;
  MatrixIdentity(&identity);
  for (const SRECT& bar : bars) AddRect(&bar, &identity, color, this, edges, nullptr);
}

}  // namespace vexel
