// A picture in memory that the plug-in copies onto.
#pragma once

#include <cstdint>
#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class MemorySurface : public Object<IZEMVideoSurface> {
 public:
  // Gives the picture a size, and makes it black if that is another one. Sides
  // are cut to 0..16384.
  void Resize(_QKxSize size);

  // Copies 1:1, or scales: nearest pixel up, mean of the covered pixels down.
  // What lies outside either picture is left out.
  INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                   const _QKxRect& source) override;

  int width() const { return width_; }
  int height() const { return height_; }
  // Words 0x00RRGGBB, rows from the top without gaps.
  const std::vector<uint32_t>& pixels() const { return pixels_; }
  // How many pictures have come.
  uint32_t copies() const { return copies_; }

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<uint32_t> pixels_;
  uint32_t copies_ = 0;
};

}  // namespace vexel::client
