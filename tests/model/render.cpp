// The player's core: loading, the run loop and the camera.
#include "render.h"

namespace vexel::model {

Player::Player(const std::vector<u8>& file, const Options& options) {
  movie.stage = &stage;
  movie.main.stage = &stage;
  stage.threads.push_back(&movie.main);
  high = options.high;
  int w = options.width, h = options.height;
  if (w == 0 || h == 0) {
    Movie probe;
    probe.Push(file);
    w = (probe.frame.xmax - probe.frame.xmin) / 20;
    h = (probe.frame.ymax - probe.frame.ymin) / 20;
    if (w < 1) w = 1;
    if (h < 1) h = 1;
  }
  client = Rect{0, w, 0, h};
  // The stage gets its buffer before the buffer has pixels, and so a first dirty
  // rectangle of 2000 units a side.
  stage.SetBits(nullptr);
  bits.Create(options.format, w, h);
  stage.bits = &bits;
  SetCamera();
  stage.ModifyCamera();

  movie.Push(file);
  const int r = movie.main.DrawFrame(0, true);
  if (r == 0 || movie.complete) loaded = true;
  SetCamera();
}

void Player::SetCamera() {
  stage.animating = movie.main.numFrames > 1;
  stage.SetCamera(movie.frame, client, high, 0);
}

void Player::Step() {
  stage.StepThreads();
}

void Player::DoPlay(u32 time) {
  if (!loaded) return;
  const u32 t = (static_cast<u32>(movie.frameRate) >> 16) * time / 1000;
  i32 n;
  if (firstPlay) {
    n = static_cast<i32>(t + 1);
    firstPlay = false;
  } else {
    n = static_cast<i32>(t - lastPlayFrames);
  }
  lastPlayFrames = t;
  for (; n >= 1; --n) {
    bool playing = false;
    for (const Thread* thread : stage.threads) playing = playing || thread->playing;
    if (!playing) return;
    Step();
  }
}

}  // namespace vexel::model
