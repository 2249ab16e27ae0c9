// Transform first, premultiply afterward: channels of a file are not premultiplied.
#include "movie/solid_color.h"

#include "raster/rcolor.h"

namespace vexel {

// Required: the scale is alpha + 1 over 256, so an alpha of 254 multiplies by
// 255 / 256 and one of 255 changes nothing.
void SetSolidColor(RColor* color, RGBI rgb, const ColorTransform& cxform) {
  cxform.Apply(&rgb, 1);
  if (rgb.alpha < 255) {
    const uint32_t scale = rgb.alpha + 1u;
    rgb.red = static_cast<uint16_t>(rgb.red * scale >> 8);
    rgb.green = static_cast<uint16_t>(rgb.green * scale >> 8);
    rgb.blue = static_cast<uint16_t>(rgb.blue * scale >> 8);
    color->transparent = true;
  }
  color->rgb = rgb;
}

}  // namespace vexel
