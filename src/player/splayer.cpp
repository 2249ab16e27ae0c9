// Construction of a player.
#include "player/splayer.h"

namespace vexel {

SPlayer::SPlayer() {
  RectSetEmpty(&zoomRect);
  // The base has a `display` of its own, a pointer, as every timeline has. The
  // stage ends before the base does, and clears it then.
  ScriptThread::display = &display;
  display.AddThread(this);
  splayer = this;
  display.SetBits(&bits);
}

}  // namespace vexel
