// Actions on timelines: playing, targets, variables, properties, sprites and
// the drag.
#include "geometry/intmath.h"
#include "movie/script_player.h"
#include "player/action_run.h"
#include "player/text.h"
#include "stage/object.h"

namespace vexel {

namespace {

constexpr int32_t kTwipsPerPixel = 20;

// Properties whose text is not that of a number.
constexpr int32_t kPathProperty = 11;
constexpr int32_t kNameProperty = 13;
constexpr int32_t kDropTargetProperty = 14;
constexpr int32_t kUrlProperty = 15;

bool IsTextProperty(int32_t index) {
  return index == kPathProperty || index == kNameProperty || index == kDropTargetProperty ||
         index == kUrlProperty;
}

// Movies of these versions have no timelines of their own to play and stop:
// they ask the host's clock.
bool IsOldMovie(const ScriptThread* target) {
  const ScriptPlayer* movie = target->player;
  return movie && (movie->version == 1 || movie->version == 2 || movie->version == 129);
}

int32_t FramesComplete(const ScriptThread* target) {
  return target->player ? target->player->numFramesComplete : -1;
}

// The path starts at the block's own timeline, never at that of the last
// set-target.
void SetTarget(ActionRun& run, const char* path) {
  ActionCallEntry& call = *run.call;
  call.hasTarget = *path != '\0';
  call.targetThread = nullptr;
  const ScriptThread* thread = run.Thread();
  if (call.hasTarget && thread) {
    call.targetThread = run.player->FindTarget(thread->rootObject, path);
  }
}

// A plain name is a variable of the target; a path or a dot asks more.
bool IsPlain(TextView name) {
  for (int32_t i = 0; i < name.length; ++i) {
    if (name.bytes[i] == ':' || name.bytes[i] == '.') return false;
  }
  return true;
}

SCOORD DragCoord(int32_t pixels) {
  return Saturate32(int64_t{pixels} * kTwipsPerPixel);
}

}  // namespace

void ActionNextFrame(ActionRun& run) {
  ScriptThread* target = run.Target();
  target->Seek(WrapAdd(target->curFrame, 1));
}

void ActionPrevFrame(ActionRun& run) {
  ScriptThread* target = run.Target();
  target->Seek(WrapSub(target->curFrame, 1));
}

void ActionPlay(ActionRun& run) {
  if (IsOldMovie(run.Target())) {
    run.clock.stop = false;
    run.clock.changed = true;
  } else {
    run.Target()->Play(true);
  }
}

void ActionStop(ActionRun& run) {
  if (IsOldMovie(run.Target())) {
    run.clock.stop = true;
    run.clock.changed = true;
  } else {
    run.Target()->StopPlay();
  }
}

void ActionGotoFrame(ActionRun& run) {
  if (IsOldMovie(run.Target())) {
    run.clock.frame = run.Word(0);
  } else {
    run.Target()->Seek(run.Word(0));
  }
}

void ActionWaitForFrame(ActionRun& run) {
  if (FramesComplete(run.Target()) < run.Word(0)) run.skip = run.Byte(2);
}

void ActionGotoLabel(ActionRun& run) {
  ScriptThread* target = run.Target();
  const int32_t frame = target->FindLabel(run.Text(0).bytes);
  if (frame >= 0) target->Seek(frame);
}

// Without a target it is the player's movie that has to arrive.
void ActionWaitForFrameExpr(ActionRun& run) {
  const PoppedText name(run.stack.Pop());
  const ScriptThread* target = run.Target();
  int32_t frame;
  if (!run.player->ResolveFrameNum(name.Text(), run.Target(), &frame)) return;
  if (FramesComplete(target ? target : run.player) < frame) run.skip = run.Byte(0);
}

void ActionGotoExpr(ActionRun& run) {
  const PoppedText name(run.stack.Pop());
  int32_t frame;
  WeakSlot<ScriptThread> thread(run.player->ResolveFrameNum(name.Text(), run.Target(), &frame));
  if (!thread) return;
  thread->Seek(frame);
  // The frames passed may have removed it.
  if (run.Byte(0) != 0 && thread) thread->Play(true);
}

void ActionToggleQuality(ActionRun& run) {
  SPlayer* player = run.player;
  player->highQuality = !player->highQuality;
  player->autoQuality = false;
  player->SetCamera(kCameraShowSoon);
}

void ActionSetTarget(ActionRun& run) {
  SetTarget(run, run.Text(0).bytes);
}

void ActionSetTargetExpr(ActionRun& run) {
  const PoppedText path(run.stack.Pop());
  SetTarget(run, path.Text());
}

void ActionGetVariable(ActionRun& run) {
  ScriptThread* target = run.Target();
  ScriptThread* thread = target ? target : run.player;
  ScriptValue* top = run.stack.Top();
  if (top && top->IsBorrowed()) {
    if (const ScriptVariable* variable = run.cache.Variable(top->BorrowedText(), thread)) {
      if (variable->value.IsNumber()) {
        top->AssignUnowned(variable->value);
      } else {
        *top = variable->value.IsNone() ? ScriptValue::Empty() : variable->value;
      }
      return;
    }
  }
  ScriptValue name = run.stack.Pop();
  char scratch[kValueScratchSize];
  const TextView text = name.View(scratch);
  ScriptValue value;
  if (IsPlain(text)) {
    if (ScriptVariable* variable = thread->FindVariable(text)) {
      value = variable->value;
      if (name.IsBorrowed()) run.cache.NoteVariable(text.bytes, thread, variable);
    }
  } else {
    const PoppedText path(std::move(name));
    char* found = run.player->GetVariable(target, path.Text());
    value = ScriptValue::Copy(found);
    FreeStr(found);
  }
  run.stack.Push(value.IsNone() ? ScriptValue::Empty() : std::move(value));
}

void ActionSetVariable(ActionRun& run) {
  ScriptValue value = run.stack.Pop();
  ScriptValue name = run.stack.Pop();
  ScriptThread* target = run.Target();
  ScriptThread* thread = target ? target : run.player;
  ScriptVariable* variable =
      name.IsBorrowed() ? run.cache.Variable(name.BorrowedText(), thread) : nullptr;
  if (!variable) {
    char scratch[kValueScratchSize];
    const TextView text = name.View(scratch);
    if (!IsPlain(text)) {
      const PoppedText path(std::move(name));
      const PoppedText content(std::move(value));
      run.player->SetVariable(target, path.Text(), content.Text());
      return;
    }
    variable = thread->MakeVariable(text);
    if (!variable) return;
    if (name.IsBorrowed()) run.cache.NoteVariable(text.bytes, thread, variable);
  }
  thread->StoreVariable(variable, std::move(value));
}

void ActionGetProperty(ActionRun& run) {
  const int32_t index = run.stack.PopInteger();
  const PoppedText path(run.stack.Pop());
  ScriptThread* thread = run.FindTimeline(path);
  if (thread && !IsTextProperty(index)) {
    run.stack.PushNumber(run.player->GetProperty(thread, index));
    return;
  }
  char* text = run.player->GetPropertyStr(thread, index);
  run.stack.Push(text ? ScriptValue::Copy(text) : ScriptValue::Empty());
  FreeStr(text);
}

void ActionSetProperty(ActionRun& run) {
  ScriptValue value = run.stack.Pop();
  const int32_t index = run.stack.PopInteger();
  const PoppedText path(run.stack.Pop());
  ScriptThread* thread = run.FindTimeline(path);
  if (IsTextProperty(index)) {
    const PoppedText text(std::move(value));
    run.player->SetPropertyStr(thread, index, text.Text());
    return;
  }
  double number;
  if (value.ReadNumber(&number)) run.player->SetProperty(thread, index, number);
}

void ActionCloneSprite(ActionRun& run) {
  const int32_t depth = run.stack.PopInteger();
  const PoppedText name(run.stack.Pop());
  const PoppedText source(run.stack.Pop());
  if (depth >= 0) CloneSprite(run.FindTimeline(source), name.Text(), depth);
}

// Only what scripts placed: what a timeline placed would come back with its
// next rebuild.
void ActionRemoveSprite(ActionRun& run) {
  const PoppedText path(run.stack.Pop());
  ScriptThread* thread = run.FindTimeline(path);
  if (!thread || !thread->rootObject) return;
  if (thread->rootObject->depth > kMaxTimelineDepth) RemoveSprite(thread, false);
}

void ActionStartDrag(ActionRun& run) {
  const PoppedText path(run.stack.Pop());
  const int32_t lockCenter = run.stack.PopInteger();
  const bool constrained = run.stack.PopInteger() == 1;
  int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  if (constrained) {
    y2 = run.stack.PopInteger();
    x2 = run.stack.PopInteger();
    y1 = run.stack.PopInteger();
    x1 = run.stack.PopInteger();
  }
  const ScriptThread* thread = run.FindTimeline(path);
  SObject* object = thread ? thread->rootObject : nullptr;
  if (!object) return;
  SPlayer* player = run.player;
  player->dragObject.Set(object);
  player->dragging = true;
  player->dragPoint = player->mousePoint;
  object->scriptControlled = true;
  object->dragCenter = lockCenter == 1;
  if (constrained) {
    RectSet(DragCoord(x1), DragCoord(y1), DragCoord(x2), DragCoord(y2), &object->dragConstraint);
  } else {
    RectSetEmpty(&object->dragConstraint);
  }
}

void ActionStopDrag(ActionRun& run) {
  SPlayer* player = run.player;
  if (!player->dragObject) return;
  player->UpdateDropTarget();
  player->dragObject.Set(nullptr);
  player->dragging = false;
}

}  // namespace vexel
