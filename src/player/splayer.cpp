// Construction and end of a player.
#include "player/splayer.h"

namespace vexel {

SPlayer::SPlayer() {
  RectSetEmpty(&zoomRect);
  // The base has a `display` of its own, a pointer, as every timeline has.
  ScriptThread::display = &display;
  display.AddThread(this);
  splayer = this;
  display.SetBits(&bits);
}

// The stage goes before the base does. It clears the base's pointer to it when
// it goes, so that nothing of the base reaches for a tree that is no more.
SPlayer::~SPlayer() {
  FreeLayers();
}

}  // namespace vexel
