// An off-screen buffer in one of the nine pixel formats.
#pragma once

#include <cstdint>

#include "raster/color_table.h"
#include "raster/pixel_format.h"

namespace vexel {

inline constexpr int32_t kMinBufferSide = 1;
// Quarter-pixels of the far edge must fit signed 16 bits.
inline constexpr int32_t kMaxBufferSide = 8191;

// The fields are open to the rasterizer, which copies them when it attaches.
class CBitBuffer {
 public:
  bool inverted;        // row 0 is at the bottom of memory; CreateBits clears it
  int32_t pixelFormat;  // PixelFormat
  int32_t depth;        // bits per pixel
  uint8_t* baseAddr;    // null when there are no bits
  int32_t rowBytes;     // a multiple of 4
  int32_t width;        // pixels
  int32_t height;
  int32_t xOffset;      // pixels between the start of a row and the buffer's left edge
  SColorInfo* cinfo;    // a counted reference, or null
  bool allowPurge;      // kept for the owner, without effect here
  bool bitsAreForeign;  // baseAddr is not to be freed

  CBitBuffer();
  ~CBitBuffer();
  CBitBuffer(const CBitBuffer&) = delete;
  CBitBuffer& operator=(const CBitBuffer&) = delete;

  [[nodiscard]] bool BitsValid() const { return baseAddr != nullptr; }

  // Gives the palette reference and the bits back.
  void FreeBits();

  void AllowPurge(int32_t allow) { allowPurge = allow != 0; }

  // Allocates width by height zeroed pixels, each side from 1 to 8191, in
  // place of earlier ones. `info` is the palette, of which the buffer takes a
  // reference of its own; null keeps the earlier one. False, and a buffer
  // without bits, if memory is short, a side or the format is out of range, or
  // a format up to 8 bits has no palette.
  [[nodiscard]] bool CreateBits(int32_t format, SColorInfo* info, int32_t width, int32_t height);
};

}  // namespace vexel
