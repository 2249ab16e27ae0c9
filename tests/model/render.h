// A movie played and drawn by the model.
#pragma once

#include <functional>
#include <memory>

#include "stage.h"

namespace vexel::model {

struct Options {
  int width = 0, height = 0;  // 0: the movie's own size
  bool high = true;
  int format = pix32;
};

class Player {
 public:
  Player(const std::vector<u8>& file, const Options& options);

  bool Good() const { return movie.gotHeader && movie.main.scriptErr == 0; }
  int FrameCount() const { return movie.main.numFrames; }
  void Step();            // every timeline, once
  void DoPlay(u32 time);  // the run loop, from its first call on
  void Redraw() { stage.Update(); }
  Object* HitTest(Point pixel) { return stage.HitTest(pixel); }
  // Pointer and keys, in pixels and key codes; `now` in milliseconds.
  void MouseDown(Point pixel, u32 now);
  void MouseMove(Point pixel, bool down, u32 now);
  void MouseUp(Point pixel, u32 now);
  bool HandleKeyDown(int key, int modifiers);
  void BlinkCursor();
  void Seek(int frame) { movie.main.DrawFrame(frame, true); }
  Stage& TheStage() { return stage; }
  const Buffer& Bits() const { return bits; }
  const std::vector<Rect>& Painted() const { return stage.painted; }

 private:
  Buffer bits;
  Movie movie;
  Stage stage;  // goes first, the objects hold characters of the movie
  bool loaded = false, firstPlay = true, high = true;
  u32 lastPlayFrames = 0;
  Rect client;
  void SetCamera();
  bool Selecting() const;
  void LoseFocus();
  void DoButton(Point pixel, bool down, u32 now);
  void Tab(bool back);
  void FocusButton(Object* o);
};

}  // namespace vexel::model
