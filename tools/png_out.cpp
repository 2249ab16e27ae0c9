#include "png_out.h"

#include <vector>

#include "picture_kind.h"
#include "raster/format_table.h"
#include "raster/raster.h"

namespace vexel::tools {

namespace {

constexpr int32_t kBytesPerPixel = 3;

}  // namespace

std::vector<uint8_t> RgbOf(CBitBuffer* bits) {
  CRaster raster;
  raster.Attach(bits, nullptr, false);
  const GetBackgroundProc getBackground = pixelFormats[bits->pixelFormat].getBackground;
  std::vector<RGBI> row(static_cast<size_t>(bits->width));
  std::vector<uint8_t> rgb(static_cast<size_t>(bits->width) * bits->height * kBytesPerPixel);
  uint8_t* out = rgb.data();
  for (int32_t y = 0; y < bits->height; y++) {
    raster.SetYCoord(y);
    getBackground(&raster, 0, bits->width, row.data());
    for (const RGBI& pixel : row) {
      *out++ = static_cast<uint8_t>(pixel.red);
      *out++ = static_cast<uint8_t>(pixel.green);
      *out++ = static_cast<uint8_t>(pixel.blue);
    }
  }
  return rgb;
}

void WritePng(CBitBuffer* bits, const std::string& path, std::FILE* stream) {
  const std::vector<uint8_t> rgb = RgbOf(bits);
  WriteRgbPng(bits->width, bits->height, rgb.data(), path, stream);
}

}  // namespace vexel::tools
