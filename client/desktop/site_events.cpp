#include "client/desktop/site_events.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <gdk/gdkx.h>

#include <utility>

#include "client/desktop/shortcuts.h"

namespace vexel::client {

SiteEvents::SiteEvents(GtkWidget* window, XSite* site, Actions actions)
    : window_(window), site_(site), actions_(std::move(actions)) {
  gdk_window_add_filter(nullptr, Filter, this);
}

SiteEvents::~SiteEvents() {
  gdk_window_remove_filter(nullptr, Filter, this);
}

GdkFilterReturn SiteEvents::Filter(GdkXEvent* event, GdkEvent*, gpointer self) {
  return static_cast<SiteEvents*>(self)->Take(static_cast<XEvent*>(event));
}

bool SiteEvents::IsOurs(Window window) const {
  if (window == site_->window()) return true;
  GdkWindow* known = gdk_x11_window_lookup_for_display(gdk_display_get_default(), window);
  return known && gdk_window_get_toplevel(known) == gtk_widget_get_window(window_);
}

GdkFilterReturn SiteEvents::Take(XEvent* event) {
  const bool onSite = event->xany.window == site_->window();
  if (event->type == KeyPress)
    return IsOurs(event->xkey.window) ? TakeKey(event) : GDK_FILTER_CONTINUE;
  if (event->type == ButtonPress && TakePress(event) == GDK_FILTER_CONTINUE)
    return GDK_FILTER_CONTINUE;
  if (!onSite) return GDK_FILTER_CONTINUE;
  switch (event->type) {
    case ButtonRelease:
      if (event->xbutton.button == Button3) actions_.menu();
      break;
    case MotionNotify:
      actions_.moved((event->xmotion.state & (Button1Mask | Button2Mask | Button3Mask)) != 0);
      break;
    case LeaveNotify:
      // A menu takes the pointer without its leaving.
      if (event->xcrossing.mode != NotifyGrab) actions_.left();
      return GDK_FILTER_REMOVE;
    case ButtonPress:
    case Expose:
      break;
    default:
      return GDK_FILTER_REMOVE;
  }
  site_->Forward(event);
  return GDK_FILTER_REMOVE;
}

// Whose it is; does not hand it on.
GdkFilterReturn SiteEvents::TakePress(XEvent* event) {
  if (event->xbutton.window != site_->window()) {
    if (IsOurs(event->xbutton.window)) movieHasKeys_ = false;
    return GDK_FILTER_CONTINUE;
  }
  // Menus that are open hear of a press outside.
  if (gtk_grab_get_current()) return GDK_FILTER_CONTINUE;
  movieHasKeys_ = true;
  actions_.pressed();
  if (!gtk_window_is_active(GTK_WINDOW(window_)))
    gdk_window_focus(gtk_widget_get_window(window_), static_cast<guint32>(event->xbutton.time));
  return GDK_FILTER_REMOVE;
}

GdkFilterReturn SiteEvents::TakeKey(XEvent* event) {
  const KeySym key = XLookupKeysym(&event->xkey, 0);
  const bool grabbed = gtk_grab_get_current() != nullptr;
  if (!grabbed && key == XK_Escape) {
    if (actions_.escape() || std::exchange(movieHasKeys_, false)) return GDK_FILTER_REMOVE;
  }
  const bool taken = grabbed || actions_.keysAreTaken();
  const bool shortcut =
      IsShortcut(static_cast<unsigned>(key)) || (event->xkey.state & (ControlMask | Mod1Mask)) != 0;
  if (!taken && (movieHasKeys_ || !shortcut) && site_->Forward(event)) return GDK_FILTER_REMOVE;
  // GTK takes keys of its own windows only.
  if (event->xkey.window == site_->window())
    event->xkey.window = GDK_WINDOW_XID(gtk_widget_get_window(window_));
  return GDK_FILTER_CONTINUE;
}

}  // namespace vexel::client
