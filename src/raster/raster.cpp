// The rasterizer's life: attaching, adding edges to the scanline table, and the
// loop over the scanlines.
#include "raster/raster.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "raster/active_edge.h"
#include "raster/edge.h"
#include "raster/format_table.h"
#include "raster/paint_index.h"
#include "raster/pix32_ops.h"
#include "raster/rcolor.h"
#include "raster/render_tables.h"
#include "raster/row_painter.h"
#include "raster/run.h"

namespace vexel {

CRaster::CRaster()
    : antialias(false),
      useBackground(false),
      smooth(false),
      ditherKind(ditherOrdered),
      solidDither(1),
      hasEdges(false),
      layer(0),
      bits(nullptr),
      cinfo(nullptr),
      edgeClip{0, 0, 0, 0},
      bitClip{0, 0, 0, 0},
      patXOrg(0),
      patYOrg(0),
      firstColor(nullptr),
      paintX(0),
      spareSteps(0),
      paintIndexed(false),
      paintIndex(nullptr),
      errorSize(0),
      errorBuf(nullptr),
      errorRowSize(0),
      errorThis(nullptr),
      errorNext(nullptr),
      firstActive(nullptr),
      sparePlaceSteps(0),
      yindex(nullptr),
      yindexSize(0),
      nScanlines(0),
      y(0),
      firstRun(nullptr),
      curRun(nullptr),
      pictureColors(nullptr),
      nPictureColors(0),
      pictureColorRoom(0),
      pictureColorsKnown(true),
      activeEdgeAlloc(sizeof(RActiveEdge), 64, true, 0x33333333),
      runAlloc(sizeof(RRun), 128, true, 0x55555555),
      rampAlloc(kRampEntries * sizeof(uint32_t), 16, true, 0xEEEEEEEE),
      mapAlloc(sizeof(RColorMap), 8, true, 0),
      inverted(false),
      baseAddr(nullptr),
      rowBytes(0),
      pixelFormat(pix32),
      bitHeight(0),
      xOffset(0),
      rowAddr(nullptr),
      bitY(0),
      drawRGBSlab(DrawRGBSlab32),
      ditherRGBSlab(DitherRGBSlabOrdered),
      getBackground(GetBackgroundWhite),
      ops32(&Pix32()),
      rowPainter_(nullptr) {
  if (!renderTablesBuilt) BuildRenderTables();
}

CRaster::~CRaster() {
  std::free(yindex);
  std::free(errorBuf);
  std::free(pictureColors);
  delete rowPainter_;
  delete paintIndex;
}

void CRaster::Attach(CBitBuffer* buffer, const SRECT* clip, bool wantAntialias) {
  antialias = wantAntialias;
  bits = buffer;
  nScanlines = 0;
  if (buffer == nullptr) {
    cinfo = nullptr;
    baseAddr = nullptr;
    return;
  }
  cinfo = buffer->cinfo;
  inverted = buffer->inverted;
  baseAddr = buffer->baseAddr;
  rowBytes = buffer->rowBytes;
  pixelFormat = buffer->pixelFormat;
  bitHeight = buffer->height;
  xOffset = buffer->xOffset;
  drawRGBSlab = pixelFormats[pixelFormat].drawRGBSlab;
  getBackground = pixelFormats[pixelFormat].getBackground;
  ditherRGBSlab = ditherProcs[ditherKind];
  bitClip = {0, buffer->width, 0, buffer->height};
  if (clip != nullptr) RectIntersect(&bitClip, clip, &bitClip);
  edgeClip = bitClip;
  if (antialias) {
    // The mark of an empty rectangle wraps to 0, which is empty too.
    edgeClip = {WrapMul(bitClip.xmin, kSubScanlines), WrapMul(bitClip.xmax, kSubScanlines),
                WrapMul(bitClip.ymin, kSubScanlines), WrapMul(bitClip.ymax, kSubScanlines)};
  }
  // One more than the scanlines to paint: edges that start at the lower limit
  // have a place too.
  nScanlines = WrapAdd(WrapSub(edgeClip.ymax, edgeClip.ymin), 1);
  if (nScanlines < 1) nScanlines = 0;
}

void CRaster::BeginPaint() {
  firstActive = nullptr;
  firstColor = nullptr;
  hasEdges = false;
  layer = 0;
  nPictureColors = 0;
  pictureColorsKnown = true;
  if (nScanlines > yindexSize) {
    std::free(yindex);
    yindex = static_cast<REdge**>(std::malloc(static_cast<size_t>(nScanlines) * sizeof(REdge*)));
    yindexSize = yindex != nullptr ? nScanlines : 0;
    if (yindex == nullptr) return;
  }
  if (nScanlines > 0) {
    std::memset(yindex, 0, static_cast<size_t>(nScanlines) * sizeof(REdge*));
  }
}

// Numbers the colour in the picture, if it isn't yet: its rank is right if the
// table says so.
void CRaster::NoteColor(RColor* c, uint8_t ruleKind) {
  if (c == nullptr) return;
  const int32_t i = c->rank;
  if (i < 0 || i >= nPictureColors || pictureColors[i] != c) {
    if (nPictureColors == pictureColorRoom) {
      const int32_t room = pictureColorRoom * 2 + 64;
      auto* bigger = static_cast<RColor**>(
          std::realloc(pictureColors, static_cast<size_t>(room) * sizeof(RColor*)));
      if (bigger == nullptr) {
        pictureColorsKnown = false;
        return;
      }
      pictureColors = bigger;
      pictureColorRoom = room;
    }
    c->rank = nPictureColors;
    c->ruleKinds = 0;
    pictureColors[nPictureColors++] = c;
  }
  c->ruleKinds |= ruleKind;
}

void CRaster::AddEdges(REdge* list) {
  if (list == nullptr) return;
  hasEdges = true;
  if (nScanlines == 0 || yindexSize < nScanlines) return;
  for (REdge* e = list; e != nullptr; e = e->next) {
    const int32_t y1 = e->anchor1.y;
    if (y1 > edgeClip.ymax || e->anchor2.y <= edgeClip.ymin) continue;
    REdge** bucket = yindex + (y1 > edgeClip.ymin ? y1 - edgeClip.ymin : 0);
    e->nextActive = *bucket;
    *bucket = e;
    if (e->fillRule == ruleWinding) {
      NoteColor(e->color1, e->dir != 0 ? ruleKindCount : ruleKindOdd);
    } else {
      NoteColor(e->color1, ruleKindToggle);
      if (e->fillRule != ruleEvenOdd) NoteColor(e->color2, ruleKindToggle);
    }
  }
}

void CRaster::AddEdges(REdge* list, RColor* colors, RColor* clipper) {
  AddEdges(list);
  for (RColor* c = colors; c != nullptr; c = c->next) {
    c->order = (c->order & 0xFFFF) | layer;
    c->clipColor = clipper;
  }
  layer += 0x10000;
}

bool CRaster::PaintRows() {
  if (rowPainter_ == nullptr) rowPainter_ = new (std::nothrow) RowPainter;
  return rowPainter_ != nullptr && rowPainter_->Paint(this);
}

// Without an index, the picture is painted all the same; it asks again later.
void CRaster::IndexPaintList() {
  spareSteps = kSpareListSteps;
  if (paintIndexed || !pictureColorsKnown) return;
  if (paintIndex == nullptr) paintIndex = new (std::nothrow) PaintIndex;
  if (paintIndex == nullptr) return;
  paintIndexed = paintIndex->Start(pictureColors, nPictureColors, firstColor);
}

void CRaster::PaintBits() {
  if (!BitsValid() || nScanlines == 0 || yindexSize < nScanlines) return;
  getBackground = useBackground ? pixelFormats[pixelFormat].getBackground : GetBackgroundWhite;
  if (PaintRows()) return;
  spareSteps = kSpareListSteps;
  sparePlaceSteps = kSparePlaceSteps;
  paintIndexed = false;
  for (y = edgeClip.ymin; y < edgeClip.ymax; y++) {
    AddActive();
    SortActive();
    PaintActive();
    if (antialias && (y & 3) == 3) PaintAARuns();
  }
  while (firstActive != nullptr) {
    RActiveEdge* next = firstActive->next;
    activeEdgeAlloc.Free(firstActive);
    firstActive = next;
  }
  std::free(errorBuf);
  errorBuf = nullptr;
}

void CRaster::Flush() {
  if (hasEdges) PaintBits();
  BeginPaint();
  useBackground = true;
}

void CRaster::FillBackground(SRGB color) {
  BeginPaint();
  const int32_t format = pixelFormat;
  if (format == pix32A) pixelFormat = pix32;
  RColor fill;
  fill.SetUp(this);
  fill.order = 0;
  fill.rgb = {color.blue, color.green, color.red, color.alpha};
  fill.BuildCache();
  const auto x1 = static_cast<int16_t>(edgeClip.xmin);
  const auto x2 = static_cast<int16_t>(edgeClip.xmax);
  const auto y1 = static_cast<int16_t>(edgeClip.ymin);
  const auto y2 = static_cast<int16_t>(edgeClip.ymax);
  REdge right = {nullptr,  nullptr,  &fill, nullptr,     {x2, y1},
                 {x2, y1}, {x2, y2}, true,  ruleEvenOdd, 0};
  REdge left = {&right,   nullptr,  &fill, nullptr,     {x1, y1},
                {x1, y1}, {x1, y2}, true,  ruleEvenOdd, 0};
  AddEdges(&left);
  PaintBits();
  fill.FreeCache();
  pixelFormat = format;
  // Reading white costs nothing.
  const bool white =
      color.red == 255 && color.green == 255 && color.blue == 255 && color.alpha == 255;
  useBackground = !white;
}

void CRaster::UseAlphaChannel() {
  if (pixelFormat == pix32) pixelFormat = pix32A;
}

bool CRaster::BitsValid() const {
  return bits != nullptr && bits->BitsValid();
}

void CRaster::FreeEmpties() {
  activeEdgeAlloc.FreeEmpties();
  runAlloc.FreeEmpties();
  rampAlloc.FreeEmpties();
}

void CRaster::SetYCoord(int32_t row) {
  bitY = row;
  rowAddr = baseAddr + int64_t{inverted ? bitHeight - 1 - row : row} * rowBytes;
  if (errorBuf != nullptr) {
    int32_t* done = errorThis;
    errorThis = errorNext;
    errorNext = done;
    std::memset(errorNext, 0, static_cast<size_t>(errorRowSize));
  }
}

}  // namespace vexel
