// From bytes to mnemonics.
//
// The block is walked from its first byte by the lengths of its actions. An
// end byte in the middle stops the walk unless a jump leads beyond it; from
// there on, and from an action that is cut short, bytes are printed as bytes.
#include <algorithm>
#include <cstdio>
#include <map>

#include "author/script/action_text.h"
#include "author/script/action_walk.h"
#include "author/script/cursor.h"
#include "author/script/float_text.h"
#include "author/script/mnemonics.h"

namespace vexel::author {

namespace {

constexpr size_t kBytesPerLine = 24;

std::string HexText(std::span<const uint8_t> bytes) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text;
  for (const uint8_t byte : bytes) {
    text += kHex[byte >> 4];
    text += kHex[byte & 15];
  }
  return text;
}

std::string HexNumber(const char* before, unsigned value) {
  char text[32];
  std::snprintf(text, sizeof(text), "%s0x%02x", before, value);
  return text;
}

uint32_t ReadBits(std::span<const uint8_t> bytes, size_t count) {
  uint32_t value = 0;
  for (size_t i = 0; i < count; ++i) value |= uint32_t(bytes[i]) << (8 * i);
  return value;
}

std::string_view TextAt(std::span<const uint8_t> bytes) {
  return reinterpret_cast<const char*>(bytes.data());
}

class Disassembler {
 public:
  Disassembler(std::span<const uint8_t> block, int indent)
      : block_(block), indent_(static_cast<size_t>(indent), ' ') {}

  std::string Run() {
    Walk();
    NameLabels();
    for (const ActionView& action : actions_) {
      PrintLabel(action.at);
      Line(action.code == kActionEnd ? "end" : ActionText(action));
    }
    PrintLabel(tail_);
    if (endIsOwn_) {
      // Behind an end of its own the block would get no other.
      const bool isSecond = !actions_.empty() && actions_.back().code == kActionEnd;
      if (isSecond && labels_.count(tail_) == 0) Line("end");
      return std::move(out_);
    }
    for (size_t at = tail_; at < block_.size(); at += kBytesPerLine) {
      const size_t size = std::min(kBytesPerLine, block_.size() - at);
      Line(std::string("bytes ").append(HexText(block_.subspan(at, size))));
    }
    Line("noend");
    return std::move(out_);
  }

 private:
  void Walk() {
    int64_t reach = 0;  // the farthest place in the block that a jump leads to
    while (tail_ < block_.size()) {
      const std::optional<ActionView> action = ReadAction(block_, tail_);
      if (!action) return;
      if (action->code == kActionEnd && action->end == block_.size()) {
        endIsOwn_ = true;
        return;
      }
      actions_.push_back(*action);
      tail_ = action->end;
      if (IsJump(*action) && JumpTarget(*action) < std::ssize(block_)) {
        reach = std::max(reach, JumpTarget(*action));
      }
      if (action->code == kActionEnd && reach < static_cast<int64_t>(tail_)) return;
    }
  }

  static bool IsJump(const ActionView& action) {
    return action.info && action.info->operands == ActionOperands::kOffset && OperandSize(action);
  }

  // Labels in the order of their places. Only beginnings of actions, and the
  // place behind the last one, can have one.
  void NameLabels() {
    for (const ActionView& action : actions_) {
      if (!IsJump(action)) continue;
      const int64_t target = JumpTarget(action);
      if (IsBoundary(target)) labels_[static_cast<size_t>(target)];
    }
    int number = 0;
    for (auto& [at, label] : labels_) label = ++number;
  }

  bool IsBoundary(int64_t target) const {
    if (target < 0 || target > static_cast<int64_t>(tail_)) return false;
    if (target == static_cast<int64_t>(tail_)) return true;
    const auto at = static_cast<size_t>(target);
    const auto found = std::lower_bound(
        actions_.begin(), actions_.end(), at,
        [](const ActionView& action, size_t offset) { return action.at < offset; });
    return found != actions_.end() && found->at == at;
  }

  static std::string LabelText(int number) {
    std::string text(1, 'L');
    return text += std::to_string(number);
  }

  void PrintLabel(size_t at) {
    const auto found = labels_.find(at);
    if (found != labels_.end()) Line(LabelText(found->second) + ":");
  }

  void Line(const std::string& text) { out_ += indent_ + text + "\n"; }

  std::string ActionText(const ActionView& action) const {
    if (!action.info) {
      std::string text = HexNumber("action ", action.code);
      if (!action.operands.empty()) text.append(" ").append(HexText(action.operands));
      return text;
    }
    std::string text = Mnemonic(*action.info);
    const std::optional<size_t> size = OperandSize(action);
    if (!size) {
      text += " raw";
      if (!action.operands.empty()) text.append(" ").append(HexText(action.operands));
      return text;
    }
    if (action.info->operands != ActionOperands::kNone)
      text.append(" ").append(OperandText(action));
    if (*size < action.operands.size()) {
      text.append(" surplus ").append(HexText(action.operands.subspan(*size)));
    }
    if (IsJump(action) && !IsBoundary(JumpTarget(action))) {
      text.append("  // ").append(PlaceText(JumpTarget(action)));
    }
    return text;
  }

  std::string OperandText(const ActionView& action) const {
    const std::span<const uint8_t> bytes = action.operands;
    switch (action.info->operands) {
      case ActionOperands::kNone:
        return "";
      case ActionOperands::kFrame:
        return std::to_string(ReadBits(bytes, 2));
      case ActionOperands::kFrameAndSkip:
        return std::to_string(ReadBits(bytes, 2)) + " skip " + std::to_string(bytes[2]);
      case ActionOperands::kSkip:
        return std::string("skip ").append(std::to_string(bytes[0]));
      case ActionOperands::kText:
        return QuoteText(TextAt(bytes));
      case ActionOperands::kTwoTexts: {
        const std::string_view first = TextAt(bytes);
        return QuoteText(first) + " " + QuoteText(TextAt(bytes.subspan(first.size() + 1)));
      }
      case ActionOperands::kFlags:
        return FlagsText(*action.info, bytes[0]);
      case ActionOperands::kValue:
        if (bytes[0] == 1) return FloatText(ReadBits(bytes.subspan(1), 4));
        return QuoteText(TextAt(bytes.subspan(1)));
      case ActionOperands::kOffset: {
        const int64_t target = JumpTarget(action);
        if (IsBoundary(target)) return LabelText(labels_.at(static_cast<size_t>(target)));
        return std::string("by ").append(std::to_string(JumpOffset(action)));
      }
    }
    return "";
  }

  // Where a jump without a label leads.
  std::string PlaceText(int64_t target) const {
    if (target < 0) return "before the block";
    if (target >= static_cast<int64_t>(block_.size())) return "beyond the block";
    if (target >= static_cast<int64_t>(tail_)) return "into the bytes at the end";
    return "into the midst of an action";
  }

  std::span<const uint8_t> block_;
  std::string indent_;
  std::vector<ActionView> actions_;
  size_t tail_ = 0;               // behind the last action that is printed as one
  bool endIsOwn_ = false;         // at tail_ stands the end byte that blocks get anyway
  std::map<size_t, int> labels_;  // their numbers, by place
  std::string out_;
};

}  // namespace

std::string DisassembleActions(std::span<const uint8_t> block, int indent) {
  return Disassembler(block, indent).Run();
}

}  // namespace vexel::author
