#include "trace.h"

#include <algorithm>
#include <cstdio>

#include "author/script/action_text.h"
#include "author/script/mnemonics.h"
#include "author/types.h"
#include "escapes.h"
#include "movie/actions.h"
#include "movie/tags.h"
#include "player/script_stack.h"
#include "player/splayer.h"
#include "player/text.h"

namespace vexel::tools {

namespace {

struct KindName {
  TraceKind kind;
  const char* name;
};
constexpr KindName kKindNames[] = {{kTraceActions, "actions"},
                                   {kTraceTags, "tags"},
                                   {kTraceFrames, "frames"},
                                   {kTraceCalls, "calls"}};

// A line stays readable: so many values of the stack, so many bytes of each.
constexpr int32_t kMaxValues = 16;
constexpr size_t kMaxValueBytes = 60;

// Bytes of an action's length, and of a jump's operand.
constexpr int32_t kLengthSize = 2;
constexpr int32_t kOffsetSize = 2;

// Stands for a timeline that is not there.
constexpr char kNoTimeline[] = "-";

// Results go first, so that a terminal shows both in order.
void PutLine(const std::string& line) {
  std::fflush(stdout);
  std::fputs((line + '\n').c_str(), stderr);
}

std::string PathOf(const ScriptThread* thread) {
  SPlayer* player = thread && thread->player ? thread->player->splayer : nullptr;
  if (!player) return kNoTimeline;
  char* path = player->GetTargetPath(thread->rootObject);
  const std::string text = Escaped(path);
  FreeStr(path);
  return text;
}

// Where a jump leads, as the offsets of actions are given; of anything else the
// line of the assembler.
std::string ActionText(const ActionStep& step) {
  const ActionInfo* info = FindActionInfo(step.code);
  const bool hasLength = step.code >= kFirstActionWithLength;
  if (info && info->operands == ActionOperands::kOffset && step.operandSize == kOffsetSize) {
    const auto offset =
        static_cast<int16_t>(uint32_t{step.operands[0]} | uint32_t{step.operands[1]} << 8);
    const int32_t next = step.offset + 1 + kLengthSize + kOffsetSize;
    const int32_t target = next + offset;
    return author::Mnemonic(*info) + (target < 0 ? " " : " +") + std::to_string(target);
  }
  author::Bytes action = {step.code};
  if (hasLength) {
    action.push_back(static_cast<uint8_t>(step.operandSize));
    action.push_back(static_cast<uint8_t>(step.operandSize >> 8));
    action.insert(action.end(), step.operands, step.operands + step.operandSize);
  }
  action.push_back(kActionEnd);
  const std::string text = author::DisassembleActions(action, 0);
  return text.substr(0, text.find('\n'));
}

// As the assembler's lines have them.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\\\"" : Escaped(std::string(1, c));
  return quoted + '"';
}

// From the top down.
std::string StackText(const ScriptStack& stack) {
  std::string text = "[";
  const int32_t shown = std::min(stack.Count(), kMaxValues);
  for (int32_t i = 1; i <= shown; i++) {
    char scratch[kValueScratchSize];
    const TextView view = stack.At(stack.Count() - i).View(scratch);
    const std::string value(view.bytes, static_cast<size_t>(view.length));
    text += ' ' + Quoted(value.substr(0, kMaxValueBytes));
    if (value.size() > kMaxValueBytes) text += "...";
  }
  if (shown < stack.Count()) text += " and " + std::to_string(stack.Count() - shown) + " more";
  return text + " ]";
}

}  // namespace

bool ParseTrace(const std::string& text, int* kinds) {
  *kinds = 0;
  for (size_t at = 0; at <= text.size();) {
    const size_t comma = std::min(text.find(',', at), text.size());
    const std::string word = text.substr(at, comma - at);
    int kind = 0;
    for (const KindName& row : kKindNames) {
      if (word == row.name) kind = row.kind;
    }
    if (kind == 0) return false;
    *kinds |= kind;
    at = comma + 1;
  }
  return true;
}

std::string TraceKindNames() {
  std::string names;
  for (const KindName& row : kKindNames)
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

PlayObserver* Trace::Observer() {
  return (kinds_ & (kTraceTags | kTraceFrames)) != 0 ? this : nullptr;
}

ActionTrace* Trace::Actions() {
  return (kinds_ & kTraceActions) != 0 ? this : nullptr;
}

void Trace::OnCall(const PlatformCall& call) {
  if (kinds_ & kTraceCalls) PutLine("call " + CallText(call));
  next_->OnCall(call);
}

void Trace::OnAction(const ActionStep& step) {
  std::string line = "action " + std::string(static_cast<size_t>(step.depth - 1) * 2, ' ');
  line += PathOf(step.thread);
  if (step.target != step.thread) line += " > " + PathOf(step.target);
  line += " +" + std::to_string(step.offset) + ' ' + ActionText(step);
  if (step.skipped) line += " (skipped)";
  PutLine(line + "   " + StackText(*step.stack));
}

void Trace::OnTag(const ScriptThread& thread) {
  if (!(kinds_ & kTraceTags)) return;
  const TagInfo* info = FindTagInfo(thread.tagCode);
  PutLine("tag " + PathOf(&thread) + " +" + std::to_string(thread.tagPos) + ' ' +
          (info ? info->word : "unknown") + ' ' + std::to_string(thread.tagCode) +
          " length=" + std::to_string(thread.tagEnd - thread.pos));
}

void Trace::OnFrame(const ScriptThread& thread) {
  if (!(kinds_ & kTraceFrames)) return;
  PutLine("frame " + PathOf(&thread) + ' ' + std::to_string(thread.curFrame) +
          (thread.seeking ? " passed" : ""));
}

}  // namespace vexel::tools
