// The double buffer, and the way to the site.
#include "host/damage_manager.h"

#include <cstdint>

#include "base/ref.h"

namespace vexel {

namespace {

// Required: four times the bytes that a picture has.
constexpr int32_t kBytesPerPixel = 16;

// A redraw may find that the site has changed its size, and ask for one more. A
// site that changes it each time would go on for ever.
constexpr INT32 kMaxForcing = 8;

// value * kMaxPictureSide / longer.
INT32 Shrink(INT32 value, INT32 longer) {
  return static_cast<INT32>(int64_t{value} * kMaxPictureSide / longer);
}

}  // namespace

_QKxSize LimitPictureSize(_QKxSize size) {
  if (size.width < 0) size.width = 0;
  if (size.height < 0) size.height = 0;
  const INT32 longer = size.width > size.height ? size.width : size.height;
  if (longer <= kMaxPictureSide) return size;
  return {Shrink(size.width, longer), Shrink(size.height, longer)};
}

void CDamageManager::DamageRect(_QKxRect rect) {
  if (m_rcDirty.right > m_rcDirty.left && m_rcDirty.bottom > m_rcDirty.top) {
    if (rect.left < m_rcDirty.left) m_rcDirty.left = rect.left;
    if (rect.top < m_rcDirty.top) m_rcDirty.top = rect.top;
    if (rect.right > m_rcDirty.right) m_rcDirty.right = rect.right;
    if (rect.bottom > m_rcDirty.bottom) m_rcDirty.bottom = rect.bottom;
  } else {
    m_rcDirty = rect;
  }
  const ScopedRef<IZEMSite> site(m_pSite);
  if (m_pSite) m_pSite->DamageRect(rect);
}

void CDamageManager::ForceRedraw() {
  if (!m_pSite || m_nForcing >= kMaxForcing) return;
  // The owner goes last, and this object with it.
  const ScopedRef<IUnknown> owner(m_pOwner);
  const ScopedRef<IZEMSite> site(m_pSite);
  ++m_nForcing;
  m_pSite->ForceRedraw();
  --m_nForcing;
}

void CDamageManager::SetupDoubleBuffer(_QKxSize size) {
  if (size.width < 0 || size.height < 0) size = {0, 0};
  if (size.width != m_lWidth || size.height != m_lHeight) m_buffer.Reset();
  m_lWidth = size.width;
  m_lHeight = size.height;
  const int64_t pixels = int64_t{size.width} * size.height;
  if (!m_buffer && pixels > 0 && pixels <= INT32_MAX / kBytesPerPixel) {
    m_buffer = DataRef::Adopt(DataBlock::Create(static_cast<int32_t>(pixels) * kBytesPerPixel));
  }
  m_Bitmap = {};
  m_Bitmap.headerSize = sizeof m_Bitmap;
  m_Bitmap.width = m_lWidth;
  m_Bitmap.height = m_lHeight;
  m_Bitmap.planes = 1;
  m_Bitmap.bitsPerPixel = 32;
  DamageRect({0, 0, m_lWidth, m_lHeight});
}

}  // namespace vexel
