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
  gtk_window_resize(window_, std::max(kSmallest, static_cast<int>(movie.width * wish + 0.5)),
                    std::max(kSmallest, static_cast<int>(movie.height * wish + 0.5)) + besides);
}

void WindowFrame::Grow(int height) {
  if (!IsFree() || height == 0) return;
  int width = 0, before = 0;
  gtk_window_get_size(window_, &width, &before);
  gtk_window_resize(window_, width, std::max(kSmallest, before + height));
}

void WindowFrame::Keep() const {
  if (!settings_->keepsSize() || !IsFree()) return;
  int width = 0, height = 0;
  gtk_window_get_size(window_, &width, &height);
  settings_->SetSize(width, height);
}

}  // namespace vexel::client
