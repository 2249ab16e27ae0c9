// X events of a made-up window, with no X server: what the pointer does, and
// key presses that XLookupString understands. The headers of X stay out of
// here, since they make macros of common words.
#pragma once

#include <memory>

namespace vexel::client {

class XEvents {
 public:
  XEvents();
  ~XEvents();
  XEvents(const XEvents&) = delete;
  XEvents& operator=(const XEvents&) = delete;

  // Each is an XEvent, good until the next one is asked for.
  //
  // A press of the key that makes `keysym`, one of X's symbols; null if this
  // keyboard has no such key.
  void* Key(unsigned long keysym, bool shift, bool control);
  // Button 1 at a pixel of the site.
  void* Button(bool press, int x, int y);
  void* Motion(int x, int y);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vexel::client
