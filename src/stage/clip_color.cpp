// A mask's outline is painted with a colour that marks pixels as inside.
#include "stage/clip_color.h"

#include "raster/rcolor.h"
#include "stage/display_list.h"

namespace vexel {

CRaster* RasterForCaches(DisplayList* display) {
  return display->raster.bits ? &display->raster : nullptr;
}

RColor* CreateClipColor(DisplayList* display, RColor** list) {
  RColor* color = display->NewColor();
  if (!color) return nullptr;
  color->SetUp(&display->raster);
  color->next = *list;
  *list = color;
  color->order = 0;
  color->rgb = {0, 0, 0, 0};
  color->colorType = colorClip;
  color->transparent = true;
  if (RasterForCaches(display)) color->BuildCache();
  return color;
}

}  // namespace vexel
