#include "client/core/memory_surface.h"

#include <algorithm>
#include <cstring>

namespace vexel::client {

namespace {

constexpr int kMaxSide = 16384;
constexpr uint32_t kColor = 0x00FFFFFF;

// The source pixels [first, end) of each destination pixel along one side.
struct Span {
  int64_t first, end;
};
std::vector<Span> SpansOf(int64_t from, int64_t sourceSize, int64_t destSize, int64_t limit) {
  std::vector<Span> spans(static_cast<size_t>(destSize));
  for (int64_t i = 0; i < destSize; i++) {
    int64_t first = from + i * sourceSize / destSize;
    int64_t end = from + (i + 1) * sourceSize / destSize;
    first = std::clamp<int64_t>(first, 0, limit - 1);
    end = std::clamp<int64_t>(end, first + 1, limit);
    spans[static_cast<size_t>(i)] = {first, end};
  }
  return spans;
}

uint32_t MeanOf(const UINT8* pixels, size_t rowBytes, Span x, Span y) {
  const UINT8* first =
      pixels + static_cast<size_t>(y.first) * rowBytes + static_cast<size_t>(x.first) * 4;
  if (x.end - x.first == 1 && y.end - y.first == 1) {
    uint32_t pixel;
    memcpy(&pixel, first, 4);
    return pixel;
  }
  uint64_t red = 0, green = 0, blue = 0;
  for (int64_t row = y.first; row < y.end; row++) {
    const UINT8* at =
        pixels + static_cast<size_t>(row) * rowBytes + static_cast<size_t>(x.first) * 4;
    for (int64_t column = x.first; column < x.end; column++, at += 4) {
      uint32_t pixel;
      memcpy(&pixel, at, 4);
      red += pixel >> 16 & 255;
      green += pixel >> 8 & 255;
      blue += pixel & 255;
    }
  }
  const uint64_t count = static_cast<uint64_t>((x.end - x.first) * (y.end - y.first));
  return static_cast<uint32_t>(red / count << 16 | green / count << 8 | blue / count);
}

}  // namespace

void MemorySurface::Resize(_QKxSize size) {
  const int width = std::clamp<INT32>(size.width, 0, kMaxSide);
  const int height = std::clamp<INT32>(size.height, 0, kMaxSide);
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  pixels_.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
}

INT32 MemorySurface::CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                                const _QKxRect& source) {
  if (!pixels || !info || info->bitsPerPixel != 32 || info->width <= 0 || info->height <= 0)
    return ZEM_BAD_ARGUMENT;
  const int64_t destWidth = int64_t{dest.right} - dest.left;
  const int64_t destHeight = int64_t{dest.bottom} - dest.top;
  const int64_t sourceWidth = int64_t{source.right} - source.left;
  const int64_t sourceHeight = int64_t{source.bottom} - source.top;
  if (destWidth < 0 || destHeight < 0 || sourceWidth < 0 || sourceHeight < 0 ||
      destWidth > kMaxSide || destHeight > kMaxSide)
    return ZEM_BAD_ARGUMENT;
  copies_++;
  if (sourceWidth == 0 || sourceHeight == 0) return ZEM_OK;

  const size_t rowBytes = static_cast<size_t>(info->width) * 4;
  const std::vector<Span> columns = SpansOf(source.left, sourceWidth, destWidth, info->width);
  const std::vector<Span> rows = SpansOf(source.top, sourceHeight, destHeight, info->height);
  const int64_t fromX = std::max<int64_t>(dest.left, 0);
  const int64_t toX = std::min<int64_t>(dest.right, width_);
  const int64_t fromY = std::max<int64_t>(dest.top, 0);
  const int64_t toY = std::min<int64_t>(dest.bottom, height_);
  for (int64_t y = fromY; y < toY; y++) {
    uint32_t* out = pixels_.data() + static_cast<size_t>(y) * static_cast<size_t>(width_);
    for (int64_t x = fromX; x < toX; x++) {
      out[x] = MeanOf(pixels, rowBytes, columns[static_cast<size_t>(x - dest.left)],
                      rows[static_cast<size_t>(y - dest.top)]) &
               kColor;
    }
  }
  return ZEM_OK;
}

}  // namespace vexel::client
