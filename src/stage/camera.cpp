// The camera: how the movie's rectangle comes to lie on the target. It only
// scales and shifts; its matrix is movie units to device units.
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "raster/dither.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// Sides below this count as this: a movie of no size must not divide by zero.
constexpr int32_t kMinSide = 16;

// One twentieth of a pixel to a unit of the movie, in 16.16 device units.
constexpr SFIXED kFixedScaleSmooth = 13107;  // quarter-pixels
constexpr SFIXED kFixedScale = 3276;         // pixels

// The target's size while there is none, in pixels.
constexpr int32_t kNoTargetSide = 2000;

enum ScaleMode { kFit = 0, kFill = 1, kStretch = 2, kFixed = 3 };

constexpr int32_t kAlignLeft = 0x10;
constexpr int32_t kAlignRight = 0x20;
constexpr int32_t kAlignTop = 0x40;
constexpr int32_t kAlignBottom = 0x80;

int32_t Side(SCOORD low, SCOORD high) {
  const int32_t side = WrapSub(high, low);
  return side < kMinSide ? kMinSide : side;
}

SCOORD Middle(SCOORD low, SCOORD high) {
  return Asr(WrapAdd(low, high), 1);
}

// The translation that brings a point of the movie to a point of the screen.
SCOORD Tie(SCOORD screen, SCOORD frame, SFIXED scale) {
  return WrapSub(screen, FixedMul(frame, scale));
}

}  // namespace

void DisplayList::UpdateDevViewRect() {
  int32_t width = kNoTargetSide;
  int32_t height = kNoTargetSide;
  if (bits && bits->BitsValid()) {
    width = bits->width;
    height = bits->height;
  }
  const int32_t scale = antialias ? kDevPerPixel : 1;
  devViewRect = {0, WrapMul(width, scale), 0, WrapMul(height, scale)};
}

void DisplayList::SetBits(CBitBuffer* target) {
  bits = target;
  UpdateDevViewRect();
  InvalidateRect(&devViewRect);
}

void DisplayList::ModifyCamera() {
  UpdateDevViewRect();
  InvalidateRect(&devViewRect);
  root.Modify();
}

void DisplayList::SetCamera(const SRECT* frame, const SRECT* screen, bool smooth, int32_t mode) {
  SRECT dev = *screen;
  if (smooth) {
    dev = {WrapMul(dev.xmin, kDevPerPixel), WrapMul(dev.xmax, kDevPerPixel),
           WrapMul(dev.ymin, kDevPerPixel), WrapMul(dev.ymax, kDevPerPixel)};
  }
  SFIXED sx = FixedDiv(Side(dev.xmin, dev.xmax), Side(frame->xmin, frame->xmax));
  SFIXED sy = FixedDiv(Side(dev.ymin, dev.ymax), Side(frame->ymin, frame->ymax));
  switch (mode & 0x0F) {
    case kFit:
      sx = sy = sx < sy ? sx : sy;
      break;
    case kFill:
      sx = sy = sx > sy ? sx : sy;
      break;
    case kFixed:
      sx = sy = smooth ? kFixedScaleSmooth : kFixedScale;
      break;
    default:  // stretch
      break;
  }

  MATRIX mat;
  MatrixScale(sx, sy, &mat);
  if (mode & kAlignLeft) {
    mat.tx = Tie(dev.xmin, frame->xmin, sx);
  } else if (mode & kAlignRight) {
    mat.tx = Tie(dev.xmax, frame->xmax, sx);
  } else {
    mat.tx = Tie(Middle(dev.xmin, dev.xmax), Middle(frame->xmin, frame->xmax), sx);
  }
  if (mode & kAlignTop) {
    mat.ty = Tie(dev.ymin, frame->ymin, sy);
  } else if (mode & kAlignBottom) {
    mat.ty = Tie(dev.ymax, frame->ymax, sy);
  } else {
    mat.ty = Tie(Middle(dev.ymin, dev.ymax), Middle(frame->ymin, frame->ymax), sy);
  }

  const bool smoothBitmaps = smooth && !animating;
  if (MatrixEqual(&mat, &camera.mat, 0) && antialias == smooth && raster.smooth == smoothBitmaps) {
    return;
  }
  antialias = smooth;
  camera.mat = mat;
  raster.smooth = smoothBitmaps;
  raster.ditherKind = smooth ? ditherErrorDiffusion : ditherOrdered;
  ModifyCamera();
}

}  // namespace vexel
