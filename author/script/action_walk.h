// The actions of a block as they stand in its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "movie/actions.h"

namespace vexel::author {

// One action. Code 0 ends the block for whoever runs it; what follows can
// still be reached by jumps, so it can be walked too.
struct ActionView {
  size_t at = 0;   // of the code
  size_t end = 0;  // behind the operands, where the next action begins
  uint8_t code = 0;
  const ActionInfo* info = nullptr;  // null for code 0 and for unknown codes
  std::span<const uint8_t> operands;
};

// The action at a byte offset inside the block, or nothing if its length field
// or its operands reach beyond the block's last byte.
std::optional<ActionView> ReadAction(std::span<const uint8_t> block, size_t at);

// How many of the operand bytes belong to the action's own form; those behind
// are surplus. Nothing if the form cannot be read from them: too few bytes, a
// text without its closing zero, a value of unknown type.
std::optional<size_t> OperandSize(const ActionView& action);

// The signed offset of a jump whose form can be read.
int16_t JumpOffset(const ActionView& action);

// Where a jump leads, as an offset into the block, which it may lie outside of.
inline int64_t JumpTarget(const ActionView& action) {
  return static_cast<int64_t>(action.end) + JumpOffset(action);
}

}  // namespace vexel::author
