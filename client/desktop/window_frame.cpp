#include "client/desktop/window_frame.h"

#include <algorithm>
#include <utility>

namespace vexel::client {

namespace {

constexpr std::pair kUsual{640, 400};
constexpr double kShareOfScreen = 0.9;  // that a new movie's window takes at most

}  // namespace

WindowFrame::WindowFrame(GtkWindow* window, Settings* settings)
    : window_(window), settings_(settings) {
  const auto [width, height] = settings_->keepsSize() ? settings_->size().value_or(kUsual) : kUsual;
  gtk_window_set_default_size(window_, width, height);
  g_signal_connect(window_, "configure-event",
                   G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer data) {
                     auto* self = static_cast<WindowFrame*>(data);
                     if (self->Now() != self->before_) self->asked_.reset();
                     return gboolean{FALSE};
                   }),
                   this);
}

WindowFrame::Size WindowFrame::Now() const {
  Size size{0, 0};
  gtk_window_get_size(window_, &size.width, &size.height);
  return size;
}

void WindowFrame::Resize(Size size) {
  before_ = Now();
  asked_.reset();
  if (size != before_) asked_ = size;
  gtk_window_resize(window_, size.width, size.height);
}

bool WindowFrame::IsFree() const {
  constexpr int kFixed = GDK_WINDOW_STATE_FULLSCREEN | GDK_WINDOW_STATE_MAXIMIZED;
  return (gdk_window_get_state(gtk_widget_get_window(GTK_WIDGET(window_))) & kFixed) == 0;
}

void WindowFrame::Follow(_QKxSize movie, int besides) {
  if (!IsFree() || movie.width <= 0 || movie.height <= 0) return;
  GdkRectangle screen;
  GdkWindow* window = gtk_widget_get_window(GTK_WIDGET(window_));
  gdk_monitor_get_workarea(gdk_display_get_monitor_at_window(gdk_display_get_default(), window),
                           &screen);
  const int scale = gdk_window_get_scale_factor(window);
  const double wish = std::min({1.0 / scale, screen.width * kShareOfScreen / movie.width,
                                (screen.height * kShareOfScreen - besides) / movie.height});
  Resize({std::max(kSmallest, static_cast<int>(movie.width * wish + 0.5)),
          std::max(kSmallest, static_cast<int>(movie.height * wish + 0.5)) + besides});
}

void WindowFrame::Grow(int height) {
  if (!IsFree() || height == 0 || settings_->keepsSize()) return;
  const Size size = asked_.value_or(Now());
  Resize({size.width, std::max(kSmallest, size.height + height)});
}

void WindowFrame::Keep() const {
  if (!settings_->keepsSize() || !IsFree()) return;
  const Size size = Now();
  settings_->SetSize(size.width, size.height);
}

}  // namespace vexel::client
