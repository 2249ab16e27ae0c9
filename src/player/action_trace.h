// What a tool sees of a run of actions.
#pragma once

#include <cstdint>

#include "movie/fwd.h"

namespace vexel {

class ScriptStack;

// An action that is about to be run, or skipped. All pointers are valid during
// the call only.
struct ActionStep {
  uint8_t code;
  bool skipped;              // by an action that waits for a frame
  const uint8_t* operands;   // behind the length
  int32_t operandSize;       // as the length says, cut to the block
  int32_t offset;            // of the action in its block
  const uint8_t* block;      // the block's first byte: tells blocks apart
  int32_t depth;             // 1, and 1 more inside each call of a frame
  ScriptThread* thread;      // the timeline that queued the block; null if deleted
  ScriptThread* target;      // what the action acts on; may be null
  const ScriptStack* stack;  // as the action finds it
};

// Set as SPlayer::actionTrace, which owns nothing. The observer must not touch
// the player.
class ActionTrace {
 public:
  virtual void OnAction(const ActionStep& step) = 0;

 protected:
  ~ActionTrace() = default;
};

}  // namespace vexel
