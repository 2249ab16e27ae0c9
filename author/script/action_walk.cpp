// Walks blocks by the length rule, as the interpreter does, but never beyond
// the block.
#include "author/script/action_walk.h"

#include <algorithm>

namespace vexel::author {

namespace {

uint16_t Read16(std::span<const uint8_t> bytes) {
  return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

// The size of the texts with their zeros, one after the other.
std::optional<size_t> TextsSize(std::span<const uint8_t> bytes, int count) {
  auto at = bytes.begin();
  for (int i = 0; i < count; ++i) {
    at = std::find(at, bytes.end(), 0);
    if (at == bytes.end()) return std::nullopt;
    ++at;
  }
  return static_cast<size_t>(at - bytes.begin());
}

std::optional<size_t> FixedSize(std::span<const uint8_t> bytes, size_t size) {
  if (bytes.size() < size) return std::nullopt;
  return size;
}

}  // namespace

std::optional<ActionView> ReadAction(std::span<const uint8_t> block, size_t at) {
  ActionView action;
  action.at = at;
  action.code = block[at];
  action.info = FindActionInfo(action.code);
  action.end = at + 1;
  if (action.code < kFirstActionWithLength) return action;
  if (block.size() - at < 3) return std::nullopt;
  const size_t length = Read16(block.subspan(at + 1));
  if (block.size() - at - 3 < length) return std::nullopt;
  action.operands = block.subspan(at + 3, length);
  action.end = at + 3 + length;
  return action;
}

std::optional<size_t> OperandSize(const ActionView& action) {
  const std::span<const uint8_t> bytes = action.operands;
  if (!action.info) return std::nullopt;
  switch (action.info->operands) {
    case ActionOperands::kNone:
      return 0;
    case ActionOperands::kFrame:
    case ActionOperands::kOffset:
      return FixedSize(bytes, 2);
    case ActionOperands::kFrameAndSkip:
      return FixedSize(bytes, 3);
    case ActionOperands::kSkip:
    case ActionOperands::kFlags:
      return FixedSize(bytes, 1);
    case ActionOperands::kText:
      return TextsSize(bytes, 1);
    case ActionOperands::kTwoTexts:
      return TextsSize(bytes, 2);
    case ActionOperands::kValue: {
      if (bytes.empty() || bytes[0] > 1) return std::nullopt;
      if (bytes[0] == 1) return FixedSize(bytes, 5);
      const std::optional<size_t> size = TextsSize(bytes.subspan(1), 1);
      if (!size) return std::nullopt;
      return *size + 1;
    }
  }
  return std::nullopt;
}

int16_t JumpOffset(const ActionView& action) {
  return static_cast<int16_t>(Read16(action.operands));
}

}  // namespace vexel::author
