// The picture that the site shows, and what of it has changed.
//
// The player draws into a bitmap of its own; each update is copied whole into
// the double buffer here, from which the client's surface is fed whenever the
// site asks. So a site can be redrawn at any time, also while the player's own
// bitmap is being drawn.
#pragma once

#include "movie/data_block.h"
#include "zem/zem_site.h"

namespace vexel {

// No side of the picture is longer than this; the surface scales the rest.
inline constexpr INT32 kMaxPictureSide = 2000;

// The size of the picture for a site of `size` pixels: the site's own, or with
// the longer side cut to kMaxPictureSide and the same aspect ratio. Negative
// sides count as 0.
_QKxSize LimitPictureSize(_QKxSize size);

class CDamageManager {
 public:
  CDamageManager() = default;
  CDamageManager(const CDamageManager&) = delete;
  CDamageManager& operator=(const CDamageManager&) = delete;

  // Widens `m_rcDirty` by `rect`, pixels of the picture, and tells the site.
  void DamageRect(_QKxRect rect);
  // Lets the site ask for the picture before this returns; nothing without a
  // site. The client may detach the site or drop its last reference inside:
  // `m_pOwner` is held until then, and afterwards this object may be gone.
  void ForceRedraw();
  // A picture of this size, black while new, and all of it damaged. Without
  // memory there is no picture: UseDoubleBuffer gives null.
  void SetupDoubleBuffer(_QKxSize size);
  // The pixels of the picture, rows of m_lWidth words without gaps.
  UINT8* UseDoubleBuffer() { return m_buffer.Bytes(); }
  void ReleaseDoubleBuffer() {}
  // The same, for as long as the reference lives.
  DataRef Pixels() const { return m_buffer; }

  // Whose part this is; not counted, and null for an owner without references.
  IUnknown* m_pOwner = nullptr;
  IZEMSite* m_pSite = nullptr;        // not owned; null until a site is wholly attached
  _QKxRect m_rcDirty = {0, 0, 0, 0};  // damaged since the last drawing
  bool m_bReadyToDraw = false;        // an update has had something to show
  INT32 m_nForcing = 0;               // how many ForceRedraw are running
  INT32 m_lWidth = 0, m_lHeight = 0;  // of the picture, pixels
  QKBitmapInfo m_Bitmap = {};         // describes the picture

 private:
  DataRef m_buffer;
};

}  // namespace vexel
