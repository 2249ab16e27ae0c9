// The buffers that stand in for missing stretches of a movie file, and that
// mend them later.
#include <string.h>

#include "base/ref.h"
#include "host/cdescatterizer.h"
#include "host/held.h"
#include "host/wire.h"

namespace vexel {
namespace {

// The end of a frame: a tag of code 1 without a body.
constexpr UINT8 kFrameEnd[2] = {0x40, 0x00};

// A tag code that means nothing to the movie's reader, in both tag forms. The
// low 6 bits of the short form are the length of the body.
constexpr UINT32 kFillerShort = 999 << 6;
constexpr UINT32 kFillerLong = kFillerShort | 63;
constexpr UINT32 kLongHead = 6, kShortHead = 2;

// A new buffer of `size` bytes.
INT32 MakeBuffer(IZEMCommonClassFactory* factory, UINT32 size, Held<IZEMBuffer>& buffer) {
  void* made = nullptr;
  INT32 result = factory->CreateInstance(IID_IZEMBuffer, &made);
  if (result < 0) return result;
  buffer.Out() = static_cast<IZEMBuffer*>(made);
  if (!buffer) return ZEM_OUT_OF_MEMORY;
  result = buffer->SetSize(size);
  if (result < 0) return result;
  return buffer->GetBuffer() ? ZEM_OK : ZEM_OUT_OF_MEMORY;
}

}  // namespace

INT32 CDeScatterizer::CreateDummyFrames(UINT32 fromPosition, UINT32 toPosition, UINT32 fromFrame,
                                        UINT32 toFrame, IZEMBuffer*& out) {
  if (toPosition <= fromPosition || toFrame < fromFrame) return ZEM_BAD_ARGUMENT;
  if (!m_pClassFactory) return ZEM_UNEXPECTED;
  const UINT32 gap = toPosition - fromPosition;
  const uint64_t ends = 2 * (uint64_t{toFrame} - fromFrame);
  // The filler tag needs its head.
  if (gap != ends && gap < ends + kShortHead) return ZEM_FAILED;
  Held<IZEMBuffer> buffer;
  const INT32 result = MakeBuffer(m_pClassFactory, gap, buffer);
  if (result < 0) return result;

  UINT8* at = buffer->GetBuffer();
  UINT8* const stop = at + gap;
  for (UINT8* const frames = at + ends; at != frames; at += sizeof kFrameEnd) {
    memcpy(at, kFrameEnd, sizeof kFrameEnd);
  }
  const UINT32 rest = static_cast<UINT32>(stop - at);
  if (rest != 0) {
    const bool isLong = rest >= kLongHead;
    const UINT32 tag = isLong ? kFillerLong : kFillerShort | (rest - kShortHead);
    *at++ = static_cast<UINT8>(tag);
    *at++ = static_cast<UINT8>(tag >> 8);
    if (isLong) {
      for (UINT32 shift = 0; shift < 32; shift += 8) {
        *at++ = static_cast<UINT8>((rest - kLongHead) >> shift);
      }
    }
    memset(at, 0, static_cast<size_t>(stop - at));
  }
  ReplaceRef(out, buffer.Get());
  return ZEM_OK;
}

INT32 CDeScatterizer::CreateLateWriteBuffer(UINT32 position, const UINT8* data, UINT32 size,
                                            IZEMBuffer*& out) {
  if (!m_pClassFactory || !data || size == 0) return ZEM_UNEXPECTED;
  if (size > 0xFFFFFFFF - 4) return ZEM_OUT_OF_MEMORY;
  Held<IZEMBuffer> buffer;
  const INT32 result = MakeBuffer(m_pClassFactory, size + 4, buffer);
  if (result < 0) return result;
  memcpy(WriteBig32(buffer->GetBuffer(), position), data, size);
  ReplaceRef(out, buffer.Get());
  return ZEM_OK;
}

}  // namespace vexel
