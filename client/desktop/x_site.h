// The movie's place on the screen: an X window of its own inside a widget's,
// whose events go to the plug-in as the server sent them.
#pragma once

#include <X11/Xlib.h>

#include <functional>

#include "client/core/site.h"
#include "client/desktop/x_surface.h"

namespace vexel::client {

class XSite : public Site {
 public:
  // `parent` must outlive the site. The window is not shown yet. Throws
  // std::runtime_error, with a text for people, on a display without the
  // colours for movies.
  XSite(Display* display, Window parent);

  // The movie's own size, told by the plug-in: a wish.
  INT32 SetSize(_QKxSize size) override;
  INT32 DamageRect(_QKxRect rect) override;
  INT32 DamageAll() override;
  // Draws if there is something to draw.
  INT32 ForceRedraw() override;
  std::function<void()> onWish;
  _QKxSize movieSize() const { return movieSize_; }

  // The widget's size, pixels: the movie is as large as fits with its aspect
  // kept, in the middle; the parent's colour makes the bars.
  void Fit(_QKxSize area);
  // Shows nothing until the next movie asks for a size.
  void Hide();

  Window window() const { return window_; }
  const XSurface& picture() const { return *picture_; }

  // An event of this window, or a key press meant for it; the pointer's place
  // in a picture that is smaller than the window is told as one of the picture.
  // Whether the plug-in handled it.
  bool Forward(XEvent* event);

 protected:
  ~XSite() override;
  IZEMVideoSurface* Surface() override { return picture_.get(); }

 private:
  Display* display_;
  Window window_;
  Ref<XSurface> picture_;
  _QKxSize movieSize_{0, 0};
  _QKxSize area_{0, 0};
  _QKxRect placed_{0, 0, 0, 0};
  bool shown_ = false;
  bool drawing_ = false;
};

}  // namespace vexel::client
