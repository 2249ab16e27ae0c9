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
  const bool same = shown_ && place.left == placed_.left && place.top == placed_.top &&
                    place.right == placed_.right && place.bottom == placed_.bottom;
  if (same) return;
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

bool XSite::Forward(XEvent* event) {
  if (event->type == Expose) {
    if (event->xexpose.count == 0) picture_->Show();
    return true;
  }
  void* window = reinterpret_cast<void*>(static_cast<uintptr_t>(window_));
  _QKxEvent told{static_cast<UINT32>(event->type), window, nullptr, event, 0, 0};
  Send(&told);
  return told.handled != 0;
}

}  // namespace vexel::client
