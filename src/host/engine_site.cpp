// Drawing: what changed goes from the stage into the player's bitmap, from
// there into the damage manager's picture, and with it to the site.
#include <cstring>

#include "base/ref.h"
#include "host/damage_manager.h"
#include "host/vexel_engine.h"
#include "raster/pixel_format.h"

namespace vexel {

INT32 CVexelEngine::AttachSite(IZEMSite*) {
  m_bSiteAttached = true;
  return ZEM_OK;
}

INT32 CVexelEngine::DetachSite() {
  const ScopedRef<IZEMRenderer> self(this);
  StopCallback();
  m_bSiteAttached = false;
  m_bCallbackStarted = false;
  return ZEM_OK;
}

void CVexelEngine::Update(INT32 mode) {
  const ScopedRef<IZEMRenderer> self(this);
  display.CalcUpdate();
  SRECT dirty;
  display.CalcBitsDirty(&display.devDirtyUnion, &dirty);
  RectUnion(&dirty, &display.screenDirtyRect, &dirty);
  if (RectIsEmpty(&dirty)) return;
  DamageRect({dirty.xmin, dirty.ymin, dirty.xmax, dirty.ymax});
  RectSetEmpty(&display.screenDirtyRect);
  if ((mode & 1) == 0) return;
  UpdateDoubleBuffer();
  if (m_pDamageManager) m_pDamageManager->m_bReadyToDraw = true;
  // Required: twice in a row.
  ForceRedraw();
  ForceRedraw();
}

void CVexelEngine::CheckUpdate() {
  Update(0);
}

void CVexelEngine::UpdateScreen() {
  Update(1);
}

bool CVexelEngine::UpdateBuffer(bool draw) {
  if (m_bBufferSizeChanged) {
    m_bBufferSizeChanged = false;
    FreeBuffer();
  }
  if (!bits.BitsValid()) {
    if (m_lWidth <= 0 || m_lHeight <= 0) return true;
    bits.AllowPurge(1);
    if (!bits.CreateBits(pix32, nullptr, m_lWidth, m_lHeight)) return false;
    SetCamera(kCameraOnly);
    display.ModifyCamera();
  }
  if (draw) {
    // A client may ask for the picture out of a call that an action made: it
    // then gets the last one.
    if (actionDepth == 0) display.Update();
    if (m_bBufferSizeChanged) return false;
  }
  return true;
}

// The two differ in size while a site is just changing its own; the next
// update is complete again.
void CVexelEngine::UpdateDoubleBuffer() {
  if (!UpdateBuffer(true) || !bits.BitsValid() || !m_pDamageManager) return;
  UINT8* pixels = m_pDamageManager->UseDoubleBuffer();
  if (!pixels || m_pDamageManager->m_lWidth != bits.width ||
      m_pDamageManager->m_lHeight != bits.height) {
    return;
  }
  memcpy(pixels, bits.baseAddr,
         static_cast<size_t>(bits.rowBytes) * static_cast<size_t>(bits.height));
}

void CVexelEngine::SetPictureSize(_QKxSize size) {
  m_lWidth = size.width;
  m_lHeight = size.height;
  m_ZoomPoint = {m_lWidth / 2, m_lHeight / 2};
  m_bBufferSizeChanged = bits.BitsValid();
}

void CVexelEngine::SetBufferSize(_QKxSize size) {
  if (size.width == m_lWidth && size.height == m_lHeight) return;
  const ScopedRef<IZEMRenderer> self(this);
  SetPictureSize(size);
  DamageRect({0, 0, m_lWidth, m_lHeight});
  ForceRedraw();
}

void CVexelEngine::DamageRect(_QKxRect rect) {
  if (m_pDamageManager) m_pDamageManager->DamageRect(rect);
}

void CVexelEngine::ForceRedraw() {
  if (m_pDamageManager) m_pDamageManager->ForceRedraw();
}

void CVexelEngine::ClientRect(SRECT* out) {
  *out = {0, m_lWidth, 0, m_lHeight};
}

void CVexelEngine::UpdateCursor(int32_t) {
  if (display.button) {
    m_nCursor = 2;
  } else if (!RectIsEmpty(&zoomRect)) {
    m_nCursor = 1;
  } else {
    m_nCursor = display.mouseOverEditText ? 3 : 0;
  }
}

}  // namespace vexel
