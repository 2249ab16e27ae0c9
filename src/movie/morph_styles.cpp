// The style tables of morph shapes: each style has a start and an end, and
// becomes one colour source, mixed at the parser's ratio.
#include "geometry/interpolate.h"
#include "movie/shape_parser.h"
#include "movie/solid_color.h"
#include "raster/rcolor.h"

namespace vexel {

void SShapeParser::GetMorphFill(RColor* color) {
  const uint8_t type = GetByte();
  if (type & kFillGradient) {
    StartGradient(color, type);
    MATRIX start;
    MATRIX end;
    GetMatrix(&start);
    GetMatrix(&end);
    Interpolate(&start, &end, ratio, &color->grad.gradMat);
    for (int32_t left = GetByte(); left > 0 && pos < dataEnd; --left) {
      const uint8_t startPosition = GetByte();
      const SRGB startStop = GetColor(getAlpha);
      const uint8_t endPosition = GetByte();
      const SRGB endStop = GetColor(getAlpha);
      SRGB stop;
      Interpolate(&startStop, &endStop, ratio, &stop);
      AddStop(color, static_cast<uint8_t>(Interpolate(startPosition, endPosition, ratio)), stop,
              startStop.alpha < 255 || endStop.alpha < 255);
    }
    FinishGradient(color);
  } else if (type & kFillBitmap) {
    GetBitmapFill(color, type, true);
  } else {
    RGBI start;
    RGBI end;
    GetColor(&start, getAlpha);
    GetColor(&end, getAlpha);
    Interpolate(&start, &end, ratio, &start);
    SetSolidColor(color, start, cxform);
  }
}

void SShapeParser::GetMorphLine(LineStyle* style) {
  const int32_t startWidth = GetWord();
  const int32_t endWidth = GetWord();
  const auto width = static_cast<uint16_t>(Interpolate(startWidth, endWidth, ratio));
  style->thickness = MatrixTransformThickness(&mat, width);
  RGBI start;
  RGBI end;
  GetColor(&start, getAlpha);
  GetColor(&end, getAlpha);
  Interpolate(&start, &end, ratio, &start);
  SetSolidColor(style->color, start, cxform);
}

bool SShapeParser::GetMorphStyles() {
  return GetTables(true);
}

}  // namespace vexel
