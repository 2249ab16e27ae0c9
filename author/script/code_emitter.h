// Actions with jumps whose reach is known: what a script compiles to.
#pragma once

#include <vector>

#include "author/action_builder.h"
#include "author/language/source.h"

namespace vexel::author {

class CodeEmitter {
 public:
  using Label = ActionBuilder::Label;

  void Op(ActionCode code) { builder_.Op(code); }
  // A text that is longer than an action's operands throws SourceError.
  void Push(std::string_view text, const SourcePlace& place);
  void SetTarget(std::string_view path, const SourcePlace& place);

  // For actions without jumps.
  ActionBuilder& builder() { return builder_; }

  Label NewLabel() { return builder_.NewLabel(); }
  void Bind(Label label);
  void Jump(Label label, const SourcePlace& place);
  // Jumps if the number on the stack is not 0.
  void If(Label label, const SourcePlace& place);

  size_t size() const { return builder_.size(); }
  // The block. A jump that cannot reach throws SourceError at its place.
  Bytes Finish();

 private:
  struct Branch {
    size_t from;
    Label label;
    SourcePlace place;
  };
  ActionBuilder builder_;
  std::vector<size_t> bound_;  // by label: where it stands
  std::vector<Branch> branches_;
};

}  // namespace vexel::author
