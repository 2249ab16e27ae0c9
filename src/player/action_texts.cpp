// Actions on texts, and on values as such.
#include <algorithm>
#include <bit>
#include <cstring>

#include "player/action_run.h"
#include "player/multi_byte.h"
#include "player/text.h"

namespace vexel {

namespace {

// Below 0, 0 or above 0 as `a` stands before, equals, or stands behind `b`, by
// unsigned bytes.
int Compare(TextView a, TextView b) {
  const int order = memcmp(a.bytes, b.bytes, static_cast<size_t>(std::min(a.length, b.length)));
  return order != 0 ? order : a.length - b.length;
}

uint8_t FirstByte(TextView text) {
  return text.length > 0 ? static_cast<uint8_t>(text.bytes[0]) : uint8_t{0};
}

enum Value : uint8_t { kText = 0, kFloat = 1 };

void Push(ActionRun& run, const uint8_t* at, ScriptValue value) {
  if (value.IsBorrowed() || value.IsNumber()) run.cache.NoteConstant(at, value);
  run.stack.Push(std::move(value));
}

}  // namespace

// One value only, whatever the length says.
void ActionPush(ActionRun& run) {
  const uint8_t* at = run.bytes + run.operands;
  if (const ScriptValue* constant = run.cache.Constant(at)) {
    run.stack.PushUnowned(*constant);
    return;
  }
  switch (run.Byte(0)) {
    case kText:
      Push(run, at, run.TextValue(1));
      return;
    case kFloat: {
      const uint32_t word = run.Word(1) | uint32_t{run.Word(3)} << 16;
      Push(run, at, ScriptValue::Number(double{std::bit_cast<float>(word)}));
      return;
    }
    default:
      return;
  }
}

void ActionPop(ActionRun& run) {
  run.stack.Drop();
}

void ActionDiscard(ActionRun& run) {
  run.stack.Drop();
}

void ActionStringEquals(ActionRun& run) {
  char scratchA[kValueScratchSize], scratchB[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  const ScriptValue b = run.stack.Pop();
  const TextView textA = a.View(scratchA);
  const TextView textB = b.View(scratchB);
  run.stack.PushTruth(textA.length == textB.length && Compare(textA, textB) == 0);
}

void ActionStringLess(ActionRun& run) {
  char scratchA[kValueScratchSize], scratchB[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  const ScriptValue b = run.stack.Pop();
  run.stack.PushTruth(Compare(b.View(scratchB), a.View(scratchA)) < 0);
}

void ActionStringLength(ActionRun& run) {
  char scratch[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  run.stack.PushNumber(a.View(scratch).length);
}

void ActionStringLengthMB(ActionRun& run) {
  const PoppedText a(run.stack.Pop());
  run.stack.PushNumber(PlayerStringLength(a.Text(), true));
}

void ActionConcat(ActionRun& run) {
  char scratch[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  run.stack.Push(ScriptValue::Concat(run.stack.Pop(), a.View(scratch)));
}

// Scripts count characters from 1.
void ActionSubstring(ActionRun& run) {
  char scratch[kValueScratchSize];
  int32_t count = run.stack.PopInteger();
  const int64_t index = run.stack.PopInteger();
  const ScriptValue whole = run.stack.Pop();
  const TextView text = whole.View(scratch);
  const int32_t start = static_cast<int32_t>(std::clamp<int64_t>(index - 1, 0, text.length));
  if (count < 0 || count > text.length - start) count = text.length - start;
  run.stack.Push(count == 1 ? ScriptValue::Byte(static_cast<uint8_t>(text.bytes[start]))
                            : ScriptValue::Copy({text.bytes + start, count}));
}

void ActionSubstringMB(ActionRun& run) {
  const int32_t count = run.stack.PopInteger();
  const int64_t index = run.stack.PopInteger();
  const PoppedText whole(run.stack.Pop());
  char* piece = PlayerStringExtract(whole.Text(), index - 1, count, true);
  run.stack.Push(ScriptValue::Copy(piece));
  FreeStr(piece);
}

void ActionCharCode(ActionRun& run) {
  char scratch[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  run.stack.PushNumber(FirstByte(a.View(scratch)));
}

void ActionCharCodeMB(ActionRun& run) {
  char scratch[kValueScratchSize];
  const ScriptValue a = run.stack.Pop();
  const TextView text = a.View(scratch);
  int32_t code = FirstByte(text);
  if (PlayerIsLeadByte(static_cast<uint8_t>(code)) && text.length > 1) {
    code = code * 256 + static_cast<uint8_t>(text.bytes[1]);
  }
  run.stack.PushNumber(code);
}

void ActionCharFromCode(ActionRun& run) {
  run.stack.Push(ScriptValue::Byte(static_cast<uint8_t>(run.stack.PopInteger())));
}

// Required: two bytes for every code above 255, whatever lead bytes there are.
// A zero byte ends the text.
void ActionCharFromCodeMB(ActionRun& run) {
  const int32_t code = run.stack.PopInteger();
  const char bytes[3] = {static_cast<char>(code >> 8), static_cast<char>(code), '\0'};
  run.stack.Push(code > 255 ? ScriptValue::Copy(bytes)
                            : ScriptValue::Byte(static_cast<uint8_t>(code)));
}

}  // namespace vexel
