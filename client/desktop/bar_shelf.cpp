#include "client/desktop/bar_shelf.h"

#include "client/desktop/pointer.h"

namespace vexel::client {

namespace {

constexpr uint32_t kRestMs = 2500;  // without a movement of the pointer
constexpr int kEdge = 3;            // pixels

void ShowPointer(GtkWidget* widget, bool show) {
  GdkWindow* window = gtk_widget_get_window(gtk_widget_get_toplevel(widget));
  GdkCursor* none =
      show ? nullptr : gdk_cursor_new_for_display(gdk_display_get_default(), GDK_BLANK_CURSOR);
  gdk_window_set_cursor(window, none);
  if (none) g_object_unref(none);
}

GtkWindow* WindowOf(GtkWidget* widget) {
  return GTK_WINDOW(gtk_widget_get_toplevel(widget));
}

}  // namespace

BarShelf::BarShelf(EventLoop* loop, GtkOverlay* overlay, GtkWidget* area, GtkWidget* bar)
    : loop_(loop), area_(area), holder_(gtk_event_box_new()) {
  gtk_style_context_add_class(gtk_widget_get_style_context(holder_), GTK_STYLE_CLASS_BACKGROUND);
  gtk_container_add(GTK_CONTAINER(holder_), bar);
  gtk_widget_set_valign(holder_, GTK_ALIGN_END);
  gtk_overlay_add_overlay(overlay, holder_);
  gtk_widget_show(holder_);
}

// The movie is a window of the server's, so what lies over it must be one, too.
void BarShelf::Raise() {
  GdkWindow* below = gtk_widget_get_window(area_);
  GdkWindow* bar = gtk_widget_get_window(holder_);
  while (gdk_window_get_parent(bar) != gdk_window_get_parent(below))
    bar = gdk_window_get_parent(bar);
  gdk_window_ensure_native(bar);
  gdk_window_raise(bar);
}

bool BarShelf::Lies() const {
  return place_ == BarPlace::kHides || (place_ == BarPlace::kHidesInFullScreen && fullScreen_);
}

int BarShelf::Room() const {
  if (Lies()) return 0;
  int height = 0;
  gtk_widget_get_preferred_height(holder_, nullptr, &height);
  return height;
}

void BarShelf::Place() {
  gtk_widget_set_margin_bottom(area_, Room());
  Appear();
}

void BarShelf::SetPlace(BarPlace place) {
  place_ = place;
  Place();
}

void BarShelf::SetFullScreen(bool on) {
  fullScreen_ = on;
  if (!on) ShowPointer(area_, true);
  Place();
}

void BarShelf::SetNeed(const Need& need) {
  if (need == need_) return;
  const bool comes = (need.waits && !need_.waits) || (need.stands && !need_.stands);
  const bool goes = need.forUser && need_.waits && !need.waits;
  need_ = need;
  if (comes) Appear();
  if (goes) Hide();
  RestLater();
}

void BarShelf::Moved(bool dragging) {
  if (fullScreen_) ShowPointer(area_, true);
  RestLater();
  if (dragging) return;
  if ((pressed_ || need_.forUser) && !PointerIsAtEdge()) return;
  Appear();
}

void BarShelf::Pressed() {
  pressed_ = true;
  DropFocus();
  if (!need_.waits) Hide();
}

void BarShelf::TakeFocus() {
  Appear();
  gtk_widget_child_focus(holder_, GTK_DIR_TAB_FORWARD);
  gtk_window_set_focus_visible(WindowOf(area_), TRUE);
}

void BarShelf::DropFocus() {
  if (HasFocus()) gtk_window_set_focus(WindowOf(area_), nullptr);
}

bool BarShelf::HasFocus() const {
  GtkWindow* window = WindowOf(area_);
  GtkWidget* focus = gtk_window_get_focus(window);
  return focus && gtk_window_get_focus_visible(window) && gtk_widget_is_ancestor(focus, holder_);
}

void BarShelf::Appear() {
  if (!gtk_widget_get_visible(holder_)) gtk_widget_show(holder_);
  RestLater();
}

void BarShelf::Hide() {
  if (Lies()) gtk_widget_hide(holder_);
}

void BarShelf::RestLater() {
  rest_ = loop_->After(kRestMs, [this] { Rest(); });
}

void BarShelf::Rest() {
  if (gtk_grab_get_current() || PointerIsOverBar()) return RestLater();
  if (fullScreen_) ShowPointer(area_, false);
  const bool stays = need_.waits || HasFocus() || (need_.stands && !need_.forUser && !pressed_);
  if (stays) return RestLater();
  Hide();
}

bool BarShelf::PointerIsOverBar() const {
  if (!gtk_widget_get_visible(holder_)) return false;
  int x = 0, y = 0;
  PointerAt(gtk_widget_get_window(holder_), &x, &y);
  return x >= 0 && x < gtk_widget_get_allocated_width(holder_) && y >= 0 &&
         y < gtk_widget_get_allocated_height(holder_);
}

bool BarShelf::PointerIsAtEdge() const {
  int x = 0, y = 0;
  PointerAt(gtk_widget_get_window(area_), &x, &y);
  return y >= gtk_widget_get_allocated_height(area_) - kEdge;
}

}  // namespace vexel::client
