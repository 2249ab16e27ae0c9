// Actions on numbers and truth values. The value on top of the stack is the
// right-hand operand.
#include "geometry/intmath.h"
#include "player/action_run.h"
#include "player/random.h"
#include "player/text.h"

namespace vexel {

void ActionAdd(ActionRun& run) {
  run.stack.CombineNumbers([](double below, double top) { return below + top; });
}

void ActionSubtract(ActionRun& run) {
  run.stack.CombineNumbers([](double below, double top) { return below - top; });
}

void ActionMultiply(ActionRun& run) {
  run.stack.CombineNumbers([](double below, double top) { return below * top; });
}

void ActionDivide(ActionRun& run) {
  const double a = run.stack.PopNumber();
  const double b = run.stack.PopNumber();
  a == 0 ? run.stack.Push(ScriptValue::Error()) : run.stack.PushNumber(b / a);
}

void ActionEquals(ActionRun& run) {
  run.stack.CombineNumbers([](double below, double top) { return below == top ? 1.0 : 0.0; });
}

void ActionLess(ActionRun& run) {
  run.stack.CombineNumbers([](double below, double top) { return below < top ? 1.0 : 0.0; });
}

// Required: these two cut to integers first, so that a half is false to them,
// and true to ActionNot and ActionIf.
void ActionAnd(ActionRun& run) {
  const int32_t a = run.stack.PopInteger();
  const int32_t b = run.stack.PopInteger();
  run.stack.PushTruth(a != 0 && b != 0);
}

void ActionOr(ActionRun& run) {
  const int32_t a = run.stack.PopInteger();
  const int32_t b = run.stack.PopInteger();
  run.stack.PushTruth(a != 0 || b != 0);
}

void ActionNot(ActionRun& run) {
  run.stack.PushTruth(run.stack.PopNumber() == 0);
}

void ActionToInteger(ActionRun& run) {
  run.stack.PushNumber(run.stack.PopInteger());
}

void ActionRandom(ActionRun& run) {
  run.stack.PushNumber(Random(run.stack.PopInteger()));
}

void ActionGetTime(ActionRun& run) {
  run.stack.PushNumber(GetTime() - run.player->startTime);
}

void ActionJump(ActionRun& run) {
  run.Jump();
}

void ActionIf(ActionRun& run) {
  if (run.stack.PopNumber() != 0) run.Jump();
}

}  // namespace vexel
