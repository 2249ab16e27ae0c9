#include "base/buffer_text.h"

#include <cstring>

namespace vexel {

CQKString BufferText(IZEMBuffer* buffer) {
  const char* text = buffer ? reinterpret_cast<const char*>(buffer->GetBuffer()) : nullptr;
  if (!text) return CQKString();
  return CQKString(text, static_cast<int>(strnlen(text, buffer->GetSize())));
}

}  // namespace vexel
