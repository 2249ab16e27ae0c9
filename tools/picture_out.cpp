#include "picture_out.h"

#include "out_file.h"
#include "png_out.h"
#include "raster/raster.h"

namespace vexel::tools {

void WritePicture(CBitBuffer* bits, const std::string& path) {
  OutFile out(path);
  if (PictureKindOf(path) == PictureKind::kPng) {
    WritePng(bits, path, out.stream());
  } else {
    CRaster raster;  // knows where a row stands
    raster.Attach(bits, nullptr, false);
    for (int32_t y = 0; y < bits->height; y++) {
      raster.SetYCoord(y);
      std::fwrite(raster.rowAddr, 1, static_cast<size_t>(bits->rowBytes), out.stream());
    }
  }
  out.Commit();
}

}  // namespace vexel::tools
