// The off-screen buffer: one zeroed block of 4-byte aligned rows.
#include "raster/bit_buffer.h"

#include <cstdlib>

namespace vexel {

namespace {

constexpr bool IsBufferSide(int32_t side) {
  return side >= kMinBufferSide && side <= kMaxBufferSide;
}

}  // namespace

CBitBuffer::CBitBuffer()
    : inverted(false),
      pixelFormat(pix1),
      depth(0),
      baseAddr(nullptr),
      rowBytes(0),
      width(0),
      height(0),
      xOffset(0),
      cinfo(nullptr),
      allowPurge(false),
      bitsAreForeign(false) {}

CBitBuffer::~CBitBuffer() {
  FreeBits();
}

void CBitBuffer::FreeBits() {
  ReleaseColorInfo(cinfo);
  cinfo = nullptr;
  if (!bitsAreForeign) std::free(baseAddr);
  baseAddr = nullptr;
  bitsAreForeign = false;
}

bool CBitBuffer::CreateBits(int32_t format, SColorInfo* info, int32_t w, int32_t h) {
  // The palette outlives the bits it came with, unless another one is given;
  // taken first, as `info` may be the one held already.
  SColorInfo* palette = info != nullptr ? info : cinfo;
  if (palette != nullptr) palette->refCount++;
  FreeBits();
  cinfo = palette;

  const bool known = format >= 0 && format < kPixelFormatCount;
  if (!known || !IsBufferSide(w) || !IsBufferSide(h) || (format <= pix8 && cinfo == nullptr)) {
    FreeBits();
    return false;
  }
  pixelFormat = format;
  depth = mapPixelFormatToDepth[format];
  width = w;
  height = h;
  inverted = false;
  xOffset = 0;
  rowBytes = ((w * depth + 31) >> 3) & ~3;
  baseAddr =
      static_cast<uint8_t*>(std::calloc(static_cast<size_t>(h), static_cast<size_t>(rowBytes)));
  if (baseAddr == nullptr) {
    FreeBits();
    return false;
  }
  return true;
}

}  // namespace vexel
