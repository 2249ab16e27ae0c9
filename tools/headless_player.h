// A player without a window: it draws into a buffer when it is told to, on a
// clock that stands still unless it is moved.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/rect.h"
#include "movie_file.h"
#include "player/splayer.h"

namespace vexel::tools {

// What the view of a movie can be chosen to be.
struct ViewOptions {
  int32_t width = 0;  // of the client rectangle in pixels; 0 for the movie's own size
  int32_t height = 0;
  bool highQuality = true;
  int32_t pixelFormat = pix32;
};

// The virtual tick clock, which GetTime reads, in milliseconds. It stands at
// kFirstTick when a player is made.
inline constexpr uint32_t kFirstTick = 1000;
void SetTick(uint32_t tick);
void AdvanceTick(uint32_t ms);

// A base of its own, so that the clock stands before the player is made: the
// player notes the tick of its construction.
struct StandingClock {
  StandingClock();
};

class HeadlessPlayer : private StandingClock, public SPlayer {
 public:
  // Takes the whole movie in, as far as it can be shown, and draws nothing.
  // Throws Failure for a size out of range and without memory.
  HeadlessPlayer(const MovieFile& movie, const ViewOptions& view);
  ~HeadlessPlayer() override;

  // Repaints what is dirty.
  void Redraw();

  // Steps every timeline `count` times, running the actions of each step.
  void Step(int64_t count);

  // As property 16 does: rebuilds the camera.
  void SetQuality(bool high);

  // What the last Redraw painted, in pixels, xmax and ymax exclusive.
  const std::vector<SRECT>& painted() const { return painted_; }

  // The screen is a buffer that is looked at when a redraw is over, so there
  // is nothing to do at a convenient moment or at once.
  void CheckUpdate() override {}
  void UpdateScreen() override {}
  bool StartTimer() override { return true; }
  void StopTimer() override {}
  void ClientRect(SRECT* out) override { *out = client_; }
  // There is no pointer, no browser and no host's clock here.
  void XSetCapture() override {}
  void XReleaseCapture() override {}
  void GetURL(const char*, const char*, const char*, int32_t) override {}
  void ShowStatus(const char*) override {}
  void UpdateCursor(int32_t) override {}
  void CloseStream(ScriptPlayer*) override {}
  void XStopPlay() override {}
  void XPlay() override {}
  void XSeek(int32_t) override {}

 private:
  void NotePaint();

  SRECT client_;
  std::vector<SRECT> painted_;
};

}  // namespace vexel::tools
