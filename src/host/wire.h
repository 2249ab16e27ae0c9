// Numbers as streams carry them: big endian, at any address.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

inline UINT32 ReadBig16(const UINT8* at) {
  return UINT32{at[0]} << 8 | at[1];
}
inline UINT32 ReadBig24(const UINT8* at) {
  return UINT32{at[0]} << 16 | ReadBig16(at + 1);
}
inline UINT32 ReadBig32(const UINT8* at) {
  return ReadBig16(at) << 16 | ReadBig16(at + 2);
}

// Writes 4 bytes and returns where the next ones go.
inline UINT8* WriteBig32(UINT8* at, UINT32 value) {
  at[0] = static_cast<UINT8>(value >> 24);
  at[1] = static_cast<UINT8>(value >> 16);
  at[2] = static_cast<UINT8>(value >> 8);
  at[3] = static_cast<UINT8>(value);
  return at + 4;
}

}  // namespace vexel
