// The inner loops for 256-bit and 512-bit integer vectors.
#pragma once

#include "raster/pix32_ops.h"

namespace vexel {

// Pix32Ops::radial for them.
void SimdRadial(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line);

// Null if this processor has no such vectors.
const Pix32Ops* Pix32SimdOps();
const Pix32Ops* Pix32Simd512Ops();

}  // namespace vexel
