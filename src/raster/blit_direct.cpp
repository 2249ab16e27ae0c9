// Copying of bitmap pixels straight into the buffer's format, 16 and 32 bits:
// the way of bitmaps without a colour transform, with no RGBI in between.
#include "raster/blit.h"
#include "raster/blit_loop.h"
#include "raster/pix32_ops.h"
#include "raster/pixel_format.h"

namespace vexel {

namespace {

// The upper bits of the channels of 0xAARRGGBB in the two 16-bit layouts.
constexpr uint32_t Pix32to16(uint32_t v) {
  return (v >> 9 & 0x7C00) | (v >> 6 & 0x3E0) | (v >> 3 & 31);
}
constexpr uint32_t Pix32to16A(uint32_t v) {
  return v >> 19 << 11 | (v >> 5 & 0x7E0) | (v >> 3 & 31);
}

// Required: the green field is widened by bit 5 itself, not by its top bit.
constexpr uint32_t Pix16to16A(uint32_t v) {
  return (v & ~31u) << 1 | (v & 63);
}

constexpr uint32_t Pix16to32(uint32_t v) {
  return pix16ExpandR[v >> 10 & 31] | pix16ExpandG[v >> 5 & 31] | pix16Expand[v & 31];
}

// Copies with a conversion of the source pixel to a word of 16 or 32 bits.
template <class Source, class Convert>
void BltTo16(const BltInfo& info, SPOINT& pos, int32_t count, void* dst, Convert convert) {
  auto* out = static_cast<uint8_t*>(dst);
  BltLoop<Source>(info, pos, count, [&](uint32_t v) {
    Store16(out, convert(v));
    out += 2;
  });
}
template <class Source, class Convert>
void BltTo32(const BltInfo& info, SPOINT& pos, int32_t count, void* dst, Convert convert) {
  auto* out = static_cast<uint8_t*>(dst);
  BltLoop<Source>(info, pos, count, [&](uint32_t v) {
    Store32(out, convert(v));
    out += 4;
  });
}

}  // namespace

void Blt8to16(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo16<Source8>(info, pos, count, dst,
                   [&](uint32_t v) { return PackPix16(UnpackPix32(info.colors[v])); });
}

void Blt16to16(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  if (BltUnitStep<Source16>(info, pos, count, dst)) return;
  BltTo16<Source16>(info, pos, count, dst, [](uint32_t v) { return v; });
}

void Blt32to16(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo16<Source32>(info, pos, count, dst, Pix32to16);
}

void Blt8to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo16<Source8>(info, pos, count, dst,
                   [&](uint32_t v) { return PackPix16A(UnpackPix32(info.colors[v])); });
}

void Blt16to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo16<Source16>(info, pos, count, dst, Pix16to16A);
}

void Blt32to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo16<Source32>(info, pos, count, dst, Pix32to16A);
}

void Blt8to32(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  // Required: the alpha byte becomes 0.
  BltTo32<Source8>(info, pos, count, dst, [&](uint32_t v) { return info.colors[v] & 0xFFFFFF; });
}

void Blt16to32(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo32<Source16>(info, pos, count, dst, Pix16to32);
}

void Blt32to32(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  if (BltUnitStep<Source32>(info, pos, count, dst)) return;
  Pix32().sample(static_cast<uint8_t*>(dst), count,
                 {info.baseAddr, info.rowBytes, pos.x, pos.y, info.dx, info.dy, info.width});
  pos = {WrapAdd(pos.x, WrapMul(count, info.dx)), WrapAdd(pos.y, WrapMul(count, info.dy))};
}

}  // namespace vexel
