// The one list of action codes: the interpreter, the disassembler, the
// assembler, the movie writer, traces and tests read it.
#pragma once

#include <cstdint>

namespace vexel {

// What stands behind the length of an action. Codes below 0x80 have neither a
// length nor operands.
enum class ActionOperands : uint8_t {
  kNone,
  kFrame,         // 16 bits: a frame, 0-based
  kFrameAndSkip,  // 16 bits: a frame; 8 bits: how many actions to skip
  kSkip,          // 8 bits: how many actions to skip
  kText,          // a text closed by a zero
  kTwoTexts,      // two of them
  kFlags,         // 8 bits
  kValue,         // a type byte; type 0 a text, type 1 a 32-bit float
  kOffset,        // signed 16 bits, from the end of this action
};

// X(code, name, operands, target), in ascending order of the code. With target
// 1 the action is skipped when the block has no timeline to act on.
#define VEXEL_ACTIONS(X)                  \
  X(0x04, NextFrame, kNone, 1)            \
  X(0x05, PrevFrame, kNone, 1)            \
  X(0x06, Play, kNone, 1)                 \
  X(0x07, Stop, kNone, 1)                 \
  X(0x08, ToggleQuality, kNone, 0)        \
  X(0x0A, Add, kNone, 0)                  \
  X(0x0B, Subtract, kNone, 0)             \
  X(0x0C, Multiply, kNone, 0)             \
  X(0x0D, Divide, kNone, 0)               \
  X(0x0E, Equals, kNone, 0)               \
  X(0x0F, Less, kNone, 0)                 \
  X(0x10, And, kNone, 0)                  \
  X(0x11, Or, kNone, 0)                   \
  X(0x12, Not, kNone, 0)                  \
  X(0x13, StringEquals, kNone, 0)         \
  X(0x14, StringLength, kNone, 0)         \
  X(0x15, Substring, kNone, 0)            \
  X(0x17, Pop, kNone, 0)                  \
  X(0x18, ToInteger, kNone, 0)            \
  X(0x1C, GetVariable, kNone, 0)          \
  X(0x1D, SetVariable, kNone, 0)          \
  X(0x20, SetTargetExpr, kNone, 0)        \
  X(0x21, Concat, kNone, 0)               \
  X(0x22, GetProperty, kNone, 0)          \
  X(0x23, SetProperty, kNone, 0)          \
  X(0x24, CloneSprite, kNone, 0)          \
  X(0x25, RemoveSprite, kNone, 0)         \
  X(0x26, Discard, kNone, 0)              \
  X(0x27, StartDrag, kNone, 0)            \
  X(0x28, StopDrag, kNone, 0)             \
  X(0x29, StringLess, kNone, 0)           \
  X(0x30, Random, kNone, 0)               \
  X(0x31, StringLengthMB, kNone, 0)       \
  X(0x32, CharCode, kNone, 0)             \
  X(0x33, CharFromCode, kNone, 0)         \
  X(0x34, GetTime, kNone, 0)              \
  X(0x35, SubstringMB, kNone, 0)          \
  X(0x36, CharCodeMB, kNone, 0)           \
  X(0x37, CharFromCodeMB, kNone, 0)       \
  X(0x81, GotoFrame, kFrame, 1)           \
  X(0x83, GetURL, kTwoTexts, 0)           \
  X(0x8A, WaitForFrame, kFrameAndSkip, 1) \
  X(0x8B, SetTarget, kText, 0)            \
  X(0x8C, GotoLabel, kText, 1)            \
  X(0x8D, WaitForFrameExpr, kSkip, 0)     \
  X(0x96, Push, kValue, 0)                \
  X(0x99, Jump, kOffset, 0)               \
  X(0x9A, GetURLExpr, kFlags, 0)          \
  X(0x9D, If, kOffset, 0)                 \
  X(0x9E, Call, kNone, 0)                 \
  X(0x9F, GotoExpr, kFlags, 0)

enum ActionCode : uint8_t {
  kActionEnd = 0,
#define VEXEL_ACTION_ENUM(code, name, operands, target) kAction##name = code,
  VEXEL_ACTIONS(VEXEL_ACTION_ENUM)
#undef VEXEL_ACTION_ENUM
};

// Codes from here on carry a 16-bit length, and operands of that length.
inline constexpr uint8_t kFirstActionWithLength = 0x80;

struct ActionInfo {
  uint8_t code;
  ActionOperands operands;
  bool needsTarget;
  const char* name;
};

inline constexpr ActionInfo kActionInfos[] = {
#define VEXEL_ACTION_INFO(code, name, operands, target) \
  {code, ActionOperands::operands, target != 0, "Action" #name},
    VEXEL_ACTIONS(VEXEL_ACTION_INFO)
#undef VEXEL_ACTION_INFO
};

// The row of a code, or null for a code that is stepped over.
constexpr const ActionInfo* FindActionInfo(int32_t code) {
  for (const ActionInfo& info : kActionInfos) {
    if (info.code == code) return &info;
  }
  return nullptr;
}

}  // namespace vexel
