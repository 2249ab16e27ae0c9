// Sites, the display areas that a client lends, their users, and the surface
// onto which a picture is copied.
#pragma once

#include "zem_unknown.h"

class IZEMSite;

// Draws on a site and takes its events. Implemented by the plug-in.
class IZEMSiteUser : public IUnknown {
 public:
  // Keeps the site with a reference until DetachSite, and asks it for the
  // movie's own size. ZEM_UNEXPECTED if one is attached already.
  virtual INT32 AttachSite(IZEMSite* site) = 0;
  virtual INT32 DetachSite() = 0;
  // One event, as received; null does nothing.
  virtual INT32 HandleEvent(_QKxEvent* event) = 0;
  // Not 0: the user wants a window of the system's own. Ours answers 0.
  virtual INT32 NeedsWindowedSites() = 0;
};

// Makes the users of a presentation's sites. Called by the client only.
class IZEMSiteUserSupplier : public IUnknown {
 public:
  virtual INT32 GetSiteCount(UINT32& count) = 0;
  virtual INT32 CreateSiteUser(IZEMSiteUser*& user) = 0;  // with a reference
  virtual INT32 DestroySiteUser(IZEMSiteUser* user) = 0;
};

// The client's help for a renderer that knows one site only: it lets many sites
// show the same user. The same object answers IZEMSiteUserSupplier.
class IZEMMultiInstanceSiteUserSupplier : public IUnknown {
 public:
  // Called at StartStream; the supplier keeps a reference.
  virtual INT32 SetSingleSiteUser(IZEMSiteUser* user) = 0;
  // Called at DetachSite; the supplier lets go.
  virtual INT32 ReleaseSingleSiteUser() = 0;
};

// A display area. Implemented by the client.
class IZEMSite : public IUnknown {
 public:
  virtual INT32 AttachUser(IZEMSiteUser* user) = 0;
  virtual INT32 DetachUser() = 0;
  virtual INT32 GetUser(IZEMSiteUser*& user) = 0;
  virtual INT32 CreateChild(IZEMSite*& child) = 0;
  virtual INT32 DestroyChild(IZEMSite* child) = 0;
  virtual INT32 SetPosition(INT32 x, INT32 y) = 0;
  virtual INT32 GetPosition(INT32& x, INT32& y) = 0;
  virtual INT32 SetVisible(INT32 visible) = 0;
  virtual INT32 IsVisible() = 0;
  // A wish, in pixels; GetSize tells the truth. May send events before it
  // returns.
  virtual INT32 SetSize(_QKxSize size) = 0;
  virtual INT32 GetSize(_QKxSize& size) = 0;
  // What the next drawing will change, in pixels of the picture: those of the
  // site unless a side of it is above 2000. May be ignored, since each drawing
  // brings the whole picture.
  virtual INT32 DamageRect(_QKxRect rect) = 0;
  virtual INT32 DamageAll() = 0;
  // Sends ZEM_EVENT_DRAW to the user before it returns. Called by the user
  // from within its own calls.
  virtual INT32 ForceRedraw() = 0;
};

// What ZEM_EVENT_DRAW draws into. Implemented by the client.
class IZEMVideoSurface : public IUnknown {
 public:
  // Copies the part `source` of a picture onto `dest` of the site, scaled if
  // the sizes differ. Nothing of what is passed may be kept.
  virtual INT32 CopyBitmap(const UINT8* pixels, const QKBitmapInfo* info, const _QKxRect& dest,
                           const _QKxRect& source) = 0;
};
