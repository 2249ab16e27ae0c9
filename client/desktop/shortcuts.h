// The keys without a modifier that are the window's, as long as the movie does
// not have the keyboard.
#pragma once

#include <gdk/gdk.h>

namespace vexel::client {

constexpr unsigned kFullKey = GDK_KEY_f;
constexpr unsigned kBackKey = GDK_KEY_comma;
constexpr unsigned kForwardKey = GDK_KEY_period;
constexpr unsigned kPlayKey = GDK_KEY_space;

// A key as it is without Shift.
constexpr bool IsShortcut(unsigned key) {
  return key == kFullKey || key == kBackKey || key == kForwardKey || key == kPlayKey;
}

}  // namespace vexel::client
