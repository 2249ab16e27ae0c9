#include "client/desktop/x_site.h"

#include <algorithm>
#include <cstdint>

namespace vexel::client {

XSite::XSite(Display* display, Window parent) : display_(display) {
  XSetWindowAttributes attributes{};
  // No background: the server would flash it before each picture.
  attributes.background_pixmap = None;
  attributes.bit_gravity = NorthWestGravity;
  attributes.event_mask = ExposureMask | KeyPressMask | ButtonPressMask | ButtonReleaseMask |
                          PointerMotionMask | LeaveWindowMask;
  window_ = XCreateWindow(display_, parent, 0, 0, 1, 1, 0, CopyFromParent, InputOutput,
                          CopyFromParent, CWBackPixmap | CWBitGravity | CWEventMask, &attributes);
  // For whoever looks for the movie among the server's windows.
  XStoreName(display_, window_, "movie");
  picture_ = Make<XSurface>(display_, window_);
}

XSite::~XSite() {
  picture_ = nullptr;
  XDestroyWindow(display_, window_);
}

INT32 XSite::SetSize(_QKxSize size) {
  if (size.width < 0 || size.height < 0) return ZEM_BAD_ARGUMENT;
  movieSize_ = size;
  // Of another movie, whose picture is as new as itself.
  picture_->DamageAll();
  if (onWish) onWish();
  Fit(area_);
  return ZEM_OK;
}

void XSite::Fit(_QKxSize area) {
  area_ = area;
  if (movieSize_.width <= 0 || movieSize_.height <= 0 || area.width <= 0 || area.height <= 0)
    return;
  const int64_t across = int64_t{movieSize_.width} * area.height;
  const int64_t down = int64_t{movieSize_.height} * area.width;
  _QKxSize size = area;
  if (across < down) {
    size.width = static_cast<INT32>(std::max<int64_t>(1, across / movieSize_.height));
  } else {
    size.height = static_cast<INT32>(std::max<int64_t>(1, down / movieSize_.width));
  }
  const INT32 left = (area.width - size.width) / 2, top = (area.height - size.height) / 2;
  const _QKxRect place{left, top, left + size.width, top + size.height};
  if (shown_ && AreEqual(place, placed_)) return;
  placed_ = place;
  XMoveResizeWindow(display_, window_, left, top, static_cast<unsigned>(size.width),
                    static_cast<unsigned>(size.height));
  picture_->Resize(size);
  if (!shown_) XMapWindow(display_, window_);
  shown_ = true;
  Resize(size);
}

void XSite::Hide() {
  if (shown_) XUnmapWindow(display_, window_);
  shown_ = false;
  movieSize_ = {0, 0};
}

INT32 XSite::DamageRect(_QKxRect rect) {
  picture_->Damage(rect);
  return ZEM_OK;
}

INT32 XSite::DamageAll() {
  picture_->DamageAll();
  return ZEM_OK;
}

// The plug-in asks twice for each change, and amid the drawing of a new size
// for the picture that is still empty.
INT32 XSite::ForceRedraw() {
  if (drawing_ || !picture_->damaged()) return ZEM_OK;
  const Ref<XSite> self(this);
  drawing_ = true;
  const INT32 result = Site::ForceRedraw();
  drawing_ = false;
  return result;
}

bool XSite::Forward(XEvent* event) {
  XEvent inPicture = *event;
  switch (event->type) {
    case Expose: {
      const XExposeEvent& part = event->xexpose;
      picture_->Show({part.x, part.y, part.x + part.width, part.y + part.height});
      return true;
    }
    case ButtonPress:
    case ButtonRelease:
      picture_->ToPicture(&inPicture.xbutton.x, &inPicture.xbutton.y);
      break;
    case MotionNotify:
      picture_->ToPicture(&inPicture.xmotion.x, &inPicture.xmotion.y);
      break;
    default:
      break;
  }
  void* window = reinterpret_cast<void*>(static_cast<uintptr_t>(window_));
  _QKxEvent told{static_cast<UINT32>(event->type), window, nullptr, &inPicture, 0, 0};
  Send(&told);
  return told.handled != 0;
}

}  // namespace vexel::client
