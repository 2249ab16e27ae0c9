// The inner loops for 256-bit integer vectors.
#pragma once

#include "raster/pix32_ops.h"

namespace vexel {

// Null if this processor has no such vectors.
const Pix32Ops* Pix32SimdOps();

}  // namespace vexel
