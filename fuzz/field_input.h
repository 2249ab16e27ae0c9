// The input of the target for text fields, read byte by byte; what is missing
// reads as 0.
//
//   fonts   a FieldFonts; behind kForm1 and kForm2 the tag's body behind the id,
//           behind kForm1 the body of the tag with name and codes, too
//   fields  their number less 1, modulo kMaxFields; each is a byte that chooses
//           bounds, a byte with how often the record's last byte is repeated, as
//           a power of 2 (from kMaxRepeats on not at all), and the record behind
//           id and bounds
//   ops     a FieldOp each, modulo kFieldOps, with its operands, to the end
//
// Bodies and records have their length in 16 bits before them, texts in 8.
#pragma once

#include <cstdint>

namespace vexel::fuzz {

inline constexpr int kMaxFields = 4;
inline constexpr int kMaxRepeats = 21;

enum FieldFonts : uint8_t { kBlockFont, kForm2, kForm1, kBuiltInFonts, kFieldFontsCount };

// With their operands, a byte each where nothing else is said.
enum FieldOp : uint8_t {
  kOpKey,       // KeyCode or character, modifiers
  kOpCode,      // signed code in 16 bits
  kOpDown,      // x, y
  kOpMove,      // x, y
  kOpUp,        // x, y
  kOpSet,       // variable, text
  kOpScroll,    // variable, line
  kOpGet,       // variable
  kOpSeek,      // frame
  kOpPlay,      // frames
  kOpBlink,     //
  kOpPaste,     // text
  kOpProperty,  // index, value
  kOpView,      // bits 1 high quality, 2 zoomed
  kOpWait,      // times 10 milliseconds, modulo 32
  kOpDraw,      //
  kFieldOps,
};

// What ops call variables by, modulo their number.
inline constexpr const char* kFieldVariables[] = {"v", "w", "/s:v", "../:v", "nowhere:v"};

}  // namespace vexel::fuzz
