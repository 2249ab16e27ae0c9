// All pixels go through pixman, which has fast ways for what displays use.
// Enlarging by linear interpolation takes about 1 ns a pixel; a cubic filter
// looks the same at the factors that occur (screens beyond the 2000 pixels of
// the plug-in's picture) and takes 55.
#include "client/desktop/picture_copy.h"

#include <pixman.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace vexel::client {

namespace {

// How finely the means of a reduced picture tell apart where a pixel lies:
// in steps of 1 / 2^4.
constexpr int kSubsampleBits = 4;

struct LayoutRow {
  PixelLayout layout;
  pixman_format_code_t format;
};

constexpr LayoutRow kLayouts[] = {
    {{32, 0x00FF0000, 0x0000FF00, 0x000000FF}, PIXMAN_x8r8g8b8},
    {{32, 0x000000FF, 0x0000FF00, 0x00FF0000}, PIXMAN_x8b8g8r8},
    {{32, 0x0000FF00, 0x00FF0000, 0xFF000000}, PIXMAN_b8g8r8x8},
    {{32, 0xFF000000, 0x00FF0000, 0x0000FF00}, PIXMAN_r8g8b8x8},
    {{32, 0x3FF00000, 0x000FFC00, 0x000003FF}, PIXMAN_x2r10g10b10},
    {{32, 0x000003FF, 0x000FFC00, 0x3FF00000}, PIXMAN_x2b10g10r10},
    {{24, 0x00FF0000, 0x0000FF00, 0x000000FF}, PIXMAN_r8g8b8},
    {{24, 0x000000FF, 0x0000FF00, 0x00FF0000}, PIXMAN_b8g8r8},
    {{16, 0x0000F800, 0x000007E0, 0x0000001F}, PIXMAN_r5g6b5},
    {{16, 0x0000001F, 0x000007E0, 0x0000F800}, PIXMAN_b5g6r5},
    {{16, 0x00007C00, 0x000003E0, 0x0000001F}, PIXMAN_x1r5g5b5},
    {{16, 0x0000001F, 0x000003E0, 0x00007C00}, PIXMAN_x1b5g5r5},
    {{8, 0x000000E0, 0x0000001C, 0x00000003}, PIXMAN_r3g3b2},
    {{8, 0x00000007, 0x00000038, 0x000000C0}, PIXMAN_b2g3r3},
};

const LayoutRow* Find(const PixelLayout& layout) {
  const auto* row = std::find_if(std::begin(kLayouts), std::end(kLayouts), [&](const auto& one) {
    return one.layout.bitsPerPixel == layout.bitsPerPixel && one.layout.red == layout.red &&
           one.layout.green == layout.green && one.layout.blue == layout.blue;
  });
  return row == std::end(kLayouts) ? nullptr : row;
}

struct Unref {
  void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using Image = std::unique_ptr<pixman_image_t, Unref>;

Image Wrap(const PictureMemory& memory) {
  const LayoutRow* row = Find(memory.layout);
  if (!row) return nullptr;
  return Image(pixman_image_create_bits_no_clear(row->format, memory.width, memory.height,
                                                 static_cast<uint32_t*>(memory.pixels),
                                                 memory.rowBytes));
}

// x and y: source pixels for one of the result.
bool SetFilter(pixman_image_t* image, double x, double y) {
  if (x <= 1 && y <= 1) return pixman_image_set_filter(image, PIXMAN_FILTER_BILINEAR, nullptr, 0);
  int count = 0;
  pixman_fixed_t* kernels = pixman_filter_create_separable_convolution(
      &count, pixman_double_to_fixed(std::max(x, 1.0)), pixman_double_to_fixed(std::max(y, 1.0)),
      PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX,
      kSubsampleBits, kSubsampleBits);
  if (!kernels) return false;
  const bool set =
      pixman_image_set_filter(image, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, kernels, count);
  std::free(kernels);
  return set;
}

// One side of a changed part: from source to destination, with what
// interpolation takes from its neighbours.
void MapSide(int sourceStart, int sourceSize, int destStart, int destSize, int* start, int* end) {
  if (sourceSize == destSize) {
    *start += destStart - sourceStart;
    *end += destStart - sourceStart;
    return;
  }
  const double scale = static_cast<double>(destSize) / sourceSize;
  *start = destStart + static_cast<int>(std::floor((*start - sourceStart - 1) * scale)) - 1;
  *end = destStart + static_cast<int>(std::ceil((*end - sourceStart + 1) * scale)) + 1;
}

}  // namespace

bool KnowsLayout(const PixelLayout& layout) {
  return Find(layout) != nullptr;
}

bool IsEmpty(const _QKxRect& rect) {
  return rect.right <= rect.left || rect.bottom <= rect.top;
}

bool AreEqual(const _QKxRect& one, const _QKxRect& other) {
  return one.left == other.left && one.top == other.top && one.right == other.right &&
         one.bottom == other.bottom;
}

_QKxRect Intersection(const _QKxRect& one, const _QKxRect& other) {
  return {std::max(one.left, other.left), std::max(one.top, other.top),
          std::min(one.right, other.right), std::min(one.bottom, other.bottom)};
}

_QKxRect Union(const _QKxRect& one, const _QKxRect& other) {
  if (IsEmpty(one)) return other;
  if (IsEmpty(other)) return one;
  return {std::min(one.left, other.left), std::min(one.top, other.top),
          std::max(one.right, other.right), std::max(one.bottom, other.bottom)};
}

_QKxRect PartOf(const _QKxRect& dest, const _QKxRect& source, const _QKxRect& changed) {
  _QKxRect part = Intersection(changed, source);
  if (IsEmpty(part)) return part;
  MapSide(source.left, source.right - source.left, dest.left, dest.right - dest.left, &part.left,
          &part.right);
  MapSide(source.top, source.bottom - source.top, dest.top, dest.bottom - dest.top, &part.top,
          &part.bottom);
  return Intersection(part, dest);
}

bool CopyPicture(const PictureMemory& from, const _QKxRect& source, const PictureMemory& to,
                 const _QKxRect& dest, const _QKxRect& part) {
  const _QKxRect written =
      Intersection(Intersection(part, dest), _QKxRect{0, 0, to.width, to.height});
  if (IsEmpty(written) || IsEmpty(source)) return true;
  const Image reader = Wrap(from), writer = Wrap(to);
  if (!reader || !writer) return false;
  int left = written.left - dest.left, top = written.top - dest.top;
  const int width = dest.right - dest.left, height = dest.bottom - dest.top;
  const int sourceWidth = source.right - source.left, sourceHeight = source.bottom - source.top;
  if (width == sourceWidth && height == sourceHeight) {
    left += source.left;
    top += source.top;
  } else {
    const double x = static_cast<double>(sourceWidth) / width;
    const double y = static_cast<double>(sourceHeight) / height;
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(x), pixman_double_to_fixed(y));
    pixman_transform_translate(&transform, nullptr, pixman_int_to_fixed(source.left),
                               pixman_int_to_fixed(source.top));
    if (!pixman_image_set_transform(reader.get(), &transform) || !SetFilter(reader.get(), x, y))
      return false;
    pixman_image_set_repeat(reader.get(), PIXMAN_REPEAT_PAD);
  }
  pixman_image_composite32(PIXMAN_OP_SRC, reader.get(), nullptr, writer.get(), left, top, 0, 0,
                           written.left, written.top, written.right - written.left,
                           written.bottom - written.top);
  return true;
}

}  // namespace vexel::client
