// The bar below the movie: play, place, time, speed, loop, full screen.
#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vexel::client {

// Of what the user can choose, as a multiple of the movie's own speed.
constexpr double kSlowest = 0.25, kFastest = 4;

class TransportBar {
 public:
  // What the user does with it.
  struct Actions {
    std::function<void()> playOrPause;
    std::function<void(uint32_t ms)> seek;
    std::function<void(int frames)> step;
    std::function<void(double speed)> setSpeed;
    std::function<void(bool loop)> setLoop;
    std::function<void()> fullScreen;
  };
  explicit TransportBar(Actions actions);
  TransportBar(const TransportBar&) = delete;
  TransportBar& operator=(const TransportBar&) = delete;

  // Owned by whatever it is put into.
  GtkWidget* widget() const { return bar_; }

  struct State {
    bool playable = false;  // false greys all of it
    bool running = false;
    uint32_t position = 0, length = 0;  // milliseconds
    int loadedPercent = 100;
    bool loading = false;    // shows how much is in
    bool buffering = false;  // and that it is waited for
    double speed = 1;        // no row is chosen if it is none of the bar's
    bool loops = true;

    bool operator==(const State&) const = default;
  };
  void Show(const State& state);

  // Leaves out what has no room in so many units of the window's.
  void Fit(int width);

 private:
  GtkWidget* Button(const char* icon, const char* name, const char* tip,
                    std::function<void()> click);

  Actions actions_;
  GtkWidget* bar_;
  GtkWidget* play_;
  GtkWidget* seek_;
  GtkWidget* time_;
  GtkWidget* speed_;
  GtkWidget* loop_;
  std::vector<GtkWidget*> spare_;  // what is left out first, in this order
  bool showing_ = false;           // a value that Show sets is not the user's
  bool running_ = false;
  std::optional<State> shown_;  // not once the user has moved something
};

// Movies that wait for their user last less than a second: their clock tells
// nothing. Milliseconds.
constexpr bool HasCourse(uint32_t length) {
  return length >= 1000;
}

// "1:05", with hours "1:02:05".
std::string TimeText(uint32_t ms);

}  // namespace vexel::client
