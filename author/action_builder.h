// Action blocks with labels.
#pragma once

#include "author/bit_writer.h"
#include "movie/actions.h"

namespace vexel::author {

// A block is built in order; Finish closes it. Jumps name a label, which may
// be bound before or after them.
class ActionBuilder {
 public:
  struct Label {
    size_t index = 0;
  };

  // An action without operands. Codes of 0x80 and above get a length of 0.
  ActionBuilder& Op(ActionCode code);
  // Any code with any operands; below 0x80 the operands must be empty.
  ActionBuilder& Raw(uint8_t code, std::span<const uint8_t> operands);

  ActionBuilder& Push(std::string_view text);
  ActionBuilder& PushFloat(float value);
  ActionBuilder& GotoFrame(uint16_t frame);
  ActionBuilder& GotoLabel(std::string_view label);
  ActionBuilder& GotoExpr(uint8_t play);
  ActionBuilder& WaitForFrame(uint16_t frame, uint8_t skip);
  ActionBuilder& WaitForFrameExpr(uint8_t skip);
  ActionBuilder& SetTarget(std::string_view path);
  ActionBuilder& GetURL(std::string_view url, std::string_view window);
  ActionBuilder& GetURLExpr(uint8_t flags);
  // Pushes name and value and stores them.
  ActionBuilder& SetVariable(std::string_view name, std::string_view value);
  ActionBuilder& GetVariable(std::string_view name);

  Label NewLabel();
  ActionBuilder& Bind(Label label);
  ActionBuilder& Jump(Label label);
  ActionBuilder& If(Label label);
  ActionBuilder& JumpBy(int16_t offset);
  ActionBuilder& IfBy(int16_t offset);

  size_t size() const { return out_.size(); }
  // The block with its end byte. A label that was never bound, or lies too far
  // away, throws std::range_error.
  Bytes Finish() const;

 private:
  struct Fixup {
    size_t at;  // of the 16-bit offset
    size_t label;
  };
  ActionBuilder& Branch(ActionCode code, Label label);

  BitWriter out_;
  std::vector<size_t> labels_;
  std::vector<Fixup> fixups_;
};

}  // namespace vexel::author
