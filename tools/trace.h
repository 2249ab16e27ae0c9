// What happens inside a player, on standard error as it happens: a line for
// each action, tag, frame and call of the platform.
#pragma once

#include <string>

#include "movie/observer.h"
#include "platform_call.h"
#include "player/action_trace.h"

namespace vexel::tools {

enum TraceKind : int {
  kTraceActions = 1,
  kTraceTags = 2,
  kTraceFrames = 4,
  kTraceCalls = 8,
};

// Bits of TraceKind from their names with commas between them, each once or
// more. False for anything else.
bool ParseTrace(const std::string& text, int* kinds);
// The names, as a list to read.
std::string TraceKindNames();

class Trace : public PlatformListener, private PlayObserver, private ActionTrace {
 public:
  // `kinds` are bits of TraceKind. Calls go on to `next`, which stays the
  // caller's.
  Trace(int kinds, PlatformListener* next) : kinds_(kinds), next_(next) {}

  // For the player; null if there is nothing for it to tell.
  PlayObserver* Observer();
  ActionTrace* Actions();

  void OnCall(const PlatformCall& call) override;

 private:
  void OnAction(const ActionStep& step) override;
  void OnTag(const ScriptThread& thread) override;
  void OnFrame(const ScriptThread& thread) override;

  int kinds_;
  PlatformListener* next_;
};

}  // namespace vexel::tools
