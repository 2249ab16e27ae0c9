// Events of the X server on their way to the movie or to the window: GTK knows
// nothing of the movie's X window, so a filter takes that window's events, and
// the key presses that are the movie's, out of GTK's queue.
#pragma once

#include <X11/Xlib.h>
#include <gtk/gtk.h>

#include <functional>

#include "client/desktop/x_site.h"

namespace vexel::client {

class SiteEvents {
 public:
  struct Actions {
    // The pointer over the movie; with a button down; it leaves the movie.
    std::function<void(bool dragging)> moved;
    std::function<void()> pressed;
    std::function<void()> left;
    std::function<void()> menu;  // the right button, let go there; inside the filter
    // Escape, before anybody else gets it. Whether it was of use.
    std::function<bool()> escape;
    // Whether keys are for a part of the window now, which then gets them all.
    std::function<bool()> keysAreTaken;
  };
  // Both outlive this.
  SiteEvents(GtkWidget* window, XSite* site, Actions actions);
  ~SiteEvents();
  SiteEvents(const SiteEvents&) = delete;
  SiteEvents& operator=(const SiteEvents&) = delete;

  // The keyboard is the window's again.
  void TakeKeysBack() { movieHasKeys_ = false; }

 private:
  static GdkFilterReturn Filter(GdkXEvent* event, GdkEvent*, gpointer self);
  GdkFilterReturn Take(XEvent* event);
  GdkFilterReturn TakeKey(XEvent* event);
  GdkFilterReturn TakePress(XEvent* event);
  bool IsOurs(Window window) const;

  GtkWidget* window_;
  XSite* site_;
  Actions actions_;
  // Set by a press on the movie: it gets all keys, and the window's own ones
  // are left to it until Escape or a press elsewhere.
  bool movieHasKeys_ = false;
};

}  // namespace vexel::client
