// The user's one pointer.
#pragma once

#include <gdk/gdk.h>

namespace vexel::client {

inline GdkDevice* Pointer(GdkWindow* window) {
  return gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_window_get_display(window)));
}

// Its place in a window, pixels.
inline void PointerAt(GdkWindow* window, int* x, int* y) {
  gdk_window_get_device_position(window, Pointer(window), x, y, nullptr);
}

}  // namespace vexel::client
