// Action blocks. Offsets of jumps count from the end of the jumping action.
#include "author/action_builder.h"

#include <cstring>
#include <stdexcept>

namespace vexel::author {

namespace {
constexpr size_t kUnbound = ~size_t(0);
}  // namespace

ActionBuilder& ActionBuilder::Op(ActionCode code) {
  return Raw(code, {});
}

ActionBuilder& ActionBuilder::Raw(uint8_t code, std::span<const uint8_t> operands) {
  if (code < kFirstActionWithLength && !operands.empty()) {
    throw std::range_error("an action below 0x80 has no operands");
  }
  out_.U8(code);
  if (code >= kFirstActionWithLength) {
    out_.U16(static_cast<uint32_t>(operands.size()));
    out_.Append(operands);
  }
  return *this;
}

ActionBuilder& ActionBuilder::Push(std::string_view text) {
  BitWriter operands;
  operands.U8(0);
  operands.Text(text);
  return Raw(kActionPush, operands.bytes());
}

ActionBuilder& ActionBuilder::PushFloat(float value) {
  uint32_t word;
  static_assert(sizeof(word) == sizeof(value));
  std::memcpy(&word, &value, sizeof(word));
  BitWriter operands;
  operands.U8(1);
  operands.U32(word);
  return Raw(kActionPush, operands.bytes());
}

ActionBuilder& ActionBuilder::GotoFrame(uint16_t frame) {
  BitWriter operands;
  operands.U16(frame);
  return Raw(kActionGotoFrame, operands.bytes());
}

ActionBuilder& ActionBuilder::GotoLabel(std::string_view label) {
  BitWriter operands;
  operands.Text(label);
  return Raw(kActionGotoLabel, operands.bytes());
}

ActionBuilder& ActionBuilder::GotoExpr(uint8_t play) {
  return Raw(kActionGotoExpr, std::span(&play, 1));
}

ActionBuilder& ActionBuilder::WaitForFrame(uint16_t frame, uint8_t skip) {
  BitWriter operands;
  operands.U16(frame);
  operands.U8(skip);
  return Raw(kActionWaitForFrame, operands.bytes());
}

ActionBuilder& ActionBuilder::WaitForFrameExpr(uint8_t skip) {
  return Raw(kActionWaitForFrameExpr, std::span(&skip, 1));
}

ActionBuilder& ActionBuilder::SetTarget(std::string_view path) {
  BitWriter operands;
  operands.Text(path);
  return Raw(kActionSetTarget, operands.bytes());
}

ActionBuilder& ActionBuilder::GetURL(std::string_view url, std::string_view window) {
  BitWriter operands;
  operands.Text(url);
  operands.Text(window);
  return Raw(kActionGetURL, operands.bytes());
}

ActionBuilder& ActionBuilder::GetURLExpr(uint8_t flags) {
  return Raw(kActionGetURLExpr, std::span(&flags, 1));
}

ActionBuilder& ActionBuilder::SetVariable(std::string_view name, std::string_view value) {
  return Push(name).Push(value).Op(kActionSetVariable);
}

ActionBuilder& ActionBuilder::GetVariable(std::string_view name) {
  return Push(name).Op(kActionGetVariable);
}

ActionBuilder::Label ActionBuilder::NewLabel() {
  labels_.push_back(kUnbound);
  return {labels_.size() - 1};
}

ActionBuilder& ActionBuilder::Bind(Label label) {
  labels_[label.index] = out_.size();
  return *this;
}

ActionBuilder& ActionBuilder::Branch(ActionCode code, Label label) {
  BitWriter operands;
  operands.U16(0);
  Raw(code, operands.bytes());
  fixups_.push_back({out_.size() - 2, label.index});
  return *this;
}

ActionBuilder& ActionBuilder::Jump(Label label) {
  return Branch(kActionJump, label);
}

ActionBuilder& ActionBuilder::If(Label label) {
  return Branch(kActionIf, label);
}

ActionBuilder& ActionBuilder::JumpBy(int16_t offset) {
  BitWriter operands;
  operands.S16(offset);
  return Raw(kActionJump, operands.bytes());
}

ActionBuilder& ActionBuilder::IfBy(int16_t offset) {
  BitWriter operands;
  operands.S16(offset);
  return Raw(kActionIf, operands.bytes());
}

Bytes ActionBuilder::Finish() const {
  BitWriter out = out_;
  for (const Fixup& fixup : fixups_) {
    const size_t target = labels_[fixup.label];
    if (target == kUnbound) throw std::range_error("a jump to a label that was never bound");
    const int64_t offset = int64_t(target) - int64_t(fixup.at + 2);
    if (offset < -32768 || offset > 32767) throw std::range_error("a jump beyond 16 bits");
    out.Patch16(fixup.at, static_cast<uint16_t>(offset));
  }
  out.U8(kActionEnd);
  return out.Take();
}

}  // namespace vexel::author
