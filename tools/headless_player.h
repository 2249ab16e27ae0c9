// A player without a window: it draws into a buffer when it is told to, on a
// clock that stands still unless it is moved.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/rect.h"
#include "movie_file.h"
#include "platform_call.h"
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

// How a movie is played, and who is told of it; none of this changes a picture
// but the seed, and that only of a movie that asks for random numbers.
struct PlayOptions {
  uint32_t seed = 1;
  PlatformListener* calls = nullptr;  // not owned
  PlayObserver* observer = nullptr;   // not owned
  ActionTrace* actions = nullptr;     // not owned
};

// One at a time, as the clipboard is one for the process.
class HeadlessPlayer : private StandingClock, public SPlayer {
 public:
  // Takes the whole movie in, as far as it can be shown, runs the actions of
  // its first frame, and draws nothing. Throws Failure for a size out of range
  // and without memory.
  HeadlessPlayer(const MovieFile& movie, const ViewOptions& view, const PlayOptions& play = {});
  ~HeadlessPlayer() override;

  // Repaints what is dirty.
  void Redraw();

  // Steps every timeline `count` times, running the actions of each step.
  void Step(int64_t count);

  // Answers a paste that a text field waits for. False if none does, or if it
  // has lost the focus since.
  bool Paste(const std::string& text);

  // What the last Redraw painted, in pixels, xmax and ymax exclusive.
  const std::vector<SRECT>& painted() const { return painted_; }

  // The screen is a buffer that is looked at when a redraw is over, so there
  // is nothing to do at a convenient moment or at once; nor is there a pointer,
  // a browser or a host's clock. Every call is told to who listens.
  void CheckUpdate() override;
  void UpdateScreen() override;
  bool StartTimer() override;
  void StopTimer() override;
  void ClientRect(SRECT* out) override;
  void XSetCapture() override;
  void XReleaseCapture() override;
  void GetURL(const char* url, const char* target, const char* postData, int32_t flags) override;
  void ShowStatus(const char* text) override;
  void UpdateCursor(int32_t cursor) override;
  void CloseStream(ScriptPlayer* movie) override;
  void XStopPlay() override;
  void XPlay() override;
  void XSeek(int32_t frame) override;

 private:
  void NotePaint();
  void Tell(const PlatformCall& call);
  void TellOfScreen(const char* name);
  static void SetClipboard(const char* text);
  static void StartPaste(SPlayer* player);

  static inline HeadlessPlayer* s_copying = nullptr;  // whose texts the clipboard takes

  SRECT client_;
  PlatformListener* calls_;
  std::vector<SRECT> painted_;
  bool pasteWaits_ = false;
};

}  // namespace vexel::tools
