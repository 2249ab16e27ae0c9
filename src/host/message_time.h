// When a message is due.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

// `time` less `offset`, in milliseconds. What would lie before the stream's
// start is due at once, so it never wraps to the far future.
inline UINT32 MessageTime(UINT32 time, INT32 offset) {
  const int64_t due = int64_t{time} - offset;
  return due < 0 ? 0 : static_cast<UINT32>(due);
}

}  // namespace vexel
