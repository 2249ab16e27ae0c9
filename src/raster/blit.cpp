// Copying of bitmap pixels into RGBI, for all that needs arithmetic on them,
// and straight into buffers of 16 and 32 bits, which needs none.
#include "raster/blit.h"

#include "raster/blit_loop.h"
#include "raster/pixel_format.h"

namespace vexel {

void BltXtoI(BltInfo /*info*/, SPOINT& /*pos*/, int32_t /*count*/, void* /*dst*/) {}

void Blt8toI(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  auto* out = static_cast<RGBI*>(dst);
  BltLoop<Source8>(info, pos, count, [&](uint32_t v) { *out++ = UnpackPix32(info.colors[v]); });
}

void Blt16toI(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  auto* out = static_cast<RGBI*>(dst);
  BltLoop<Source16>(info, pos, count, [&](uint32_t v) { *out++ = UnpackPix16(v); });
}

void Blt32toI(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  auto* out = static_cast<RGBI*>(dst);
  BltLoop<Source32>(info, pos, count, [&](uint32_t v) { *out++ = UnpackPix32(v); });
}

const BltProc bltProcs[] = {
    BltXtoI, BltXtoI, BltXtoI, Blt8toI, Blt16toI, Blt32toI,
};
static_assert(sizeof bltProcs / sizeof *bltProcs == kBitmapFormatCount);

}  // namespace vexel
