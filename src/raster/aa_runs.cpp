// From runs to pixels. A pixel has 4 by 4 samples: the stacks of a run count
// the sub-scanlines, its ends the quarter-columns. Pixels that several runs
// touch are summed up; pixels that one run covers whole are drawn by it.
#include "raster/composite.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/run.h"

namespace vexel {
namespace {

constexpr int32_t kNoPixel = -32000;
constexpr int kSampleShift = 4;  // 16 samples a pixel
constexpr int kStackShift = 2;   // 4 stacks a run
constexpr int32_t kQuarterMask = 3;

// The pixel that is being summed up.
class PixelSum {
 public:
  explicit PixelSum(CRaster* raster) : raster_(raster) {}

  // Adds `quarters` quarter-columns of the stacks' sum c to pixel x.
  void Add(int32_t x, RGBIWords c, int32_t quarters) {
    if (x_ != x) Flush();
    x_ = x;
    AddWords(&sum_, c, static_cast<uint32_t>(quarters));
  }

  void Flush() {
    if (sum_.Alpha() != 0) Draw(ShiftWords(sum_, kSampleShift));
    sum_ = {0, 0};
  }

 private:
  void Draw(RGBIWords color) {
    RGBI pixel;
    if (color.Alpha() != 255) {
      raster_->getBackground(raster_, x_, x_ + 1, &pixel);
      color = CompositeWords(color, LoadWords(&pixel));
    }
    StoreWords(color, &pixel);
    raster_->drawRGBSlab(raster_, x_, x_ + 1, &pixel);
  }

  CRaster* raster_;
  RGBIWords sum_ = {0, 0};
  int32_t x_ = kNoPixel;
};

// A run's sum of stacks, which stays the same all along a solid one.
class RunColor {
 public:
  RunColor(RRun* run, int32_t y) : run_(run), y_(y) {}

  RGBIWords At(int32_t x) {
    if (run_->typeMask != 0 || !valid_) {
      RGBI c;
      run_->CalcColor(x, y_, &c);
      color_ = LoadWords(&c);
      valid_ = true;
    }
    return color_;
  }

 private:
  RRun* run_;
  int32_t y_;
  RGBIWords color_ = {0, 0};
  bool valid_ = false;
};

// The whole pixels x1 to x2 - 1 of a run.
void DrawWhole(CRaster* raster, RRun* r, RunColor* color, int32_t x1, int32_t x2) {
  if (r->isPure && r->nStacks == kSubScanlines) {
    if (r->transparent) {
      raster->CompositeSlab(x1, x2, r->stacks[0], r->stackN[0]);
    } else {
      r->stacks[0][0]->drawSlabProc(r->stacks[0][0], x1, x2);
    }
    return;
  }
  RGBI buf[kSlabPixels];
  while (x1 < x2) {
    const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
    for (int32_t x = x1; x < end; x++) {
      StoreWords(ShiftWords(color->At(x), kStackShift), &buf[x - x1]);
    }
    if (r->nStacks != kSubScanlines || r->transparent) {
      raster->DrawRGBASlab(x1, end, buf);
    } else {
      raster->drawRGBSlab(raster, x1, end, buf);
    }
    x1 = end;
  }
}

void DrawRun(CRaster* raster, RRun* r, int32_t y, PixelSum* sum) {
  int32_t px1 = Asr(r->xmin, 2);
  const int32_t px2 = Asr(r->xmax, 2);
  const int32_t f1 = r->xmin & kQuarterMask;
  const int32_t f2 = r->xmax & kQuarterMask;
  RunColor color(r, y);
  if (px1 == px2) {
    sum->Add(px2, color.At(px2), f2 - f1);
    return;
  }
  if (f1 != 0) {
    sum->Add(px1, color.At(px1), kSubScanlines - f1);
    px1++;
  }
  if (px1 < px2) DrawWhole(raster, r, &color, px1, px2);
  if (f2 != 0) sum->Add(px2, color.At(px2), f2);
}

}  // namespace

void CRaster::PaintAARuns() {
  const int32_t row = Asr(y, 2);
  SetYCoord(row);
  PixelSum sum(this);
  RRun* r = firstRun;
  firstRun = nullptr;
  while (r != nullptr) {
    RRun* next = r->next;
    if (r->nStacks != 0) DrawRun(this, r, row, &sum);
    runAlloc.Free(r);
    r = next;
  }
  sum.Flush();
}

void CRaster::DrawRGBASlab(int32_t x1, int32_t x2, RGBI* pixels) {
  RGBI buf[kSlabPixels];
  getBackground(this, x1, x2, buf);
  CompositeRGB(pixels, buf, x2 - x1);
  drawRGBSlab(this, x1, x2, buf);
}

}  // namespace vexel
