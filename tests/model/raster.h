// The scanline rasterizer and its colour sources.
#pragma once

#include <list>
#include <memory>
#include <vector>

#include "color.h"
#include "pixels.h"

namespace vexel::model {

struct Raster;

enum ColorType { kSolid, kBitmap, kGradient, kClip };

struct RColor {
  Raster* raster = nullptr;
  u32 order = 0;
  const RColor* clipColor = nullptr;
  bool transparent = false;
  int8_t visible = 0;
  int type = kSolid;
  bool cacheValid = false;
  Rgbi rgb;
  u32 cacheKey = 0;
  u32 fillStyle = 0;

  u32 pat[4][4] = {};  // solid: the pixel values of the 4 by 4 pattern

  std::shared_ptr<Bitmap> bitmap;
  Matrix styleMat;  // as read
  Matrix inverse;   // device pixel to bitmap or gradient space
  ColorTransform cxform;
  bool hasMap = false, mapAlpha = false;
  u8 mapRed[256], mapGreen[256], mapBlue[256], mapOpacity[256];
  bool direct = false;  // pixels are copied straight into the buffer's format

  Ramp ramp;
  std::vector<u32> colorRamp;  // 257 entries

  bool Clipped() const { return (fillStyle & 1) != 0; }
  bool Hides() const { return !transparent && clipColor == nullptr; }

  void SetUp(Raster* r);
  void BuildCache();
  void Draw(int x1, int x2);                  // drawSlabProc
  void Composite(int x1, int x2, Rgbi* out);  // compositeSlabProc
  void CalcPixel(int x);                      // into rgb

 private:
  void BuildSolid();
  void BuildRamp();
  void BuildMap();
  void ApplyMap(Rgbi& c) const;
  void DrawSolid(int x1, int x2);
  void BuildGradient(int x1, int x2, Rgbi* out);
  // Draws into the buffer if out is null.
  void BitmapSlab(int x1, int x2, Rgbi* out);
  Rgbi Fetch(i64 px, i64 py, bool& known) const;
  u32 DirectValue(u32 v, int x, int y) const;
};

// The mark of an outermost clip.
extern const RColor kOutermost;

struct REdge {
  RColor *color1 = nullptr, *color2 = nullptr;
  i16 x1, y1, cx, cy, x2, y2;
  bool isLine = false;
  int fillRule = 0;
  int8_t dir = 1;
};

using EdgeList = std::list<REdge>;                     // the head is the latest
using ColorList = std::list<std::shared_ptr<RColor>>;  // likewise

struct ActiveEdge {
  i32 x = 0, ymax = 0;
  i32 xStep = 0, yStep = 0, xStepStep = 0, yStepStep = 0, xl = 0, yl = 0, t = 0;
  RColor *color1 = nullptr, *color2 = nullptr;
  int8_t dir = 1;
  int fillRule = 0;
  int kind = 0;  // 0 line, 1 curve, 2 interpolated curve

  void SetUp(const REdge& e, i32 y, bool interpolate);
  void Step(i32 y);
};

struct Run {
  i32 xmin = 0, xmax = 0;
  int nStacks = 0;
  int typeMask = 0;
  bool isPure = true, transparent = false;
  int stackN[4] = {};
  RColor* stacks[4][12] = {};
};

struct Raster {
  bool antialias = false;
  Buffer* bits = nullptr;
  SpanWriter writer;
  Rect edgeClip, bitClip;
  u32 layer = 0;
  i32 y = 0, bitY = 0;

  void Attach(Buffer* bits, Rect clip, bool antialias);
  void BeginPaint();
  void AddEdges(const EdgeList& list);
  void AddEdges(const EdgeList& list, const ColorList& colors, const RColor* clipper);
  void PaintBits();

  void DrawSlab(int x1, int x2, const Rgbi* pixels) { writer.Write(x1, x2, bitY, pixels); }
  void Background(int x1, int x2, Rgbi* out) const;
  void CompositeSlab(int x1, int x2, RColor* const* colors, int n);

 private:
  std::vector<std::list<const REdge*>> buckets;
  std::list<ActiveEdge> active;
  std::list<RColor*> paintList;  // topmost first
  i32 paintX = 0;
  std::list<Run> runs;
  std::list<Run>::iterator curRun;
  bool haveRun = false;

  void AddActive();
  void SortActive();
  void PaintActive();
  void Insert(RColor* c, i32 x);
  void Remove(RColor* c, i32 x);
  void Toggle(RColor* c, i32 x);
  void Winding(RColor* c, int dir, i32 x);
  static bool Shown(const RColor* c);
  void PaintSlab(i32 x);
  void FillRun(Run& r);
  std::list<Run>::iterator Split(std::list<Run>::iterator r, i32 x);
  void PaintAARuns();
  void CalcColor(const Run& r, int x, Rgbi& out);
  void FetchColor(RColor* c, int x);
  void DrawRGBASlab(int x1, int x2, const Rgbi* pixels);
  void SetYCoord(i32 row);

  Rgbi acc;
  i32 accX = -32000;
  void Flush(i32 p);
};

}  // namespace vexel::model
