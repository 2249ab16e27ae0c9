// A player for tests: it draws into memory, its clock moves only when a test
// moves it, and it writes down what it is asked to do.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "author/types.h"
#include "player/splayer.h"
#include "player/text.h"
#include "raster/pixel_format.h"

namespace vexel::test {

// Before the player is made, which notes the tick of its construction.
struct TestClock {
  TestClock() {
    SetTickClock([] { return std::exchange(tick, tick + tickStep); });
    tick = 1000;
    tickStep = 0;
  }
  static inline uint32_t tick = 1000;   // what GetTime() answers
  static inline uint32_t tickStep = 0;  // how far the clock moves with each question
};

class TestPlayer : public TestClock, public SPlayer {
 public:
  // A client area of `width` x `height` pixels with a 32-bit buffer of that
  // size, its camera set up and everything dirty. Sides of 0 leave it without
  // pixels.
  explicit TestPlayer(int width = 100, int height = 100) : client{0, width, 0, height} {
    if (width > 0 && height > 0) {
      const bool made = bits.CreateBits(pix32, nullptr, width, height);
      (void)made;
    }
    SetCamera(kCameraOnly);
    display.ModifyCamera();
    calls.clear();
  }

  void CheckUpdate() override { calls += "CheckUpdate "; }
  void UpdateScreen() override { calls += "UpdateScreen "; }
  bool StartTimer() override {
    calls += "StartTimer ";
    return timerStarts;
  }
  void StopTimer() override { calls += "StopTimer "; }
  void ClientRect(SRECT* out) override { *out = client; }
  void XSetCapture() override { calls += "XSetCapture "; }
  void XReleaseCapture() override { calls += "XReleaseCapture "; }
  void GetURL(const char* url, const char* target, const char* postData, int32_t flags) override {
    calls += "GetURL ";
    requests.push_back(std::string(url) + " > " + target + (postData ? " < " : "") +
                       (postData ? postData : "") + (flags ? " #" + std::to_string(flags) : ""));
  }
  void ShowStatus(const char*) override { calls += "ShowStatus "; }
  void UpdateCursor(int32_t) override { calls += "UpdateCursor "; }
  void CloseStream(ScriptPlayer*) override { calls += "CloseStream "; }
  void XStopPlay() override { calls += "XStopPlay "; }
  void XPlay() override { calls += "XPlay "; }
  void XSeek(int32_t) override { calls += "XSeek "; }

  using SPlayer::Push;
  // The whole movie at once, as a feeder does it.
  void Push(std::span<const uint8_t> movie) {
    PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
    PushDataComplete();
  }

  // The pixel as 0xRRGGBB.
  uint32_t Pixel(int x, int y) const {
    uint32_t word;
    memcpy(&word, bits.baseAddr + y * bits.rowBytes + x * 4, sizeof word);
    return word & 0xFFFFFF;
  }

  // What was called since the last time, one name and a space each.
  std::string TakeCalls() { return std::exchange(calls, std::string()); }

  SRECT client;
  bool timerStarts = true;
  std::string calls;
  // The arguments of each GetURL: "url > window < postData #flags".
  std::vector<std::string> requests;
};

// Depths and names of an object's children, from the bottom: "1:a 2:b".
inline std::string Children(const SObject& parent) {
  std::string out;
  for (const SObject* child = parent.firstChild; child; child = child->next) {
    if (!out.empty()) out += ' ';
    out += std::to_string(child->depth);
    if (child->name) out += ':' + std::string(child->name);
  }
  return out;
}

}  // namespace vexel::test
