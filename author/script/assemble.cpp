// From mnemonics to bytes: lines are read into pieces of known size, then the
// offsets of jumps are filled in.
#include <charconv>
#include <map>

#include "author/bit_writer.h"
#include "author/script/action_text.h"
#include "author/script/cursor.h"
#include "author/script/float_text.h"
#include "author/script/mnemonics.h"
#include "author/script/nearest.h"

namespace vexel::author {

namespace {

constexpr size_t kMaxOperands = 0xFFFF;

class Assembler {
 public:
  explicit Assembler(const SourceSlice& slice) : in_(slice) {}

  Bytes Run() {
    bool closed = false;
    while (SkipToLine()) {
      const size_t begin = in_.offset();
      const std::string_view word = in_.Name();
      if (word.empty()) {
        in_.Fail("here stands an action, such as push \"text\", or a label, such as loop:");
      }
      if (in_.Peek() == ':') {
        in_.Step();
        BindLabel(word, begin);
        closed = false;
        continue;
      }
      if (noEnd_) in_.FailAt(begin, "noend is the last line of a block");
      closed = word == "end";
      Statement(word, begin);
      EndOfLine();
    }
    if (!closed && !noEnd_) out_.U8(kActionEnd);
    FillJumps();
    return out_.Take();
  }

 private:
  struct Jump {
    size_t field;  // where the 16-bit offset stands in the block
    size_t from;   // behind the action, where offsets count from
    std::string label;
    size_t place;
  };

  // To the next word; false at the end of the text. Actions are divided by line
  // ends or semicolons.
  bool SkipToLine() {
    for (;;) {
      in_.SkipBlanks(true);
      if (in_.Peek() != ';') return !in_.AtEnd();
      in_.Step();
    }
  }

  void EndOfLine() {
    in_.SkipBlanks(false);
    if (!AtLineEnd()) in_.Fail("the action is complete before this; one stands on a line");
  }

  bool AtLineEnd() const {
    const int c = in_.Peek();
    return c == '\n' || c == ';' || c == -1;
  }

  void BindLabel(std::string_view label, size_t place) {
    const auto [it, isNew] = labels_.emplace(label, out_.size());
    if (!isNew) in_.FailAt(place, "the label " + it->first + " stands here a second time");
  }

  void Statement(std::string_view word, size_t begin) {
    if (word == "end") {
      out_.U8(kActionEnd);
    } else if (word == "noend") {
      noEnd_ = true;
    } else if (word == "bytes") {
      out_.Append(HexBytes(false));
    } else if (word == "action") {
      const auto code = static_cast<uint8_t>(Number("a code", 1, 255));
      Emit(code, HexBytes(true), begin);
    } else if (const ActionInfo* info = FindMnemonic(word)) {
      Action(*info, begin);
    } else {
      in_.FailAt(begin, "unknown action " + std::string(word) + NearestAction(word));
    }
  }

  void Action(const ActionInfo& info, size_t begin) {
    if (TakeWord("raw")) {
      Emit(info.code, HexBytes(true), begin);
      return;
    }
    BitWriter operands;
    Operands(info, operands);
    if (TakeWord("surplus")) operands.Append(HexBytes(false));
    Emit(info.code, operands.bytes(), begin);
    if (!jumps_.empty() && jumps_.back().from == 0) {
      jumps_.back().field = out_.size() - operands.size();
      jumps_.back().from = out_.size();
    }
  }

  void Operands(const ActionInfo& info, BitWriter& out) {
    switch (info.operands) {
      case ActionOperands::kNone:
        break;
      case ActionOperands::kFrame:
        out.U16(static_cast<uint32_t>(Number("a frame", 0, 65535)));
        break;
      case ActionOperands::kFrameAndSkip:
        out.U16(static_cast<uint32_t>(Number("a frame", 0, 65535)));
        Skip(out);
        break;
      case ActionOperands::kSkip:
        Skip(out);
        break;
      case ActionOperands::kText:
        Text(out);
        break;
      case ActionOperands::kTwoTexts:
        Text(out);
        Text(out);
        break;
      case ActionOperands::kFlags:
        out.U8(Flags(info));
        break;
      case ActionOperands::kValue:
        Value(out);
        break;
      case ActionOperands::kOffset:
        Offset(out);
        break;
    }
  }

  void Skip(BitWriter& out) {
    if (!TakeWord("skip")) in_.Fail("here stands skip with a count of actions");
    out.U8(static_cast<uint32_t>(Number("a count of actions", 0, 255)));
  }

  void Text(BitWriter& out) {
    in_.SkipBlanks(false);
    if (in_.Peek() != '"') in_.Fail("here stands a text in double quotes");
    const size_t begin = in_.offset();
    const std::string text = in_.Quoted();
    if (text.find('\0') != std::string::npos) {
      in_.FailAt(begin, "a text ends at its first zero byte; write the operands with raw");
    }
    out.Text(text);
  }

  void Value(BitWriter& out) {
    in_.SkipBlanks(false);
    if (in_.Peek() == '"') {
      out.U8(0);
      Text(out);
      return;
    }
    out.U8(1);
    if (TakeWord("bits")) {
      out.U32(static_cast<uint32_t>(Number("the bits of a float", 0, 0xFFFFFFFF)));
      return;
    }
    const size_t begin = in_.offset();
    const std::optional<uint32_t> bits = ParseFloat(NumberWord());
    if (!bits) in_.FailAt(begin, "here stands a text in double quotes or a number");
    out.U32(*bits);
  }

  // A label is remembered, its offset filled in at the end.
  void Offset(BitWriter& out) {
    if (TakeWord("by")) {
      out.S16(static_cast<int32_t>(Number("an offset", -32768, 32767)));
      return;
    }
    const size_t begin = in_.offset();
    const std::string label(in_.Name());
    if (label.empty()) in_.Fail("here stands a label, or by with a count of bytes");
    jumps_.push_back({0, 0, label, begin});
    out.U16(0);
  }

  uint8_t Flags(const ActionInfo& info) {
    int64_t flags = 0;
    bool any = false;
    for (;;) {
      in_.SkipBlanks(false);
      const size_t begin = in_.offset();
      if (IsDigit(in_.Peek())) {
        flags |= Number("flags", 0, 255);
        any = true;
        continue;
      }
      const std::string_view word = in_.Name();
      if (word.empty()) break;
      const int bits = FindFlag(info, word);
      if (bits < 0 && any && word == "surplus") {
        in_.MoveTo(begin);
        break;
      }
      if (bits < 0) {
        in_.FailAt(begin, "unknown flag " + std::string(word) + "; there are " + FlagWords(info));
      }
      flags |= bits;
      any = true;
    }
    if (!any) in_.Fail("here stand flags: " + FlagWords(info) + ", or a number");
    return static_cast<uint8_t>(flags);
  }

  bool TakeWord(std::string_view word) {
    in_.SkipBlanks(false);
    const size_t begin = in_.offset();
    if (in_.Name() == word) return true;
    in_.MoveTo(begin);
    return false;
  }

  // The characters that numbers are made of, from here on.
  std::string_view NumberWord() {
    const size_t begin = in_.offset();
    for (int c = in_.Peek(); IsNameChar(c) || c == '.' || c == '-' || c == '+'; c = in_.Peek()) {
      in_.Step();
    }
    return in_.From(begin);
  }

  // A whole number, decimal or hexadecimal behind 0x.
  int64_t Number(const char* what, int64_t low, int64_t high) {
    in_.SkipBlanks(false);
    const size_t begin = in_.offset();
    std::string_view digits = NumberWord();
    const bool negative = digits.starts_with('-');
    if (negative) digits.remove_prefix(1);
    const bool hex = digits.starts_with("0x");
    if (hex) digits.remove_prefix(2);
    int64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, value, hex ? 16 : 10);
    const bool isNumber = !digits.empty() && digits[0] != '-' && result.ptr == end &&
                          result.ec != std::errc::invalid_argument;
    if (negative) value = -value;
    if (!isNumber || result.ec != std::errc() || value < low || value > high) {
      in_.FailAt(begin, std::string("here stands ") + what + ", a whole number from " +
                            std::to_string(low) + " to " + std::to_string(high));
    }
    return value;
  }

  // Pairs of hexadecimal digits up to the end of the line.
  Bytes HexBytes(bool mayBeNone) {
    Bytes bytes;
    for (;;) {
      in_.SkipBlanks(false);
      if (AtLineEnd()) break;
      const int high = HexDigit(in_.Peek());
      const int low = HexDigit(in_.Peek(1));
      if (high < 0 || low < 0) in_.Fail("here stand bytes, two hexadecimal digits each");
      bytes.push_back(static_cast<uint8_t>(high << 4 | low));
      in_.Step();
      in_.Step();
    }
    if (bytes.empty() && !mayBeNone) in_.Fail("here stand bytes, two hexadecimal digits each");
    return bytes;
  }

  void Emit(uint8_t code, const Bytes& operands, size_t place) {
    if (code < kFirstActionWithLength && !operands.empty()) {
      in_.FailAt(place, "codes below 0x80 have no operands");
    }
    if (operands.size() > kMaxOperands) {
      in_.FailAt(place, "the operands take " + std::to_string(operands.size()) +
                            " bytes; an action has room for 65535");
    }
    out_.U8(code);
    if (code < kFirstActionWithLength) return;
    out_.U16(static_cast<uint32_t>(operands.size()));
    out_.Append(operands);
  }

  void FillJumps() {
    for (const Jump& jump : jumps_) {
      const auto label = labels_.find(jump.label);
      if (label == labels_.end()) {
        Nearest nearest(jump.label);
        for (const auto& [name, at] : labels_) nearest.Offer(name);
        in_.FailAt(jump.place, "there is no label " + jump.label + nearest.Hint());
      }
      const int64_t offset = int64_t(label->second) - int64_t(jump.from);
      if (offset < -32768 || offset > 32767) {
        in_.FailAt(jump.place, "the label " + jump.label + " lies " +
                                   std::to_string(offset < 0 ? -offset : offset) +
                                   " bytes away; jumps reach 32767");
      }
      out_.Patch16(jump.field, static_cast<uint16_t>(offset));
    }
  }

  static std::string NearestAction(std::string_view word) {
    Nearest nearest(word);
    for (const ActionInfo& info : kActionInfos) nearest.Offer(Mnemonic(info));
    return nearest.Hint();
  }

  SourceCursor in_;
  BitWriter out_;
  std::map<std::string, size_t, std::less<>> labels_;
  std::vector<Jump> jumps_;
  bool noEnd_ = false;
};

}  // namespace

Bytes AssembleActions(const SourceSlice& slice) {
  return Assembler(slice).Run();
}

}  // namespace vexel::author
