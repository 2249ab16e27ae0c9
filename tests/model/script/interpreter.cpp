// Action blocks, action by action.
#include <cstring>
#include <utility>

#include "movie/actions.h"
#include "player.h"

namespace vexel::model::script {

constexpr int kMaxExecuted = 200000;
constexpr size_t kMaxCalls = 256;
constexpr size_t kMaxPending = 32;
constexpr size_t kMaxStack = 65536;
constexpr size_t kLongText = 1000000;  // near the player's limit of a value

// A block that is being run, and how far. Bytes outside it read as 0.
struct Player::Running {
  Block block;  // held: its timeline may go
  Action* entry = nullptr;
  i64 pos = 0;
  i64 next = 0;
  int skip = 0;

  u8 Byte() {
    const i64 at = pos++;
    return at >= 0 && at < static_cast<i64>(block->size()) ? (*block)[static_cast<size_t>(at)] : 0;
  }
  u16 Word() {
    const int low = Byte();
    return static_cast<u16>(low | Byte() << 8);
  }
  Text String() {
    Text out;
    while (const u8 byte = Byte()) out += static_cast<char>(byte);
    return out;
  }
};

Player::Player() {
  AddLayer(0, {});
}

Layer& Player::AddLayer(int number, Scene scene) {
  Layer& layer = layers.emplace_back();
  layer.movie.scene = std::move(scene);
  layer.movie.layer = static_cast<u16>(number);
  Thread& thread = layer.thread;
  thread.stage = &stage;
  thread.movie = &layer.movie;
  thread.isMain = true;
  thread.layerDepth = layer.movie.layer;
  thread.tags = &layer.movie.scene.main;
  thread.numFrames = layer.movie.scene.frameCount;
  thread.Set("$version", "UNIX 4,0,13,0");
  stage.threads.push_back(&thread);
  return layer;
}

void Player::Load(Scene scene) {
  Layer& layer = layers.front();
  layer.movie.scene = std::move(scene);
  layer.thread.numFrames = layer.movie.scene.frameCount;
  layer.thread.DrawFrame(0, true);
  loaded = true;
  calls += "StartTimer ";
  DoActions();
  SetCamera();
}

void Player::Step() {
  stage.StepThreads();
  DoActions();
}

void Player::GotoFrame(int frame) {
  MainThread()->Seek(frame);
  DoActions();
  calls += "CheckUpdate ";
}

// Blocks of one frame; false if the timeline ends before it.
static bool FrameBlocks(const Thread& thread, int frame, std::vector<Block>* out) {
  const Timeline& tags = *thread.tags;
  size_t i = 0;
  for (int passed = 0; passed < frame; ++i) {
    if (i >= tags.size()) return false;
    passed += tags[i].kind == TagKind::kFrameEnd;
  }
  for (; i < tags.size() && tags[i].kind != TagKind::kFrameEnd; ++i) {
    if (tags[i].kind == TagKind::kActions) out->push_back(tags[i].block);
  }
  return true;
}

bool Player::CallFrame(Thread* thread, int frame) {
  if (!thread || frame < 0) return false;
  std::vector<Block> blocks;
  if (!FrameBlocks(*thread, frame, &blocks)) return false;
  for (const Block& block : blocks) stage.actionList.Push(block, thread);
  DoActions();
  calls += "UpdateScreen ";
  return true;
}

void Player::SetCamera() {
  calls += "CheckUpdate ";
}

void Player::Push(const Text& text) {
  size_t all = text.size();
  if (all > kLongText) excess.text = true;
  if (stack.size() > kMaxStack / 8) {
    for (const Text& value : stack) all += value.size();
    if (all > 16 * kLongText) excess.text = true;
  }
  if (stage.objects > 60000) excess.objects = true;
  if (stack.size() < kMaxStack) stack.push_back(text);
}

Text Player::Pop() {
  if (stack.empty()) return "";
  Text text = std::move(stack.back());
  stack.pop_back();
  return text;
}

void Player::DoActions() {
  if (!loaded) return;
  if (halted) {
    stage.actionList = {};
    return;
  }
  if (depth > 0) return;
  ++depth;
  executed = 0;
  pending.clear();
  xStop = hostStopped;
  xChanged = xSeekWanted = false;
  xSeekFrame = -1;
  stage.calls = {{&stage.actionList, nullptr, false}};
  resumed = false;
  while (!stage.calls.empty()) {
    ActionList* list = stage.calls.back().list;
    Ended how = Ended::kBlock;
    while (how == Ended::kBlock && list->read < list->entries.size()) {
      // Only the block that called goes on with its target, if it still exists.
      const bool goesOn = std::exchange(resumed, false);
      if (list->entries[list->read].block) how = RunBlock(list, goesOn);
      if (how == Ended::kBlock) ++list->read;
    }
    if (how == Ended::kByCall) continue;
    stage.calls.pop_back();
    if (stage.calls.empty()) break;
    delete list;
    resumed = true;
  }
  stage.actionList.entries.erase(
      stage.actionList.entries.begin(),
      stage.actionList.entries.begin() + static_cast<std::ptrdiff_t>(stage.actionList.read));
  stage.actionList.read = 0;
  --depth;
  FinishRun();
}

void Player::FinishRun() {
  for (const Request& request : pending) {
    calls += "GetURL(" + request.url + "|" + request.window + "|" +
             (request.hasPost ? request.post : "(null)") + "|" + std::to_string(request.flags) +
             ") ";
  }
  if (!xStop && xChanged) calls += "XPlay ";
  if (xSeekFrame != -1 && xSeekWanted) calls += "XSeek(" + std::to_string(xSeekFrame) + ") ";
  if (xStop && xChanged) calls += "XStopPlay ";
}

// A halted run still starts the blocks that have not ended, and leaves each
// after one action.
Player::Ended Player::RunBlock(ActionList* list, bool isResumed) {
  // By index: running pushes on to the list.
  const size_t index = list->read;
  Running at;
  at.block = list->entries[index].block;
  at.pos = list->entries[index].resume;
  if (!isResumed) {
    stage.calls.back().target = nullptr;
    stage.calls.back().hasTarget = false;
  }
  while (const int code = at.Byte()) {
    at.next = at.pos;
    if (code >= 0x80) {
      const int length = at.Word();
      at.next = at.pos + length;
    }
    at.entry = &list->entries[index];
    bool called = false;
    if (at.skip > 0) {
      --at.skip;
    } else {
      called = RunAction(at, code);
    }
    if (++executed > kMaxExecuted) halted = true;
    if (called) return Ended::kByCall;
    if (halted) return Ended::kByHalt;
    // A target outside the block ends it.
    if (at.next < 0) break;
    at.pos = at.next;
  }
  return Ended::kBlock;
}

bool Player::RunAction(Running& at, int code) {
  const CallEntry& top = stage.calls.back();
  Thread* target = top.hasTarget ? top.target : at.entry->thread;
  switch (code) {
    case kActionNextFrame:
    case kActionPrevFrame:
    case kActionPlay:
    case kActionStop:
    case kActionGotoFrame:
    case kActionWaitForFrame:
    case kActionGotoLabel:
      if (target) RunTargetAction(at, code, target);
      return false;
    case kActionCall:
      return Call(at, target);
    default:
      RunStackAction(at, code, target);
      return false;
  }
}

void Player::RunTargetAction(Running& at, int code, Thread* target) {
  const int version = target->movie->scene.version;
  const bool old = version == 1 || version == 2 || version == 129;
  switch (code) {
    case kActionNextFrame:
      target->Seek(target->curFrame + 1);
      break;
    case kActionPrevFrame:
      target->Seek(target->curFrame - 1);
      break;
    case kActionPlay:
      if (old) {
        xStop = false;
        xChanged = true;
      } else {
        target->Play(true);
      }
      break;
    case kActionStop:
      if (old) {
        xStop = xChanged = true;
      } else {
        target->playing = false;
      }
      break;
    case kActionGotoFrame: {
      const int frame = at.Word();
      if (old) {
        xSeekWanted = true;
        xSeekFrame = frame;
      } else {
        target->Seek(frame);
      }
      break;
    }
    case kActionWaitForFrame: {
      const int frame = at.Word();
      const int count = at.Byte();
      if (target->movie->numFramesComplete < frame) at.skip = count;
      break;
    }
    case kActionGotoLabel: {
      const int frame = target->FindLabel(at.String());
      if (frame >= 0) target->Seek(frame);
      break;
    }
    default:
      break;
  }
}

static Text Truth(bool value) {
  return value ? "1" : "0";
}

void Player::RunStackAction(Running& at, int code, Thread* target) {
  switch (code) {
    case kActionToggleQuality:
      highQuality = !highQuality;
      SetCamera();
      break;
    case kActionAdd: {
      const double a = PopNumber(), b = PopNumber();
      PushNumber(b + a);
      break;
    }
    case kActionSubtract: {
      const double a = PopNumber(), b = PopNumber();
      PushNumber(b - a);
      break;
    }
    case kActionMultiply: {
      const double a = PopNumber(), b = PopNumber();
      PushNumber(b * a);
      break;
    }
    case kActionDivide: {
      const double a = PopNumber(), b = PopNumber();
      if (a == 0) {
        Push("#ERROR#");
      } else {
        PushNumber(b / a);
      }
      break;
    }
    case kActionEquals: {
      const double a = PopNumber(), b = PopNumber();
      Push(Truth(a == b));
      break;
    }
    case kActionLess: {
      const double a = PopNumber(), b = PopNumber();
      Push(Truth(b < a));
      break;
    }
    case kActionAnd: {
      const i32 a = PopInt(), b = PopInt();
      Push(Truth(a != 0 && b != 0));
      break;
    }
    case kActionOr: {
      const i32 a = PopInt(), b = PopInt();
      Push(Truth(a != 0 || b != 0));
      break;
    }
    case kActionNot:
      Push(Truth(PopNumber() == 0));
      break;
    case kActionStringEquals: {
      const Text a = Pop(), b = Pop();
      Push(Truth(a == b));
      break;
    }
    case kActionStringLess: {
      const Text a = Pop(), b = Pop();
      Push(Truth(std::strcmp(b.c_str(), a.c_str()) < 0));
      break;
    }
    case kActionStringLength:
    case kActionStringLengthMB:
      PushNumber(static_cast<double>(Pop().size()));
      break;
    case kActionSubstring:
    case kActionSubstringMB: {
      const i32 count = PopInt(), from = PopInt();
      const Text text = Pop();
      Push(Extract(text, i64{from} - 1, count));
      break;
    }
    case kActionPop:
    case kActionDiscard:
      Pop();
      break;
    case kActionToInteger:
      PushNumber(PopInt());
      break;
    case kActionGetVariable: {
      Text value;
      GetVariable(target, Pop(), &value);
      Push(value);
      break;
    }
    case kActionSetVariable: {
      const Text value = Pop(), name = Pop();
      SetVariable(target, name, value);
      break;
    }
    case kActionConcat: {
      const Text a = Pop(), b = Pop();
      Push(b + a);
      break;
    }
    case kActionRandom:
      PushNumber(random.Next(PopInt(), clock));
      break;
    case kActionCharCode:
    case kActionCharCodeMB: {
      const Text text = Pop();
      PushNumber(text.empty() ? 0 : static_cast<unsigned char>(text[0]));
      break;
    }
    case kActionCharFromCode:
      Push(CutAtNul(Text(1, static_cast<char>(PopInt()))));
      break;
    case kActionCharFromCodeMB: {
      const i32 a = PopInt();
      Text text;
      if (a > 255) text += static_cast<char>(a >> 8);
      text += static_cast<char>(a);
      Push(CutAtNul(text));
      break;
    }
    case kActionGetTime:
      PushNumber(clock - startTime);
      break;
    case kActionSetTargetExpr:
      SetTarget(at, Pop());
      break;
    case kActionSetTarget:
      SetTarget(at, at.String());
      break;
    case kActionGetProperty:
    case kActionSetProperty:
    case kActionCloneSprite:
    case kActionRemoveSprite:
      PropertyAction(code, target);
      break;
    case kActionStartDrag:
      StartDrag(target);
      break;
    case kActionStopDrag:
      stage.dragObject = nullptr;
      stage.dragging = false;
      break;
    case kActionGetURL: {
      Request request;
      request.url = at.String();
      request.window = at.String();
      if (pending.size() < kMaxPending) pending.push_back(request);
      break;
    }
    case kActionGetURLExpr:
      GetURLExpr(at, target);
      break;
    case kActionWaitForFrameExpr: {
      const int count = at.Byte();
      int frame = 0;
      if (ResolveFrame(Pop(), target, &frame)) {
        const Thread* of = target ? target : MainThread();
        if (of->movie->numFramesComplete < frame) at.skip = count;
      }
      break;
    }
    case kActionPush: {
      const int type = at.Byte();
      if (type == 0) {
        Push(at.String());
      } else if (type == 1) {
        const u32 low = at.Word();
        const u32 word = low | u32{at.Word()} << 16;
        float value;
        std::memcpy(&value, &word, sizeof value);
        PushNumber(static_cast<double>(value));
      }
      break;
    }
    case kActionJump:
      at.next += static_cast<int16_t>(at.Word());
      break;
    case kActionIf: {
      const int offset = static_cast<int16_t>(at.Word());
      if (PopNumber() != 0) at.next += offset;
      break;
    }
    case kActionGotoExpr: {
      const int play = at.Byte();
      int frame = 0;
      if (Thread* thread = ResolveFrame(Pop(), target, &frame)) {
        thread->Seek(frame);
        if (play != 0) thread->Play(true);
      }
      break;
    }
    default:
      break;
  }
}

void Player::SetTarget(Running& at, const Text& text) {
  CallEntry& top = stage.calls.back();
  top.target = nullptr;
  top.hasTarget = !text.empty();
  if (text.empty()) return;
  // From the block's own timeline, whatever was the target before.
  if (Thread* thread = at.entry->thread) top.target = FindTarget(thread->root, text);
}

Thread* Player::TargetOf(const Text& text, Thread* target) {
  if (text.empty()) return target;
  return FindTarget((target ? target : MainThread())->root, text);
}

void Player::PropertyAction(int code, Thread* target) {
  if (code == kActionGetProperty) {
    const i32 index = PopInt();
    Thread* thread = TargetOf(Pop(), target);
    Push(thread ? GetProperty(thread, index) : "");
  } else if (code == kActionSetProperty) {
    const Text value = Pop();
    const i32 index = PopInt();
    SetProperty(TargetOf(Pop(), target), index, value);
  } else if (code == kActionCloneSprite) {
    const i32 at = PopInt();
    const Text name = Pop(), source = Pop();
    if (at >= 0) stage.CloneSprite(TargetOf(source, target), name, at);
  } else {
    Thread* thread = TargetOf(Pop(), target);
    if (thread && thread->root->depth > 16383) stage.RemoveSprite(thread);
  }
}

static i32 DragUnits(i32 pixels) {
  return Saturate(i64{pixels} * 20);
}

void Player::StartDrag(Thread* target) {
  const Text path = Pop();
  const i32 lock = PopInt(), constrain = PopInt();
  i32 x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  if (constrain == 1) {
    y2 = PopInt();
    x2 = PopInt();
    y1 = PopInt();
    x1 = PopInt();
  }
  Thread* thread = TargetOf(path, target);
  if (!thread) return;
  Object* o = thread->root;
  stage.dragObject = o;
  stage.dragging = true;
  o->scriptControlled = true;
  o->dragCenter = lock == 1;
  o->dragConstraint = Rect{};
  if (constrain == 1) {
    x1 = DragUnits(x1);
    y1 = DragUnits(y1);
    x2 = DragUnits(x2);
    y2 = DragUnits(y2);
    o->dragConstraint = {x1 < x2 ? x1 : x2, x1 < x2 ? x2 : x1, y1 < y2 ? y1 : y2,
                         y1 < y2 ? y2 : y1};
  }
}

bool Player::Call(Running& at, Thread* target) {
  const Text text = Pop();
  // Lists on their way out of a halted run could call without end.
  if (stage.calls.size() >= kMaxCalls || halted) return false;
  int frame = 0;
  Thread* thread = ResolveFrame(text, target, &frame);
  if (!thread) return false;
  at.entry->resume = at.next;
  std::vector<Block> blocks;
  FrameBlocks(*thread, frame, &blocks);
  auto* list = new ActionList;
  for (const Block& block : blocks) list->Push(block, thread);
  stage.calls.push_back({list, nullptr, false});
  return true;
}

void Player::GetURLExpr(Running& at, Thread* target) {
  int flags = at.Byte();
  Text window = Pop();
  const Text url = Pop();
  int method = flags & 0x7F;
  Thread* t = target;
  const auto namesLayer = [](const Text& path) {
    const size_t slash = path.find('/');
    return slash == Text::npos || slash + 1 == path.size();
  };
  if (method & 0x40) {
    method &= ~0x40;
    t = FindTarget((t ? t : MainThread())->root, window);
    bool settled = false;
    if (LayerNumber(window) >= 0) {
      if (namesLayer(window)) {
        flags &= ~0x40;
        settled = true;
      }
    } else if (window == "/") {
      flags &= ~0x40;
      window = t && t->layerDepth != 0 ? TargetPath(t->root) : "_level0";
      settled = true;
    }
    if (!settled) {
      if (!t) return;
      Text path = TargetPath(t->root);
      if (path == "/") {
        flags &= ~0x40;
        path = "_level0";
      } else if (LayerNumber(path) >= 0 && namesLayer(path)) {
        flags &= ~0x40;
      }
      window = path;
    }
  }
  Request request;
  request.url = url;
  request.window = window;
  request.flags = flags;
  const bool hasVariables = target && !target->variables.empty();
  if (method == 1 && hasVariables) {
    if (IsMachineName(url)) request.url += '/';
    request.url += '?' + EncodeVariables(target->variables);
  } else if (method == 2 && hasVariables) {
    request.hasPost = true;
    request.post = EncodeVariables(target->variables);
  }
  if (IsMailAddress(request.url)) request.hasPost = false;
  if (pending.size() < kMaxPending) pending.push_back(request);
}

}  // namespace vexel::model::script
