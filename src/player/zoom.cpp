// What part of the movie is shown: the camera's inputs, and zooming and
// panning, which choose `zoomRect`. Everything a caller passes in may be any
// number, so intermediate values are 64 bits wide and results saturate.
#include "geometry/intmath.h"
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "player/splayer.h"

namespace vexel {

namespace {

constexpr int32_t kUnitsPerPixel = 20;

// The camera maps to quarter-pixels while the stage anti-aliases; this brings
// it back to pixels.
constexpr SFIXED kPixelScale = kFixedOne / kDevPerPixel;

int32_t Width(const SRECT& r) {
  return Saturate32(int64_t{r.xmax} - r.xmin);
}
int32_t Height(const SRECT& r) {
  return Saturate32(int64_t{r.ymax} - r.ymin);
}

int32_t SaturatedAdd(int32_t a, int32_t b) {
  return Saturate32(int64_t{a} + b);
}
int32_t SaturatedSub(int32_t a, int32_t b) {
  return Saturate32(int64_t{a} - b);
}

int32_t PercentOf(int32_t whole, int32_t percent) {
  return Saturate32(int64_t{whole} * percent / 100);
}

// Moves the range low..high until it starts no earlier than `min`, then until
// it ends no later than `max`: the end wins where it fits neither.
void ShiftInside(int32_t min, int32_t max, SCOORD* low, SCOORD* high) {
  if (*low < min) {
    const int64_t by = int64_t{min} - *low;
    *low = min;
    *high = Saturate32(*high + by);
  }
  if (*high > max) {
    const int64_t by = int64_t{*high} - max;
    *low = Saturate32(*low - by);
    *high = max;
  }
}

int32_t Clamp(int32_t value, int32_t low, int32_t high) {
  return value < low ? low : value > high ? high : value;
}

}  // namespace

void SPlayer::SetCamera(int32_t update) {
  SRECT client;
  ClientRect(&client);
  display.animating = numFrames > 1 && !bestQuality;
  const bool whole = RectIsEmpty(&zoomRect) || scaleMode == kScaleFixed;
  display.SetCamera(whole ? &frame : &zoomRect, &client, highQuality, scaleMode);
  if (update == kCameraShowNow) UpdateScreen();
  if (update == kCameraShowSoon) CheckUpdate();
}

void SPlayer::Home() {
  if (scaleMode == kScaleFixed) scaleMode = kScaleFit;
  RectSetEmpty(&zoomRect);
  SetCamera(kCameraShowSoon);
}

void SPlayer::Zoom100() {
  if (scaleMode & kScaleTopLeft) {
    SRECT client;
    ClientRect(&client);
    zoomRect = {0, Saturate32(int64_t{Width(client)} * kUnitsPerPixel), 0,
                Saturate32(int64_t{Height(client)} * kUnitsPerPixel)};
  } else {
    RectSetEmpty(&zoomRect);
    scaleMode = kScaleFixed;
  }
  SetCamera(kCameraShowSoon);
}

// Required: the least size shown is the client's size in pixels taken as
// twentieths, so the deepest zoom is 20 to 1.
void SPlayer::Zoom(SPOINT size, SPOINT center) {
  if (scaleMode == kScaleFixed) scaleMode = kScaleFit;
  SRECT client;
  ClientRect(&client);
  if (size.x < Width(client)) size.x = Width(client);
  if (size.y < Height(client)) size.y = Height(client);
  zoomRect = {SaturatedSub(center.x, size.x / 2), SaturatedAdd(center.x, size.x / 2),
              SaturatedSub(center.y, size.y / 2), SaturatedAdd(center.y, size.y / 2)};
  ShiftInside(frame.xmin, frame.xmax, &zoomRect.xmin, &zoomRect.xmax);
  ShiftInside(frame.ymin, frame.ymax, &zoomRect.ymin, &zoomRect.ymax);
  RectIntersect(&zoomRect, &frame, &zoomRect);
  const bool coversMovie = size.x >= Width(frame) && size.y >= Height(frame);
  if (RectIsEmpty(&zoomRect) || coversMovie) {
    Home();
  } else {
    SetCamera(kCameraShowSoon);
  }
}

void SPlayer::Zoom(const SRECT* rect) {
  SPOINT center;
  RectCenter(rect, &center);
  Zoom({Width(*rect), Height(*rect)}, center);
}

// Required: the percentage is that of the ground shown, so 50 magnifies twice.
void SPlayer::Zoom(int32_t percent) {
  if (percent == 0) {
    Home();
  } else {
    ZoomScale(Saturate32(int64_t{percent} * kFixedOne / 100));
  }
}

void SPlayer::ZoomF(SFIXED scale, const SPOINT* center) {
  MATRIX mat;
  ClientMatrix(&mat);
  MATRIX inverse;
  MatrixInvert(&mat, &inverse);
  SRECT client;
  ClientRect(&client);
  MatrixTransformRect(&inverse, &client, &zoomRect);
  SPOINT middle;
  if (center) {
    MatrixTransformPoint(&inverse, center, &middle);
  } else {
    RectCenter(&zoomRect, &middle);
  }
  Zoom({FixedMul(Width(zoomRect), scale), FixedMul(Height(zoomRect), scale)}, middle);
}

void SPlayer::SetZoomRect(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  if (left < right && top < bottom) {
    zoomRect = {left, right, top, bottom};
    SetCamera(kCameraShowSoon);
  } else {
    Home();
  }
}

void SPlayer::Pan(int32_t dx, int32_t dy, int32_t mode) {
  if (RectIsEmpty(&zoomRect)) return;
  SRECT client;
  ClientRect(&client);
  if (mode == kPanPercent) {
    dx = PercentOf(Width(client), dx);
    dy = PercentOf(Height(client), dy);
  }
  PanZoomRect(dx, dy);
  SetCamera(kCameraShowSoon);
}

// Moves what is shown by pixels, as far as the movie reaches.
void SPlayer::PanZoomRect(int32_t dx, int32_t dy) {
  SRECT client;
  ClientRect(&client);
  MATRIX mat;
  ClientMatrix(&mat);
  SRECT movie;
  MatrixTransformRect(&mat, &frame, &movie);
  const auto atMost0 = [](int32_t v) { return v > 0 ? 0 : v; };
  const auto atLeast0 = [](int32_t v) { return v < 0 ? 0 : v; };
  dx = Clamp(dx, atMost0(SaturatedSub(movie.xmin, client.xmin)),
             atLeast0(SaturatedSub(movie.xmax, client.xmax)));
  dy = Clamp(dy, atMost0(SaturatedSub(movie.ymin, client.ymin)),
             atLeast0(SaturatedSub(movie.ymax, client.ymax)));
  RectOffset(dx, dy, &client);
  MATRIX inverse;
  MatrixInvert(&mat, &inverse);
  MatrixTransformRect(&inverse, &client, &zoomRect);
}

void SPlayer::ClientMatrix(MATRIX* out) const {
  *out = display.camera.mat;
  if (!display.antialias) return;
  MATRIX toPixels;
  MatrixScale(kPixelScale, kPixelScale, &toPixels);
  MatrixConcat(out, &toPixels, out);
}

}  // namespace vexel
