// How large the window is: as each movie wants it, or as it was the last time.
#pragma once

#include <gtk/gtk.h>

#include <optional>

#include "client/core/site.h"
#include "client/desktop/settings.h"

namespace vexel::client {

constexpr int kSmallest = 120;  // of a side of the movie's place

// Sizes are of the window's units, of which a pixel of a movie may be a part.
class WindowFrame {
 public:
  // Both outlive this. Sets the window's first size.
  WindowFrame(GtkWindow* window, Settings* settings);
  WindowFrame(const WindowFrame&) = delete;
  WindowFrame& operator=(const WindowFrame&) = delete;

  // Makes room for a movie at its own size, pixels, or as much of it as is
  // sensible, and for what is `besides` it below each other.
  void Follow(_QKxSize movie, int besides);
  // Makes it so much taller, so that the movie keeps its size; or the movie
  // gives the room if the window has to keep its own.
  void Grow(int height);
  // Keeps the size for the next time, if the user wants that.
  void Keep() const;

 private:
  struct Size {
    int width, height;
    bool operator==(const Size&) const = default;
  };
  bool IsFree() const;  // to have any size
  Size Now() const;
  void Resize(Size size);

  GtkWindow* window_;
  Settings* settings_;
  // What the window manager was asked for and has not answered yet, and the size
  // before.
  std::optional<Size> asked_;
  Size before_{0, 0};
};

}  // namespace vexel::client
