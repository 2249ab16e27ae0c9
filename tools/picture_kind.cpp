#include "picture_kind.h"

#include <png.h>

#include "status.h"

namespace vexel::tools {

PictureKind PictureKindOf(const std::string& path) {
  if (path.ends_with(".png")) return PictureKind::kPng;
  if (path.ends_with(".raw")) return PictureKind::kRaw;
  return PictureKind::kNone;
}

void WriteRgbPng(int32_t width, int32_t height, const uint8_t* rgb, const std::string& path,
                 std::FILE* stream) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGB;
  // A movie gives many pictures, and drawn areas pack well as they are.
  image.flags = PNG_IMAGE_FLAG_FAST;
  if (!png_image_write_to_stdio(&image, stream, 0, rgb, 0, nullptr))
    throw Failure(kFailed, path, std::string("cannot be written: ") + image.message);
}

}  // namespace vexel::tools
