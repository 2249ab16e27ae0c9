// Watching a movie play, for tools. The stage has at most one observer, and
// none costs a test for each tag. An observer looks on only: it changes
// nothing of the player, and calls nothing that runs tags or actions.
#pragma once

#include "movie/fwd.h"

namespace vexel {

class PlayObserver {
 public:
  // A tag is about to run: its code is `thread`'s tagCode, its header lies at
  // tagPos, and its body from pos to tagEnd, offsets in the script.
  virtual void OnTag(const ScriptThread& thread) = 0;
  // `thread` has completed the frame curFrame, on its way to another one if
  // `seeking` is set.
  virtual void OnFrame(const ScriptThread& thread) = 0;

 protected:
  ~PlayObserver() = default;
};

}  // namespace vexel
