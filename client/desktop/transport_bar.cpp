#include "client/desktop/transport_bar.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>

#include "client/desktop/connect.h"

namespace vexel::client {

namespace {

struct SpeedRow {
  const char* text;
  double speed;
};
constexpr SpeedRow kSpeeds[] = {
    {"¼×", kSlowest}, {"½×", 0.5}, {"1×", 1}, {"2×", 2}, {"4×", kFastest}};

constexpr int kMargin = 4;  // pixels
// By the keyboard, and by the pointer's wheel.
constexpr double kKeyStepMs = 1000, kPageStepMs = 5000;

// In the table; -1: not there.
int RowOf(double speed) {
  const auto* const row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                       [speed](const SpeedRow& one) { return one.speed == speed; });
  return row == std::end(kSpeeds) ? -1 : static_cast<int>(row - kSpeeds);
}

// For whoever does not see the icon.
void SetAccessibleName(GtkWidget* widget, const char* name) {
  atk_object_set_name(gtk_widget_get_accessible(widget), name);
}

}  // namespace

std::string TimeText(uint32_t ms) {
  const unsigned seconds = ms / 1000;
  char text[32];
  if (seconds >= 3600) {
    std::snprintf(text, sizeof text, "%u:%02u:%02u", seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
  } else {
    std::snprintf(text, sizeof text, "%u:%02u", seconds / 60, seconds % 60);
  }
  return text;
}

GtkWidget* TransportBar::Button(const char* icon, const char* name, const char* tip,
                                std::function<void()> click) {
  GtkWidget* button = gtk_button_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON);
  gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
  // Keys are the movie's and the window's.
  gtk_widget_set_focus_on_click(button, FALSE);
  gtk_widget_set_tooltip_text(button, tip);
  SetAccessibleName(button, tip);
  gtk_widget_set_name(button, name);
  Connect(button, "clicked", std::move(click));
  gtk_box_pack_start(GTK_BOX(bar_), button, FALSE, FALSE, 0);
  return button;
}

TransportBar::TransportBar(Actions actions) : actions_(std::move(actions)) {
  bar_ = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kMargin);
  gtk_container_set_border_width(GTK_CONTAINER(bar_), kMargin);
  GtkWidget* back = Button("go-previous-symbolic", "back", "One frame back (comma)",
                           [this] { actions_.step(-1); });
  play_ = Button("media-playback-start-symbolic", "play", "Play or pause (space)",
                 [this] { actions_.playOrPause(); });
  GtkWidget* forward = Button("go-next-symbolic", "forward", "One frame on (full stop)",
                              [this] { actions_.step(1); });

  seek_ = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 1, 1);
  gtk_scale_set_draw_value(GTK_SCALE(seek_), FALSE);
  gtk_widget_set_focus_on_click(seek_, FALSE);
  gtk_range_set_increments(GTK_RANGE(seek_), kKeyStepMs, kPageStepMs);
  gtk_range_set_restrict_to_fill_level(GTK_RANGE(seek_), FALSE);
  gtk_range_set_show_fill_level(GTK_RANGE(seek_), TRUE);
  gtk_widget_set_size_request(seek_, 80, -1);
  SetAccessibleName(seek_, "Place in the movie");
  gtk_box_pack_start(GTK_BOX(bar_), seek_, TRUE, TRUE, 0);
  g_signal_connect(seek_, "value-changed", G_CALLBACK(+[](GtkRange* range, gpointer self) {
                     auto* bar = static_cast<TransportBar*>(self);
                     if (bar->showing_) return;
                     bar->shown_.reset();
                     bar->actions_.seek(static_cast<uint32_t>(gtk_range_get_value(range)));
                   }),
                   this);

  time_ = gtk_label_new("0:00 / 0:00");
  gtk_widget_set_margin_end(time_, kMargin);
  gtk_box_pack_start(GTK_BOX(bar_), time_, FALSE, FALSE, 0);

  speed_ = gtk_combo_box_text_new();
  for (const SpeedRow& row : kSpeeds)
    gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(speed_), row.text);
  gtk_widget_set_focus_on_click(speed_, FALSE);
  gtk_widget_set_tooltip_text(speed_, "Speed");
  SetAccessibleName(speed_, "Speed");
  gtk_box_pack_start(GTK_BOX(bar_), speed_, FALSE, FALSE, 0);
  g_signal_connect(speed_, "changed", G_CALLBACK(+[](GtkComboBox* box, gpointer self) {
                     auto* bar = static_cast<TransportBar*>(self);
                     const int row = gtk_combo_box_get_active(box);
                     if (bar->showing_ || row < 0) return;
                     bar->shown_.reset();
                     bar->actions_.setSpeed(kSpeeds[row].speed);
                   }),
                   this);

  loop_ = gtk_toggle_button_new();
  gtk_button_set_image(
      GTK_BUTTON(loop_),
      gtk_image_new_from_icon_name("media-playlist-repeat-symbolic", GTK_ICON_SIZE_BUTTON));
  gtk_button_set_relief(GTK_BUTTON(loop_), GTK_RELIEF_NONE);
  gtk_widget_set_focus_on_click(loop_, FALSE);
  gtk_widget_set_tooltip_text(loop_, "Begin again at the end");
  SetAccessibleName(loop_, "Begin again at the end");
  gtk_box_pack_start(GTK_BOX(bar_), loop_, FALSE, FALSE, 0);
  g_signal_connect(loop_, "toggled", G_CALLBACK(+[](GtkToggleButton* button, gpointer self) {
                     auto* bar = static_cast<TransportBar*>(self);
                     if (bar->showing_) return;
                     bar->shown_.reset();
                     bar->actions_.setLoop(gtk_toggle_button_get_active(button));
                   }),
                   this);
  GtkWidget* full = Button("view-fullscreen-symbolic", "full", "Full screen (F, F11)",
                           [this] { actions_.fullScreen(); });
  gtk_widget_show_all(bar_);
  spare_ = {speed_, back, forward, loop_, time_, full, seek_};
}

void TransportBar::Fit(int width) {
  for (GtkWidget* one : spare_) gtk_widget_show(one);
  for (GtkWidget* one : spare_) {
    int least = 0;
    gtk_widget_get_preferred_width(bar_, &least, nullptr);
    if (least <= width) break;
    gtk_widget_hide(one);
  }
}

void TransportBar::Show(const State& state) {
  const uint32_t length = std::max(state.length, 1u);
  const bool hasPlaces = HasCourse(length);
  State next = state;
  if (!hasPlaces) next.position -= next.position % 1000;  // which only the text tells
  // Setting what is set already would lay the bar out anew and draw it.
  if (shown_ == next) return;
  shown_ = next;
  showing_ = true;
  gtk_widget_set_sensitive(bar_, state.playable);
  if (running_ != state.running) {
    running_ = state.running;
    gtk_button_set_image(GTK_BUTTON(play_),
                         gtk_image_new_from_icon_name(running_ ? "media-playback-pause-symbolic"
                                                               : "media-playback-start-symbolic",
                                                      GTK_ICON_SIZE_BUTTON));
  }
  gtk_widget_set_sensitive(seek_, hasPlaces);
  GtkRange* range = GTK_RANGE(seek_);
  gtk_range_set_range(range, 0, length);
  gtk_range_set_value(range, hasPlaces ? std::min(state.position, length) : 0);
  gtk_combo_box_set_active(GTK_COMBO_BOX(speed_), RowOf(state.speed));
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(loop_), state.loops);
  gtk_range_set_fill_level(range, state.loading ? length * (state.loadedPercent / 100.0) : length);
  std::string text = TimeText(state.position) + " / " + TimeText(state.length);
  if (state.loading) {
    text = (state.buffering ? "Waiting, " : "Loading, ") + std::to_string(state.loadedPercent) +
           " %   " + text;
  }
  if (text != gtk_label_get_text(GTK_LABEL(time_)))
    gtk_label_set_text(GTK_LABEL(time_), text.c_str());
  showing_ = false;
}

}  // namespace vexel::client
