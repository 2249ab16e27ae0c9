// The process's clock.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

// Milliseconds, about 1000 at the first call; wraps after 49 days.
UINT32 GetTickCount();

}  // namespace vexel
