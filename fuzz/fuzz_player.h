// A player on a small buffer, with a clock that stands still unless moved.
#pragma once

#include "player/splayer.h"

namespace vexel::fuzz {

inline constexpr int32_t kViewWidth = 64;
inline constexpr int32_t kViewHeight = 48;

class FuzzPlayer : public SPlayer {
 public:
  explicit FuzzPlayer(int32_t format = pix32);
  ~FuzzPlayer() override;

  // Repaints what is dirty; with `all`, the whole view.
  void Redraw(bool all = false);
  void SetQuality(bool high);
  // Moves the tick clock and plays to `ms`.
  void PlayTo(uint32_t ms);

  void CheckUpdate() override {}
  void UpdateScreen() override { Redraw(); }
  bool StartTimer() override { return true; }
  void StopTimer() override {}
  void ClientRect(SRECT* out) override { *out = {0, kViewWidth, 0, kViewHeight}; }
  void XSetCapture() override {}
  void XReleaseCapture() override {}
  void GetURL(const char*, const char*, const char*, int32_t) override {}
  void ShowStatus(const char*) override {}
  void UpdateCursor(int32_t) override {}
  void CloseStream(ScriptPlayer*) override {}
  void XStopPlay() override {}
  void XPlay() override {}
  void XSeek(int32_t) override {}
};

}  // namespace vexel::fuzz
