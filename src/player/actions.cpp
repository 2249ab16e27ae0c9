// The loop of the action interpreter. Timelines and buttons only queue blocks;
// a run drains the queue, including what the actions themselves add to it.
//
// Actions are read where they lie in the movie. A block that calls a frame
// waits in its list, with the place to go on, until the list of that frame is
// done; lists nest without recursion.
#include <cstring>
#include <new>

#include "movie/tags.h"
#include "player/action_run.h"
#include "player/action_trace.h"
#include "player/text.h"

namespace vexel {

namespace {

using ActionFunction = void (*)(ActionRun& run);

void StepOver(ActionRun&) {}

// Without a timeline to act on, the action is passed over.
template <ActionFunction kFunction>
void WithTarget(ActionRun& run) {
  if (run.Target()) kFunction(run);
}

struct ActionTable {
  ActionFunction functions[256];
};

constexpr ActionTable MakeActionTable() {
  ActionTable table = {};
  for (ActionFunction& function : table.functions) function = StepOver;
#define VEXEL_ACTION_ROW(code, name, operands, target) \
  table.functions[code] = (target) ? WithTarget<Action##name> : Action##name;
  VEXEL_ACTIONS(VEXEL_ACTION_ROW)
#undef VEXEL_ACTION_ROW
  return table;
}

constexpr ActionTable kActions = MakeActionTable();

int64_t Length(const char* text) {
  return text ? static_cast<int64_t>(strlen(text)) : 0;
}

void FreeTexts(PendingUrl* request) {
  FreeStr(request->url);
  FreeStr(request->window);
  FreeStr(request->postData);
  *request = {};
}

// The parser stands behind `frame` ends of frames; false if there are not as
// many. Counted against the budget of tags.
bool SkipFrames(SParser* walk, const ScriptThread* thread, int32_t frame, DisplayList* stage) {
  while (frame > 0) {
    const int32_t code = walk->GetTag(thread->len);
    if (code < 0 || --stage->tagsLeft <= 0) return false;
    if (code == kTagFrameEnd) --frame;
    walk->pos = walk->tagEnd;
  }
  return true;
}

// Queues the actions of the frame that `walk` stands at.
void QueueFrame(SParser* walk, ScriptThread* thread, ActionList* list, DisplayList* stage) {
  for (;;) {
    const int32_t code = walk->GetTag(thread->len);
    if (code < 0 || --stage->tagsLeft <= 0) return;
    if (code == kTagFrameActions) {
      list->PushAction(thread->AttachData(walk->pos, walk->tagEnd), thread);
    }
    walk->pos = walk->tagEnd;
    if (code == kTagFrameEnd) return;
  }
}

}  // namespace

ActionRun::ActionRun(SPlayer* owner)
    : player(owner),
      stack(owner->stack),
      cache(owner->actionCache),
      clock{owner->hostStopped, false} {}

ActionRun::~ActionRun() {
  for (int32_t i = 0; i < m_pendingCount; ++i) FreeTexts(&m_pending[i]);
  ChargeScriptText(-m_pendingBytes);
}

void ActionRun::Trace(int32_t at, uint8_t code) {
  ActionStep step;
  step.code = code;
  step.skipped = skip > 0;
  const int32_t start = operands < size ? operands : size;
  const int32_t end = next < size ? next : size;
  step.operands = bytes + start;
  step.operandSize = end - start;
  step.offset = at;
  step.block = bytes;
  step.depth = player->display.actionCallDepth;
  step.thread = Thread();
  step.target = Target();
  step.stack = &stack;
  player->actionTrace->OnAction(step);
}

// Required: the action that goes over the limit has been run, and each list
// that called the halted one runs one more action when it is resumed.
template <bool kTraced>
void ActionRun::RunBlock(int32_t at) {
  const uint8_t* const block = bytes;
  const uint32_t end = static_cast<uint32_t>(size);
  // Negative places lie outside as well.
  while (static_cast<uint32_t>(at) < end) {
    const uint8_t code = block[at];
    if (code == kActionEnd) return;
    operands = at + 1;
    if (code >= kFirstActionWithLength) {
      const int32_t length = Word(0);
      operands += 2;
      next = operands + length;
    } else {
      next = operands;
    }
    if constexpr (kTraced) Trace(at, code);
    if (skip == 0) [[likely]] {
      kActions.functions[code](*this);
    } else {
      --skip;
    }
    if (++m_executed > kMaxActionsPerRun) [[unlikely]] {
      player->actionsHalted = true;
      m_leave = true;
    }
    if (m_leave) [[unlikely]]
      return;
    at = next;
  }
}

// Returns when the list is done, when the run is halted, and when a call has
// put another list on top.
void ActionRun::RunList(bool resumed) {
  ActionList& list = *call->list;
  while (!list.IsEmpty()) {
    // A copy: it keeps the bytes while the block runs, whatever becomes of its
    // timeline.
    const DataSpan block = list.FirstAction();
    if (block.bytes) {
      if (!resumed) {
        call->targetThread = nullptr;
        call->hasTarget = false;
        call->resumeAt = 0;
      }
      bytes = block.bytes;
      size = block.length;
      skip = 0;
      m_leave = false;
      cache.NextBlock();
      player->actionTrace ? RunBlock<true>(call->resumeAt) : RunBlock<false>(call->resumeAt);
      stack.OwnTexts();
      if (m_leave) return;
    }
    resumed = false;
    DataSpan done;
    ScriptThread* thread;
    list.PopAction(&done, &thread);
  }
}

void ActionRun::RunLists() {
  DisplayList& display = player->display;
  display.actionCallDepth = 1;
  display.actionCallStack[0] = {&display.actionList, nullptr, false, 0};
  bool resumed = false;
  while (display.actionCallDepth > 0) {
    const int32_t depth = display.actionCallDepth;
    call = &display.actionCallStack[depth - 1];
    RunList(resumed);
    resumed = false;
    if (display.actionCallDepth > depth) continue;
    --display.actionCallDepth;
    if (depth > 1) {
      delete call->list;
      resumed = true;
    }
  }
}

void ActionRun::EnterCall(ActionList* list) {
  DisplayList& display = player->display;
  display.actionCallStack[display.actionCallDepth++] = {list, nullptr, false, 0};
  m_leave = true;
}

void ActionRun::AddPending(char* url, char* window, char* postData, int32_t flags) {
  PendingUrl request = {url, window, postData, flags};
  const int64_t size = Length(url) + Length(window) + Length(postData);
  if (m_pendingCount >= kMaxPendingUrls || !ChargeScriptText(size)) {
    FreeTexts(&request);
  } else {
    m_pendingBytes += size;
  }
  if (m_pendingCount < kMaxPendingUrls) m_pending[m_pendingCount++] = request;
}

void ActionRun::Finish() {
  for (int32_t i = 0; i < m_pendingCount; ++i) {
    const PendingUrl& request = m_pending[i];
    if (request.url && request.window) {
      player->GetURL(request.url, request.window, request.postData, request.flags);
    }
  }
  if (!clock.stop && clock.changed) player->XPlay();
  if (clock.frame != -1) player->XSeek(clock.frame);
  if (clock.stop && clock.changed) player->XStopPlay();
}

ScriptThread* ActionRun::FindTimeline(const PoppedText& path) const {
  return path.IsEmpty() ? Target() : player->FindTarget(TargetRoot(), path.Text());
}

SObject* ActionRun::TargetRoot() const {
  const ScriptThread* target = Target();
  return (target ? target : player)->rootObject;
}

TextView ActionRun::Text(int32_t offset) {
  const int64_t at = int64_t{operands} + offset;
  if (at >= size) return {"", 0};
  const auto* start = reinterpret_cast<const char*>(bytes + at);
  const auto room = static_cast<int32_t>(size - at);
  if (const void* end = memchr(start, '\0', static_cast<size_t>(room))) {
    return {start, static_cast<int32_t>(static_cast<const char*>(end) - start)};
  }
  m_cutText = ScriptValue::Copy(TextView{start, room});
  if (m_cutText.IsNone()) return {"", 0};
  return {m_cutText.Text(), room};
}

ScriptValue ActionRun::TextValue(int32_t offset) {
  const TextView text = Text(offset);
  if (text.length == 0) return ScriptValue::Empty();
  if (text.length > kMaxValueText) return ScriptValue();
  if (!m_cutText.IsNone() && text.bytes == m_cutText.Text()) return m_cutText;
  return ScriptValue::Borrowed(text.bytes, text.length);
}

// Required: the running block has moved on even if there is no memory for the
// call, and a frame beyond the end is one without actions. A halted run enters
// no further call: the lists on their way out could call without end.
void ActionCall(ActionRun& run) {
  const PoppedText name(run.stack.Pop());
  DisplayList& display = run.player->display;
  if (display.actionCallDepth >= kMaxActionCalls || run.player->actionsHalted) return;
  int32_t frame;
  ScriptThread* thread = run.player->ResolveFrameNum(name.Text(), run.Target(), &frame);
  if (!thread) return;
  run.call->resumeAt = run.next;
  auto* list = new (std::nothrow) ActionList;
  if (!list) return;
  SParser walk(thread->script, thread->dataEnd, thread->startPos);
  if (SkipFrames(&walk, thread, frame, &display)) QueueFrame(&walk, thread, list, &display);
  run.EnterCall(list);
}

void SPlayer::DoActions() {
  if (!loaded) return;
  if (actionsHalted) {
    display.actionList.Clear();
    return;
  }
  if (actionDepth > 0) return;
  ++actionDepth;
  ActionRun run(this);
  run.RunLists();
  --actionDepth;
  run.Finish();
}

bool SPlayer::CallFrame(ScriptThread* thread, int32_t frame) {
  if (!thread || frame < 0) return false;
  SParser walk(thread->script, thread->dataEnd, thread->startPos);
  if (!SkipFrames(&walk, thread, frame, &display)) return false;
  QueueFrame(&walk, thread, &display.actionList, &display);
  DoActions();
  UpdateScreen();
  return true;
}

void SPlayer::Push(const char* text) {
  stack.Push(ScriptValue::Copy(text));
}

char* SPlayer::Pop() {
  return CreateStr(PoppedText(stack.Pop()).Text());
}

void SPlayer::PushNum(double value) {
  stack.PushNumber(value);
}

double SPlayer::PopNum() {
  return stack.PopNumber();
}

}  // namespace vexel
