// Texts in buffers: preferences, properties, fields.
#pragma once

#include "base/cqk_string.h"
#include "zem/zem_values.h"

namespace vexel {

// The text in `buffer` up to its zero, or to the buffer's end if it has none;
// empty for a null buffer.
CQKString BufferText(IZEMBuffer* buffer);

}  // namespace vexel
