// Construction of a player, and what it tells each movie about itself.
#include "player/splayer.h"

#include <cstdlib>

#include "player/text.h"

namespace vexel {

SPlayer::SPlayer() : startTime(GetTime()) {
  RectSetEmpty(&zoomRect);
  // The base has a `display` of its own, a pointer, as every timeline has. The
  // stage ends before the base does, and clears it then.
  ScriptThread::display = &display;
  display.AddThread(this);
  splayer = this;
  display.SetBits(&bits);
  SetVersionVariable(this, this);
}

// What is left on the stage ends after the player's own members.
void SPlayer::TearDown() {
  FreeLayers();
  splayer = nullptr;
  free(buttons);
}

void SetVersionVariable(SPlayer*, ScriptPlayer* movie) {
  movie->SetVariable("$version", "UNIX 4,0,13,0");
}

}  // namespace vexel
